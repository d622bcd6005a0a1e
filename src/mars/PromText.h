#pragma once

#include <span>
#include <string>

#include "mars/MarsImage.h"

namespace vantor {

// What the PROM utilities show of an image, as text for a pane of fixed pitch. Every line ends
// with CR LF. `half` is 0 for addresses 0..255 (segments 1 and 2) and 1 for 256..511 (3 and 4).

/// One way to look at a PROM.
struct PromView {
    int caption = 0;       ///< message number of its entry in the list
    bool decoded = false;  ///< limits, and coin values where the PROM holds them, not nibbles
    int half = 0;
};

/// The views of a PROM, in the order of the list; `promSizeCode` 0 = 1K, 1 = 2K.
[[nodiscard]] std::span<const PromView> promViews(const MarsLayout& layout, int promSizeCode);

/// The headings of a decoded pane, whole lines each.
struct PromHeadings {
    std::string parameters;  ///< above the limits
    std::string rule;        ///< below that
    std::string values;      ///< above the coin values
};

/// Sixteen lines of sixteen nibbles, each line behind the lower two digits of its address. A cell
/// that holds no nibble shows as "?".
[[nodiscard]] std::string promRawText(const MechImage& image, int half);

/// The limits of the channels that the image holds in this half (1..12 or 13..24); the other
/// channels are 0. A half that the layout does not have gives none.
[[nodiscard]] ChannelLimits decodePromLimits(const MechImage& image, const MarsLayout& layout,
                                             int half);

/// The limits of the twelve channels of this half, a line each.
[[nodiscard]] std::string promLimitsText(const PromHeadings& headings, const ChannelLimits& limits,
                                         int half);

/// The coin values, which follow the limits; no line end behind the last line.
[[nodiscard]] std::string promValuesText(const PromHeadings& headings, const CoinValues& values);

}  // namespace vantor
