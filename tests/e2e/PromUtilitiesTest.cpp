#include <QLineEdit>
#include <QPlainTextEdit>

#include "RoadFixture.h"
#include "catalogue/Text.h"

namespace vantor::test {
namespace {

using boxsim::PromKind;

/// From the limits window to the PROM utilities and back, in the middle of the road.
class PromUtilitiesOnTheRoad : public Road {
  protected:
    void toTheLimits(const std::string& model, const std::string& coinset, int words) {
        technician.promWords = words;
        technician.oldProm.assign(static_cast<std::size_t>(words), 0);
        openMain(model);
        openMeasurement();
        runCoinset(coinset);
        ASSERT_TRUE(visible("frmPROM"));
        EXPECT_TRUE(sent().ends_with("W"));
    }
    [[nodiscard]] std::string sent() {
        loop.advance(std::chrono::milliseconds(10));  // what was written last leaves the line
        const std::string all = box.sentByPc();
        box.clearTranscript();
        return all;
    }
    static std::string pane(const std::string& name) {
        return widget<QPlainTextEdit>("frmPROMdata." + name)->toPlainText().toStdString();
    }
    /// The line of the first coin, as the limits window shows it.
    static std::string firstCoin() {
        std::string line = "A1   ";
        for (int box = 0; box < 6; ++box) {
            const std::string name = "frmPROM.txtProm_" + std::to_string(box);
            line += padded(widget<QLineEdit>(name)->text().toInt(), 4) + " ";
        }
        return line;
    }
};

TEST_F(PromUtilitiesOnTheRoad, BackToTheLimitsWindowNothingHasChanged) {
    toTheLimits("ME111", "ME111-Dorin-2K.cst", 512);
    const PromState before = program->state().prom;
    ASSERT_TRUE(before.segmentSelected[2] && !before.segmentSelected[1]);
    widget<QLineEdit>("frmPROM.txtProm_0")->setText("1234");
    program->state().limits.limitsEdited = true;

    click("frmPROM.cmdPROMutilities");
    ASSERT_TRUE(visible("frmPROMdata"));
    EXPECT_FALSE(visible("frmPROM") || visible("frmMain"));
    for (const char* button : {"frmMain.cmdPROMutilities", "frmPROM.cmdPROMutilities"}) {
        EXPECT_FALSE(enabled(button)) << button;
    }
    EXPECT_EQ(sent(), "JJ");
    EXPECT_FALSE(enabled("frmPROMdata.cmbSize"));
    EXPECT_EQ(widget<QComboBox>("frmPROMdata.cmbSize")->currentText(), "2K");
    EXPECT_EQ(widget<QComboBox>("frmPROMdata.cmbDisplay")->count(), 4);
    EXPECT_EQ(pane("lblPROM2").substr(0, 5), "00 F ");

    click("frmPROMdata.cmdBye");
    EXPECT_EQ(sent(), "W");
    EXPECT_TRUE(visible("frmPROM"));
    EXPECT_FALSE(visible("frmMain") || visible("frmPROMdata"));
    EXPECT_TRUE(enabled("frmPROM.cmdPROMutilities") && enabled("frmMain.cmdPROMutilities"));
    EXPECT_EQ(program->state().prom.promSizeCode, before.promSizeCode);
    EXPECT_EQ(program->state().prom.segmentSelected, before.segmentSelected);
    EXPECT_EQ(widget<QLineEdit>("frmPROM.txtProm_0")->text(), "1234") << "edits stay pending";
    EXPECT_TRUE(program->state().limits.limitsEdited);

    // The road goes on where it was left.
    click("frmPROM.cmdBack1");
    ASSERT_TRUE(visible("frmCoinMeasure1"));
    click("frmCoinMeasure1.cmdBack");
    EXPECT_TRUE(visible("frmMain") && enabled("frmMain.cmdMars"));
}

TEST_F(PromUtilitiesOnTheRoad, WhatWasProgrammedIsReadBackBesideIt) {
    toTheLimits("ME181", "ME181-Dorin.cst", 512);
    click("frmPROM.cmdProgPROM");
    ASSERT_TRUE(technician.saw("Verify PROM OK"));
    const std::string coin = firstCoin();
    click("frmPROM.cmdPROMutilities");
    EXPECT_TRUE(sent().ends_with("JJ"));
    click("frmPROMdata.cmdReadPROM");
    EXPECT_EQ(sent(), "JEKW");
    for (const char* view : {"Data Addr 0-255", "Limits & Values", "Data Addr 256-511"}) {
        choose("frmPROMdata.cmbDisplay", view);
        EXPECT_EQ(pane("lblPROM"), pane("lblPROM2")) << view;
    }
    choose("frmPROMdata.cmbDisplay", "Limits & Values");
    EXPECT_NE(pane("lblPROM").find("\n" + coin + "\n"), std::string::npos) << coin;
    EXPECT_NE(pane("lblPROM").find("\n    L   "), std::string::npos);
}

}  // namespace
}  // namespace vantor::test
