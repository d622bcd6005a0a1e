#include "measure/Transfer.h"

#include <algorithm>
#include <cmath>

#include "catalogue/Text.h"
#include "measure/CoinNumber.h"
#include "measure/Gather.h"

namespace vantor {

namespace {

constexpr int kErrorSubscript = 9;
constexpr int kHighestReference = 12;
constexpr int kCoinKind = 1;
constexpr int kSlugKind = 2;
constexpr int kTwoSegments = 2;

}  // namespace

void widenChannel(Ranged<int, 1, kLimitColumns>& limits, const Ranged<int, 0, 25>& row,
                  int paramCount, bool first) {
    for (int i = 1; i <= 2 * paramCount; ++i) {
        const int limit = row[i + 1];
        if (first) {
            limits[i] = limit;
        } else {
            limits[i] = i % 2 != 0 ? std::min(limits[i], limit) : std::max(limits[i], limit);
        }
    }
}

int referenceLimit(float mean, int offset, int capacity) {
    const double limit = std::floor(double{mean} + 0.5 + offset);
    return static_cast<int>(std::clamp(limit, 0.0, double(capacity)));
}

void Transfer::PROMxfr() {
    SessionState& state = parts_.state;
    const auto step = [this](auto&& work) { parts_.errors.attempt(424, work); };
    int segment = 0;
    step([&] { clearTargets(); });
    step([&] { segment = displayedSegment(); });
    step([&] { openLimitsWindow(); });
    parts_.errors.attempt(455, [&] { parseRecords(); });
    step([&] { linkReferences(); });
    step([&] { takeOldMemory(); });
    state.limits.changeFlag = false;
    step([&] { parts_.families.selected().rebuildImage(); });
    step([&] { parts_.limits.showSlugLimits(); });
    step([&] { parts_.limits.clearColors(); });
    state.limits.limitsEdited = false;
    state.limits.selectedSegment = segment;
    step([&] { parts_.limits.selectSegment(segment); });
}

void Transfer::clearTargets() {
    SessionState& state = parts_.state;
    state.gather.gatherActive = false;
    state.limits.channelCoins = {};
    state.limits.channelLimits = {};
    state.limits.slugCount = 0;
    state.prom.duplicateSegments = parts_.display.duplicateTicked();
}

void Transfer::openLimitsWindow() {
    parts_.limitsDisplay.showLimitsWindow();
    parts_.display.hideMeasureWindow();
    parts_.limits.setupfrmPROM();
}

void Transfer::parseRecords() {
    const SessionState& state = parts_.state;
    const int rows = filledRows(state.coinTable, state.item.nextItem);
    for (int row = 0; row < rows; ++row) {
        const int kind = state.coinTable.itemLimits[row][0];
        if (kind == kSlugKind) takeSlug(row);
        if (kind == kCoinKind) takeCoin(row);
    }
}

void Transfer::takeSlug(int row) {
    LimitsState& limits = parts_.state.limits;
    if (limits.slugCount < kMostSlugs) {
        limits.slugList[++limits.slugCount] = row;
        return;
    }
    parts_.prompts.ask({.title = parts_.state.msgText(452),
                        .text = parts_.state.msgText(451),
                        .icon = PromptIcon::exclamation});
}

void Transfer::takeCoin(int row) {
    SessionState& state = parts_.state;
    const auto& item = state.coinTable.itemLimits[row];
    const int channel = item[1];
    if (!isChannel(channel)) {
        parts_.errors.report(
            455, "Item " + std::to_string(row + 1) + ": no channel " + std::to_string(channel),
            kErrorSubscript);
        return;
    }
    ChannelCoinList& coins = state.limits.channelCoins[channel];
    if (coins.count >= kMostCoinsPerChannel) {
        parts_.prompts.ask({.title = state.msgText(454),
                            .text = state.msgText(453),
                            .icon = PromptIcon::exclamation});
        return;
    }
    coins.rows[++coins.count] = row;
    widenChannel(state.limits.channelLimits[channel], item, state.n(), coins.count == 1);
}

void Transfer::linkReferences() {
    SessionState& state = parts_.state;
    const int capacity = parts_.families.selected().limitRules().capacity;
    const auto measured = [&](const ReferenceLink& link) {
        // No reference at all stands for a mean of 0: the offsets are the limits themselves.
        if (link.reference == 0) return true;
        return link.reference > 0 && link.reference <= kHighestReference &&
               state.coinset.referenceMeasured[link.reference];
    };
    bool told = false;
    for (int channel = 1; channel <= kChannels; ++channel) {
        const auto& links = state.coinset.referenceLinks[channel];
        if (links[1].reference == 0) continue;
        bool complete = true;
        for (int p = 1; p <= state.n(); ++p) complete = complete && measured(links[p]);
        auto& limits = state.limits.channelLimits[channel];
        limits = {};
        if (!complete) {
            if (!told) {
                parts_.errors.report(
                    455, "Channel " + std::to_string(channel) + ": reference coin was not measured",
                    kErrorSubscript);
            }
            told = true;
            continue;
        }
        for (int p = 1; p <= state.n(); ++p) {
            const float mean = state.coinset.referenceMeans[links[p].reference][p];
            limits[2 * p - 1] = referenceLimit(mean, links[p].lowOffset, capacity);
            limits[2 * p] = referenceLimit(mean, links[p].highOffset, capacity);
        }
    }
}

void Transfer::takeOldMemory() {
    const SessionState& state = parts_.state;
    MechFamily& family = parts_.families.selected();
    if (!family.coinsetRules().alwaysReadsOldMemory && !state.coinset.usesOldChannels) return;
    if (state.images.oldMemoryRead) {
        family.copyOldMemoryData();
    } else {
        family.readOldMemory();
    }
}

int Transfer::displayedSegment() {
    MechFamily& family = parts_.families.selected();
    if (!family.look().promSocket) return 0;
    PromState& prom = parts_.state.prom;
    const bool four = prom.promSizeCode == 1 && !family.twoSegmentProm();
    for (int s = 0; s < (four ? kMarsSegments : kTwoSegments); ++s) {
        if (prom.segmentSelected[s]) return s;
    }
    prom.segmentSelected[0] = true;
    parts_.display.showPromChoices();
    return 0;
}

}  // namespace vantor
