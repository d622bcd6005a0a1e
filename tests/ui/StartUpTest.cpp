#include "ProgramFixture.h"

namespace vantor::test {
namespace {

constexpr const char* kPlainConfig = "\" 1\",\"English\",\" 0\",\" 0\",\"\"\r\n";

const auto panelShown = [] { return visible("frmMain.frmConfig"); };
const auto mainReady = [] { return visible("frmMain.tabManufacturer"); };
const auto retryShown = [] { return visible("frmOpening.cmdRetry"); };

class StartUpTest : public ProgramTest {};

TEST_F(StartUpTest, TheFirstRunAsksForTheConfigurationBeforeItTouchesThePort) {
    hands.when("the panel", panelShown, [this] {
        EXPECT_FALSE(enabled("frmMain.cmdCancConfig"));
        EXPECT_FALSE(enabled("frmMain.cmdConfig"));
        EXPECT_FALSE(enabled("frmMain.cmdMars"));
        EXPECT_TRUE(enabled("frmMain.cmdExit"));
        EXPECT_FALSE(port.isOpen());
        EXPECT_EQ(box.sentByPc(), "");
        EXPECT_EQ(config(), "(none)");
        click("frmMain.cmdSaveConfig");
    });
    run();
    EXPECT_TRUE(mainReady());
    EXPECT_EQ(config(), kPlainConfig);
    EXPECT_TRUE(enabled("frmMain.cmdCancConfig"));
    EXPECT_TRUE(enabled("frmMain.cmdConfig"));
}

TEST_F(StartUpTest, AConfigurationThatCannotBeWrittenIsToldAndTheProgramGoesOn) {
    missingFolder = true;
    hands.when("the panel", panelShown, [] { click("frmMain.cmdSaveConfig"); });
    hands.answer("832 Error Writing Config Default File", QMessageBox::Ok);
    run();
    EXPECT_TRUE(mainReady());
    EXPECT_EQ(program->state().link.portNumber, 1);
}

TEST_F(StartUpTest, ASilentBoxLeavesRetryAndCancelAndNothingElse) {
    writeConfig(kPlainConfig);
    box.setSilent(true);
    hands.when("Retry", retryShown, [this] {
        EXPECT_EQ(label("frmOpening.LabelStatus"),
                  "COM port OPEN :\nNo Response from Programmer Box");
        EXPECT_TRUE(visible("frmOpening.cmdCancel"));
        EXPECT_FALSE(visible("frmMain"));
        click("frmOpening.cmdRetry");
    });
    hands.when("the box silent again", retryShown, [this] {
        EXPECT_FALSE(visible("frmMain"));
        EXPECT_FALSE(program->idle());
        box.setSilent(false);
        click("frmOpening.cmdRetry");
    });
    // Retry shows the window at once; the last check is still to come.
    hands.when("the main window", mainReady, [this] {
        EXPECT_FALSE(enabled("frmMain.cmdMars"));
        EXPECT_TRUE(enabled("frmMain.cmdExit"));
        EXPECT_FALSE(program->idle());
    });
    run();
    EXPECT_TRUE(enabled("frmMain.cmdMars"));
    EXPECT_FALSE(visible("frmOpening"));
    EXPECT_EQ(label("frmOpening.LabelStatus"), "COM port OPEN :\nProgrammer Box OK");
}

TEST_F(StartUpTest, AnotherPortIsStoredAtOnceAndTriedByRetry) {
    writeConfig("\" 1\",\"English\",\" 7\",\"x\",\"\"\r\n");
    box.setSilent(true);
    hands.when("Retry", retryShown, [this] {
        EXPECT_TRUE(port.isOpen());
        choose("frmOpening.ComboPort", "COM2");
        EXPECT_FALSE(port.isOpen());
        EXPECT_EQ(config(), "\" 2\",\"English\",\" 7\",\"x\",\"\"\r\n");
        click("frmOpening.cmdRetry");
    });
    hands.when("Retry for the other port", retryShown, [this] {
        EXPECT_EQ(label("frmOpening.LabelStatus"), "COM port NOT OPEN :\nSelect another Port");
        EXPECT_EQ(widget<QComboBox>("frmOpening.ComboPort")->currentText(), "COM2");
        box.setSilent(false);
        choose("frmOpening.ComboPort", "COM1");
        click("frmOpening.cmdRetry");
    });
    run();
    EXPECT_TRUE(mainReady());
    EXPECT_EQ(widget<QComboBox>("frmMain.ComboPort")->currentText(), "COM1");
}

TEST_F(StartUpTest, ASecondCopyEndsBeforeAnyPortIsTouched) {
    writeConfig(kPlainConfig);
    guard.only = false;
    hands.answer("Vantor Programmer is already Running", QMessageBox::Ok);
    run();
    EXPECT_EQ(endings, 1);
    EXPECT_EQ(box.sentByPc(), "");
    EXPECT_FALSE(port.isOpen());
}

TEST_F(StartUpTest, AMissingLanguageFileIsToldAndEnglishIsUsed) {
    writeConfig("\" 1\",\"Francais\",\" 0\",\" 0\",\"\"\r\n");
    hands.answer("Invalid Language Filename", QMessageBox::Ok);
    run();
    EXPECT_TRUE(mainReady());
    EXPECT_EQ(program->state().messages.language, "Francais");
    EXPECT_EQ(widget<QComboBox>("frmMain.cmbLanguage")->currentText(), "Francais");
    EXPECT_EQ(widget<QAbstractButton>("frmMain.cmdExit")->text(), "Exit");
}

/// Where in the start-up the program is left, and how.
struct WayOut {
    const char* name;
    const char* config;
    bool silent;
    std::function<bool()> there;
    std::function<void()> leave;
};

class WayOutTest : public ProgramTest, public ::testing::WithParamInterface<WayOut> {};

TEST_P(WayOutTest, EndsOnceWithThePortClosed) {
    const WayOut& way = GetParam();
    if (way.config != nullptr) writeConfig(way.config);
    box.setSilent(way.silent);
    hands.when(way.name, way.there, way.leave);
    hands.when("the end", [this] { return endings > 0; });
    run();
    loop.advance(std::chrono::seconds(5));
    EXPECT_EQ(endings, 1);
    EXPECT_TRUE(program->ended());
    EXPECT_FALSE(port.isOpen());
    for (QWidget* window : QApplication::topLevelWidgets()) {
        EXPECT_FALSE(window->isVisible()) << window->objectName().toStdString();
    }
}

const auto checking = [] { return visible("frmOpening") && !visible("frmOpening.cmdRetry"); };
// Both windows are hidden while the box is checked once more.
const auto lastCheck = [] {
    return !visible("frmOpening") && !visible("frmMain") &&
           label("frmOpening.LabelStatus") == "COM port OPEN :\nProgrammer Box OK";
};
const auto exitMain = [] { click("frmMain.cmdExit"); };
const auto closeMain = [] { widget("frmMain")->close(); };
const auto cancelOpening = [] { click("frmOpening.cmdCancel"); };
const auto closeOpening = [] { widget("frmOpening")->close(); };

INSTANTIATE_TEST_SUITE_P(
    StartUp, WayOutTest,
    ::testing::Values(WayOut{"ExitAtTheFirstRun", nullptr, false, panelShown, exitMain},
                      WayOut{"XAtTheFirstRun", nullptr, false, panelShown, closeMain},
                      WayOut{"CancelDuringTheCheck", kPlainConfig, true, checking, cancelOpening},
                      WayOut{"XDuringTheCheck", kPlainConfig, true, checking, closeOpening},
                      WayOut{"CancelAfterTheCheck", kPlainConfig, true, retryShown, cancelOpening},
                      WayOut{"XAfterTheCheck", kPlainConfig, true, retryShown, closeOpening},
                      WayOut{"ExitDuringTheLastCheck", kPlainConfig, false, lastCheck, exitMain},
                      WayOut{"ExitOfTheMainWindow", kPlainConfig, false, mainReady, exitMain},
                      WayOut{"XOfTheMainWindow", kPlainConfig, false, mainReady, closeMain}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(StartUpTest, CancelDuringARetryEndsToo) {
    writeConfig(kPlainConfig);
    box.setSilent(true);
    hands.when("Retry", retryShown, [] { click("frmOpening.cmdRetry"); });
    hands.when("the second check", checking, cancelOpening);
    run();
    EXPECT_EQ(endings, 1);
}

}  // namespace
}  // namespace vantor::test
