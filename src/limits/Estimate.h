#pragma once

#include "catalogue/SessionState.h"
#include "link/MechFamily.h"

namespace vantor {

/// What is known of one measured parameter of a coin or slug.
struct Spread {
    float mean = 0;
    float lower = 0;  ///< standard deviation of the readings below the mean
    float upper = 0;  ///< standard deviation of the readings above the mean
};

/// The limits of a channel, or the values of a slug, for one parameter. Ends belong to it.
struct Window {
    int low = 0;
    int high = 0;

    [[nodiscard]] bool off() const { return low == 0 && high == 0; }
};

/// The channels that are judged together: the displayed segment and the mech's numbers.
struct SegmentView {
    int paramCount = 3;
    int channelCount = 6;        ///< channels of the mech
    int channelsPerSegment = 6;  ///< channels displayed
    int firstChannel = 1;        ///< 1-based, of the displayed segment
    LimitRules rules;
};

/// The window of a channel (1..24) for a parameter (0-based).
[[nodiscard]] Window channelWindow(const LimitsState& limits, int channel, int parameter);
/// The slug's own values, from its coin table row.
[[nodiscard]] Window itemWindow(const CoinTable& table, int row, int parameter);
[[nodiscard]] Spread itemSpread(const CoinTable& table, int row, int parameter, int paramCount);

/// The share of pieces whose reading falls between two limits. May be negative when high is below
/// low.
[[nodiscard]] float insideShare(Spread spread, float low, float high);

/// The same for a genuine coin: a high limit at `capacity` is no limit, and a coin with nothing to
/// measure passes a low limit of 0.
[[nodiscard]] float coinInsideShare(Spread spread, Window window, int capacity);

/// The share (0..1) of its coins that a channel accepts; 1 for a channel without coins.
[[nodiscard]] float acceptanceOf(int channel, const LimitsState& limits, const CoinTable& table,
                                 const SegmentView& view);

/// The share (0..1) of a slug (coin table row) that the displayed segment rejects.
[[nodiscard]] float rejectionOf(int slugRow, const LimitsState& limits, const CoinTable& table,
                                const SegmentView& view);

}  // namespace vantor
