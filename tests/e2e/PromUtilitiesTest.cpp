#include <QLineEdit>
#include <QPlainTextEdit>

#include "RoadFixture.h"

namespace vantor::test {
namespace {

using boxsim::PromKind;

/// The PROM utilities, from the main window and from the limits window.
class PromUtilities : public Road {
  protected:
    [[nodiscard]] std::string sent() {
        letTheLineClear();
        const std::string all = box.sentByPc();
        box.clearTranscript();
        return all;
    }
    static std::string line(const std::string& name, int number) {
        const QString text = widget<QPlainTextEdit>("frmPROMdata." + name)->toPlainText();
        return text.split(QLatin1Char('\n')).at(number).toStdString();
    }
    /// A PROM whose cells count upwards, one step further in every line.
    void insertProm(int words) {
        std::vector<std::uint8_t> cells;
        for (int cell = 0; cell < words; ++cell) {
            cells.push_back(static_cast<std::uint8_t>((cell + cell / 16) % 16));
        }
        box.insertProm(PromKind::e1, words, cells);
    }
};

TEST_F(PromUtilities, FromTheMainWindow) {
    insertProm(512);
    openMain("MS1000");
    box.clearTranscript();
    click("frmMain.cmdPROMutilities");
    ASSERT_TRUE(visible("frmPROMdata"));
    EXPECT_FALSE(visible("frmMain"));
    EXPECT_FALSE(enabled("frmMain.cmdPROMutilities") || enabled("frmPROM.cmdPROMutilities"));
    EXPECT_EQ(sent(), std::string(50, '\x1B') + "MJSWJEAW");
    EXPECT_EQ(line("lblPROM", 1), "10 1 2 3 4 5 6 7 8 9 A B C D E F 0 ");
    EXPECT_EQ(line("lblPROM2", 15), "F0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ");

    for (const bool selected : program->state().prom.segmentSelected) EXPECT_TRUE(selected);
    choose("frmPROMdata.cmbSize", "2K");
    click("frmPROMdata.cmdReadPROM");
    EXPECT_EQ(sent(), "JEKW");
    choose("frmPROMdata.cmbDisplay", "Data Addr 256-511");
    EXPECT_EQ(line("lblPROM", 0), "00 0 1 2 3 4 5 6 7 8 9 A B C D E F ");
    EXPECT_EQ(line("lblPROM", 15), "F0 F 0 1 2 3 4 5 6 7 8 9 A B C D E ");
    choose("frmPROMdata.cmbDisplay", "Limits Segs 3 & 4");
    // Cells 257 to 262 hold 1 to 6.
    EXPECT_EQ(line("lblPROM", 2).substr(0, 15), "A3   0801 1620 ");

    choose("frmPROMdata.cmbSize", "1K");
    EXPECT_EQ(widget<QComboBox>("frmPROMdata.cmbDisplay")->count(), 2);
    EXPECT_EQ(line("lblPROM", 1), "10 1 2 3 4 5 6 7 8 9 A B C D E F 0 ");

    click("frmPROMdata.cmdBye");
    EXPECT_EQ(sent(), "W");
    EXPECT_FALSE(visible("frmPROMdata") || visible("frmPROM"));
    EXPECT_TRUE(visible("frmMain"));
    EXPECT_TRUE(enabled("frmMain.cmdPROMutilities") && enabled("frmMain.cmdMars"));
    EXPECT_EQ(program->state().prom.promSizeCode, 0);
}

TEST_F(PromUtilities, BackToTheLimitsWindowNothingHasChanged) {
    technician.promWords = 512;
    technician.oldProm.assign(512, 0);
    openMain("ME111");
    openMeasurement();
    runCoinset("ME111-Dorin-2K.cst");
    ASSERT_TRUE(visible("frmPROM")) << last();
    EXPECT_TRUE(sent().ends_with("W"));
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
    EXPECT_TRUE(line("lblPROM2", 0).starts_with("00 F "));

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

}  // namespace
}  // namespace vantor::test
