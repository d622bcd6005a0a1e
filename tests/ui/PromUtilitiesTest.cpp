#include <QPlainTextEdit>
#include <QPushButton>

#include "ProgramFixture.h"

namespace vantor::test {
namespace {

constexpr const char* kUtilities[] = {"frmMain.cmdPROMutilities", "frmPROM.cmdPROMutilities"};

/// The program behind its main window; a click returns when what it started is over.
class PromUtilitiesRoad : public ProgramTest {
  protected:
    void open(const std::string& model) {
        box.plugValidator(kMars, model);
        writeConfig("\" 1\",\"English\",\" 0\",\" 0\",\"\"\r\n");
        run();
        ASSERT_TRUE(visible("frmMain"));
        choose("frmMain.cmbMarsMech", model);
        box.clearTranscript();
    }
    /// A PROM whose cells count upwards, one step further in every line.
    void insertProm(int words) {
        std::vector<std::uint8_t> cells;
        for (int cell = 0; cell < words; ++cell) {
            cells.push_back(static_cast<std::uint8_t>((cell + cell / 16) % 16));
        }
        box.insertProm(boxsim::PromKind::e1, words, cells);
    }
    [[nodiscard]] std::string sent() {
        loop.advance(std::chrono::milliseconds(10));  // what was written last leaves the line
        const std::string all = box.sentByPc();
        box.clearTranscript();
        return all;
    }
    static std::string line(const std::string& pane, int number) {
        const QString text = widget<QPlainTextEdit>("frmPROMdata." + pane)->toPlainText();
        return text.split(QLatin1Char('\n')).at(number).toStdString();
    }
};

TEST_F(PromUtilitiesRoad, FromTheMainWindow) {
    insertProm(512);
    open("MS1000");
    click("frmMain.cmdPROMutilities");
    ASSERT_TRUE(visible("frmPROMdata"));
    EXPECT_FALSE(visible("frmMain"));
    for (const char* button : kUtilities) EXPECT_FALSE(enabled(button)) << button;
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

TEST_F(PromUtilitiesRoad, WhileThePromIsReadTheWindowWaits) {
    insertProm(256);
    open("ME111");
    click("frmMain.cmdPROMutilities");
    box.insertProm(boxsim::PromKind::none, 0);
    loop.callAfter(std::chrono::seconds(2), [] {
        EXPECT_FALSE(enabled("frmPROMdata.cmdReadPROM"));
        EXPECT_FALSE(enabled("frmPROMdata.cmbDisplay"));
        windowNamed("frmPROMdata")->close();
        click("frmPROMdata.cmdBye");
        EXPECT_TRUE(visible("frmPROMdata"));
    });
    hands.answer("Unable to Read PROM : timed out", QMessageBox::Ok);
    hands.start(kLimit, [this] { program->link().endProgram(); });
    click("frmPROMdata.cmdReadPROM");
    EXPECT_TRUE(hands.done());
    EXPECT_TRUE(enabled("frmPROMdata.cmdReadPROM"));
    EXPECT_EQ(line("lblPROM", 1), "10 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ");
    windowNamed("frmPROMdata")->close();
    EXPECT_TRUE(visible("frmMain"));
}

TEST_F(PromUtilitiesRoad, WithoutABoxTheMainWindowStays) {
    open("ME111");
    box.setSilent(true);
    hands.answer("No Response from Programmer Box", QMessageBox::Ok);
    hands.start(kLimit, [this] { program->link().endProgram(); });
    click("frmMain.cmdPROMutilities");
    EXPECT_TRUE(visible("frmMain"));
    EXPECT_FALSE(visible("frmPROMdata"));
    EXPECT_TRUE(enabled("frmMain.cmdPROMutilities"));
}

}  // namespace
}  // namespace vantor::test
