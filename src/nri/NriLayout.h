#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/SessionState.h"
#include "nri/NriModels.h"

namespace vantor {

// The memory of an NRI mech: up to 28 blocks of text, each the answer to one read command.
// Positions are 1-based; C channels, P parameters.
//
//   plain (decimal)                               command     block
//     channel c: P highs of 3 digits, from 13 on lows  Vc         c
//     multiplier of 3, values C..1 of 3                Y          C + 1    values
//     header of 11, four tubes of 4, values of 4       X          C + 1    tubes
//     date dd/mm/yy (at 29 of the answer)              Z          C + 2
//
//   handshake (hexadecimal pairs)
//     text, text, date                                 X00..X02   1..3
//     channel c: high, low per parameter               X03..X0E   4..15
//     output code per channel                          X0F        16       outputs
//     header of 8, four tubes and 8 values of 4 decimals  X0F     16       routedTubes
//     multiplier, value / multiplier per channel       X10        17       outputs
//     route text                                       X10, X11   17, 18   routedTubes
//     route text                                       X11        18       outputs
//     output mask and flags per channel                X12        19       outputs
//     six map digits per channel                       X13        20       outputs
//     compensation bytes                               X19..X1B   26..28   outputs
//
// Each is written in the form in which it is read.

using NriBlockTexts = decltype(NriImage::blocks);
using ChannelLimitTable = decltype(LimitsState::channelLimits);

/// A model with its counts.
struct NriShape {
    const NriModel& model;
    int channels = 0;
    int parameters = 0;
};

/// Of a listed model; throws std::out_of_range for an unknown one.
[[nodiscard]] NriShape nriShape(std::string_view code);

// --- reading

/// One command that reads a block.
struct NriReadStep {
    std::string command;
    int block = 0;          ///< 1..28
    int lines = 1;          ///< of the answer
    int from = 1;           ///< where in the answer the block begins
    int least = 0;          ///< characters that the block must have to mean anything
    int decimalsFrom = -1;  ///< from here (0-based) to `least` all are decimal digits; -1 = nowhere
};
/// In the order in which they are sent.
[[nodiscard]] std::vector<NriReadStep> nriReadSteps(const NriShape& shape);
/// The text of a block is what the mech can have said: neither cut short nor, where the form
/// shows it, with characters that were added or spoilt on the way.
[[nodiscard]] bool nriBlockSound(const NriShape& shape, const NriReadStep& step,
                                 std::string_view text);

/// Whole pairs of hexadecimal digits: a handshake mech takes any other letter for a command.
[[nodiscard]] bool isHexPairs(std::string_view text);

/// What the blocks mean. A field whose characters are missing is 0.
[[nodiscard]] NriFields decodeNriBlocks(const NriShape& shape, const NriBlockTexts& blocks);

/// Output number 0..6 plus the flag bits 64 and 128 of a mask byte, and back.
[[nodiscard]] int nriOutput(int maskByte);
[[nodiscard]] int nriMaskByte(int output);

/// A measured coin. `map` is the coin's parameter map, nullptr for the order of the mech. Nothing
/// when the answer lacks a reading or was spoilt.
[[nodiscard]] std::optional<std::array<int, kMaxParameters>> nriReading(
    const NriShape& shape, std::string_view answer, const Ranged<int, 1, kMaxParameters>* map);

// --- building new fields

/// Takes a coinset's parameter string into map, output codes and outputs.
void decodeNriParameters(const NriShape& shape, std::string_view text, NriFields& fields);

/// The fields to program: what the coinset gives, and from `old` every group that it does not.
[[nodiscard]] NriFields newNriFields(const NriShape& shape, const NriNewData& given,
                                     const CoinsetData& coinset, const NriFields& old);

/// Takes coin value and, where the model has them, outputs and map of an old channel over. Throws
/// std::out_of_range for a source that the mech does not have.
void takeOverNriChannel(const NriShape& shape, const NriFields& old, int source, NriFields& next,
                        int channel);
/// The same for the channel's limits.
void copyNriLimits(const NriShape& shape, const NriFields& old, int source,
                   ChannelLimitTable& limits, int channel);

/// The largest coin value that the model's memory can hold with a multiplier.
[[nodiscard]] int highestNriValue(const NriShape& shape, int multiplier);
/// What coin values are divided by: the low 6 bits of the multiplier, at least 1.
[[nodiscard]] int nriValueStep(int multiplier);

}  // namespace vantor
