#include "cc/EepromText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "catalogue/MessageTable.h"

namespace vantor {
namespace {

const MessageTable kEnglish;
std::string english(int number) {
    return kEnglish.msgText(number);
}

/// Line `number` (0-based) of a text whose lines are separated by CR LF.
std::string line(const std::string& text, int number) {
    std::size_t at = 0;
    for (int i = 0; i < number; ++i) {
        at = text.find("\r\n", at);
        if (at == std::string::npos) return "(no such line)";
        at += 2;
    }
    return text.substr(at, text.find("\r\n", at) - at);
}

std::ptrdiff_t lines(const std::string& text) {
    return std::ranges::count(text, '\n') + 1;
}

TEST(EepromText, WordsStandSixteenToALineBehindTheirAddress) {
    MechImage image{};
    for (int i = 0; i < 256; ++i) image[i] = 0x0F00 + 257 * i % 65536;
    const std::string c435 = eepromWordsText(ccShape("435"), image);
    EXPECT_EQ(
        line(c435, 0),
        "  00 0F00 1001 1102 1203 1304 1405 1506 1607 1708 1809 190A 1A0B 1B0C 1C0D 1D0E 1E0F ");
    EXPECT_EQ(line(c435, 1).substr(0, 16), "   10 1F10 2011 ");
    EXPECT_EQ(line(c435, 15).substr(0, 11), "   F0 FFF0 ");
    const std::string c120 = eepromWordsText(ccShape("C120"), image);
    EXPECT_EQ(line(c120, 7).substr(0, 11), "   70 7F70 ");
    const std::string sentinel = eepromWordsText(ccShape("Sentinel"), image);
    EXPECT_TRUE(sentinel.ends_with("4E3F "));
}

TEST(EepromText, LimitsStandUnderTheirParameters) {
    struct Case {
        const char* model;
        int word;  ///< of the last parameter of channel `channel`
        int channel, lines;
        std::string head, row;
    };
    const std::string names3 = "P1          Second      A name longer than its column";
    for (const Case& c : {
             Case{"C120", 45, 12, 13, "                            " + names3,
                  "                  Coin 12      000 000     000 000     007 254    "},
             Case{"450", 63, 12, 13, "                      " + names3 + "4           ",
                  "            Coin 12      000 000     000 000     000 000     007 254    "},
             Case{"435", 95, 16, 17, "                " + names3 + "4           5           ",
                  "      Coin 16      000 000     000 000     000 000     000 000     007 254    "},
             Case{"Sentinel", 23, 8, 9, "                            " + names3,
                  "                  Coin 08      000 000     000 000     007 254    "},
         }) {
        const CcShape shape = ccShape(c.model);
        MechImage image{};
        image[c.word] = 254 * 256 + 7;
        const std::vector<std::string> names{"P1", "Second", "A name longer than its column", "4",
                                             "5"};
        const std::string text = eepromLimitsText(
            shape, image, std::span(names).first(static_cast<std::size_t>(shape.parameters)),
            english);
        EXPECT_EQ(lines(text), c.lines) << c.model;
        EXPECT_EQ(line(text, 0), c.head) << c.model;
        EXPECT_EQ(line(text, c.channel), c.row) << c.model;
    }
}

TEST(EepromText, OutputMapOfAC120) {
    MechImage image{};
    image[109] = 0x0100;  // the first layout: channels 1 and 2
    image[110] = 0x2003;  // channels 3 and 4
    image[82] = 0x0400;   // the second layout: channel 1 in the high byte
    image[88] = 0x00FF;   // channel 12 in the low byte
    const std::string text = eepromOtherText(ccShape("C120"), image, english);
    EXPECT_EQ(line(text, 0), "                                     C120 Output Mapping");
    EXPECT_EQ(line(text, 2),
              "                                    Jaguar C120 Output     New C120 Output");
    EXPECT_EQ(line(text, 3), "                    Coin 01               None                 3");
    EXPECT_EQ(line(text, 4), "                    Coin 02               1                    None");
    EXPECT_EQ(line(text, 5), "                    Coin 03               Hex 03               None");
    EXPECT_EQ(line(text, 6), "                    Coin 04               6                    None");
    EXPECT_EQ(line(text, 14),
              "                    Coin 12               None                 Hex FF");
}

TEST(EepromText, RoutingOfThe450AndTheSentinel) {
    MechImage image{};
    image[121] = 0x3210;
    image[123] = 0xF000;
    const std::string c450 = eepromOtherText(ccShape("450"), image, english);
    EXPECT_EQ(line(c450, 0), "                                     C450 Routing");
    EXPECT_EQ(line(c450, 1), "                              Coin 01          Route A");
    EXPECT_EQ(line(c450, 4), "                              Coin 04          Route D");
    EXPECT_EQ(line(c450, 12), "                              Coin 12          Route P");

    image[54] = 0xC80B;
    image[55] = 0x7D9A;
    const std::string sentinel = eepromOtherText(ccShape("Sentinel"), image, english);
    EXPECT_EQ(line(sentinel, 0), "                                     Sentinel Routing");
    const char* routes[] = {"AB", "A", "No Sort", "D", "", "CD", "C", "B"};
    for (int channel = 1; channel <= 8; ++channel) {
        EXPECT_EQ(line(sentinel, channel), "                              Coin 0" +
                                               std::to_string(channel) +
                                               "          Route : " + routes[channel - 1]);
    }
}

}  // namespace
}  // namespace vantor
