#include "cc/CcLayout.h"

#include <gtest/gtest.h>

#include <set>

namespace vantor {
namespace {

int oldWord(int i) {
    return (i * 40503 + 12345) % 65536;
}

MechImage oldImage(const CcShape& shape) {
    MechImage image{};
    for (int i = 0; i < shape.words; ++i) image[i] = oldWord(i);
    return image;
}

CcChannelLimits sampleLimits(const CcShape& shape) {
    CcChannelLimits limits{};
    for (int c = 1; c <= shape.channels; ++c) {
        for (int p = 1; p <= shape.parameters; ++p) {
            limits[c][2 * p - 1] = (7 * c + 13 * p) % 120;
            limits[c][2 * p] = limits[c][2 * p - 1] + 60 + p;
        }
    }
    return limits;
}

/// The sample limits mapped onto the sample memory.
struct Mapped {
    explicit Mapped(std::string_view model)
        : shape(ccShape(model)), old(oldImage(shape)), limits(sampleLimits(shape)) {
        mapLimitsToCcImage(shape, old, limits, next);
        ccChecksum(shape, old, next);
    }
    CcShape shape;
    MechImage old{};
    CcChannelLimits limits;
    MechImage next{};
};

TEST(CcLayout, LimitsGoToTheWordsOfTheModelAndComeBack) {
    struct Case {
        const char* model;
        int firstLimitWord, lastLimitWord;
        int checkWord, check;
    };
    for (const Case& c : {Case{"C120", 10, 45, 127, 0x0E82}, Case{"220B", 9, 56, 127, 0x6882},
                          Case{"335", 9, 56, 127, 0x5882}, Case{"450", 16, 63, 127, 0x3782},
                          Case{"435", 16, 95, 127, 0x8882}, Case{"Sentinel", 0, 23, 63, 0x00BA}}) {
        const Mapped mapped(c.model);
        std::set<int> expected{c.checkWord};
        for (int i = c.firstLimitWord; i <= c.lastLimitWord; ++i) expected.insert(i);
        std::set<int> changed;
        for (int i = 0; i <= 512; ++i) {
            if (mapped.next[i] != mapped.old[i]) changed.insert(i);
        }
        EXPECT_EQ(changed, expected) << c.model;
        EXPECT_EQ(mapped.next[c.checkWord], c.check) << c.model;

        CcChannelLimits back{};
        for (int channel = 1; channel <= mapped.shape.channels; ++channel) {
            copyCcChannel(mapped.next, mapped.shape, channel, back, channel);
        }
        EXPECT_EQ(back, mapped.limits) << c.model;
    }
}

TEST(CcLayout, AWindowIsOneWordAndAMirroredOneTwo) {
    EXPECT_EQ(ccLimitWord(ccShape("435"), 3, 2), 34);
    EXPECT_EQ(ccLimitWord(ccShape("C120"), 12, 3), 45);
    EXPECT_EQ(ccLimitWord(ccShape("450"), 12, 4), 63);
    EXPECT_EQ(ccLimitWord(ccShape("Sentinel"), 8, 3), 23);
    Mapped mapped("220B");
    mapped.limits[1][1] = 0x12;
    mapped.limits[1][2] = 0x34;
    mapLimitsToCcImage(mapped.shape, mapped.old, mapped.limits, mapped.next);
    EXPECT_EQ(mapped.next[9], 0x3412);
    EXPECT_EQ(mapped.next[17], 0x3412);
    EXPECT_EQ(ccWindow(mapped.next, mapped.shape, 1, 1), (CcWindow{0x12, 0x34}));
}

TEST(CcLayout, LimitsAreClampedAndTheClampedOnesKept) {
    const CcShape shape = ccShape("335");
    CcChannelLimits limits{};
    limits[16][5] = -7;
    limits[16][6] = 300;
    limits[17][1] = 999;  // the model has no such channel
    MechImage next{};
    mapLimitsToCcImage(shape, oldImage(shape), limits, next);
    EXPECT_EQ(next[56], 0xFF00);
    EXPECT_EQ(limits[16][5], 0);
    EXPECT_EQ(limits[16][6], 255);
    EXPECT_EQ(limits[17][1], 999);
}

TEST(CcLayout, WhatAModelDoesNotHaveIsRefused) {
    CcChannelLimits limits{};
    EXPECT_THROW(copyCcChannel({}, ccShape("220B"), 9, limits, 1), std::out_of_range);
    EXPECT_THROW((void)ccLimitWord(ccShape("C120"), 1, 4), std::out_of_range);
    EXPECT_THROW((void)ccShape("436"), std::out_of_range);
    EXPECT_THROW((void)c450Route({}, 13), std::out_of_range);
    EXPECT_THROW((void)sentinelSortCode({}, 9), std::out_of_range);
}

TEST(CcLayout, TheCheckByteFollowsTheChangeOfTheBytes) {
    const CcShape shape = ccShape("435");
    MechImage old{};
    old[40] = 0x5510;
    old[127] = 0x08A7;
    MechImage next = old;
    next[40] = 0x5520;
    next[128] = 0x1234;  // beyond what the check covers
    next[127] = 0xFFFF;
    ccChecksum(shape, old, next);
    EXPECT_EQ(next[127], 0xF8A7);

    MechImage sentinel{};
    ccChecksum(ccShape("Sentinel"), old, sentinel);
    EXPECT_EQ(sentinel[63], 256) << "a sum of 0 leaves more than a byte holds";
    sentinel[0] = 0x0F01;
    EXPECT_EQ(sentinelCheckWord(sentinel), 0xF0);
}

TEST(CcOutputs, BothPlacesOfAC120) {
    C120OutputMap map;
    const int entries[] = {1, 2, 3, 4, 5, 6, 0, 0x3F - 32768, 9 - 32768, 0x1FF - 32768, 0, 1};
    for (int c = 1; c <= 12; ++c) map[c] = entries[c - 1];
    const int masks[] = {1, 2, 4, 8, 16, 32, 0, 0x3F, 9, 0xFF, 0, 1};
    struct Case {
        bool jaguar;
        int firstWord;
        std::vector<int> words;
        int check;
    };
    for (const Case& c :
         {Case{true, 109, {0x0201, 0x0804, 0x2010, 0x3F00, 0xFF09, 0x0100}, 0x2C82},
          Case{false, 82, {0x0100, 0x0402, 0x1008, 0x0020, 0x093F, 0x00FF, 0x0001}, 0xF382}}) {
        Mapped mapped("C120");
        MechImage expected = mapped.next;
        mapC120Outputs(map, c.jaguar, mapped.next);
        for (std::size_t i = 0; i < c.words.size(); ++i) {
            expected[c.firstWord + static_cast<int>(i)] = c.words[i];
        }
        EXPECT_EQ(mapped.next, expected) << c.firstWord;
        for (int channel = 1; channel <= 12; ++channel) {
            EXPECT_EQ(c120OutputMask(mapped.next, channel, c.jaguar), masks[channel - 1]);
        }
        ccChecksum(mapped.shape, mapped.old, mapped.next);
        EXPECT_EQ(mapped.next[127], c.check);
    }
    EXPECT_EQ(c120Output(32), 6);
    EXPECT_EQ(c120Output(0), 0);
    EXPECT_EQ(c120Output(64), -1);
    EXPECT_EQ(c120Output(3), -1);
}

TEST(CcRouting, ACoinsetsRoutingIsTheSameHoweverOftenItIsWritten) {
    struct Case {
        const char* model;
        std::vector<int> routing;
        std::vector<std::pair<int, int>> words;
    };
    std::vector<int> full;
    for (int i = 0; i < 16; ++i) full.push_back(0x3210 + i);
    full.insert(full.end(), {1, 0x1234, 0x5678, 0x9ABC, -0x2110, 7, 4});
    std::vector<int> plug = full;
    plug[16] = 0;
    const Case cases[] = {
        {"435",
         full,
         {{128, 0x3210},
          {143, 0x321F},
          {11, 0xFD96},
          {110, 0x1234},
          {113, 0xDEF0},
          {228, 0x0742},
          {204, 0x040D},
          {127, 0x6882}}},
        {"435", plug, {{11, 0xFC96}, {127, 0x6982}}},
        {"450",
         {0x3210, 0x7654, 0xBA98},
         {{121, 0x3210}, {122, 0x7654}, {123, 0xBA98}, {127, 0xE882}}},
        {"Sentinel",
         {0xC89A, 0xBD00},
         {{53, 0xF29C}, {54, 0xC89A}, {55, 0xBD00}, {56, 0xCF00}, {58, 0xD2D0}, {63, 0x87}}},
        {"335", full, {{127, 0x5882}, {128, 0}}}};
    for (const Case& c : cases) {
        Mapped mapped(c.model);
        CoinsetRouting routing;
        for (std::size_t i = 0; i < c.routing.size(); ++i) {
            routing[static_cast<int>(i)] = c.routing[i];
        }
        applyCoinsetRouting(mapped.shape, routing, mapped.old, mapped.next);
        for (const auto& [word, value] : c.words) {
            EXPECT_EQ(mapped.next[word], value) << c.model << " word " << word;
        }
        const MechImage once = mapped.next;
        applyCoinsetRouting(mapped.shape, routing, mapped.old, mapped.next);
        EXPECT_EQ(mapped.next, once) << c.model;
    }

    Mapped mapped("435");
    CoinsetRouting routing;
    routing[16] = 1;
    applyCoinsetRouting(mapped.shape, routing, mapped.old, mapped.next);
    routing[16] = 0;
    applyCoinsetRouting(mapped.shape, routing, mapped.old, mapped.next);
    EXPECT_EQ(mapped.next[11], 0xFC96) << "from memory, then from the plug again";
}

C435Settings sampleSettings() {
    C435Settings settings;
    const std::string letters = "DCBAabcd";
    for (std::size_t i = 0; i < 64; ++i) settings.paths.at(i) = letters[(i + i / 4) % 8];
    for (std::size_t i = 0; i < 16; ++i) {
        const auto code = i * 7 % 16;
        for (unsigned bit = 8; bit != 0; bit /= 2) {
            settings.codes.at(i) += (code & bit) != 0 ? '1' : '0';
        }
    }
    settings.fromMemory = true;
    settings.plugDefault = "c";
    return settings;
}

TEST(C435Settings, GoToTheirWordsAndComeBack) {
    const CcShape shape = ccShape("435");
    MechImage next{};
    ASSERT_EQ(writeC435Settings(shape, sampleSettings(), oldImage(shape), next), C435Fault::none);
    const std::pair<int, int> words[] = {
        {128, 0x3210}, {129, 0x0765}, {130, 0x5432},     {131, 0x2107},      {110, 0x5E70},
        {111, 0x1A3C}, {112, 0xD6F8}, {113, 0x92B4},     {11, 0xFD96},       {204, 0x060D},
        {228, 0x0942}, {127, 0x8D82}, {10, oldWord(10)}, {255, oldWord(255)}};
    for (const auto& [word, value] : words) EXPECT_EQ(next[word], value) << word;
    EXPECT_EQ(c435Settings(next), sampleSettings());
}

TEST(C435Settings, EveryRouteHasItsTwoCodes) {
    // Letter, code in the sort table, code in word 228.
    const std::tuple<char, int, int> routes[] = {{'A', 3, 2}, {'B', 2, 3}, {'C', 1, 4},
                                                 {'D', 0, 5}, {'d', 7, 6}, {'a', 4, 7},
                                                 {'b', 5, 8}, {'c', 6, 9}};
    const CcShape shape = ccShape("435");
    for (const auto& [letter, path, plug] : routes) {
        C435Settings settings = sampleSettings();
        settings.plugDefault = letter;
        settings.paths[0] = letter;
        MechImage next{};
        ASSERT_EQ(writeC435Settings(shape, settings, oldImage(shape), next), C435Fault::none);
        EXPECT_EQ(next[204] / 256, path) << letter;
        EXPECT_EQ(next[228] / 256, plug) << letter;
        EXPECT_EQ(next[128] % 16, path) << letter;
        EXPECT_EQ(c435Settings(next), settings) << letter;
    }
    MechImage strange{};
    strange[128] = 0x00F8;
    strange[204] = 0x0800;
    EXPECT_EQ(c435Settings(strange).paths[0], "?");
    EXPECT_EQ(c435Settings(strange).paths[1], "?");
    EXPECT_EQ(c435Settings(strange).plugDefault, "?");
}

TEST(C435Settings, ThePlugRouteIsTheFirstCharacterOfItsBox) {
    const CcShape shape = ccShape("435");
    C435Settings settings = sampleSettings();
    settings.plugDefault = "B x";
    MechImage next{};
    EXPECT_EQ(writeC435Settings(shape, settings, oldImage(shape), next), C435Fault::none);
    EXPECT_EQ(next[228], 0x0342);
    EXPECT_EQ(next[204] / 256, 2);
}

TEST(C435Settings, WhatCannotBeWrittenLeavesTheNewImageAlone) {
    const CcShape shape = ccShape("435");
    struct Case {
        std::string path, plug, code;
        C435Fault fault;
    };
    const Case cases[] = {
        {"e", "A", "0000", C435Fault::path},        {"", "A", "0000", C435Fault::path},
        {"AB", "A", "0000", C435Fault::path},       {"A", "?", "0000", C435Fault::path},
        {"A", "", "0000", C435Fault::path},         {"A", "A", "000", C435Fault::binaryCode},
        {"A", "A", "00000", C435Fault::binaryCode}, {"A", "A", "0020", C435Fault::binaryCode},
        {"A", "?", "000", C435Fault::path}};
    for (const Case& c : cases) {
        C435Settings settings = sampleSettings();
        settings.paths[63] = c.path;
        settings.plugDefault = c.plug;
        settings.codes[15] = c.code;
        MechImage next{};
        EXPECT_EQ(writeC435Settings(shape, settings, oldImage(shape), next), c.fault)
            << c.path << " " << c.plug << " " << c.code;
        EXPECT_EQ(next, MechImage{});
    }
}

}  // namespace
}  // namespace vantor
