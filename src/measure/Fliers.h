#pragma once

#include <array>
#include <string>
#include <vector>

#include "catalogue/MessageTable.h"
#include "catalogue/SessionState.h"

namespace vantor {

/// Fliers are looked for on parameters 1..3 only, whatever the mech measures.
inline constexpr int kFlierParameters = 3;

/// One parameter on which a reading lay outside its band.
struct FlierNote {
    int pass = 1;       ///< 1 or 2
    int index = 1;      ///< place in the list as it stood then, from 1
    int parameter = 1;  ///< 1..3
    std::array<int, kFlierParameters> reading{};
    std::array<float, kFlierParameters> means{};  ///< before the removal
};

struct FlierResult {
    int fliers = 0;
    std::vector<int> kept;  ///< rows of `readings` that stay, ascending, from 1
    bool gatherAgain = false;
    int coinsToDrop = 0;  ///< meaningful with gatherAgain
    std::vector<FlierNote> notes;
};

/// Looks for fliers among the item's readings with its tolerances; changes nothing.
[[nodiscard]] FlierResult findFliers(const MeasurementSession& item);

/// Keeps only `rows` (ascending, from 1), whole drops with all `paramCount` parameters.
void keepReadings(MeasurementSession& item, const std::vector<int>& rows, int paramCount);

/// The log's line for one note, over `paramCount` parameters.
[[nodiscard]] std::string flierLine(const MessageTable& messages, const FlierNote& note,
                                    int paramCount);

}  // namespace vantor
