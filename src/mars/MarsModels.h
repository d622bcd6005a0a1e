#pragma once

#include <span>
#include <string_view>

namespace vantor {

/// Where the segments of a model's PROM stand; see the drawing in MarsImage.cpp.
struct MarsLayout {
    int segments = 4;         ///< coin sets that the PROM can hold
    int segmentCells = 128;   ///< addresses programmed and verified per segment
    int blockOffset = 0;      ///< where the limit block begins within its segment
    bool coinValues = false;  ///< the cells below the blocks hold the channels' coin values
};

/// What sets one Mars model apart from the others.
struct MarsModel {
    std::string_view code;  ///< empty: any code that has no row of its own
    /// Sensor timings 1..4, three digits each; sent with a carriage return.
    std::string_view timingCommand = "Z030020150100";
    /// Sent before every attempt at the timings; empty = nothing.
    std::string_view commandBeforeTimings = {};
    int idleWaitMs = 0;         ///< the sensors settle before their idle values are asked for
    bool cfdBracketed = false;  ///< the validator wants "W", "CFD", "J" before it is asked
    bool alwaysTwoK = false;    ///< the mech takes 2K PROMs only
    bool duplicates = true;     ///< segment 2 may be programmed as a copy of segment 1
    MarsLayout layout = {};
};

/// All known models; the last row stands for any other code.
[[nodiscard]] std::span<const MarsModel> marsModels();

/// The row of a code, matched exactly.
[[nodiscard]] const MarsModel& marsModel(std::string_view code);

}  // namespace vantor
