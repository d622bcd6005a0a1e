#include <gtest/gtest.h>

#include "LinkWorld.h"

namespace vantor {
namespace {

using test::escapes;
using test::LinkWorld;

TEST(ProgrammerLink, WaitsAreRoundedToTensAndRunOnTheTwentyMillisecondTick) {
    struct Row {
        int asked;
        int least, most;  // ms
    };
    for (const Row& row :
         {Row{5, 0, 20}, Row{0, 0, 20}, Row{25, 0, 20}, Row{200, 180, 200}, Row{50, 40, 60}}) {
        LinkWorld world;
        const double before = world.ms();
        world.link.waitTicks(row.asked);
        EXPECT_GT(world.ms() - before, row.least) << row.asked;
        EXPECT_LE(world.ms() - before, row.most) << row.asked;
    }
}

TEST(ProgrammerLink, SendAndWaitEndsWithTheFirstLineOrAfter800Ms) {
    LinkWorld world;
    world.port.answer("S", "\r\nOK\r\nT2\r", 30);
    std::vector<std::string> lines;
    world.receiver.sinks.lastLine = [&](const std::string& line) { lines.push_back(line); };
    world.link.sendAndWait("S");
    EXPECT_TRUE(world.state.link.replyFlag);
    EXPECT_NEAR(world.ms(), 30, 0.5);
    EXPECT_EQ(lines, (std::vector<std::string>{"OK", "T2"}));

    const double before = world.ms();
    world.link.sendAndWait("M");
    EXPECT_FALSE(world.state.link.replyFlag);
    EXPECT_NEAR(world.ms() - before, 800, 20);
}

TEST(ProgrammerLink, ALineInSerialModeEndsNoWait) {
    LinkWorld world;
    world.select(kCoinControls, "C120");
    world.state.box.serialModeFlag = true;
    world.port.answer("S", "C\r");
    world.link.sendAndWait("S");
    EXPECT_FALSE(world.state.link.replyFlag);
}

TEST(ProgrammerLink, ANestedWaitLeavesTheOuterOneItsTime) {
    LinkWorld world;
    bool nested = false;
    world.receiver.sinks.lastLine = [&](const std::string&) {
        if (nested) return;
        nested = true;
        world.link.waitOut(100);
    };
    world.port.receive("T\r", 50);
    const double before = world.ms();
    world.link.waitOut(500);
    EXPECT_TRUE(nested);
    EXPECT_NEAR(world.ms() - before, 500, 20);
}

TEST(ProgrammerLink, StartupPortSendsABreakAnd25Escapes) {
    LinkWorld world;
    world.state.box.serialModeFlag = true;
    world.state.link.lineBuffer = "half";
    world.state.link.frameCount = 2;
    world.link.startupPort();
    EXPECT_EQ(world.port.sent, "<break></break>" + escapes(25));
    EXPECT_EQ(world.port.writes.size(), 25U);
    EXPECT_FALSE(world.state.box.serialModeFlag);
    EXPECT_TRUE(world.state.link.lineBuffer.empty());
    EXPECT_EQ(world.state.link.frameCount, 0);
}

TEST(ProgrammerLink, APortThatDoesNotOpenIsToldAndEndsTheProgram) {
    LinkWorld world;
    world.link.closePort();
    world.port.openable = false;
    world.state.link.portNumber = 3;
    EXPECT_THROW(world.link.startupPort(), ProgramEnded);
    ASSERT_EQ(world.prompts.asked.size(), 1U);
    EXPECT_EQ(world.prompts.asked[0].text,
              "Error Initialising the selected COM port : \r\nWindows has port COM 3 open already");
    EXPECT_EQ(world.prompts.asked[0].title, "Error");
    EXPECT_TRUE(world.state.link.ending);
}

TEST(ProgrammerLink, AFailedPortIsToldOnceAndOpenedAgainByTheNextAction) {
    LinkWorld world;
    world.port.fail("adapter pulled");
    world.link.sendAndWait("S");
    world.link.sendString("W");
    EXPECT_FALSE(world.state.link.portOpen);
    ASSERT_EQ(world.prompts.notices.size(), 1U);
    EXPECT_EQ(world.prompts.notices[0].text, " 206 Error Sending Data :  \r\nadapter pulled - 0");
    EXPECT_TRUE(world.prompts.asked.empty());
    world.link.startupPort();
    EXPECT_TRUE(world.state.link.portOpen);
}

TEST(ProgrammerLink, AnOpenPortIsNotOpenedAgain) {
    LinkWorld world;
    ASSERT_TRUE(world.port.isOpen());
    world.port.openedNumber = 0;
    world.state.link.portOpen = false;  // as Retry leaves it
    EXPECT_TRUE(world.link.openPort(1));
    EXPECT_EQ(world.port.openedNumber, 0);
    EXPECT_TRUE(world.state.link.portOpen);
}

/// Time goes on although nothing is run: the machine is busy elsewhere.
class BusyLoop final : public EventLoop {
  public:
    [[nodiscard]] Micros now() const override { return now_; }
    TimerId callAfter(Micros delay, Callback callback) override {
        events_.emplace(now_ + std::max(delay, Micros{0}), std::move(callback));
        return 1;
    }
    void cancel(TimerId) override { events_.clear(); }
    void pump() override {
        now_ = std::max(now_, events_.begin()->first);
        const auto callback = events_.extract(events_.begin()).mapped();
        callback();
    }
    void stall(Micros span) { now_ += span; }

