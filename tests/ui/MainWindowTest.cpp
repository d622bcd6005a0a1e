#include <QHelpEvent>

#include "ProgramFixture.h"

namespace vantor::test {
namespace {

const auto mainReady = [] { return visible("frmMain.tabManufacturer"); };
const auto panelShown = [] { return visible("frmMain.frmConfig"); };

class MainWindowTest : public ProgramTest {
  protected:
    MainWindowTest() { writeConfig("\" 1\",\"English\",\" 0\",\" 0\",\"\"\r\n"); }

    void whenReady(std::function<void()> act) {
        hands.when(
            "the main window", [this] { return program->idle(); }, std::move(act));
    }
};

TEST_F(MainWindowTest, WhileACheckRunsOnlyExitIsEnabledAndOtherClicksDoNothing) {
    whenReady([] { click("frmMain.cmdMars"); });
    hands.when(
        "the check", [this] { return program->actions().busy(); },
        [this] {
            for (const char* name : {"cmdMars", "cmdConfig", "cmbMarsMech"}) {
                EXPECT_FALSE(enabled(std::string("frmMain.") + name)) << name;
            }
            EXPECT_TRUE(enabled("frmMain.cmdExit"));
            click("frmMain.cmdConfig");
            EXPECT_FALSE(panelShown());
            click("frmMain.cmdExit");
        });
    hands.when("the end", [this] { return endings > 0; });
    run();
    EXPECT_EQ(endings, 1);
    EXPECT_FALSE(visible("frmCoinMeasure1"));
    EXPECT_FALSE(port.isOpen());
}

TEST_F(MainWindowTest, TheButtonsOfABoxSpeakTheLanguageOfItsText) {
    write("Deutsch.txt",
          "122, Keine Antwort\r\n859, R\xFC"
          "ck & weg\r\n");
    writeConfig("\" 1\",\"Deutsch\",\" 0\",\" 0\",\"\"\r\n");
    whenReady([this] {
        box.setSilent(true);
        click("frmMain.cmdMars");
    });
    hands.when(
        "the box", [] { return test::box("Keine Antwort") != nullptr; },
        [] {
            QMessageBox* open = test::box("Keine Antwort");
            EXPECT_EQ(open->button(QMessageBox::Cancel)->text().toStdString(),
                      "R\xC3\xBC"
                      "ck && weg");
            // A word that the language file has not keeps the toolkit's.
            EXPECT_EQ(open->button(QMessageBox::Ok)->text().remove(u'&'), u"OK");
            press(open, QMessageBox::Ok);
        });
    run();
}

TEST_F(MainWindowTest, ChangeConfigIsSavedOrForgotten) {
    write("Espanol.txt", "872, Salir\r\n850,Configuraci\xF3n\r\n");
    const std::string before = config();
    whenReady([] {
        click("frmMain.cmdConfig");
        EXPECT_TRUE(panelShown());
        EXPECT_FALSE(mainReady());
        choose("frmMain.ComboPort", "COM30");
        choose("frmMain.cmbLanguage", "Deutsch");
        click("frmMain.cmdCancConfig");
    });
    hands.when("the tabs", mainReady, [&] {
        EXPECT_EQ(config(), before);
        EXPECT_EQ(widget<QComboBox>("frmMain.ComboPort")->currentText(), "COM1");
        EXPECT_EQ(program->state().link.portNumber, 1);
        click("frmMain.cmdConfig");
        EXPECT_EQ(widget<QComboBox>("frmMain.ComboPort")->currentText(), "COM1");
        EXPECT_EQ(widget<QComboBox>("frmMain.cmbLanguage")->currentText(), "English");
        choose("frmMain.ComboPort", "COM30");
        choose("frmMain.cmbLanguage", "Espa\xC3\xB1ol");
        click("frmMain.cmdSaveConfig");
    });
    run();
    EXPECT_EQ(config(), "\" 30\",\"Espa\xF1ol\",\" 0\",\" 0\",\"\"\r\n");
    EXPECT_EQ(widget<QAbstractButton>("frmMain.cmdExit")->text(), "Salir");
    EXPECT_EQ(program->state().link.portNumber, 30);
    EXPECT_TRUE(port.isOpen());
}

TEST_F(MainWindowTest, ThePortListSaysWhatStandsBehindAPort) {
    run();
    auto* list = widget<QComboBox>("frmMain.ComboPort");
    ASSERT_EQ(list->count(), 30);
    QHelpEvent asked(QEvent::ToolTip, {}, {});
    QCoreApplication::sendEvent(list, &asked);
    EXPECT_EQ(list->itemText(29), "COM30");
    EXPECT_EQ(list->itemData(0, Qt::ToolTipRole).toString(),
              "COM1: /dev/fake1, present (Bench adapter)");
    EXPECT_EQ(list->itemData(1, Qt::ToolTipRole).toString(), "COM2: /dev/fake2, not there now");
    EXPECT_EQ(list->toolTip(), "COM1: /dev/fake1, present (Bench adapter)");
}

}  // namespace
}  // namespace vantor::test
