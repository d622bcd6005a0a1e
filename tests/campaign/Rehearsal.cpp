#include "Rehearsal.h"

#include <algorithm>
#include <limits>
#include <map>
#include <string>

#include "Dice.h"
#include "Jobs.h"
#include "World.h"
#include "boxsim/SimulatedMech.h"

namespace vantor::campaign {

using std::chrono::milliseconds;

namespace {

constexpr int kWhole = 10'000;
constexpr std::chrono::hours kLongest{1};
constexpr milliseconds kBetweenSteps{300};

/// The same for all plans of a job on a model, or the order of the sessions would matter.
Plan bare(const Plan& plan) {
    return {.seed = 0,
            .model = plan.model,
            .job = plan.job,
            .presses = {},
            .bipolar = plan.bipolar,
            .ownWay = plan.ownWay,
            .coinset = plan.coinset,
            .oneK = plan.oneK,
            .wizard = plan.wizard,
            .detail = 0};
}

std::map<int, std::string> memoryOf(World& world) {
    std::map<int, std::string> cells;
    int number = 0;
    for (const std::uint8_t cell : world.box.promCells()) cells[number++] = std::to_string(cell);
    if (world.plan.is(kMars) || world.box.mech() == nullptr) return cells;
    for (const boxsim::MemoryCell& cell : world.box.mech()->memory()) {
        cells[cell.number] = cell.content;
    }
    return cells;
}

/// Where `permyriad` of the way through `count` moments lies; early ones close to the first.
int placed(int count, int permyriad, bool early) {
    const int last = early ? std::min(count - 1, 20) : count - 1;
    return static_cast<int>(static_cast<long long>(last) * permyriad / kWhole);
}

}  // namespace

Rehearsal::Rehearsal(const Plan& of) {
    const Plan plan = bare(of);
    World world(plan);
    Job job(world);
    (void)world.start();
    job.prepare();
    const auto rest = [&] {
        (void)world.loop.runUntil([&] { return world.idle() || world.ended(); }, kLongest);
    };
    bool performed = true;
    for (int step = 0; step < stepsOf(plan.job) && performed; ++step) {
        world.box.clearFaults();
        // Faults that never strike count the moments at which they could.
        std::vector<std::size_t> rows;
        for (std::size_t row = 0; row < faultRows().size(); ++row) {
            if (!faultRows()[row].kind) continue;
            for (const auto where : {boxsim::Fault::Where::fromBox, boxsim::Fault::Where::fromPc}) {
                world.box.addFault({.kind = *faultRows()[row].kind,
                                    .where = where,
                                    .after = std::numeric_limits<int>::max()});
            }
            rows.push_back(row);
        }
        const auto before = memoryOf(world);
        const Micros began = world.loop.now();
        performed = job.perform(step);
        rest();
        Step& now = steps_.emplace_back();
        now.length = world.loop.now() - began;
        world.loop.advance(kBetweenSteps);
        rest();
        now.chances.assign(faultRows().size(), 0);
        now.fromPc.assign(faultRows().size(), 0);
        const std::vector<int> counts = world.box.faultsLetThrough();
        for (std::size_t i = 0; i < rows.size(); ++i) {
            now.chances[rows[i]] = counts[2 * i];
            now.fromPc[rows[i]] = counts[2 * i + 1];
        }
        for (const auto& [number, content] : memoryOf(world)) {
            const auto old = before.find(number);
            const std::string& was = old == before.end() ? "0" : old->second;
            if (was != content) now.changed.push_back(number);
        }
    }
    done_ = job.done();
}

Micros Rehearsal::length() const {
    Micros sum{};
    for (const Step& step : steps_) sum += step.length;
    return sum;
}

int Rehearsal::chances(const Plan& plan, int step) const {
    const auto row = static_cast<std::size_t>(plan.fault);
    const auto at = static_cast<std::size_t>(step);
    if (!plan.row().kind || at >= steps_.size()) return 0;
    if (*plan.row().kind == boxsim::Fault::Kind::stuckCell) {
        return static_cast<int>(steps_[at].changed.size());
    }
    const bool fromPc = plan.row().bytes && plan.armed.where == boxsim::Fault::Where::fromPc;
    return (fromPc ? steps_[at].fromPc : steps_[at].chances)[row];
}

void Rehearsal::place(Plan& plan) const {
    const int steps = stepsOf(plan.job);
    for (int tried = 0; tried < steps && chances(plan, plan.faultStep) == 0; ++tried) {
        plan.faultStep = (plan.faultStep + steps - 1) % steps;
    }
    if (const int count = chances(plan, plan.faultStep); count > 0) {
        const int at = placed(count, plan.faultShare, plan.faultEarly);
        if (*plan.row().kind == boxsim::Fault::Kind::stuckCell) {
            plan.armed.value = steps_.at(static_cast<std::size_t>(plan.faultStep))
                                   .changed.at(static_cast<std::size_t>(at));
        } else {
            plan.armed.after = at;
        }
    }
    for (Press& press : plan.presses) {
        const auto step = static_cast<std::size_t>(press.step);
        if (step >= steps_.size()) continue;
        const auto length = std::chrono::duration_cast<milliseconds>(steps_[step].length).count();
        const auto span = press.early ? std::min<long long>(length, 1000) : length;
        press.atMs = static_cast<int>(span * press.share / kWhole);
    }
}

const Rehearsal& rehearsalOf(const Plan& plan) {
    static std::map<std::string, Rehearsal> played;
    std::string key;
    for (const int number :
         {static_cast<int>(plan.job), static_cast<int>(plan.bipolar), static_cast<int>(plan.oneK),
          static_cast<int>(plan.ownWay), plan.wizard}) {
        key += std::to_string(number) + ",";
    }
    key += plan.coinset + "," + std::string(plan.model->code);
    const auto found = played.find(key);
    return found != played.end() ? found->second
                                 : played.emplace(key, Rehearsal(plan)).first->second;
}

}  // namespace vantor::campaign
