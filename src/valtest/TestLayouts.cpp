#include "valtest/TestLayouts.h"

#include <algorithm>
#include <array>

#include "catalogue/MechCatalogue.h"
#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr int kMsgCoinNumber = 1402, kMsgCoinLetter = 1403, kMsgRejected = 1404,
              kMsgFirstRoute = 1445;
constexpr int kFirstRoute = 8;  ///< of a mech that sends coin records: three tubes and the cashbox

constexpr TestLayout marsLayout(std::string_view code, int positions) {
    return {.maker = kMars,
            .code = code,
            .positions = positions,
            .rejectPosition = true,
            .rejectsSinceBox = "V1.91",
            .positionsOfOldBox = 6,
            .startCommand = "V",
            .startWaits = true,
            .familyPrepares = true,
            .layoutCommand = "V"};
}

constexpr TestLayout ccLayout(std::string_view code, int positions, int binaryPositions) {
    return {.maker = kCoinControls,
            .code = code,
            .positions = positions,
            .binaryPositions = binaryPositions,
            .startCommand = "C01"};
}

constexpr TestLayout recordLayout(std::string_view code) {
    return {.maker = kNri,
            .code = code,
            .positions = 12,
            .familyPrepares = true,
            .layoutCommand = {},
            .coinRecords = true};
}

constexpr TestLayout tubeLayout(std::string_view code) {
    return {.maker = kNri, .code = code, .startCommand = "C08"};
}

constexpr std::array kLayouts = {
    marsLayout("MS1000", 10),
    marsLayout("", 7),
    ccLayout("C120", 6, 0),
    ccLayout("Sentinel", 4, 0),
    ccLayout("220B", 4, 8),
    ccLayout("335", 5, 16),
    TestLayout{.maker = kCoinControls,
               .code = "435",
               .positions = 5,
               .binaryPositions = 16,
               .startCommand = "C01",
               .programmingLoom = true},
    TestLayout{.maker = kCoinControls, .code = "450", .startCommand = "C09"},
    recordLayout("G10-4000"),
    recordLayout("G10-4000/5"),
    tubeLayout("G18-0000"),
    tubeLayout("G18-3000"),
    TestLayout{.maker = kNri,
               .code = "G40-0000",
               .binaryPositions = 16,
               .startCommand = "C08",
               .variants = true},
    TestLayout{.maker = kNri, .code = "", .startCommand = "C00"},
};

struct VariantLayout {
    std::string_view code;  ///< empty: any other variant
    int positions = 6;
    bool binary = false;
    std::string_view command = "C08";
};

constexpr std::array kVariantLayouts = {
    VariantLayout{.code = "G40-x3xx", .positions = 5, .binary = true, .command = "C01"},
    VariantLayout{.code = "G40-x4xx", .positions = 5, .binary = true},
    VariantLayout{},
};

const VariantLayout& variantLayout(std::string_view code) {
    const auto found = std::ranges::find(kVariantLayouts, code, &VariantLayout::code);
    return found == kVariantLayouts.end() ? kVariantLayouts.back() : *found;
}

}  // namespace

std::span<const TestLayout> testLayouts() {
    return kLayouts;
}

const TestLayout& testLayout(std::string_view maker, std::string_view code) {
    const TestLayout* other = nullptr;
    for (const TestLayout& row : kLayouts) {
        if (row.maker != maker) continue;
        if (row.code == code) return row;
        if (row.code.empty()) other = &row;
    }
    static constexpr TestLayout kPlain{};
    return other == nullptr ? kPlain : *other;
}

TestPositions testPositions(const TestLayout& layout, const TestConditions& conditions) {
    TestPositions shown{.count = layout.positions,
                        .binaryOffered = layout.binaryPositions > 0,
                        .reject = layout.rejectPosition};
    if (layout.variants) {
        const VariantLayout& variant = variantLayout(conditions.variant);
        shown.count = variant.positions;
        shown.binaryOffered = variant.binary;
        shown.variantCommand = variant.command;
    }
    if (layout.rejectPosition && conditions.boxVersion < layout.rejectsSinceBox) {
        shown.count = layout.positionsOfOldBox;
        shown.reject = false;
    }
    shown.binaryOffered = shown.binaryOffered && conditions.binaryAnswered;
    shown.binary = shown.binaryOffered && conditions.binaryChosen;
    if (shown.binary) shown.count = layout.binaryPositions;
    return shown;
}

std::string positionCaption(const TestLayout& layout, const TestPositions& shown, int position,
                            const MessageTable& messages) {
    if (shown.reject && position == shown.count - 1) return messages.msgText(kMsgRejected);
    if (layout.coinRecords && position >= kFirstRoute) {
        return messages.msgText(kMsgFirstRoute + position - kFirstRoute);
    }
    if (shown.binary || layout.coinRecords) {
        return messages.msgText(kMsgCoinNumber) + padded(position + 1, 2);
    }
    return messages.msgText(kMsgCoinLetter) + static_cast<char>('A' + position);
}

}  // namespace vantor
