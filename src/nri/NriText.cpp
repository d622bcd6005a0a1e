#include "nri/NriText.h"

#include <algorithm>

#include "catalogue/Text.h"

namespace vantor {

namespace {

// Limits, one column of 12 per parameter; 6 blanks more in front for each parameter that is
// missing, which keeps the columns in the middle:
//
//   Coin 01      000 255     000 255    ...
//
// Map, one column of 13 per parameter:
//
//   Coin 01        04           01      ...

constexpr int kNameWidth = 12;
constexpr int kHalfColumn = 6;
constexpr int kNamesIndent = 10;
constexpr int kMapNamesIndent = 7;
constexpr int kMapNamesGap = 10;
constexpr int kFirstMapName = 929;
/// "Parameter n" is 11 wide: centred over its digits.
constexpr int kParameterIndent = 11;
constexpr int kParameterGap = 2;
constexpr int kLegendIndent = 14;
constexpr int kCompensationIndent = 20;
constexpr int kFirstCompensation = 938;
constexpr int kCompensations = 4;
constexpr int kOtherHeadingIndent = 11;
constexpr int kFirstTube = 13;
constexpr int kTubes = 4;
constexpr int kFirstTubeMessage = 951;
constexpr int kRoutedValues = 8;
constexpr int kFlaggedRoute = 2;

std::string blanks(int count) {
    return std::string(static_cast<std::size_t>(std::max(count, 0)), ' ');
}

std::string padTo(const std::string& text, int width) {
    return text + blanks(width - static_cast<int>(text.size()));
}

class Page {
  public:
    Page(const NriShape& shape, const NriFields& fields, const MessageTable& messages)
        : shape_(shape), fields_(fields), messages_(messages) {}

    [[nodiscard]] std::string limits(const std::array<std::string, 7>& paramNames) const;
    [[nodiscard]] std::string map() const;
    [[nodiscard]] std::string other() const;

  private:
    [[nodiscard]] std::string text(int id) const { return messages_.msgText(id); }
    [[nodiscard]] int missing() const { return (kMaxParameters - shape_.parameters) * kHalfColumn; }
    [[nodiscard]] std::string coin(int caption, int channel) const {
        return text(caption) + padded(channel, 2);
    }
    [[nodiscard]] std::string mapHeading() const;
    [[nodiscard]] std::string mapLegend() const;
    [[nodiscard]] std::string outputRows() const;
    [[nodiscard]] std::string routedRows() const;
    [[nodiscard]] std::string tubeRows() const;
    [[nodiscard]] std::string valueRows() const;
    [[nodiscard]] std::string tubes() const;
    [[nodiscard]] std::string multiplier(int caption) const;
    [[nodiscard]] int routeDigit(int channel) const;
    [[nodiscard]] std::string routeBits(int channel, int highestBit) const;

