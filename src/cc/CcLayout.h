#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "catalogue/SessionState.h"
#include "cc/CcModels.h"

namespace vantor {

// The image of a CC mech's EEPROM: one 16-bit word (0..65535) per entry of `MechImage`, from 0.
// Channels and parameters are 1-based. A channel or parameter that the model does not have throws
// std::out_of_range.

using CcChannelLimits = Ranged<Ranged<int, 1, kLimitColumns>, 1, kChannels>;
using C120OutputMap = Ranged<int, 1, 12>;
using CoinsetRouting = Ranged<int, 0, 22>;

/// A model's row together with its numbers from the catalogue.
struct CcShape {
    const CcModel& model;
    int words = 0;  ///< the memory holds words 0 .. words - 1
    int channels = 0;
    int parameters = 0;
};

/// Throws std::out_of_range for an unknown code.
[[nodiscard]] CcShape ccShape(std::string_view code);

/// The last word of an I2C mech's limits; its high byte is the check byte over those before it.
inline constexpr int kCcCheckWord = 127;

[[nodiscard]] constexpr int highByte(int word) {
    return word / 256 % 256;
}
[[nodiscard]] constexpr int lowByte(int word) {
    return word % 256;
}
[[nodiscard]] constexpr int wordOf(int high, int low) {
    return high * 256 + low;
}
/// The low 16 bits, also of a negative number.
[[nodiscard]] constexpr int cutToWord(long long value) {
    return static_cast<int>(value & 0xFFFF);
}
/// Nibble 0..3 of a word, 0 the least significant.
[[nodiscard]] constexpr int nibbleOf(int word, int nibble) {
    return (word >> (4 * nibble)) & 15;
}

// --- limits

/// Acceptance window of one parameter, both ends 0..255.
struct CcWindow {
    int low = 0;
    int high = 0;

    friend bool operator==(const CcWindow&, const CcWindow&) = default;
};

/// The word of a window.
[[nodiscard]] int ccLimitWord(const CcShape& shape, int channel, int parameter);
[[nodiscard]] CcWindow ccWindow(const MechImage& image, const CcShape& shape, int channel,
                                int parameter);

/// Starts the new image from the old one and writes the limits of all channels into it; they are
/// clamped to 0..255 first, in `limits` itself. The check byte is left to `ccChecksum`.
void mapLimitsToCcImage(const CcShape& shape, const MechImage& old, CcChannelLimits& limits,
                        MechImage& next);

/// Takes the windows of channel `source` of an image over into channel `channel`.
void copyCcChannel(const MechImage& image, const CcShape& shape, int source,
                   CcChannelLimits& limits, int channel);

// --- check byte

/// What must stand in word 63 of a Sentinel: 1..256.
[[nodiscard]] int sentinelCheckWord(const MechImage& image);

/// Makes the new image as consistent as the old one was.
void ccChecksum(const CcShape& shape, const MechImage& old, MechImage& next);

// --- outputs and routing

/// Writes the outputs of the 12 channels: an entry is 0 (none), an output 1..6, or any other number
/// whose low 8 bits are the mask. `jaguar` selects one of the two places where a C120 keeps them.
void mapC120Outputs(const C120OutputMap& map, bool jaguar, MechImage& next);
/// The output mask (0..255) of a channel 1..12.
[[nodiscard]] int c120OutputMask(const MechImage& image, int channel, bool jaguar);
/// The output 1..6 that a mask stands for, 0 for none, -1 for a mask of another kind.
[[nodiscard]] int c120Output(int mask);

/// Writes a coinset's routing for the models that have one, from the old image's words where some
/// bits are kept, so that doing it again changes nothing; then the check byte. A Sentinel counts
/// the transfers, unless `counted`: the old image has this one in it.
void applyCoinsetRouting(const CcShape& shape, const CoinsetRouting& routing, const MechImage& old,
                         MechImage& next, bool counted = false);
/// How many transfers of a routing a Sentinel has seen, 0..255.
[[nodiscard]] int sentinelTransfers(const MechImage& image);

/// Route letter ("A" + 0..15) of a channel 1..12 of a 450.
[[nodiscard]] char c450Route(const MechImage& image, int channel);

/// Sort code (0..15) of a channel 1..8 of a Sentinel.
[[nodiscard]] int sentinelSortCode(const MechImage& image, int channel);
/// "No Sort", "A", ..., "CD"; empty for a code without a name.
[[nodiscard]] std::string_view sentinelRouteName(int sortCode);

// --- the 435's ancillary settings

/// One route of a 435 with its codes in the sort table and in word 228.
struct C435Route {
    char letter;
    int pathCode;
    int plugCode;
};
[[nodiscard]] std::span<const C435Route> c435Routes();

inline constexpr int kC435Rows = 16;
inline constexpr int kC435Choices = 4;  ///< path choices of a row, the first one first
inline constexpr int kC435Codes = 16;

/// As a technician reads and types them.
struct C435Settings {
    /// Row r (0..15), choice k (0..3) at 4r + k: a route letter, "?" for a code without one.
    std::array<std::string, std::size_t{kC435Rows} * kC435Choices> paths;
    /// Four binary digits each, most significant first.
    std::array<std::string, kC435Codes> codes;
    bool fromMemory = false;  ///< routed from memory, else from the plug
    std::string plugDefault;  ///< a route letter, "?" for a code without one

    friend bool operator==(const C435Settings&, const C435Settings&) = default;
};

[[nodiscard]] C435Settings c435Settings(const MechImage& image);

/// What makes settings impossible to write; a path counts before a code.
enum class C435Fault { none, path, binaryCode };

/// Builds the new image from the old one, the settings and the check byte. With a fault `next` is
/// left as it was.
[[nodiscard]] C435Fault writeC435Settings(const CcShape& shape, const C435Settings& settings,
                                          const MechImage& old, MechImage& next);

}  // namespace vantor
