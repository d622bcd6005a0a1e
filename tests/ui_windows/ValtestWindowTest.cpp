#include <QRadioButton>

#include "WindowsWorld.h"
#include "valtest/ValidatorTest.h"
#include "valtest/frmValtest.h"

namespace vantor::test {
namespace {

using W = WindowsWorld;

struct NoCallers final : ValtestCallers {
    bool inMain = true;
    void hideMainWindow() override { inMain = false; }
    void hideLimitsWindow() override {}
    void returnToMainWindow() override { inMain = true; }
    void returnToLimitsWindow() override {}
    void enableValidatorTestButtons(bool) override {}
};

class ValtestWindowTest : public testing::Test {
  protected:
    ValtestWindowTest() {
        window.setTest(test);
        window.setMiddle(main);
        main.setGeometry(200, 100, 500, 400);
        w.base.port.answer("*", "D\r");
        w.state.box.boxVersion = "V1.95";
        w.state.box.mechPresent = true;
    }
    void open(std::string_view maker, std::string_view model) {
        w.base.select(maker, model);
        test.openFromMain(808);
        QApplication::processEvents();
    }
    [[nodiscard]] std::string captions() {
        std::string text;
        for (int i = 0; i < kTestPositions; ++i) {
            const std::string index = std::to_string(i);
            if (!W::control(window, "lblCoin_" + index)->isVisible()) continue;
            EXPECT_TRUE(W::control(window, "shpCoin_" + index)->isVisible()) << i;
            EXPECT_TRUE(W::control(window, "lblCount_" + index)->isVisible()) << i;
            text += W::label(window, "lblCoin_" + index) + "|";
        }
        return text;
    }
    [[nodiscard]] std::string colour(const std::string& shape) {
        return fromQt(W::control(window, shape)->palette().color(QPalette::Window).name());
    }
    [[nodiscard]] int left(const std::string& name) {
        return W::control(window, name)->mapTo(&window, QPoint()).x();
    }

    WindowsWorld w;
    QWidget main;
    FrmValtest window{w.state, w.actions};
    NoCallers callers;
    ValidatorTest test{{.state = w.state,
                        .link = w.base.link,
                        .check = w.base.check,
                        .families = w.base.families,
                        .receiver = w.base.receiver,
                        .prompts = w.base.prompts,
                        .errors = w.base.errors,
                        .window = window,
                        .callers = callers}};
};

TEST_F(ValtestWindowTest, AMarsMechShowsItsCoinsAndRejected) {
    open(kMars, "ME111");
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(fromQt(window.windowTitle()), "Validator Test");
    EXPECT_EQ(W::label(window, "lblType"), "Mech Type");
    EXPECT_EQ(W::label(window, "lblmechType"), "ME111");
    EXPECT_EQ(W::label(window, "lblCountText"), "Coin Count");
    EXPECT_EQ(W::caption(window, "cmdClearCount"), "Clear Counts");
    EXPECT_EQ(W::caption(window, "cmdBack"), "Back to Main Menu");
    EXPECT_EQ(captions(), "Coin A|Coin B|Coin C|Coin D|Coin E|Coin F|Rejected|");
    for (const char* hidden : {"cmbG40", "frmOptions", "frmBits", "lblCountText2"}) {
        EXPECT_FALSE(W::control(window, hidden)->isVisible()) << hidden;
    }
    const QPoint off = window.frameGeometry().center() - main.frameGeometry().center();
    EXPECT_LE(off.manhattanLength(), 2);

    W::click(window, "cmdBack");
    EXPECT_FALSE(window.isVisible());
    EXPECT_TRUE(callers.inMain);
}

TEST_F(ValtestWindowTest, TenPositionsStandInOneColumnAndMoreInTwo) {
    open(kMars, "MS1000");
    EXPECT_EQ(left("lblCoin_0"), left("lblCoin_9"));
    const int narrow = window.width();
    W::click(window, "cmdBack");

    open(kNri, "G10-4000");
    EXPECT_EQ(captions(),
              "Coin 01|Coin 02|Coin 03|Coin 04|Coin 05|Coin 06|Coin 07|Coin 08|"
              "Tube L|Tube M|Tube R|Cashbox|");
    EXPECT_EQ(left("lblCoin_0"), left("lblCoin_7"));
    EXPECT_EQ(left("lblCoin_8"), left("lblCoin_11"));
    EXPECT_GT(left("lblCoin_8"), left("lblCount_0"));
    EXPECT_TRUE(W::control(window, "lblCountText2")->isVisible());
    EXPECT_GT(window.width(), narrow);
    EXPECT_EQ(w.base.prompts.beeps, 1);
}

TEST_F(ValtestWindowTest, BinaryShowsCodesAndOutputBits) {
    open(kCoinControls, "335");
    EXPECT_TRUE(W::control(window, "frmOptions")->isVisible());
    EXPECT_TRUE(W::find<QRadioButton>(window, "optSingle")->isChecked());
    W::click(window, "optBinary");
    EXPECT_TRUE(W::find<QRadioButton>(window, "optBinary")->isChecked());
    EXPECT_TRUE(captions().ends_with("Coin 15|Coin 16|"));
    EXPECT_TRUE(W::control(window, "shpBinary_4")->isVisible());
    w.base.feed("V X0D\r");
    EXPECT_EQ(colour("shpCoin_13"), "#00ff00");
    EXPECT_EQ(colour("shpBinary_0"), "#00ff00");
    EXPECT_EQ(colour("shpBinary_3"), "#e0e0e0");
    QApplication::processEvents();
    W::click(window, "optSingle");
    EXPECT_EQ(captions(), "Coin A|Coin B|Coin C|Coin D|Coin E|");
    EXPECT_FALSE(W::control(window, "shpBinary_4")->isVisible());
}

TEST_F(ValtestWindowTest, TheFrameGoesBackUnlessAnActionRuns) {
    open(kMars, "ME111");
    w.actions.run(0, [this] { window.close(); });
    EXPECT_TRUE(window.isVisible());
    window.close();
    EXPECT_FALSE(window.isVisible());
    EXPECT_TRUE(callers.inMain);
}

TEST_F(ValtestWindowTest, LongerLanguagesFit) {
    w.speakLongLanguage();
    open(kNri, "G10-4000");
    EXPECT_EQ(W::cutTexts(window), "");
}

}  // namespace
}  // namespace vantor::test