    const NriShape& shape_;
    const NriFields& fields_;
    const MessageTable& messages_;
    const std::string end_{kCrLf};
};

std::string Page::limits(const std::array<std::string, 7>& paramNames) const {
    const int half = static_cast<int>(paramNames[0].size()) / 2;
    std::string page = blanks(missing() + kNamesIndent) + blanks(kHalfColumn - half);
    for (int p = 0; p < shape_.parameters; ++p) {
        page += padTo(paramNames.at(static_cast<std::size_t>(p)), kNameWidth);
    }
    page += end_;
    for (int channel = 1; channel <= shape_.channels; ++channel) {
        page += blanks(missing()) + coin(927, channel) + blanks(5);
        for (int p = 1; p <= shape_.parameters; ++p) {
            page += " " + padded(fields_.limits[channel][2 * p - 1], 3) + " " +
                    padded(fields_.limits[channel][2 * p], 3) + blanks(4);
        }
        page += end_;
    }
    return page;
}

// --- maps ----------------------------------------------------------------------------------

std::string Page::mapHeading() const {
    const bool numbered = shape_.model.mappedReadings;
    std::string heading = blanks(numbered ? kParameterIndent : kMapNamesIndent);
    for (int p = 1; p <= shape_.parameters; ++p) {
        if (p > 1) heading += blanks(numbered ? kParameterGap : kMapNamesGap);
        heading += numbered ? text(928) + std::to_string(p) : text(kFirstMapName + p - 1);
    }
    return heading + end_;
}

std::string Page::mapLegend() const {
    std::string legend;
    for (std::size_t i = 0; i < shape_.model.mapLegend.size(); ++i) {
        const int message = shape_.model.mapLegend[i];
        const std::string line =
            message != 0 ? text(message) : std::string(shape_.model.mapLegendTexts[i]);
        if (!line.empty()) legend += blanks(kLegendIndent) + line + end_;
    }
    return legend;
}

std::string Page::map() const {
    if (shape_.model.mapCaption == 0) return {};
    std::string page = mapHeading();
    for (int channel = 1; channel <= shape_.channels; ++channel) {
        page += blanks(missing()) + coin(935, channel) + blanks(7);
        for (int p = 1; p <= shape_.parameters; ++p) {
            page += " " + padded(fields_.parameterMap[channel][p], 2);
            if (p < shape_.parameters) page += blanks(10);
        }
        page += end_;
    }
    page += mapLegend() + end_ + blanks(kCompensationIndent);
    for (int i = 0; i < kCompensations; ++i) {
        page += text(kFirstCompensation + i) + padded(fields_.compensation[i], 3);
    }
    return page + end_;
}

// --- other information -----------------------------------------------------------------------

int Page::routeDigit(int channel) const {
    constexpr int kLowerChannels = 6;
    const int position =
        channel <= kLowerChannels ? 2 * channel : 2 * (channel - kLowerChannels - 1) + 1;
    return lenientInteger(field(fields_.routeText[0], position, 1));
}

std::string Page::routeBits(int channel, int highestBit) const {
    std::string bits;
    for (int bit = highestBit; bit >= 0; --bit) {
        bits += (routeDigit(channel) & (1 << bit)) != 0 ? '1' : '0';
    }
    return bits;
}

std::string Page::outputRows() const {
    constexpr int kFlag = 64;
    std::string page = blanks(kOtherHeadingIndent) + text(shape_.model.otherHeading) + end_;
    for (int channel = 1; channel <= shape_.channels; ++channel) {
        const int output = fields_.outputs[channel];
        page += coin(943, channel) + blanks(5) + blanks(2) +
                hex(static_cast<unsigned>(fields_.outputCodes[channel]), 2) + blanks(9) +
                blanks(3) + std::to_string(output % kFlag) + blanks(11) + " " +
                padded(fields_.coinValues[channel], 4) + blanks(6) +
                std::to_string(output / kFlag + 1);
        switch (shape_.model.route) {
            case NriRouteView::none:
                break;
            case NriRouteView::fourBits:
                page += blanks(7) + routeBits(channel, 3);
                break;
            case NriRouteView::flag:
                page += blanks(7) + (routeDigit(channel) == kFlaggedRoute ? "  1" : "  0");
                break;
        }
        page += end_;
    }
    return page + multiplier(944);
}

std::string Page::routedRows() const {
    // Each heading begins over its column: values from 17, route bits from 29, the map from 37.
    std::string page = padTo(blanks(17) + text(947), 29);
    page = padTo(page + text(948), 37) + text(949) + end_;
    for (int channel = 1; channel <= shape_.channels; ++channel) {
        page += coin(950, channel) + blanks(10);
        page += channel <= kRoutedValues ? " " + padded(fields_.coinValues[channel], 4)
                                         : std::string(" XXXX");
        page += blanks(7) + routeBits(channel, 2);
        if (channel > kRoutedValues) {
            const int position = 2 * (channel - kRoutedValues - 1) + 1;
            page += blanks(5) +
                    std::to_string(lenientInteger(field(fields_.routeText[1], position, 2)));
        }
        page += end_;
    }
    return page + tubes();
}

std::string Page::tubeRows() const {
    std::string page = blanks(17) + text(945) + end_;
    for (int channel = 1; channel <= shape_.channels; ++channel) {
        page +=
            coin(946, channel) + blanks(10) + " " + padded(fields_.coinValues[channel], 4) + end_;
    }
    return page + tubes();
}

std::string Page::valueRows() const {
    std::string page = blanks(7) + text(955) + end_;
    for (int channel = 1; channel <= shape_.channels; ++channel) {
        page += coin(956, channel) + " " + padded(fields_.coinValues[channel], 4) + end_;
    }
    return page + multiplier(957);
}

std::string Page::tubes() const {
    std::string page;
    for (int tube = 0; tube < kTubes; ++tube) {
        page += text(kFirstTubeMessage + tube) + padded(fields_.coinValues[kFirstTube + tube], 4) +
                end_;
    }
    return page;
}

std::string Page::multiplier(int caption) const {
    return text(caption) + padded(fields_.valueMultiplier, 3) + end_;
}

std::string Page::other() const {
    std::string page;
    switch (shape_.model.blocks) {
        case NriBlocks::outputs:
            page = outputRows();
            break;
        case NriBlocks::routedTubes:
            page = routedRows();
            break;
        case NriBlocks::tubes:
            page = tubeRows();
            break;
        case NriBlocks::values:
            page = valueRows();
            break;
    }
    page += text(958);
    for (int i = 0; i < 3; ++i) {
        const std::string part = "&h" + std::string(field(fields_.date, 2 * i + 1, 2));
        page += (i > 0 ? "/" : "") + padded(lenientInteger(part), 2);
    }
    return page + end_;
}

}  // namespace

std::vector<NriView> nriViews(const NriModel& model) {
    std::vector<NriView> views = {{.caption = 922, .page = NriPage::limits}};
    if (model.mapCaption != 0) views.push_back({.caption = model.mapCaption, .page = NriPage::map});
    views.push_back({.caption = 925, .page = NriPage::other});
    return views;
}

std::string nriText(NriPage page, const NriShape& shape, const NriFields& fields,
                    const std::array<std::string, 7>& paramNames, const MessageTable& messages) {
    const Page writer(shape, fields, messages);
    switch (page) {
        case NriPage::limits:
            return writer.limits(paramNames);
        case NriPage::map:
            return writer.map();
        case NriPage::other:
            break;
    }
    return writer.other();
}

}  // namespace vantor
