#include "Session.h"

#include "Jobs.h"
#include "Oracle.h"
#include "User.h"
#include "WorstCase.h"
#include "link/ProgrammerLink.h"

namespace vantor::campaign {

using std::chrono::milliseconds;

namespace {

constexpr milliseconds kBetweenSteps{300};
/// What was written last leaves the line, and the box has answered.
constexpr milliseconds kLineClear{60};

class Session {
  public:
    explicit Session(const Plan& plan)
        : plan_(plan), world_(plan), oracle_(world_), job_(world_), user_(world_) {}

    Outcome run() {
        if (!world_.start()) oracle_.violation("(c) the program did not start");
        job_.prepare();
        disturbedJob();
        heal();
        cleanJob();
        outcome_.verdicts = oracle_.verdicts();
        outcome_.violations = oracle_.violations;
        outcome_.story.insert(outcome_.story.end(), world_.prompts.seen.begin(),
                              world_.prompts.seen.end());
        outcome_.fingerprint = fingerprint_;
        return outcome_;
    }

  private:
    /// All steps of the job, within their worst case.
    template <class BeforeStep>
    void perform(Micros allowance, BeforeStep&& beforeStep) {
        for (int step = 0; step < stepsOf(plan_.job); ++step) {
            allowance += worstCase(plan_, step) + kBetweenSteps;
        }
        const Micros began = world_.loop.now();
        const EventLoop::TimerId watchdog = world_.loop.callAfter(allowance, [this] {
            oracle_.violation("(b) not at its end within the worst case");
            if (world_.program) world_.program->link().endProgram();
        });
        for (int step = 0; step < stepsOf(plan_.job) && !world_.ended(); ++step) {
            beforeStep(step);
            const bool performed = job_.perform(step);
            rest(allowance);
            world_.loop.advance(kBetweenSteps);
            rest(allowance);
            if (!performed) break;
        }
        world_.loop.cancel(watchdog);
        const auto used = 100 * (world_.loop.now() - began) / allowance;
        outcome_.usedPercent = std::max(outcome_.usedPercent, static_cast<int>(used));
    }

    void rest(Micros limit) {
        (void)world_.loop.runUntil([this] { return world_.idle() || world_.ended(); }, limit);
    }

    void disturbedJob() {
        const auto presses = static_cast<int>(plan_.presses.size());
        perform(presses * longestAction(plan_), [this](int step) {
            user_.setOut(step);
            if (step == plan_.faultStep && plan_.row().kind) world_.box.addFault(plan_.armed);
        });
        user_.restrain();
        world_.loop.advance(kLineClear);
        outcome_.done = job_.done();
        outcome_.ended = world_.ended();
        outcome_.struck = world_.box.faultsStruck();
        outcome_.pressed = user_.pressed();
        oracle_.atRest();
        oracle_.files(false);
        outcome_.story = world_.prompts.seen;
        for (const std::string& deed : user_.deeds) outcome_.story.push_back("the user " + deed);
        outcome_.story.emplace_back(outcome_.done ? "-- done; now a clean run"
                                                  : "-- not done; now a clean run");
        noteFingerprint();
    }

    void heal() {
        // A mech that lost its power is dead for a while, however soon the job was over.
        if (plan_.row().kind == boxsim::Fault::Kind::powerLoss) {
            world_.loop.advance(milliseconds(plan_.armed.value));
        }
        world_.box.clearFaults();
        world_.box.replug();
        world_.box.replugValidator();
        world_.prompts.seen.clear();
    }

    void cleanJob() {
        if (world_.ended()) {
            if (!world_.start()) {
                oracle_.violation("(c) the program does not start again");
                return;
            }
        } else if (!user_.goHome()) {
            oracle_.violation("(c) there is no way back to the main window");
            return;
        }
        oracle_.expectHealthy();
        world_.prompts.seen.clear();
        perform(Micros{0}, [](int) {});
        world_.loop.advance(kLineClear);
        if (!job_.done()) {
            const auto& seen = world_.prompts.seen;
            oracle_.violation("(c) a clean run fails; the last box: " +
                              (seen.empty() ? "none" : seen.back()));
        }
        oracle_.atRest();
        oracle_.files(true);
        if (!world_.ended() && !user_.goHome())
            oracle_.violation("(c) no way home from a clean run");
        noteFingerprint();
    }

    void noteFingerprint() {
        const auto add = [this](std::uint64_t value) {
            fingerprint_ = (fingerprint_ ^ value) * 0x100'0000'01B3;
        };
        for (const boxsim::WireByte& wire : world_.box.transcript()) {
            add(static_cast<std::uint64_t>(wire.at.count()) * 512 + wire.byte * 2U + wire.fromBox);
        }
        for (const std::string& box : world_.prompts.seen) {
            for (const char c : box) add(static_cast<unsigned char>(c));
        }
    }

    const Plan& plan_;
    World world_;
    Oracle oracle_;
    Job job_;
    User user_;
    Outcome outcome_;
    std::uint64_t fingerprint_ = 0xCBF2'9CE4'8422'2325;
};

}  // namespace

Outcome runSession(const Plan& plan) {
    return Session(plan).run();
}

}  // namespace vantor::campaign
