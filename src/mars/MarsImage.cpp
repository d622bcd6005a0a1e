#include "mars/MarsImage.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace vantor {

// A limit block, 128 addresses; c = 0..5 for the coins A..F, limits least significant nibble first:
//
//     0          15, the marker
//     1 + 6c     Thickness low  (3 nibbles), Thickness high (3)
//    37 + 6c     Diameter low   (3 nibbles), Diameter high  (3)
//    73 + 6c     Material low   (3 nibbles), Material high  (3)
//   109, 110     unused
//   111          15 when the limits were edited by hand, else 0
//   112..121     coinset reference code, 5 characters, high nibble first
//   122..127     coinset version, 3 characters, high nibble first
//
// In the PROM, by address:
//
//              0          128         256         384        511
//   ME181      | values 1..6 | block 1   | values 7..12 | block 2   |
//   others     | block 1     | block 2   | block 3      | block 4   |
//
// A value area begins with a marker of its own and is empty but for the coin values, whose
// addresses have a single bit set: channel 1 stands at 64, 2 at 32, ... 5 at 4, 6 at 2, low nibble
// first; channels 7..12 likewise 256 higher.

namespace {

constexpr int kMarker = 15;
constexpr int kBlockCells = 128;
constexpr int kCellsPerCoin = 6;
constexpr std::array<int, kMarsLimitColumns> kColumnOffset = {1, 4, 37, 40, 73, 76};
constexpr int kChangeFlagOffset = 111;
constexpr int kReferenceOffset = 112;
constexpr std::size_t kReferenceCharacters = 5;
constexpr int kVersionOffset = 122;
constexpr std::size_t kVersionCharacters = 3;
constexpr int kByteMax = 255;

static_assert(kColumnOffset.back() + kCellsPerCoin * (kMarsCoinsPerSegment - 1) + 3 <
              kChangeFlagOffset);
static_assert(kReferenceOffset + 2 * int{kReferenceCharacters} == kVersionOffset);
static_assert(kVersionOffset + 2 * int{kVersionCharacters} == kBlockCells);

int cellOfLimit(int base, int coin, int column) {
    return base + kCellsPerCoin * coin + kColumnOffset.at(static_cast<std::size_t>(column - 1));
}

int cellOfValue(int channel) {
    const int area = (channel - 1) / kMarsCoinsPerSegment;
    const int coin = (channel - 1) % kMarsCoinsPerSegment;
    return area * kMarsHalfPromCells + (64 >> coin);
}

void writeText(MechImage& image, int cell, std::string_view text) {
    for (const char c : text) {
        const int code = static_cast<unsigned char>(c);
        image[cell++] = code / 16;
        image[cell++] = code % 16;
    }
}

template <class Write>
void forSelected(const MarsLayout& layout, const SegmentFlags& selected, Write write) {
    for (int segment = 0; segment < layout.segments; ++segment) {
        if (selected[segment]) write(marsBlockBase(layout, segment));
    }
}

}  // namespace

int marsBlockBase(const MarsLayout& layout, int segment) {
    return segment * layout.segmentCells + layout.blockOffset;
}

CellRange marsSegmentRange(const MarsLayout& layout, int segment) {
    const int first = segment * layout.segmentCells;
    return {first, first + layout.segmentCells - 1};
}

int highestMarsSegment(const MarsLayout& layout, int promSizeCode) {
    constexpr int kSegmentsOfHalfProm = 2;
    return std::min(layout.segments, promSizeCode == 1 ? layout.segments : kSegmentsOfHalfProm) - 1;
}

void clearImages(ImagesState& images) {
    images = ImagesState{};
}

void mapMarsSegment(MechImage& image, const ChannelLimits& limits, int segment) {
    segment = std::min(segment, kMarsSegments - 1);
    const int base = segment * kBlockCells;
    image[base] = kMarker;
    for (int coin = 0; coin < kMarsCoinsPerSegment; ++coin) {
        for (int column = 1; column <= kMarsLimitColumns; ++column) {
            const int limit = limits[kMarsCoinsPerSegment * segment + coin + 1][column];
            const int cell = cellOfLimit(base, coin, column);
            image[cell] = limit % 16;
            image[cell + 1] = limit / 16 % 16;
            image[cell + 2] = limit / 256;
        }
    }
}

void remapME181(MechImage& image, const CoinValues& values) {
    // Downwards, so that nothing is overwritten before it has moved.
    for (int cell = kMarsHalfPromCells - 1; cell >= 0; --cell) {
        image[cell + (cell < kBlockCells ? kBlockCells : kMarsHalfPromCells)] = image[cell];
    }
    for (const int area : {0, kMarsHalfPromCells}) {
        for (int cell = 0; cell < kBlockCells; ++cell) image[area + cell] = 0;
        image[area] = kMarker;
    }
    for (int channel = 1; channel <= kMarsValueChannels; ++channel) {
        const int value = std::clamp(values[channel], 0, kByteMax);
        image[cellOfValue(channel)] = value % 16;
        image[cellOfValue(channel) + 1] = value / 16;
    }
}

void addCoinsetReference(MechImage& image, const MarsLayout& layout, const SegmentFlags& selected,
                         std::string_view referenceCode, std::string_view version) {
    forSelected(layout, selected, [&](int base) {
        writeText(image, base + kReferenceOffset, referenceCode.substr(0, kReferenceCharacters));
        writeText(image, base + kVersionOffset, version.substr(0, kVersionCharacters));
    });
}

void setChangeFlag(MechImage& image, const MarsLayout& layout, const SegmentFlags& selected,
                   bool edited) {
    forSelected(layout, selected,
                [&](int base) { image[base + kChangeFlagOffset] = edited ? kMarker : 0; });
}

int marsLimit(const MechImage& image, int base, int coin, int column) {
    const int cell = cellOfLimit(base, coin, column);
    return image[cell] + 16 * image[cell + 1] + 256 * image[cell + 2];
}

CoinValues marsCoinValues(const MechImage& image) {
    CoinValues values;
    for (int channel = 1; channel <= kMarsValueChannels; ++channel) {
        const int cell = cellOfValue(channel);
        values[channel] = image[cell] + 16 * image[cell + 1];
    }
    return values;
}

bool marsPromHasChannel(const MarsLayout& layout, int promSizeCode, int source) {
    const int segments = highestMarsSegment(layout, promSizeCode) + 1;
    return source >= 1 && source <= segments * kMarsCoinsPerSegment;
}

void copyMarsChannel(const MechImage& image, const MarsLayout& layout, int source,
                     ChannelLimits& limits, int channel) {
    if (source < 1 || source > layout.segments * kMarsCoinsPerSegment) {
        throw std::out_of_range("The old PROM has no channel " + std::to_string(source));
    }
    const int base = marsBlockBase(layout, (source - 1) / kMarsCoinsPerSegment);
    const int coin = (source - 1) % kMarsCoinsPerSegment;
    for (int column = 1; column <= kMarsLimitColumns; ++column) {
        limits[channel][column] = marsLimit(image, base, coin, column);
    }
}

}  // namespace vantor
