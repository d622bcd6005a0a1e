#include "RoadFixture.h"

namespace vantor::test {
namespace {

/// The validator test through the windows, on the simulated box.
class ValtestRoad : public Road {
  protected:
    [[nodiscard]] static std::string colour(int position) {
        return widget("frmValtest.shpCoin_" + std::to_string(position))
            ->palette()
            .color(QPalette::Window)
            .name()
            .toStdString();
    }
};

TEST_F(ValtestRoad, FromTheMainWindowAndBack) {
    openMain("ME111");
    click("frmMain.cmdValtest");
    ASSERT_TRUE(visible("frmValtest"));
    EXPECT_FALSE(visible("frmMain"));
    drop("10 Pell");
    EXPECT_EQ(colour(1), "#00ff00");
    EXPECT_EQ(count(1), 1);
    loop.advance(std::chrono::milliseconds(400));
    EXPECT_EQ(colour(1), "#e0e0e0");
    drop("Steel Washer");
    EXPECT_EQ(colour(6), "#ff0000");
    EXPECT_EQ(count(6), 1);
    EXPECT_EQ(sounds.played, (std::vector<std::filesystem::path>{"accept.wav", "reject.wav"}));
    click("frmValtest.cmdClearCount");
    EXPECT_EQ(count(6), 0);

    click("frmValtest.cmdBack");
    EXPECT_FALSE(visible("frmValtest"));
    EXPECT_TRUE(visible("frmMain"));
    EXPECT_TRUE(enabled("frmMain.cmdValtest"));
    expectCommandMode();
    // Nobody looks any more, but the coin is still heard.
    drop("10 Pell");
    EXPECT_EQ(sounds.played.size(), 3U);
}

TEST_F(ValtestRoad, NothingOvertakesThePauseAfterAnMe181sCoin) {
    openMain("ME181");
    click("frmMain.cmdValtest");
    ASSERT_TRUE(visible("frmValtest"));
    letTheLineClear();
    box.clearTranscript();
    bool pausing = false;
    loop.callAfter(std::chrono::milliseconds(60), [&] {
        pausing = program->link().holdingInput();
        click("frmValtest.cmdBack");
    });
    drop("1 Dorin");
    EXPECT_TRUE(pausing) << "the click came in the pause";
    EXPECT_TRUE(visible("frmValtest"));
    EXPECT_EQ(count(4), 1);
    EXPECT_EQ(box.sentByPc(), "C01C00");
    EXPECT_TRUE(program->idle());
    click("frmValtest.cmdBack");
    EXPECT_TRUE(visible("frmMain"));
}

TEST_F(ValtestRoad, FromTheLimitsWindowAfterProgramming) {
    technician.promWords = 256;
    openMain("ME111");
    openMeasurement();
    runCoinset("ME111-Dorin.cst");
    ASSERT_TRUE(visible("frmPROM"));
    EXPECT_FALSE(enabled("frmPROM.cmdValtest"));
    click("frmPROM.cmdProgPROM");
    ASSERT_TRUE(enabled("frmPROM.cmdValtest"));

    click("frmPROM.cmdValtest");
    ASSERT_TRUE(visible("frmValtest"));
    EXPECT_FALSE(visible("frmPROM"));
    EXPECT_FALSE(enabled("frmPROM.cmdValtest"));
    drop("2 Dorin", 20);
    drop("Lead Blank", 20);
    const int accepted = count(5);
    EXPECT_GE(accepted, 15) << "the mech takes what it was programmed for";
    EXPECT_EQ(count(6), 40 - accepted);

    click("frmValtest.cmdBack");
    EXPECT_TRUE(visible("frmPROM"));
    EXPECT_FALSE(visible("frmMain"));
    EXPECT_TRUE(enabled("frmPROM.cmdValtest"));
    click("frmPROM.cmdBack1");
    ASSERT_TRUE(visible("frmCoinMeasure1"));
    click("frmCoinMeasure1.cmdBack");
    EXPECT_TRUE(visible("frmMain"));
    EXPECT_TRUE(enabled("frmMain.cmdValtest"));
}

}  // namespace
}  // namespace vantor::test
