#include "cc/EepromText.h"

#include <array>

#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr std::array<EepromViewEntry, 3> kViews = {{
    {.view = EepromView::words, .caption = 722},
    {.view = EepromView::limits, .caption = 723},
    {.view = EepromView::other, .caption = 724},
}};

constexpr std::string_view kStart = "  ";
constexpr int kWordsPerLine = 16;
constexpr std::size_t kNameWidth = 12;
constexpr int kTitleIndent = 35;

std::string blanks(int count) {
    return std::string(static_cast<std::size_t>(count), ' ');
}

std::string lineEnd(int count = 1) {
    std::string ends;
    for (int i = 0; i < count; ++i) ends += kCrLf;
    return ends;
}

std::string outputText(int mask) {
    const int output = c120Output(mask);
    if (output == 0) return "None";
    return output > 0 ? std::to_string(output) : "Hex " + hex(static_cast<unsigned>(mask), 2);
}

/// As wide as the widest entry, because another column follows.
std::string jaguarText(int mask) {
    std::string text = outputText(mask);
    text.resize(6, ' ');
    return text;
}

std::string outputMapText(const CcShape& shape, const MechImage& image, const MessageTexts& text) {
    std::string all = blanks(kTitleIndent) + text(732) + lineEnd(2) + blanks(36) + text(733) +
                      blanks(5) + text(734);
    for (int channel = 1; channel <= shape.channels; ++channel) {
        all += lineEnd() + blanks(20) + text(1233) + padded(channel, 2) + blanks(15) +
               jaguarText(c120OutputMask(image, channel, true)) + blanks(15) +
               outputText(c120OutputMask(image, channel, false));
    }
    return all;
}

/// Message numbers of a routing text.
struct RoutingTexts {
    int title, coin, route;
};

template <class Route>
std::string routingText(const CcShape& shape, const RoutingTexts& numbers, const MessageTexts& text,
                        const Route& route) {
    std::string all = blanks(kTitleIndent) + text(numbers.title);
    for (int channel = 1; channel <= shape.channels; ++channel) {
        all += lineEnd() + blanks(30) + text(numbers.coin) + padded(channel, 2) + blanks(10) +
               text(numbers.route);
        all += route(channel);
    }
    return all;
}

}  // namespace

std::span<const EepromViewEntry> eepromViews() {
    return kViews;
}

std::string eepromWordsText(const CcShape& shape, const MechImage& image) {
    std::string all(kStart);
    for (int word = 0; word < shape.words; ++word) {
        if (word % kWordsPerLine == 0) {
            if (word > 0) all += lineEnd() + blanks(3);
            all += hex(static_cast<unsigned>(word / kWordsPerLine), 1) + "0 ";
        }
        all += hex(static_cast<unsigned>(cutToWord(image[word])), 4) + ' ';
    }
    return all;
}

std::string eepromLimitsText(const CcShape& shape, const MechImage& image,
                             std::span<const std::string> parameterNames,
                             const MessageTexts& text) {
    const int indent = (kMaxParameters - shape.parameters) * 6;
    std::string all = std::string(kStart) + blanks(indent + 8);
    for (const std::string& name : parameterNames) {
        all += name;
        if (name.size() < kNameWidth) all.append(kNameWidth - name.size(), ' ');
    }
    for (int channel = 1; channel <= shape.channels; ++channel) {
        all += lineEnd() + blanks(indent) + text(1233) + padded(channel, 2) + blanks(5);
        for (int parameter = 1; parameter <= shape.parameters; ++parameter) {
            const CcWindow window = ccWindow(image, shape, channel, parameter);
            all += ' ' + padded(window.low, 3) + ' ' + padded(window.high, 3) + blanks(4);
        }
    }
    return all;
}

std::string eepromOtherText(const CcShape& shape, const MechImage& image,
                            const MessageTexts& text) {
    const std::string start(kStart);
    if (shape.model.outputMap) return start + outputMapText(shape, image, text);
    switch (shape.model.routing) {
        case CcRouting::c435:
            return {};
        case CcRouting::c450:
            return start + routingText(shape, {726, 727, 728}, text,
                                       [&](int channel) { return c450Route(image, channel); });
        case CcRouting::sentinel:
            return start + routingText(shape, {729, 730, 731}, text, [&](int channel) {
                       return sentinelRouteName(sentinelSortCode(image, channel));
                   });
        case CcRouting::none:
            break;
    }
    return start + lineEnd(2) + text(735);
}

}  // namespace vantor
