#include <gtest/gtest.h>

#include "LinkWorld.h"

namespace vantor {
namespace {

using test::escapes;
using test::LinkWorld;

constexpr const char* kPresent = "C00030 00020 00150 00100 00 V1.95\r";
constexpr const char* kAbsent = "N00030 00020 00150 00100 00 V1.95\r";

TEST(MechCheck, WithoutAMakerItOnlyAsksTheBox) {
    LinkWorld world;
    world.port.answer("S", kAbsent);
    EXPECT_TRUE(world.check.checkMech(false));
    EXPECT_EQ(world.port.sent, escapes(25) + "MJS");
    EXPECT_FALSE(world.check.checkMech(true));
    EXPECT_EQ(world.prompts.asked.back().text, "Validator NOT DETECTED");
    EXPECT_EQ(world.prompts.asked.back().title, "Validator Check");
}

TEST(MechCheck, ASilentBoxLeavesTheChoiceBetweenGoingBackAndEnding) {
    LinkWorld world;
    world.prompts.expect("No Response from Programmer Box", Answer::ok);
    EXPECT_FALSE(world.check.checkMech(true));
    EXPECT_FALSE(world.state.link.ending);
    world.prompts.expect("No Response from Programmer Box", Answer::cancel);
    EXPECT_THROW((void)world.check.checkMech(true), ProgramEnded);
    EXPECT_TRUE(world.state.link.ending);
}

TEST(MechCheck, TheProbeFindsABoxThatAnswersItsStatus) {
    LinkWorld world;
    EXPECT_FALSE(world.check.probeBox());
    world.port.sent.clear();
    world.port.answer("S", kPresent);
    EXPECT_TRUE(world.check.probeBox());
    EXPECT_TRUE(world.state.link.boxFound);
    EXPECT_EQ(world.port.sent, escapes(25) + "_JMJS");
}

TEST(MechCheck, SerialModeIsTriedFiveTimes) {
    LinkWorld world;
    EXPECT_FALSE(world.check.enterSerialMode("$05"));
    std::string five;
    for (int i = 0; i < 5; ++i) five += escapes(25) + "$05";
    // The box may have entered it, and only its answer was lost.
    EXPECT_EQ(world.port.sent, five + "<break></break>" + escapes(20));
    EXPECT_EQ(world.prompts.asked.back().text, "Serial Mode Not Set-up");
    world.port.answer("$05", "*S\r");
    world.port.sent.clear();
    EXPECT_TRUE(world.check.enterSerialMode("$05"));
    EXPECT_EQ(world.port.sent, escapes(25) + "$05");
}

TEST(MechCheck, ACancelledRunTriesSerialModeNoFurther) {
    LinkWorld world;
    world.loop.callAfter(std::chrono::milliseconds(600),
                         [&] { world.state.gather.abortFlag = true; });
    EXPECT_FALSE(world.check.enterSerialMode("$05"));
    EXPECT_NEAR(world.ms(), 600 + kLeaveBreakMs, 40);
    const std::string attempt = escapes(25) + "$05";
    EXPECT_EQ(world.port.sent, attempt + attempt + "<break></break>" + escapes(20));
    EXPECT_TRUE(world.prompts.asked.empty());
}

TEST(MechCheck, LeavingSerialModeWaitsForTheBoxAfterTheEscapes) {
    LinkWorld world;
    world.select(kCoinControls, "C120");
    world.state.box.serialModeFlag = true;
    world.state.link.frameCount = 3;
    world.port.receive("late echo#", 30);
    world.port.receive("*R\r", 760);
    world.check.leaveSerialMode();
    EXPECT_EQ(world.port.sent, "<break></break>" + escapes(20));
    EXPECT_EQ(world.state.link.frameCount, 0);
    EXPECT_TRUE(world.prompts.asked.empty());
}

TEST(MechCheck, AConfirmationThatComesAfterTheCancelDoesNotOutlastTheLeaving) {
    LinkWorld world;
    world.select(kCoinControls, "435");
    world.port.answer("$05", "*S\r", 300);
    world.loop.callAfter(std::chrono::milliseconds(50),
                         [&] { world.state.gather.abortFlag = true; });
    EXPECT_FALSE(world.check.enterSerialMode("$05"));
    world.port.receive("*R\r", 760);
    world.check.leaveSerialMode();
    EXPECT_FALSE(world.state.box.serialModeFlag);
    EXPECT_TRUE(world.prompts.asked.empty());
}

TEST(MechCheck, AProgramThatEndsAmidAModeChangeLeadsTheBoxBack) {
    const std::string back = "<break></break>" + escapes(20);
    struct Case {
        const char* what;
        bool leaving;
        int endsMs;
        int answerMs;  ///< of "*R"; 0 = none
        std::string sent;
    };
    for (const Case& c :
         {Case{"entering", false, 20, 0, escapes(25) + "$05" + back},
          Case{"its ready line came before the command", false, 120, 100,
               escapes(25) + "$05" + back},
          Case{"in the break", true, 60, 0, "<break></break>" + back},
          Case{"no answer yet", true, 700, 0, "<break></break>" + escapes(20) + back},
          Case{"it has answered", true, 120, 100, "<break></break>"}}) {
        SCOPED_TRACE(c.what);
        LinkWorld world;
        world.state.box.serialModeFlag = c.leaving;
        if (c.answerMs > 0) world.port.receive("*R\r", c.answerMs);
        world.loop.callAfter(std::chrono::milliseconds(c.endsMs), [&] { world.link.endProgram(); });
        if (c.leaving) {
            EXPECT_THROW(world.check.leaveSerialMode(), ProgramEnded);
        } else {
            EXPECT_THROW((void)world.check.enterSerialMode("$05"), ProgramEnded);
        }
        bool closed = false;
        world.link.hangUp([&] { closed = !world.port.isOpen(); });
        EXPECT_EQ(closed, c.leaving && c.answerMs > 0)
            << "at once only when there is nothing to leave";
        world.loop.advance(std::chrono::milliseconds(160));
        EXPECT_TRUE(closed);
        EXPECT_EQ(world.port.sent, c.sent);
    }
}

TEST(MechCheck, ABoxStuckInSerialModeIsToldAfterTheCheckFailed) {
    LinkWorld world;
    world.state.box.serialModeFlag = true;
    world.prompts.expect("No Response", Answer::ok);
    world.check.leaveSerialMode();
    EXPECT_EQ(world.prompts.asked.back().text, "Stuck in Serial Comms Mode");
}

}  // namespace
}  // namespace vantor
