#include "mars/PromText.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "MarsWorld.h"

namespace vantor {
namespace {

using test::MarsWorld;

/// The segment of `setSampleSegment`, addresses 0..127 of it.
const std::string kSampleLines =
    "00 F C 2 1 F F F D 2 1 0 4 1 0 0 0 \r\n"
    "10 0 0 0 0 9 1 4 A 1 1 0 0 2 0 0 4 \r\n"
    "20 F 1 8 5 2 8 E 3 C 4 4 9 E 3 D 4 \r\n"
    "30 4 0 0 0 0 0 0 0 B 4 2 E 4 3 0 0 \r\n"
    "40 4 0 0 C B 2 0 2 3 0 D 7 4 3 8 1 \r\n"
    "50 D 7 5 3 8 0 0 0 0 0 0 C F 8 E 2 \r\n"
    "60 9 5 0 0 6 0 0 4 8 3 F F 3 0 0 0 \r\n"
    "70 4 7 4 2 5 0 3 0 3 1 3 1 2 E 3 2 \r\n";
std::string emptyLines(const std::string& heads) {
    std::string text;
    for (const char head : heads) {
        text += head + std::string("0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \r\n");
    }
    return text;
}
const std::string kEmptyLowerLines = emptyLines("01234567");
const std::string kEmptyUpperLines = emptyLines("89ABCDEF");

const std::string kHeadings =
    "     Thickness Diameter  Material\r\n"
    "Coin --------- --------- ---------\r\n";

std::string sampleLimits(char segment) {
    std::string text =
        "A#   0300 4095 1000 1100 2000 2100 \r\n"
        "B#   0301 0320 1001 1101 2001 2101 \r\n"
        "C#   0000 0000 0000 0000 0000 0000 \r\n"
        "D#   0400 0420 1200 1250 2300 2350 \r\n"
        "E#   0001 0002 0003 0004 0005 0006 \r\n"
        "F#   0500 0600 0700 0800 0900 1023 \r\n";
    std::ranges::replace(text, '#', segment);
    return text;
}

std::string emptyLimits(char segment) {
    std::string text;
    for (const char coin : std::string("ABCDEF")) {
        text += std::string{coin, segment} + "   0000 0000 0000 0000 0000 0000 \r\n";
    }
    return text;
}

const PromHeadings kEnglish{"     Thickness Diameter  Material",
                            "Coin --------- --------- ---------", "Values  A   B   C   D   E   F"};

const MarsLayout& layoutOf(std::string_view model) {
    return marsModel(model).layout;
}

TEST(PromText, NibblesByAddress) {
    MarsWorld world("MS1000", 1);
    world.state.prom.segmentSelected[2] = true;
    world.setSampleSegment();
    world.setSampleSegment(13);
    MechImage& image = world.state.images.next;
    // The upper half has line heads of its own half.
    EXPECT_EQ(promRawText(image, 0), kSampleLines + kEmptyUpperLines);
    EXPECT_EQ(promRawText(image, 1), kSampleLines + kEmptyUpperLines);
    EXPECT_EQ(promRawText({}, 1), kEmptyLowerLines + kEmptyUpperLines);
    image[256] = 16;
    image[257] = -1;
    EXPECT_EQ(promRawText(image, 1).substr(0, 9), "00 ? ? 2 ");
}

TEST(PromText, LimitsByCoin) {
    MarsWorld world("MS1000", 1);
    world.state.prom.segmentSelected.fill(true);
    world.setSampleSegment(7);
    world.setSampleSegment(13);
    for (const int half : {0, 1}) {
        const std::string text = kHeadings + (half == 0 ? emptyLimits('1') + sampleLimits('2')
                                                        : sampleLimits('3') + emptyLimits('4'));
        EXPECT_EQ(promLimitsText(kEnglish, world.state.limits.channelLimits, half), text);
        const ChannelLimits read =
            decodePromLimits(world.state.images.next, layoutOf("MS1000"), half);
        EXPECT_EQ(promLimitsText(kEnglish, read, half), text);
    }
}

TEST(PromText, TheViewsFollowModelAndSize) {
    struct Case {
        const char* model;
        int promSizeCode;
        const char* views;
    };
    for (const Case& c :
         {Case{"ME111", 0, "Data Addr 0-255|Limits Segs 1 & 2|"},
          Case{"MS1000", 1,
               "Data Addr 0-255|Limits Segs 1 & 2|Data Addr 256-511|Limits Segs 3 & 4|"},
          Case{"ME181", 0, "Data Addr 0-255|Limits & Values|"},
          Case{"ME181", 1, "Data Addr 0-255|Limits & Values|Data Addr 256-511|"}}) {
        const SessionState english;
        std::string listed;
        for (const PromView& view : promViews(layoutOf(c.model), c.promSizeCode)) {
            listed += english.msgText(view.caption) + "|";
            EXPECT_EQ(view.decoded, listed.ends_with("2|") || listed.ends_with("4|") ||
                                        listed.ends_with("Values|"));
            EXPECT_EQ(view.half == 1, listed.find("256-511") != std::string::npos);
        }
        EXPECT_EQ(listed, c.views) << c.model;
    }
}

}  // namespace
}  // namespace vantor
