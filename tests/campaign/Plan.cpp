#include "Plan.h"

#include <algorithm>
#include <array>

#include "Dice.h"
#include "Jobs.h"

namespace vantor::campaign {

namespace {

using Kind = boxsim::Fault::Kind;

constexpr std::array<std::string_view, kJobs> kJobNames = {
    "coinset", "wizard", "PROM copy", "clone", "from file", "routing", "validator test", "read"};

constexpr int kBytes = 3000;  // about what one step of a job puts on the line
constexpr int kAnswers = 300;
constexpr int kWrites = 30;
constexpr int kLatest = 4000;  // ms, beyond every wait for a single answer

constexpr std::array kRows = {
    FaultRow{.name = "none"},
    FaultRow{.name = "byte lost",
             .kind = Kind::dropByte,
             .bytes = true,
             .mostAfter = kBytes,
             .mostTimes = 3},
    FaultRow{.name = "byte repeated",
             .kind = Kind::repeatByte,
             .bytes = true,
             .mostAfter = kBytes,
             .mostTimes = 3},
    FaultRow{.name = "bit flipped",
             .kind = Kind::flipBit,
             .bytes = true,
             .mostAfter = kBytes,
             .highValue = 7},
    FaultRow{.name = "byte inserted",
             .kind = Kind::insertByte,
             .bytes = true,
             .mostAfter = kBytes,
             .mostTimes = 3,
             .highValue = 255},
    FaultRow{.name = "byte late",
             .kind = Kind::delayByte,
             .bytes = true,
             .mostAfter = kBytes,
             .mostTimes = 3,
             .lowValue = 5,
             .highValue = kLatest},
    FaultRow{.name = "stall for ever", .kind = Kind::stall, .bytes = true, .mostAfter = kBytes},
    FaultRow{.name = "line cut short",
             .kind = Kind::cutLine,
             .bytes = true,
             .mostAfter = kBytes,
             .mostTimes = 2},
    FaultRow{.name = "unplugged", .kind = Kind::unplug, .bytes = true, .mostAfter = kBytes},
    FaultRow{.name = "answer too long",
             .kind = Kind::longReply,
             .mostAfter = kAnswers,
             .mostTimes = 3,
             .lowValue = 1,
             .highValue = 4},
    FaultRow{.name = "answer to the previous",
             .kind = Kind::previousReply,
             .mostAfter = kAnswers,
             .mostTimes = 2},
    FaultRow{.name = "box silent",
             .kind = Kind::silentBox,
             .mostAfter = 60,
             .mostTimes = 40,
             .always = true},
    FaultRow{.name = "break lost", .kind = Kind::breakLost, .mostAfter = 4, .mostTimes = 3},
    FaultRow{.name = "battery low",
             .kind = Kind::batteryLow,
             .mostAfter = 40,
             .mostTimes = 3,
             .always = true},
    FaultRow{.name = "acknowledgement lost",
             .kind = Kind::lostAck,
             .makers = "M",
             .writes = true,
             .mostAfter = 40,
             .mostTimes = 3,
             .always = true},
    FaultRow{.name = "write that lies",
             .kind = Kind::lyingWrite,
             .writes = true,
             .mostAfter = kWrites,
             .mostTimes = 3,
             .always = true},
    FaultRow{.name = "cell that sticks", .kind = Kind::stuckCell, .writes = true, .always = true},
    FaultRow{.name = "power lost in a write",
             .kind = Kind::powerLoss,
             .writes = true,
             .mostAfter = kWrites,
             .lowValue = 50,
             .highValue = 20'000},
    FaultRow{.name = "refusal",
             .kind = Kind::mechRefuses,
             .mostAfter = kAnswers,
             .mostTimes = 5,
             .always = true},
    FaultRow{.name = "mech silent",
             .kind = Kind::mechSilent,
             .makers = "CN",
             .mostAfter = kAnswers,
             .mostTimes = 5,
             .always = true},
    FaultRow{.name = "mech late",
             .kind = Kind::mechLate,
             .makers = "CN",
             .mostAfter = kAnswers,
             .mostTimes = 5,
             .always = true,
             .lowValue = 20,
             .highValue = kLatest},
    FaultRow{.name = "mech's answer short",
             .kind = Kind::mechCut,
             .makers = "CN",
             .mostAfter = kAnswers,
             .mostTimes = 3,
             .highValue = 5},
    FaultRow{.name = "wrong sum",
             .kind = Kind::wrongSum,
             .makers = "C",
             .mostAfter = kAnswers,
             .mostTimes = 3,
             .always = true},
    FaultRow{.name = "no session",
             .kind = Kind::noSession,
             .makers = "CN",
             .mostAfter = 4,
             .mostTimes = 5,
             .always = true},
};

/// How many cells can stick, and the number of the first.
struct Cells {
    int first = 0;
    int last = 255;
};

Cells cellsOf(const MechModel& model) {
    if (model.maker == kMars) return {0, 255};
    if (model.maker == kNri) return {1, 20};
    return {0, model.memorySize - 1};
}

bool writesMemory(JobKind job) {
    return job != JobKind::validatorTest && job != JobKind::utilitiesRead;
}

boxsim::Fault armed(const FaultRow& row, const MechModel& model, Dice& dice) {
    boxsim::Fault fault;
    if (!row.kind) return fault;
    fault.kind = *row.kind;
    if (row.bytes && dice.chance(50)) fault.where = boxsim::Fault::Where::fromPc;
    fault.after = dice.spread(row.mostAfter);
    fault.times = row.mostTimes > 1 && dice.chance(40) ? dice.between(1, row.mostTimes) : 1;
    if (row.always && dice.chance(25)) fault.times = -1;
    fault.value = row.lowValue > 0 ? row.lowValue + dice.spread(row.highValue - row.lowValue)
                                   : dice.between(0, row.highValue);
    if (row.kind == Kind::stuckCell) {
        const Cells cells = cellsOf(model);
        fault.value = dice.between(cells.first, cells.last);
        fault.times = -1;
    }
    return fault;
}

std::vector<Press> presses(int steps, Dice& dice) {
    constexpr std::array kCounts = {0, 0, 0, 0, 1, 1, 1, 1, 2, 4};
    constexpr int kLatestPress = 60'000;
    constexpr std::array kWhats = {Press::What::cancel,    Press::What::cancel,
                                   Press::What::exit,      Press::What::closeWindow,
                                   Press::What::anyButton, Press::What::anyButton};
    std::vector<Press> all;
    for (int left = dice.pick(std::span<const int>(kCounts)); left > 0; --left) {
        all.push_back({.what = dice.pick(std::span<const Press::What>(kWhats)),
                       .step = dice.between(0, steps - 1),
                       .atMs = dice.spread(kLatestPress),
                       .pick = static_cast<std::uint32_t>(dice.next() >> 32U)});
    }
    return all;
}

std::string_view inWords(Press::What what) {
    switch (what) {
        case Press::What::cancel:
            return "Cancel";
        case Press::What::exit:
            return "Exit";
        case Press::What::closeWindow:
            return "X";
        case Press::What::anyButton:
            break;
    }
    return "a button";
}

}  // namespace

std::string_view jobName(JobKind job) {
    return kJobNames.at(static_cast<std::size_t>(job));
}

std::vector<JobKind> jobsOf(const MechModel& model) {
    std::vector<JobKind> jobs = {JobKind::coinset, JobKind::wizard, JobKind::validatorTest,
                                 JobKind::utilitiesRead};
    if (model.maker == kMars) {
        jobs.push_back(JobKind::promCopy);
    } else {
        jobs.push_back(JobKind::clone);
        jobs.push_back(JobKind::fromFile);
        if (model.code == "435") jobs.push_back(JobKind::routing);
    }
    return jobs;
}

std::span<const FaultRow> faultRows() {
    return kRows;
}

Plan planOf(std::uint64_t seed) {
    Dice dice(seed * 0x1000'0000'01B3 + 1);
    Plan plan{.seed = seed};
    constexpr std::array kMakers = {kMars, kCoinControls, kNri};
    const std::string_view maker = dice.pick(std::span<const std::string_view>(kMakers));
    std::vector<const MechModel*> models;
    for (const MechModel& model : mechModels()) {
        if (model.maker == maker && model.listed) models.push_back(&model);
    }
    plan.model = dice.pick(std::span<const MechModel* const>(models));
    const auto jobs = jobsOf(*plan.model);
    plan.job = dice.pick(std::span<const JobKind>(jobs));
    std::vector<int> rows;
    for (std::size_t i = 0; i < kRows.size(); ++i) {
        const bool meant = kRows.at(i).makers.find(maker.front()) != std::string_view::npos &&
                           (writesMemory(plan.job) || !kRows.at(i).writes);
        if (meant) rows.push_back(static_cast<int>(i));
    }
    plan.fault = dice.pick(std::span<const int>(rows));
    plan.armed = armed(plan.row(), *plan.model, dice);
    const int steps = stepsOf(plan.job);
    plan.faultStep = plan.row().writes ? steps - 1 : dice.between(0, steps - 1);
    plan.presses = presses(steps, dice);
    plan.log = dice.chance(40);
    plan.bipolar = plan.is(kMars) && dice.chance(30);
    plan.oldFile = dice.chance(50);
    plan.wizard = dice.between(0, 2);
    plan.detail = static_cast<std::uint32_t>(dice.next() >> 32U);
    return plan;
}

std::string inWords(const Plan& plan) {
    std::string text = "seed " + std::to_string(plan.seed) + ": " + std::string(plan.model->maker) +
                       " " + std::string(plan.model->code) + ", " + std::string(jobName(plan.job));
    if (plan.job == JobKind::wizard) text += " " + std::to_string(plan.wizard + 1);
    if (plan.bipolar) text += ", bipolar";
    if (plan.log) text += ", logged";
    text += "; " + std::string(plan.row().name);
    if (plan.row().kind) {
        const boxsim::Fault& fault = plan.armed;
        const bool fromPc = fault.where == boxsim::Fault::Where::fromPc;
        if (plan.row().bytes) text += fromPc ? " to the box" : " from the box";
        text += " after " + std::to_string(fault.after) + " of step " +
                std::to_string(plan.faultStep) + ", times " + std::to_string(fault.times) +
                ", value " + std::to_string(fault.value);
    }
    for (const Press& press : plan.presses) {
        text += "; " + std::string(inWords(press.what)) + " at " + std::to_string(press.atMs) +
                " ms of step " + std::to_string(press.step);
    }
    return text;
}

}  // namespace vantor::campaign