  private:
    Micros now_{};
    std::multimap<Micros, Callback> events_;
};

TEST(RepeatingTimer, TicksMissedByABusyMachineDoNotComeInABurst) {
    using std::chrono::milliseconds;
    BusyLoop loop;
    RepeatingTimer timer(loop);
    std::vector<long long> ticks;
    timer.start(milliseconds(20), [&] { ticks.push_back(loop.now().count() / 1000); });
    loop.pump();
    loop.stall(milliseconds(25));  // a little late: the next one is in its place
    loop.pump();
    loop.pump();
    loop.stall(milliseconds(90));
    for (int i = 0; i < 3; ++i) loop.pump();
    EXPECT_EQ(ticks, (std::vector<long long>{20, 45, 60, 150, 170, 190}));
}

TEST(ProgrammerLink, EndingUnwindsTheInnermostWaitAndEndsTheBreak) {
    LinkWorld world;
    world.loop.callAfter(std::chrono::milliseconds(40), [&] { world.link.endProgram(); });
    EXPECT_THROW(world.link.sendBreak(1000), ProgramEnded);
    EXPECT_EQ(world.port.sent, "<break></break>");
    EXPECT_LT(world.ms(), 100);
}

TEST(ProgrammerLink, BytesWithoutAFlowAreHandledByTheIdleDrain) {
    LinkWorld world;
    world.port.receive("C00030 00020 00150 00100 00 V1.95\r", 10);
    world.loop.advance(std::chrono::milliseconds(11));
    EXPECT_TRUE(world.state.box.mechPresent);
    EXPECT_EQ(world.state.box.boxVersion, "V1.95");
}

TEST(ProgrammerLink, ADecoderThatWaitsIsDoneWithItsLineBeforeTheNext) {
    LinkWorld world;
    world.select(kMars, "ME181");
    world.port.receive("V A\rV B\rV C\r");
    world.loop.advance(std::chrono::seconds(1));
    EXPECT_EQ(world.port.sent, "C01C00C01C00C01C00");
}

TEST(ProgrammerLink, TheCoinDisplayIsResetOnceWhenItsHoldHasRunOut) {
    LinkWorld world;
    int resets = 0;
    world.link.setCoinDisplayReset([&] { ++resets; });
    world.state.link.coinDisplayHold = 4;
    world.loop.advance(std::chrono::milliseconds(350));
    EXPECT_EQ(resets, 0);
    world.loop.advance(std::chrono::milliseconds(1000));
    EXPECT_EQ(resets, 1);
}

}  // namespace
}  // namespace vantor
