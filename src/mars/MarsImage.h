#pragma once

#include <string_view>

#include "catalogue/SessionState.h"
#include "mars/MarsModels.h"

namespace vantor {

// The image of a Mars PROM: one nibble (0..15) per address, in `MechImage` entries 0..511. Segment
// indexes are 0-based, channels run 1..24, six to a segment.

inline constexpr int kMarsCoinsPerSegment = 6;
inline constexpr int kMarsLimitColumns = 6;  ///< low and high of Thickness, Diameter, Material
inline constexpr int kMarsValueChannels = 12;
inline constexpr int kMarsPromCells = 512;
inline constexpr int kMarsHalfPromCells = 256;

using ChannelLimits = Ranged<Ranged<int, 1, kLimitColumns>, 1, kChannels>;
using SegmentFlags = Ranged<bool, 0, kMarsSegments - 1>;
using CoinValues = Ranged<int, 1, kMarsValueChannels>;

/// Addresses, ends included.
struct CellRange {
    int first = 0;
    int last = 0;

    friend bool operator==(const CellRange&, const CellRange&) = default;
};

/// First address of a segment's limit block.
[[nodiscard]] int marsBlockBase(const MarsLayout& layout, int segment);
/// The addresses that are programmed and verified for a segment.
[[nodiscard]] CellRange marsSegmentRange(const MarsLayout& layout, int segment);
/// Index of the last segment that the PROM holds; `promSizeCode` 0 = 1K, 1 = 2K.
[[nodiscard]] int highestMarsSegment(const MarsLayout& layout, int promSizeCode);
/// The last address of a PROM.
[[nodiscard]] constexpr int lastPromCell(int promSizeCode) {
    return promSizeCode == 1 ? kMarsPromCells - 1 : kMarsHalfPromCells - 1;
}

/// Sets every cell of the three images to 0; nothing counts as read any more.
void clearImages(ImagesState& images);

/// Writes marker and limits of a segment at segment x 128; a segment above 3 counts as 3. Limits
/// are written as they are: keeping them within 0..4095 is the caller's business.
void mapMarsSegment(MechImage& image, const ChannelLimits& limits, int segment);

/// Moves segments 1 and 2, mapped at 0 and 128, to where the ME181 wants them and writes the coin
/// values of channels 1..12, each cut to a byte (0..255).
void remapME181(MechImage& image, const CoinValues& values);

/// Stamps the first 5 characters of the code and the first 3 of the version into every selected
/// segment. A shorter text leaves the remaining nibbles as they are.
void addCoinsetReference(MechImage& image, const MarsLayout& layout, const SegmentFlags& selected,
                         std::string_view referenceCode, std::string_view version);

/// Marks every selected segment as edited by hand, or not.
void setChangeFlag(MechImage& image, const MarsLayout& layout, const SegmentFlags& selected,
                   bool edited);

/// One limit of one coin; `coin` 0..5 within the block at `base`, `column` 1..6.
[[nodiscard]] int marsLimit(const MechImage& image, int base, int coin, int column);

/// The coin values that an ME181 image holds.
[[nodiscard]] CoinValues marsCoinValues(const MechImage& image);

/// Whether a PROM of this size and layout has channel `source`.
[[nodiscard]] bool marsPromHasChannel(const MarsLayout& layout, int promSizeCode, int source);

/// Takes the limits of channel `source` of an image over into channel `channel`. Throws
/// std::out_of_range for a source that the layout does not have.
void copyMarsChannel(const MechImage& image, const MarsLayout& layout, int source,
                     ChannelLimits& limits, int channel);

}  // namespace vantor
