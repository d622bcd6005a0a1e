#include "measure/Gather.h"

#include <algorithm>

#include "catalogue/Text.h"
#include "measure/CoinNumber.h"
#include "measure/Fliers.h"

namespace vantor {

namespace {

constexpr int kLastRow = 99;
const std::string kEnd(kCrLf);

/// Ends what `enableCoinData` began, also when the program ends amid the drops.
class CoinDataScope {
  public:
    explicit CoinDataScope(MechFamily& family) : family_(family) {}
    ~CoinDataScope() {
        if (over_) return;
        try {
            family_.abandonCoinData();
        } catch (...) {  // NOLINT(bugprone-empty-catch): already unwinding to the program's end
        }
    }
    CoinDataScope(const CoinDataScope&) = delete;
    CoinDataScope& operator=(const CoinDataScope&) = delete;

    void disable() {
        over_ = true;
        family_.disableCoinData();
    }

  private:
    MechFamily& family_;
    bool over_ = false;
};

}  // namespace

int filledRows(const CoinTable& table, int nextItem) {
    return nextItem == kLastRow && table.itemLimits[kLastRow][0] != 0 ? kLastRow + 1 : nextItem;
}

bool Gather::gatherCoin(const std::string& code, const std::string& description, int kind) {
    SessionState& state = parts_.state;
    GatherState& gather = state.gather;
    gather.keepExisting = false;
    const int channel = coinnumber(code);
    state.item.itemCode = code;
    state.item.itemDescription = description;
    parts_.errors.attempt(495, [&] { parts_.display.showItem(code, description); });
    readings_.updateDisplay(kind);
    parts_.errors.attempt(495, [&] { parts_.display.showMeasureWindow(); });
    if (!askForDrops(description)) {
        gather.gatherActive = false;
        gather.coinsRemaining = 0;
        return false;
    }
    gatherDrops(channel);
    if (gather.abortFlag || state.item.readingCount == 0) return false;
    storeItem(kind, channel);
    parts_.prompts.ask({.title = "", .text = state.msgText(494) + description});
    return true;
}

bool Gather::askForDrops(const std::string& description) {
    GatherState& gather = parts_.state.gather;
    if (gather.abortFlag) return false;
    const Answer answer = parts_.prompts.ask(
        {.title = "Data Gather: " + description,
         .text = "Press YES to PROGRAM new coin" + kEnd + kEnd + "Press NO to KEEP existing coin" +
                 kEnd + kEnd + "Press CANCEL to CLEAR this coin channel",
         .buttons = PromptButtons::yesNoCancel});
    writeItemHeader();
    gather.keepExisting = answer == Answer::no;
    return answer == Answer::yes;
}

void Gather::writeItemHeader() {
    const SessionState& state = parts_.state;
    log_.writeAll(
        itemHeaderLines(state.item.itemCode, state.item.itemDescription, state.mech.info));
}

void Gather::gatherDrops(int channel) {
    const GatherState& gather = parts_.state.gather;
    bool again = true;
    while (again && !gather.abortFlag) {
        waitForDrops(channel);
        again = !gather.abortFlag && eliminateFliers() && gather.coinsRemaining > 0;
    }
}

void Gather::waitForDrops(int channel) {
    SessionState& state = parts_.state;
    GatherState& gather = state.gather;
    MechFamily& family = parts_.families.selected();
    parts_.errors.attempt(495, [&] { family.enableCoinData(channel); });
    CoinDataScope coinData(family);
    gather.gatherActive = true;
    parts_.errors.attempt(495, [&] {
        parts_.link.waitUntil(
            [&] { return gather.coinsRemaining <= 0 || gather.abortFlag || !state.link.portOpen; });
    });
    // Nobody else would end the run of a technician who waits for a box that is gone.
    if (!state.link.portOpen) gather.abortFlag = true;
    gather.coinsRemaining = 0;
    parts_.errors.attempt(495, [&] { coinData.disable(); });
    gather.gatherActive = false;
}

bool Gather::eliminateFliers() {
    MeasurementSession& item = parts_.state.item;
    GatherState& gather = parts_.state.gather;
    if (item.readingCount == 0) return false;
    bool again = false;
    parts_.errors.attempt(470, [&] {
        const FlierResult found = findFliers(item);
        for (const FlierNote& note : found.notes) {
            log_.write({flierLine(parts_.state.messages, note, parts_.state.n())});
        }
        if (found.fliers == 0) return;
        if (found.gatherAgain) gather.coinsRemaining = found.coinsToDrop;
        if (acceptElimination(found.fliers)) {
            keepReadings(item, found.kept, parts_.state.n());
            if (item.readingCount > 0) readings_.calculate();
        } else {
            gather.coinsRemaining = 0;
        }
        again = found.gatherAgain;
        readings_.updateDisplay(item.measureKind);
    });
    return again;
}

bool Gather::acceptElimination(int fliers) {
    const int again = parts_.state.gather.coinsRemaining;
    if (again <= 0) return true;
    const auto text = [this](int id) { return parts_.state.msgText(id); };
    return parts_.prompts.ask({.title = text(469),
                               .text = spacedNumber(fliers) + text(464) + kEnd + text(465) +
                                       spacedNumber(again) + text(466) + kEnd + kEnd + text(467) +
                                       kEnd + kEnd + text(468),
                               .icon = PromptIcon::exclamation,
                               .buttons = PromptButtons::okCancel}) == Answer::ok;
}

void Gather::storeItem(int kind, int channel, bool limits) {
    SessionState& state = parts_.state;
    const MeasurementSession& item = state.item;
    const int n = state.n();
    parts_.errors.attempt(495, [&] {
        auto& statistics = state.coinTable.itemStats[item.nextItem];
        statistics.fill(0);
        for (int p = 1; p <= n; ++p) {
            statistics[p - 1] = item.mean[p];
            statistics[n + p - 1] = item.sdLower[p];
            statistics[2 * n + p - 1] = item.sdUpper[p];
        }
    });
    log_.writeAll(logLimits(item, n));
    parts_.errors.attempt(495, [&] {
        auto& row = state.coinTable.itemLimits[item.nextItem];
        row.fill(0);
        row[0] = kind;
        row[1] = channel;
        for (int i = 1; limits && i <= 2 * n; ++i) row[i + 1] = item.limits[i];
    });
    state.item.nextItem = std::min(item.nextItem + 1, kLastRow);
}

}  // namespace vantor
