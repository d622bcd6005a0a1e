#include "limits/Estimate.h"

#include <algorithm>

#include "catalogue/Text.h"
#include "limits/NormalTable.h"

namespace vantor {

namespace {

constexpr float kLeastSpread = 0.1F;
constexpr float kOpenEndSpreads = 4.0F;
constexpr float kOpenEndMargin = 10.0F;

Spread widened(Spread spread) {
    spread.lower = std::max(spread.lower, kLeastSpread);
    spread.upper = std::max(spread.upper, kLeastSpread);
    return spread;
}

float share(float fraction) {
    return std::clamp(fraction, 0.0F, 1.0F);
}

}  // namespace

Window channelWindow(const LimitsState& limits, int channel, int parameter) {
    const auto& columns = limits.channelLimits[channel];
    return {columns[2 * parameter + 1], columns[2 * parameter + 2]};
}

Window itemWindow(const CoinTable& table, int row, int parameter) {
    const auto& columns = table.itemLimits[row];
    return {columns[2 * parameter + 2], columns[2 * parameter + 3]};
}

Spread itemSpread(const CoinTable& table, int row, int parameter, int paramCount) {
    const auto& columns = table.itemStats[row];
    return {columns[parameter], columns[paramCount + parameter],
            columns[2 * paramCount + parameter]};
}

float insideShare(Spread spread, float low, float high) {
    const auto [mean, lower, upper] = widened(spread);
    const float lowSpread = low <= mean ? lower : upper;
    const float highSpread = low <= mean && high < mean ? lower : upper;
    return normalCdf((high - mean) / highSpread) - normalCdf((low - mean) / lowSpread);
}

float coinInsideShare(Spread spread, Window window, int capacity) {
    spread = widened(spread);
    float high = static_cast<float>(window.high);
    if (window.high == capacity) {
        high = static_cast<float>(
            roundHalfEven(high + kOpenEndSpreads * spread.upper + kOpenEndMargin));
    }
    if (spread.mean <= 0 && window.low <= 0) {
        return normalCdf((high - spread.mean) / spread.upper);
    }
    return insideShare(spread, static_cast<float>(window.low), high);
}

float acceptanceOf(int channel, const LimitsState& limits, const CoinTable& table,
                   const SegmentView& view) {
    const ChannelCoinList& coins = limits.channelCoins[channel];
    if (coins.count == 0) return 1.0F;
    float sum = 0;
    for (int k = 1; k <= coins.count; ++k) {
        float product = 1;
        for (int parameter = 0; parameter < view.paramCount; ++parameter) {
            const Window window = channelWindow(limits, channel, parameter);
            if (parameter == view.rules.optionalParameter && window.off()) continue;
            const Spread spread = itemSpread(table, coins.rows[k], parameter, view.paramCount);
            product *= coinInsideShare(spread, window, view.rules.capacity);
        }
        sum += product;
    }
    return share(sum / static_cast<float>(coins.count));
}

float rejectionOf(int slugRow, const LimitsState& limits, const CoinTable& table,
                  const SegmentView& view) {
    float accepted = 0;
    for (int row = 0; row < view.channelsPerSegment; ++row) {
        const int channel = view.firstChannel + row;
        float product = 1;
        for (int parameter = 0; parameter < view.paramCount; ++parameter) {
            const Window window = channelWindow(limits, channel, parameter);
            if (parameter == view.rules.optionalParameter) {
                // A slug below the channel's upper end there counts as told apart, from all so far.
                if (!window.off() && window.high > itemWindow(table, slugRow, parameter).high) {
                    accepted = 0;
                    product = 0;
                }
                continue;
            }
            product *= insideShare(itemSpread(table, slugRow, parameter, view.paramCount),
                                   static_cast<float>(window.low), static_cast<float>(window.high));
        }
        accepted = share(accepted + product);
    }
    return share(1 - accepted);
}

}  // namespace vantor
