#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "catalogue/SessionState.h"

namespace vantor {

/// The segment list: "1".."4" for the ticked boxes that the PROM has.
[[nodiscard]] std::vector<std::string> segmentEntries(const PromState& prom, bool twoSegmentProm);

/// The six coin codes of a segment: "A1".."F1".
[[nodiscard]] std::vector<std::string> segmentCoins(std::string_view segment);

/// The target coins of a mech without segments: "Coin 01".. for each channel.
[[nodiscard]] std::vector<std::string> numberedCoins(int channelCount);

/// Output and inhibit lines 1..6, right-aligned in ten characters.
[[nodiscard]] std::vector<std::string> lineEntries();

/// The output and inhibit line that belongs to an entry of the target coins, 1..6: the coin's
/// number, or that less 6. 0 = none.
[[nodiscard]] int lineOfCoin(std::string_view coin);

}  // namespace vantor
