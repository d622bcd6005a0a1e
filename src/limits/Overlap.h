#pragma once

#include "limits/Estimate.h"

namespace vantor {

/// Whether two windows have a value in common; one that lies inside the other does.
[[nodiscard]] bool windowsMeet(Window one, Window other);

/// What cannot be told apart.
struct OverlapMarks {
    Ranged<bool, 1, kChannels> coinOverlap;  ///< channels that accept each other's coins
    Ranged<bool, 1, kChannels> slugOverlap;  ///< channels that would let a measured slug through
    Ranged<bool, 1, kMostSlugs> slug;        ///< the slugs that get through somewhere
};

/// Compares every channel of the displayed segment (families whose segments are alternatives) or
/// of the whole mech with the others and with every slug.
[[nodiscard]] OverlapMarks findOverlaps(const LimitsState& limits, const CoinTable& table,
                                        const SegmentView& view);

}  // namespace vantor
