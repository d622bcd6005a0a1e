#include "Plan.h"

#include <algorithm>
#include <array>

#include "Dice.h"
#include "Jobs.h"
#include "catalogue/MessageTable.h"
#include "catalogue/Text.h"

namespace vantor::campaign {

namespace {

using Kind = boxsim::Fault::Kind;

constexpr std::array<std::string_view, kJobs> kJobNames = {
    "coinset", "wizard", "PROM copy", "clone", "from file", "routing", "validator test", "read"};

constexpr int kWhole = 10'000;
constexpr int kLatest = 4000;  // ms, beyond every wait for a single answer

constexpr std::array kRows = {
    FaultRow{.name = "none"},
    FaultRow{.name = "byte lost", .kind = Kind::dropByte, .bytes = true, .mostTimes = 3},
    FaultRow{.name = "byte repeated", .kind = Kind::repeatByte, .bytes = true, .mostTimes = 3},
    FaultRow{.name = "bit flipped", .kind = Kind::flipBit, .bytes = true, .highValue = 7},
    FaultRow{.name = "byte inserted",
             .kind = Kind::insertByte,
             .bytes = true,
             .mostTimes = 3,
             .highValue = 255},
    FaultRow{.name = "byte late",
             .kind = Kind::delayByte,
             .bytes = true,
             .mostTimes = 3,
             .lowValue = 5,
             .highValue = kLatest},
    FaultRow{.name = "stall for ever", .kind = Kind::stall, .bytes = true},
    FaultRow{.name = "line cut short", .kind = Kind::cutLine, .bytes = true, .mostTimes = 2},
    FaultRow{.name = "unplugged", .kind = Kind::unplug, .bytes = true},
    FaultRow{.name = "answer too long",
             .kind = Kind::longReply,
             .mostTimes = 3,
             .lowValue = 1,
             .highValue = 4},
    FaultRow{.name = "answer to the previous", .kind = Kind::previousReply, .mostTimes = 2},
    FaultRow{.name = "box silent", .kind = Kind::silentBox, .mostTimes = 40, .always = true},
    FaultRow{.name = "break lost", .kind = Kind::breakLost, .mostTimes = 3},
    FaultRow{.name = "battery low", .kind = Kind::batteryLow, .mostTimes = 3, .always = true},
    FaultRow{.name = "acknowledgement lost",
             .kind = Kind::lostAck,
             .makers = "M",
             .writes = true,
             .mostTimes = 3,
             .always = true},
    FaultRow{.name = "write that lies",
             .kind = Kind::lyingWrite,
             .writes = true,
             .mostTimes = 3,
             .always = true},
    FaultRow{.name = "cell that sticks", .kind = Kind::stuckCell, .writes = true, .always = true},
    FaultRow{.name = "power lost in a write",
             .kind = Kind::powerLoss,
             .writes = true,
             .lowValue = 50,
             .highValue = 20'000},
    FaultRow{.name = "refusal", .kind = Kind::mechRefuses, .mostTimes = 5, .always = true},
    FaultRow{.name = "mech silent",
             .kind = Kind::mechSilent,
             .makers = "CN",
             .mostTimes = 5,
             .always = true},
    FaultRow{.name = "mech late",
             .kind = Kind::mechLate,
             .makers = "CN",
             .mostTimes = 5,
             .always = true,
             .lowValue = 20,
             .highValue = kLatest},
    FaultRow{.name = "mech's answer short",
             .kind = Kind::mechCut,
             .makers = "CN",
             .mostTimes = 3,
             .highValue = 5},
    FaultRow{
        .name = "wrong sum", .kind = Kind::wrongSum, .makers = "C", .mostTimes = 3, .always = true},
    FaultRow{.name = "no session",
             .kind = Kind::noSession,
             .makers = "CN",
             .mostTimes = 5,
             .always = true},
};

bool writesMemory(JobKind job) {
    return job != JobKind::validatorTest && job != JobKind::utilitiesRead;
}

/// Some faults have no moment at which they could strike.
bool canStrike(const FaultRow& row, const MechModel& model, JobKind job) {
    if (row.makers.find(model.maker.front()) == std::string_view::npos) return false;
    if (row.writes && !writesMemory(job)) return false;
    if (!row.kind) return true;
    switch (*row.kind) {
        case Kind::mechRefuses:
            return model.maker != kMars || writesMemory(job);
        case Kind::wrongSum:
            return model.code != "Sentinel";
        case Kind::breakLost:
            return model.maker != kMars;
        default:
            return true;
    }
}

boxsim::Fault armed(const FaultRow& row, Dice& dice) {
    boxsim::Fault fault;
    if (!row.kind) return fault;
    fault.kind = *row.kind;
    if (row.bytes && dice.chance(50)) fault.where = boxsim::Fault::Where::fromPc;
    fault.times = row.mostTimes > 1 && dice.chance(40) ? dice.between(1, row.mostTimes) : 1;
    if (row.always && dice.chance(25)) fault.times = -1;
    fault.value = row.lowValue > 0 ? row.lowValue + dice.spread(row.highValue - row.lowValue)
                                   : dice.between(0, row.highValue);
    if (row.kind == Kind::stuckCell) fault.times = -1;
    return fault;
}

std::vector<Press> presses(int steps, Dice& dice) {
    constexpr std::array kCounts = {0, 0, 0, 0, 1, 1, 1, 1, 2, 4};
    constexpr std::array kWhats = {Press::What::cancel,    Press::What::cancel,
                                   Press::What::exit,      Press::What::closeWindow,
                                   Press::What::anyButton, Press::What::anyButton};
    std::vector<Press> all;
    for (int left = dice.pick(std::span<const int>(kCounts)); left > 0; --left) {
        all.push_back({.what = dice.pick(std::span<const Press::What>(kWhats)),
                       .step = dice.between(0, steps - 1),
                       .share = dice.between(0, kWhole),
                       .early = dice.chance(40),
                       .pick = static_cast<std::uint32_t>(dice.next() >> 32U)});
    }
    return all;
}

/// The coinsets of a model that the product comes with.
std::vector<std::string> coinsetsOf(std::string_view model) {
    std::string name(model);
    std::ranges::replace(name, '/', '-');
    std::vector<std::string> names = {name + "-Dorin.cst"};
    if (model == "ME111") {
        names.emplace_back("ME111-Dorin-2K.cst");
        names.emplace_back("QZ-Tokens-ME111.cst");
    }
    return names;
}

/// A 1K PROM has room for what the job writes.
bool fits1K(const Plan& plan) {
    if (!plan.is(kMars) || plan.model->code == "ME181") return false;
    if (plan.job == JobKind::wizard || plan.job == JobKind::utilitiesRead) return true;
    return plan.model->code != "MS1400" && plan.coinset.find("-2K") == std::string::npos;
}

constexpr std::array kOwnWays = {
    OwnWay{"C120", "long-frames", "on"},
    OwnWay{"435", "long-frames", "on"},
    OwnWay{"Sentinel", "end-mark", "on"},
    OwnWay{"G10-4000/5", "mode", "$25"},
};

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
        // The only model of many that has this job: it would hardly ever be drawn.
        if (model.code == "435") jobs.insert(jobs.end(), 3, JobKind::routing);
    }
    return jobs;
}

const OwnWay* ownWayOf(const MechModel& model) {
    const auto* found = std::ranges::find(kOwnWays, model.code, &OwnWay::model);
    return found == kOwnWays.end() ? nullptr : found;
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
        if (canStrike(kRows.at(i), *plan.model, plan.job)) rows.push_back(static_cast<int>(i));
    }
    plan.fault = dice.pick(std::span<const int>(rows));
    plan.armed = armed(plan.row(), dice);
    const int steps = stepsOf(plan.job);
    plan.faultStep = plan.row().writes ? steps - 1 : dice.between(0, steps - 1);
    plan.faultShare = dice.between(0, kWhole);
    plan.faultEarly = dice.chance(30);
    // A fault in the writing is worth little in a session that a press has ended before.
    if (!plan.row().writes || dice.chance(30)) plan.presses = presses(steps, dice);
    plan.log = dice.chance(40);
    plan.bipolar = plan.is(kMars) && dice.chance(30);
    plan.oldFile = dice.chance(50);
    plan.lineFeeds = dice.chance(15);
    plan.lateReady = dice.chance(15);
    const auto coinsets = coinsetsOf(plan.model->code);
    plan.coinset = plan.job == JobKind::coinset ? dice.pick(std::span<const std::string>(coinsets))
                                                : coinsets.front();
    plan.oneK = fits1K(plan) && dice.chance(40);
    if (plan.job == JobKind::wizard) plan.wizard = dice.between(0, 2);
    plan.ownWay = ownWayOf(*plan.model) != nullptr && dice.chance(40);
    if (dice.chance(25)) plan.language = dice.pick(std::span(kLanguages).subspan(1)).name;
    plan.detail = static_cast<std::uint32_t>(dice.next() >> 32U);
    return plan;
}

std::string inWords(const Plan& plan) {
    std::string text = "seed " + std::to_string(plan.seed) + ": " + std::string(plan.model->maker) +
                       " " + std::string(plan.model->code) + ", " + std::string(jobName(plan.job));
    if (plan.job == JobKind::wizard) text += " " + std::to_string(plan.wizard + 1);
    if (plan.coinset.find("-Dorin.cst") == std::string::npos) text += ", " + plan.coinset;
    if (plan.oneK) text += ", 1K";
    if (plan.bipolar) text += ", bipolar";
    if (plan.ownWay) text += ", " + std::string(ownWayOf(*plan.model)->option);
    if (plan.language != "English") {
        text += ", " + toUtf8(plan.language);
    }
    if (plan.lineFeeds) text += ", line feeds";
    if (plan.lateReady) text += ", ready at the end of the break";
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
