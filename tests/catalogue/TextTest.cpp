#include "catalogue/Text.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(Text, LenientNumbersStopAtTheFirstStrangeCharacter) {
    struct Row {
        std::string_view text;
        double value;
    };
    for (const Row& row : {Row{" 12", 12}, Row{"-7 ", -7}, Row{"+3", 3}, Row{"12.5mm", 12.5},
                           Row{"", 0}, Row{"abc", 0}, Row{"inf", 0}, Row{"nan", 0}, Row{"--5", 0},
                           Row{"&hFF", 255}, Row{"&h", 0}, Row{"&hXY", 0}, Row{"1e3", 1000},
                           Row{"1e999", 0}, Row{".5", 0.5}, Row{"3,4", 3}}) {
        EXPECT_EQ(lenientNumber(row.text), row.value) << row.text;
    }
    EXPECT_EQ(lenientInteger("12.5"), 12);
    EXPECT_EQ(lenientInteger("13.5"), 14);
    EXPECT_EQ(lenientInteger("9999999999"), 2147483647);
}

TEST(Text, OneDecimalRoundsHalvesAwayFromZeroOnTheShortestDecimal) {
    struct Row {
        float value;
        std::string_view text;
    };
    for (const Row& row : {Row{0, "0.0"}, Row{0.25F, "0.3"}, Row{0.05F, "0.1"},
                           Row{99.95F, "100.0"}, Row{1203.449F, "1203.4"}, Row{-0.05F, "-0.1"},
                           Row{-0.04F, "0.0"}, Row{9.96F, "10.0"}, Row{1e9F, "1000000000.0"}}) {
        EXPECT_EQ(oneDecimal(row.value), row.text) << row.value;
    }
}

TEST(Text, RoundingToIntegersTakesHalvesToEven) {
    EXPECT_EQ(roundHalfEven(0.5), 0);
    EXPECT_EQ(roundHalfEven(1.5), 2);
    EXPECT_EQ(roundHalfEven(-0.5), 0);
    EXPECT_EQ(roundHalfEven(-1.5), -2);
    EXPECT_EQ(roundHalfEven(2.4999), 2);
    EXPECT_EQ(roundHalfEven(-1e300), -2147483647 - 1);
}

TEST(Text, FieldsAreReadAtOneBasedPositionsWithoutLeavingTheText) {
    EXPECT_EQ(field("C00030", 2, 5), "00030");
    EXPECT_EQ(field("C00", 2, 5), "00");
    EXPECT_EQ(field("C", 2, 5), "");
    EXPECT_EQ(field("", 1, 1), "");
}

TEST(Text, CommaFieldsDropQuotesThatProtectNothing) {
    FieldReader reader("CD,\"a, b\", x ,");
    EXPECT_EQ(reader.next(), "CD");
    EXPECT_EQ(reader.next(), "a");
    EXPECT_EQ(reader.next(), " b");
    EXPECT_EQ(reader.next(), " x ");
    EXPECT_FALSE(reader.atEnd());
    EXPECT_EQ(reader.next(), "");
    EXPECT_TRUE(reader.atEnd());
    EXPECT_EQ(reader.next(), "");

    EXPECT_EQ(quotedFields("\"Mars.ME111\", Town, \"a, b\",\" 3\""),
              (std::vector<std::string>{"Mars.ME111", "Town", "a, b", " 3"}));
    EXPECT_EQ(quotedFields("\"open, to the end"), (std::vector<std::string>{"open, to the end"}));
}

TEST(Text, LinesEndInCrLfOrLf) {
    EXPECT_EQ(splitLines("a\r\nb\n\nc"), (std::vector<std::string_view>{"a", "b", "", "c"}));
    EXPECT_TRUE(splitLines("").empty());
}

TEST(Text, EncodingsMeetInWindows1252) {
    EXPECT_EQ(fromFileBytes("Espa\xC3\xB1ol"), "Espa\xF1ol");
    EXPECT_EQ(fromFileBytes("Espa\xF1ol"), "Espa\xF1ol");
    EXPECT_EQ(fromFileBytes("\xEF\xBB\xBFplain"), "plain");
    EXPECT_EQ(fromFileBytes("cut \xE2\x82"), "cut \xE2\x82");
    EXPECT_EQ(toUtf8("\x80 \x9F \xFC"), "\xE2\x82\xAC \xC5\xB8 \xC3\xBC");
    EXPECT_EQ(fromUtf8("\xE2\x82\xAC\xE4\xB8\xAD"), "\x80?");
    for (int code = 0; code < 256; ++code) {
        const std::string one(1, static_cast<char>(static_cast<unsigned char>(code)));
        EXPECT_EQ(fromUtf8(toUtf8(one)), one) << code;
    }
}

}  // namespace
}  // namespace vantor
