#include "mars/PromText.h"

#include <array>

#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr int kLines = 16;
constexpr int kCellsPerLine = 16;
constexpr int kSegmentsPerHalf = 2;
constexpr int kChannelsPerHalf = kSegmentsPerHalf * kMarsCoinsPerSegment;
constexpr std::size_t kViewsOf1K = 2;

constexpr std::array<PromView, 4> kLimitViews = {{
    {.caption = 1306, .decoded = false, .half = 0},
    {.caption = 1307, .decoded = true, .half = 0},
    {.caption = 1308, .decoded = false, .half = 1},
    {.caption = 1309, .decoded = true, .half = 1},
}};

// Two segments fill the whole PROM, so that one decoded view shows them both.
constexpr std::array<PromView, 3> kLimitAndValueViews = {{
    {.caption = 1310, .decoded = false, .half = 0},
    {.caption = 1311, .decoded = true, .half = 0},
    {.caption = 1312, .decoded = false, .half = 1},
}};

char nibbleDigit(int nibble) {
    return nibble >= 0 && nibble <= 15 ? "0123456789ABCDEF"[nibble] : '?';
}

std::string valuesLine(std::string_view head, const CoinValues& values, int firstChannel) {
    std::string line(head);
    for (int coin = 0; coin < kMarsCoinsPerSegment; ++coin) {
        line += padded(values[firstChannel + coin], 3) + ' ';
    }
    return line;
}

}  // namespace

std::span<const PromView> promViews(const MarsLayout& layout, int promSizeCode) {
    const std::span<const PromView> all = layout.coinValues
                                              ? std::span<const PromView>(kLimitAndValueViews)
                                              : std::span<const PromView>(kLimitViews);
    return promSizeCode == 1 ? all : all.first(kViewsOf1K);
}

std::string promRawText(const MechImage& image, int half) {
    std::string text;
    for (int line = 0; line < kLines; ++line) {
        text += nibbleDigit(line);
        text += "0 ";
        for (int i = 0; i < kCellsPerLine; ++i) {
            text += nibbleDigit(image[half * kMarsHalfPromCells + line * kCellsPerLine + i]);
            text += ' ';
        }
        text += kCrLf;
    }
    return text;
}

ChannelLimits decodePromLimits(const MechImage& image, const MarsLayout& layout, int half) {
    ChannelLimits limits;
    const int first = half * kChannelsPerHalf + 1;
    for (int channel = first; channel < first + kChannelsPerHalf; ++channel) {
        if ((channel - 1) / kMarsCoinsPerSegment >= layout.segments) break;
        copyMarsChannel(image, layout, channel, limits, channel);
    }
    return limits;
}

std::string promLimitsText(const PromHeadings& headings, const ChannelLimits& limits, int half) {
    std::string text = headings.parameters;
    text += kCrLf;
    text += headings.rule;
    text += kCrLf;
    for (int line = 0; line < kChannelsPerHalf; ++line) {
        const int segment = half * kSegmentsPerHalf + line / kMarsCoinsPerSegment;
        text += static_cast<char>('A' + line % kMarsCoinsPerSegment);
        text += std::to_string(segment + 1) + "   ";
        for (int column = 1; column <= kMarsLimitColumns; ++column) {
            text += padded(limits[half * kChannelsPerHalf + line + 1][column], 4) + ' ';
        }
        text += kCrLf;
    }
    return text;
}

std::string promValuesText(const PromHeadings& headings, const CoinValues& values) {
    const std::string lineEnd(kCrLf);
    return headings.values + lineEnd + valuesLine("    L   ", values, 1) + lineEnd +
           valuesLine("    H   ", values, kMarsCoinsPerSegment + 1);
}

}  // namespace vantor
