#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "catalogue/MessageTable.h"

namespace vantor {

inline constexpr int kTestPositions = 16;  ///< positions that the test window has, 0-based
inline constexpr int kOutputBits = 5;      ///< output-bit indicators

/// What sets one model apart from the others in the validator test.
struct TestLayout {
    std::string_view maker;
    std::string_view code;  ///< empty: any code of the maker that has no row of its own
    int positions = 6;      ///< with the outputs driven one by one
    /// Positions when the outputs drive a code; 0 = the model has no coded outputs.
    int binaryPositions = 0;
    /// The last position counts rejected coins. An older box (by the text of its version) reports
    /// none: it shows `positionsOfOldBox` without one.
    bool rejectPosition = false;
    std::string_view rejectsSinceBox = {};
    int positionsOfOldBox = 0;
    /// Sent when the test begins: waited for, or not.
    std::string_view startCommand = {};
    bool startWaits = false;
    /// The family prepares the mech too: sensor timings, the mech's own serial mode.
    bool familyPrepares = false;
    /// Sent, and waited for, whenever the positions are laid out; empty = nothing.
    std::string_view layoutCommand = "O";
    /// The mech itself sends coin records in its serial mode, with the route of each coin.
    bool coinRecords = false;
    bool variants = false;         ///< positions, outputs and command depend on the chosen variant
    bool programmingLoom = false;  ///< a loom must be off before the outputs drive a code
};

[[nodiscard]] std::span<const TestLayout> testLayouts();
/// The row of a model, matched exactly, else the maker's row for any other code; of an unknown
/// maker, a plain row of six positions.
[[nodiscard]] const TestLayout& testLayout(std::string_view maker, std::string_view code);

/// What decides the positions beside the model.
struct TestConditions {
    std::string_view boxVersion;
    std::string_view variant;    ///< chosen in the variant list; empty for models without one
    bool binaryChosen = false;   ///< the technician wants the outputs as a code
    bool binaryAnswered = true;  ///< the box did not refuse them
};

/// The positions as they are shown.
struct TestPositions {
    int count = 0;
    bool binaryOffered = false;
    bool binary = false;  ///< the positions are output codes
    bool reject = false;  ///< the last one counts rejected coins
    /// Sent after the layout command; empty = nothing.
    std::string_view variantCommand = {};
};

[[nodiscard]] TestPositions testPositions(const TestLayout& layout,
                                          const TestConditions& conditions);

/// "Coin A", "Coin 01", "Tube L", "Rejected"; `position` is 0-based.
[[nodiscard]] std::string positionCaption(const TestLayout& layout, const TestPositions& shown,
                                          int position, const MessageTable& messages);

}  // namespace vantor
