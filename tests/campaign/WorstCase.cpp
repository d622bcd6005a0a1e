#include "WorstCase.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

namespace vantor::campaign {

namespace {

// All in milliseconds. The parts of the conversations, each as long as it can get:

constexpr int kTick = 20;            // every wait ends on a tick
constexpr int kQuestion = 60;        // the hand looks every 20 ms, and the window needs a turn
constexpr int kReply = 800 + kTick;  // sendAndWait
constexpr int kEscapes = 30;         // 25 characters on the line
constexpr int kStatus = 500 + kTick;

// ESC, "M", pause, "S", status, and all of it again; then "No Response".
constexpr int kCheck =
    kEscapes + kReply + kStatus + kReply + kStatus + 1000 + kTick + kReply + kStatus + kQuestion;
constexpr int kWake = 100 + kTick + kEscapes;
// Five attempts with a mode command, then the box.
constexpr int kEnter = 5 * (kEscapes + kStatus) + kQuestion;
// Break, "*R" waited for, ESC, "*R" again, the check, "Stuck".
constexpr int kLeave = 150 + kTick + kStatus + kEscapes + kStatus + kCheck + kQuestion;

// --- Coin Controls over I2C
constexpr int kOpenI2c = kEscapes + kEnter + 100 + kTick + kStatus;
constexpr int kCloseI2c = kStatus + kLeave;
constexpr int kWord = 2000 + kTick;
// --- Sentinel: each character waits for its echo
constexpr int kEcho = 200 + kTick;
constexpr int sentinel(int characters, int timeout) {
    return characters * kEcho + timeout + kTick;
}
constexpr int kOpenSentinel = kEnter + 200 + 50 + 2 * kTick + sentinel(3, 1000) + kQuestion;
constexpr int kCloseSentinel = sentinel(2, 1000) + kLeave;
constexpr int kReadSentinel = sentinel(10, 1000);
// Enable, erase, write, disable.
constexpr int kWriteSentinel =
    sentinel(6, 1000) + sentinel(6, 1000) + sentinel(10, 1000) + sentinel(6, 1000);

// --- NRI: mode, pause, "I" twice as long as it should; a second mode; the interface probe
constexpr int kIdentify = 250 + 2 * kStatus + kTick;
constexpr int kSetUpNri = 2 * (kEnter + 100 + kTick + kIdentify) + 2 * kLeave + kOpenSentinel +
                          kCloseSentinel + kQuestion;
constexpr int kNriReadCommands = 29;
constexpr int kMostLines = 8;
// A command, its lines, the silence waited for when nothing came.
constexpr int kReadNri = kStatus + kMostLines * kStatus + 3000 + kStatus + 200 + kTick;
constexpr int kNriBlocks = 26;
constexpr int kMostPairs = 32;
// The letter, its acknowledgement, the pairs, the pause; plain mechs need less: 70 ms a character.
constexpr int kWriteNri = 2 * kStatus + kMostPairs * kStatus + 500 + kTick;

// --- Mars
constexpr int kReadProm = kReply + 10'000 + kTick + kQuestion;
constexpr int kLines = 32;
constexpr int kPasses = 3;
constexpr int kProgramProm = kLines * kPasses * (5000 + kTick) + 2 * kReply + 200 + kTick;
constexpr int kTimings = 6 * 2 * kReply + kQuestion;

// --- the technician: so long for one item, then Cancel Operation
constexpr int kItem = 60'000;

int openSession(const Plan& plan) {
    if (plan.is(kNri)) return kSetUpNri;
    if (plan.is(kMars)) return 0;
    return plan.model->code == "Sentinel" ? kOpenSentinel : kOpenI2c;
}

int closeSession(const Plan& plan) {
    if (plan.is(kMars)) return 0;
    if (plan.is(kNri)) return kLeave;
    return plan.model->code == "Sentinel" ? kCloseSentinel : kCloseI2c;
}

int readMemory(const Plan& plan) {
    if (plan.is(kMars)) return kReadProm + 2 * kQuestion;
    if (plan.is(kNri)) {
        return 4 * (kSetUpNri + kStatus) + kNriReadCommands * kReadNri + kLeave + 2 * kQuestion;
    }
    const bool text = plan.model->code == "Sentinel";
    const int words = plan.model->memorySize * (text ? kReadSentinel : kWord);
    return 3 * (openSession(plan) + kStatus) + words + closeSession(plan) + kLeave + 3 * kQuestion;
}

int programMemory(const Plan& plan) {
    // Five PROMs are tried, then the technician gives up.
    if (plan.is(kMars)) return 6 * (kReadProm + 2 * kQuestion) + kProgramProm + 4 * kQuestion;
    if (plan.is(kNri)) return kSetUpNri + kNriBlocks * kWriteNri + kLeave + 3 * kQuestion;
    const bool text = plan.model->code == "Sentinel";
    const int words = plan.model->memorySize * (text ? kWriteSentinel : kWord);
    return openSession(plan) + words + closeSession(plan) + kLeave + readMemory(plan) +
           4 * kQuestion;
}

int begin(const Plan& plan) {
    return kWake + kCheck + openSession(plan) + closeSession(plan) + kReply;
}

int oneItem(const Plan& plan) {
    return openSession(plan) + kItem + closeSession(plan) + 4 * kQuestion;
}

int measure(const Plan& plan, int items) {
    return kTimings + 3 * kReply + 1000 + items * oneItem(plan) + readMemory(plan) + kLeave +
           6 * kQuestion;
}

int test(const Plan& plan) {
    return kWake + 6 * kReply + kTimings + openSession(plan) + closeSession(plan) + kQuestion;
}

/// Coins and slugs of the coinset, each on a line of its own.
int itemsOf(const Plan& plan) {
    std::ifstream in(std::filesystem::path(VANTOR_SOURCE_DIR) / "data" / "CoinSets" / plan.coinset);
    int items = 0;
    for (std::string line; std::getline(in, line);) {
        items += line.starts_with("C") || line.starts_with("S,");
    }
    return items;
}

int stepMs(const Plan& plan, int step) {
    constexpr int kDrops = 4 * 600;
    switch (plan.job) {
        case JobKind::coinset:
        case JobKind::promCopy:
            return step == 0   ? begin(plan)
                   : step == 1 ? measure(plan, itemsOf(plan))
                               : programMemory(plan);
        case JobKind::wizard:
            return step == 0   ? begin(plan)
                   : step == 1 ? measure(plan, 2) + readMemory(plan)
                               : programMemory(plan);
        case JobKind::clone:
            return step == 0 ? begin(plan) : readMemory(plan) + programMemory(plan);
        case JobKind::fromFile:
            return step == 0 ? begin(plan) + readMemory(plan)
                             : programMemory(plan) + readMemory(plan);
        case JobKind::routing:
            return step == 0 ? begin(plan) + readMemory(plan) : programMemory(plan);
        case JobKind::validatorTest:
            return step == 0 ? test(plan) : kDrops + kLeave;
        case JobKind::utilitiesRead:
            return step == 0 ? begin(plan) + readMemory(plan) : readMemory(plan) + kQuestion;
    }
    return 0;
}

}  // namespace

Micros worstCase(const Plan& plan, int step) {
    return std::chrono::milliseconds(stepMs(plan, step));
}

Micros longestAction(const Plan& plan) {
    // A coinset run that begins with a clone outlasts everything else but opening a window.
    const int run = measure(plan, itemsOf(plan)) + readMemory(plan) + programMemory(plan);
    return std::chrono::milliseconds(std::max({run, begin(plan) + readMemory(plan), test(plan)}));
}

Micros patience() {
    return std::chrono::milliseconds(kItem);
}

}  // namespace vantor::campaign
