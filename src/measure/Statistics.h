#pragma once

#include "catalogue/SessionState.h"

namespace vantor {

/// What the statistics need to know of the mech.
struct StatisticsRules {
    int paramCount = 3;            ///< 1..6
    int capacity = 255;            ///< highest limit
    int upwardsOnlyParameter = 0;  ///< as in MechModel
};

/// Recomputes means, spreads, extremes and limits of the item from its readings. At least one
/// reading is held.
void calcStats(MeasurementSession& item, const StatisticsRules& rules);

/// The two one-sided spreads of one parameter about its mean, at least 0.1 each.
struct Spreads {
    float lower = 0;
    float upper = 0;
};
[[nodiscard]] Spreads foldedSpreads(const MeasurementSession& item, int parameter);

}  // namespace vantor
