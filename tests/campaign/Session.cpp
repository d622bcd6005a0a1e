#include "Session.h"

#include "Jobs.h"
#include "Oracle.h"
#include "Rehearsal.h"
#include "User.h"
#include "WorstCase.h"
#include "link/ProgrammerLink.h"

namespace vantor::campaign {

using std::chrono::milliseconds;

namespace {

constexpr milliseconds kBetweenSteps{300};
/// A mech may still be dead for a while, and a clean run reads what a disturbed one had not.
constexpr std::chrono::seconds kSlack{20};
/// What was written last leaves the line, and the box has answered.
constexpr milliseconds kLineClear{60};

class Session {
  public:
    Session(const Plan& plan, const Rehearsal& rehearsal)
        : plan_(plan),
          rehearsal_(rehearsal),
          world_(plan),
          oracle_(world_),
          job_(world_),
          user_(world_) {}

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
    /// All steps of the job, each within its worst case.
    template <class BeforeStep, class Extra>
    void perform(Extra&& extra, BeforeStep&& beforeStep) {
        for (int step = 0; step < stepsOf(plan_.job) && !world_.ended(); ++step) {
            const Micros allowance = worstCase(plan_, step) + kBetweenSteps + extra(step);
            const Micros began = world_.loop.now();
            const EventLoop::TimerId watchdog = world_.loop.callAfter(allowance, [this] {
                oracle_.violation("(b) not at its end within the worst case");
                if (world_.program) world_.program->link().endProgram();
            });
            oracle_.stepBegins();
            beforeStep(step);
            const bool performed = job_.perform(step);
            rest(allowance);
            world_.loop.advance(kBetweenSteps);
            rest(allowance);
            world_.loop.cancel(watchdog);
            const auto used = 100 * (world_.loop.now() - began) / allowance;
            outcome_.usedPercent = std::max(outcome_.usedPercent, static_cast<int>(used));
            if (!performed) break;
        }
    }

    /// A stray press may begin another action; whatever else it does is soon over.
    [[nodiscard]] Micros pressesOf(int step) const {
        Micros sum{};
        for (const Press& press : plan_.presses) {
            if (press.step == step) sum += longestAction(plan_);
        }
        return sum;
    }

    void rest(Micros limit) {
        (void)world_.loop.runUntil([this] { return world_.idle() || world_.ended(); }, limit);
    }

    void disturbedJob() {
        perform([this](int step) { return pressesOf(step); },
                [this](int step) {
                    user_.setOut(step);
                    if (step == plan_.faultStep && plan_.row().kind) {
                        world_.box.addFault(plan_.armed);
                    }
                });
        user_.restrain();
        world_.loop.advance(kLineClear);
        outcome_.done = job_.done();
        outcome_.ended = world_.ended();
        outcome_.struck = world_.box.faultsStruck();
        outcome_.pressed = user_.pressed();
        if (!outcome_.done && outcome_.struck == 0 && outcome_.pressed == 0) {
            oracle_.violation("(c) refused, though nothing was wrong");
        }
        // What is late still comes; that is no rest.
        if (plan_.row().kind == boxsim::Fault::Kind::delayByte ||
            plan_.row().kind == boxsim::Fault::Kind::mechLate) {
            const int times = std::max(plan_.armed.times, 1);
            world_.loop.advance(times * milliseconds(plan_.armed.value));
            world_.loop.advance(kLineClear);
        }
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
        if (outcome_.done) {
            // Another mech to be programmed, or nothing would be left to write.
            world_.box.plugValidator(plan_.model->maker, plan_.model->code);
            oracle_.anotherMech();
        } else {
            world_.box.replugValidator();
        }
        world_.prompts.seen.clear();
    }

    void cleanJob() {
        const bool restarted = world_.ended();
        if (restarted) {
            if (!world_.start()) {
                oracle_.violation("(c) the program does not start again");
                return;
            }
        } else if (!user_.goHome()) {
            oracle_.violation("(c) there is no way back to the main window");
            return;
        }
        if (!restarted) oracle_.atHome();
        oracle_.expectHealthy();
        world_.prompts.seen.clear();
        const Micros began = world_.loop.now();
        perform([](int) { return Micros{0}; }, [](int) {});
        if (world_.loop.now() - began > rehearsal_.length() * 3 / 2 + kSlack) {
            oracle_.violation("(b) a clean run takes far longer than an undisturbed one");
        }
        world_.loop.advance(kLineClear);
        if (!job_.done()) {
            const auto& seen = world_.prompts.seen;
            oracle_.violation("(c) a clean run fails; the last box: " +
                              (seen.empty() ? "none" : seen.back()));
        }
        oracle_.atRest();
        oracle_.files(true);
        if (!world_.ended() && !user_.goHome()) {
            oracle_.violation("(c) no way home from a clean run");
        }
        oracle_.atHome();
        expectSilence();
        noteFingerprint();
    }

    /// At home nobody speaks to the box.
    void expectSilence() {
        if (world_.ended()) return;
        world_.loop.advance(kLineClear);
        const std::size_t before = world_.box.transcript().size();
        world_.loop.advance(std::chrono::seconds(3));
        if (world_.box.transcript().size() != before) {
            oracle_.violation("(c) the line is not quiet when nothing runs");
        }
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
    const Rehearsal& rehearsal_;
    World world_;
    Oracle oracle_;
    Job job_;
    User user_;
    Outcome outcome_;
    std::uint64_t fingerprint_ = 0xCBF2'9CE4'8422'2325;
};

}  // namespace

Outcome runSession(const Plan& drawn) {
    Plan plan = drawn;
    const Rehearsal& rehearsal = rehearsalOf(plan);
    rehearsal.place(plan);
    Outcome outcome = Session(plan, rehearsal).run();
    outcome.story.insert(outcome.story.begin(), inWords(plan));
    if (!rehearsal.done()) outcome.violations.push_back("(c) the undisturbed job fails");
    return outcome;
}

}  // namespace vantor::campaign
