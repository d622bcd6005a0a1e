#include <gtest/gtest.h>

#include "nri/NriText.h"

namespace vantor {
namespace {

struct Shown {
    MessageTable messages;
    MechSelection mech;
    NriFields fields;

    explicit Shown(std::string_view model) {
        mech.manufacturer = kNri;
        mech.mechType = model;
        applyMechType(mech, messages);
        fields.date = "1F0C15";
    }
    [[nodiscard]] std::string text(NriPage page) const {
        return nriText(page, nriShape(mech.mechType), fields, mech.info.paramNames, messages);
    }
    /// Line `number`, 1-based.
    [[nodiscard]] std::string line(NriPage page, int number) const {
        const std::string all = text(page);
        std::size_t from = 0;
        for (int i = 1; i < number; ++i) from = all.find("\r\n", from) + 2;
        return all.substr(from, all.find("\r\n", from) - from);
    }
    [[nodiscard]] std::string lastLines(NriPage page, int count) const {
        const std::string all = text(page);
        std::size_t from = all.size();
        for (int i = 0; i <= count; ++i) from = all.rfind("\r\n", from - 1);
        return all.substr(from + 2);
    }
};

TEST(NriText, ViewsOfEachModel) {
    for (const NriModel& model : nriModels()) {
        std::string captions;
        for (const NriView& view : nriViews(model)) captions += std::to_string(view.caption) + " ";
        const std::string expected = model.code == "G13-6000" || model.code == "G40-0000"
                                         ? "922 923 925 "
                                     : model.code == "G18-3000" ? "922 924 925 "
                                                                : "922 925 ";
        EXPECT_EQ(captions, expected) << model.code;
    }
}

TEST(NriText, LimitsOfSixAndOfFourParameters) {
    Shown six("G13-6000");
    six.fields.limits[12][1] = 7;
    six.fields.limits[12][12] = 255;
    EXPECT_EQ(
        six.line(NriPage::limits, 1),
        "           Parameter1  Parameter2  Parameter3  Parameter4  Parameter5  Parameter6  ");
    EXPECT_EQ(
        six.line(NriPage::limits, 13),
        "Coin 12      007 000     000 000     000 000     000 000     000 000     000 255    ");
    EXPECT_EQ(six.line(NriPage::limits, 14), "");

    Shown four("G10-4000");
    four.fields.limits[1][2] = 40;
    EXPECT_EQ(four.line(NriPage::limits, 1),
              "                           MNF         GRO         GRU         MHF         ");
    EXPECT_EQ(four.line(NriPage::limits, 2),
              "            Coin 01      000 040     000 000     000 000     000 000    ");
}

TEST(NriText, Maps) {
    Shown g40("G40-0000");
    g40.fields.parameterMap[1][1] = 10;
    g40.fields.parameterMap[1][6] = 3;
    for (int i = 0; i < 4; ++i) g40.fields.compensation[i] = 10 * i;
    EXPECT_EQ(g40.line(NriPage::map, 1),
              "           Parameter 1  Parameter 2  Parameter 3  Parameter 4  Parameter 5  "
              "Parameter 6");
    EXPECT_EQ(g40.line(NriPage::map, 2),
              "Coin 01        10           00           00           00           00           03");
    EXPECT_EQ(g40.lastLines(NriPage::map, 4),
              "              00=nfa  01=bod  02=hfp  03=lft  04=hfa  05=mas  06=gro  07=gru\r\n"
              "              08=slf  09=m09  10=lsa  11=lsb  12=m12  13=m13  14=m14  15=m15\r\n"
              "\r\n"
              "                    CP1H = 000   CP1L = 010   CP2H = 020   CP2L = 030\r\n");

    EXPECT_EQ(Shown("G13-6000").line(NriPage::map, 14),
              "              00=hfp  01=nfa  02=gro  03=hfa  04=nfp  05=hxn  06=hxa  07=snp");
    const Shown g18("G18-3000");
    EXPECT_EQ(g18.line(NriPage::map, 1),
              "       NFP          GRO          GRU          NFA          RCH          HFP");
    EXPECT_EQ(g18.line(NriPage::map, 14), "") << "no legend";
    EXPECT_EQ(Shown("G13-0000").text(NriPage::map), "");
}

TEST(NriText, OtherInformationWithOutputs) {
    Shown g40("G40-0000");
    g40.fields.outputCodes[1] = 0x4A;
    g40.fields.outputs[1] = 3 + 64;
    g40.fields.coinValues[1] = 15;
    g40.fields.valueMultiplier = 131;
    g40.fields.routeText[0] = "162738495A0B";
    EXPECT_EQ(g40.line(NriPage::other, 1),
              "           Output Hex   Inhibit No      Value    Pulses   Route");
    EXPECT_EQ(g40.line(NriPage::other, 2),
              "Coin 01       4A            3            0015      2       0110");
    EXPECT_EQ(g40.line(NriPage::other, 6).substr(55), "    0000") << "a letter is no digit";
    EXPECT_EQ(g40.line(NriPage::other, 8).substr(55), "    0001") << "channel 7: position 1";
    EXPECT_EQ(g40.line(NriPage::other, 9).substr(55), "    0010");
    EXPECT_EQ(g40.lastLines(NriPage::other, 2),
              "Value Multiplier: 131\r\nLast Adjustment:  31/12/21\r\n");

    Shown g18("G18-3000");
    g18.fields.routeText[0] = "020100000000";
    EXPECT_EQ(g18.line(NriPage::other, 2).substr(51), "1         1");
    EXPECT_EQ(g18.line(NriPage::other, 3).substr(51), "1         0");
    const Shown g13("G13-6000");
    EXPECT_EQ(g13.line(NriPage::other, 1),
              "           Output Hex   Inhibit No      Value    Pulses");
    EXPECT_EQ(g13.line(NriPage::other, 13), "Coin 12       00            0            0000      1");
}

TEST(NriText, OtherInformationWithTubes) {
    Shown five("G10-4000/5");
    five.fields.coinValues[8] = 200;
    five.fields.routeText = {"172737475767", "0512"};
    for (int tube = 13; tube <= 16; ++tube) five.fields.coinValues[tube] = tube;
    EXPECT_EQ(five.line(NriPage::other, 1), "                 Value       LMR     Map");
    EXPECT_EQ(five.line(NriPage::other, 9), "Coin 08           0200       010");
    EXPECT_EQ(five.line(NriPage::other, 11), "Coin 10           XXXX       100     12");
    EXPECT_EQ(five.line(NriPage::other, 10), "Coin 09           XXXX       011     5");
    const std::string tubes =
        "Lowest Value      0013\r\nLeft Tube Value   0014\r\n"
        "Mid Tube Value    0015\r\nRight Tube Value  0016\r\n"
        "Last Adjustment:  31/12/21\r\n";
    EXPECT_EQ(five.lastLines(NriPage::other, 5), tubes);

    Shown plain("G10-4000");
    plain.fields.coinValues = five.fields.coinValues;
    EXPECT_EQ(plain.line(NriPage::other, 1), "                 Value");
    EXPECT_EQ(plain.line(NriPage::other, 9), "Coin 08           0200");
    EXPECT_EQ(plain.lastLines(NriPage::other, 5), tubes);
}

TEST(NriText, OtherInformationOfThePlainModels) {
    Shown g13("G13-0000");
    g13.fields.coinValues[6] = 60;
    g13.fields.valueMultiplier = 5;
    g13.fields.date.clear();
    EXPECT_EQ(g13.line(NriPage::other, 1), "       Value");
    EXPECT_EQ(g13.line(NriPage::other, 7), "Coin 06 0060");
    EXPECT_EQ(g13.lastLines(NriPage::other, 2),
              "Value Multiplier: 005\r\nLast Adjustment:  00/00/00\r\n");
}

}  // namespace
}  // namespace vantor
