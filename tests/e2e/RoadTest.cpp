#include <gtest/gtest.h>

#include <ostream>

#include "RoadFixture.h"

namespace vantor::test {
namespace {

using boxsim::PromKind;

/// Writes a segment as the mech reads it, from what the window shows: an encoder of the test's
/// own, so that a mistake in the program's shows.
void expectSegment(const std::vector<std::uint8_t>& cells, std::size_t base,
                   const std::string& reference) {
    ASSERT_GE(cells.size(), base + 128);
    EXPECT_EQ(cells[base], 15);
    for (int coin = 0; coin < 6; ++coin) {
        for (int column = 1; column <= 6; ++column) {
            const std::size_t at = base + 1 +
                                   static_cast<std::size_t>(36 * ((column - 1) / 2) + 6 * coin +
                                                            3 * ((column - 1) % 2));
            const int value = cells[at] + 16 * cells[at + 1] + 256 * cells[at + 2];
            EXPECT_EQ(value, shownLimit(6 * coin + column - 1))
                << "coin " << coin << " column " << column;
        }
    }
    std::string text;
    for (std::size_t at = base + 112; at < base + 128; at += 2) {
        text += static_cast<char>(16 * cells[at] + cells[at + 1]);
    }
    EXPECT_EQ(text, reference);
}

struct Case {
    std::string model, coinset;
    PromKind kind;
    int words;
    std::size_t base;  ///< of the block that is shown first
    std::string reference;
};

void PrintTo(const Case& road, std::ostream* out) {
    *out << road.coinset;
}

class EveryModel : public Road, public ::testing::WithParamInterface<Case> {};

TEST_P(EveryModel, IsProgrammedFromItsCoinset) {
    const Case& road = GetParam();
    technician.prom = road.kind;
    technician.promWords = road.words;
    technician.oldProm.assign(static_cast<std::size_t>(road.words), 3);
    openMain(road.model);
    openMeasurement();
    widget<QAbstractButton>("frmCoinMeasure1.chkLog")->setChecked(true);
    technician.log = folder() / "results.old.txt";
    runCoinset(road.coinset);
    ASSERT_TRUE(visible("frmPROM")) << last();
    EXPECT_TRUE(technician.saw("Data Gathering Complete"));
    EXPECT_FALSE(technician.saw("Error"));

    if (road.kind == PromKind::bipolar) click("frmPROM.optBipolarPROM");
    click("frmPROM.cmdProgPROM");
    EXPECT_TRUE(technician.saw("Verify|Verify PROM OK"));
    expectSegment(cells(), road.base, road.reference);
    expectCommandMode();

    const std::string log = readFile(folder() / "results.csv").value_or("");
    EXPECT_NE(log.find("\"Idles\","), std::string::npos);
    EXPECT_NE(log.find("\"SD Upper\","), std::string::npos);

    click("frmPROM.cmdBack1");
    ASSERT_TRUE(visible("frmCoinMeasure1"));
    click("frmCoinMeasure1.cmdBack");
    EXPECT_TRUE(visible("frmMain"));
    EXPECT_TRUE(enabled("frmMain.cmdMars"));
}

INSTANTIATE_TEST_SUITE_P(
    Mars, EveryModel,
    ::testing::Values(Case{"ME111", "ME111-Dorin.cst", PromKind::e1, 256, 0, "DOR111.0"},
                      Case{"ME111", "ME111-Dorin.cst", PromKind::bipolar, 256, 0, "DOR111.0"},
                      Case{"ME111", "ME111-Dorin-2K.cst", PromKind::e1, 512, 0, "DOR211.2"},
                      Case{"ME181", "ME181-Dorin.cst", PromKind::e1, 512, 128, "DOR181.0"},
                      Case{"ME181", "ME181-Dorin.cst", PromKind::bipolar, 512, 128, "DOR181.0"},
                      Case{"MS1000", "MS1000-Dorin.cst", PromKind::bipolar, 256, 0, "DOR102.1"},
                      Case{"MS111", "MS111-Dorin.cst", PromKind::e1, 256, 0, "DOR311.1"},
                      Case{"MS130B1", "MS130B1-Dorin.cst", PromKind::bipolar, 256, 0, "DOR131.0"},
                      Case{"MS1400", "MS1400-Dorin.cst", PromKind::e1, 512, 0, "DOR141.0"},
                      Case{"ME111", "QZ-Tokens-ME111.cst", PromKind::e1, 256, 128, "TOKEN0.9"}),
    [](const auto& row) {
        std::string name = row.param.coinset + (row.param.kind == PromKind::e1 ? "E1" : "Bipolar");
        std::erase_if(name, [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); });
        return name;
    });

}  // namespace
}  // namespace vantor::test
