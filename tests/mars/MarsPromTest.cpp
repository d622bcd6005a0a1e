#include <gtest/gtest.h>

#include "MarsWorld.h"

namespace vantor {
namespace {

using test::digits;
using test::MarsWorld;
using Lines = std::vector<std::string>;

const Lines kFirstSegment = {"P000FC21FFFD21041000\r", "P0100000914A11002004\r",
                             "P020F18528E3C449E3D4\r", "P03040000000B42E4300\r",
                             "P040400CB20230D74381\r", "P050D7538000000CF8E2\r",
                             "P0609500600483FF3000\r", "P0704742503031312E32\r"};
const Lines kSecondSegment = {"P080FC21FFFD21041000\r", "P0900000914A11002004\r",
                              "P0A0F18528E3C449E3D4\r", "P0B040000000B42E4300\r",
                              "P0C0400CB20230D74381\r", "P0D0D7538000000CF8E2\r",
                              "P0E09500600483FF3000\r", "P0F04742503031312E32\r"};

std::string joined(const Lines& lines, int times = 1) {
    std::string all;
    for (const std::string& line : lines) {
        for (int i = 0; i < times; ++i) all += line;
    }
    return all;
}

// --- reading -------------------------------------------------------------------------------

TEST(MarsRead, TakesOneOrTwoHalves) {
    struct Case {
        int promSizeCode;
        const char* sent;
        int last;
    };
    for (const Case& c : {Case{0, "EA", 255}, Case{1, "EK", 511}}) {
        MarsWorld world("ME111", c.promSizeCode);
        world.state.images.old.fill(3);
        for (std::size_t cell = 0; cell < 512; ++cell) {
            world.socket.cells[cell] = "0123456789ABCDEF"[(cell * 5 + cell / 16) % 16];
        }
        EXPECT_TRUE(world.mars.readMemory());
        EXPECT_TRUE(world.state.images.oldComplete);
        EXPECT_EQ(world.port.sent, c.sent);
        const auto read = static_cast<std::size_t>(c.last + 1);
        EXPECT_EQ(digits(world.state.images.old, 0, 511),
                  world.socket.cells.substr(0, read) + std::string(512 - read, '0'));
        EXPECT_TRUE(world.prompts.asked.empty()) << world.prompts.texts();
        EXPECT_LT(world.ms(), 900) << "the last line ends the wait";
    }
}

TEST(MarsRead, WhatDidNotComeWholeIsNoRead) {
    struct Case {
        const char* what;
        bool answers;
        int missingLine;
        const char* replacedLine;
        double ms;
    };
    for (const Case& c :
         {Case{"silence", false, -1, "", 10800}, Case{"a line lost", true, 7, "", 900},
          Case{"the last line lost", true, 15, "", 10800},
          Case{"a line cut short", true, 7, "R070 1 2 3\r", 900},
          Case{"a digit spoilt", true, 7, "R070 1 2 3 4 5 6 7 8 9 A B C D E F *\r", 900},
          Case{"an address spoilt", true, 7, "R060 1 2 3 4 5 6 7 8 9 A B C D E F 0\r", 900}}) {
        MarsWorld world;
        world.socket.answersReads = c.answers;
        world.socket.missingLine = c.missingLine;
        world.socket.replacedLine = c.replacedLine;
        EXPECT_FALSE(world.mars.readMemory()) << c.what;
        EXPECT_FALSE(world.state.images.oldComplete) << c.what;
        ASSERT_EQ(world.prompts.asked.size(), 1U) << c.what << world.prompts.texts();
        EXPECT_EQ(world.prompts.asked[0].text, "Unable to Read PROM : timed out");
        EXPECT_EQ(world.prompts.asked[0].title, "Error");
        EXPECT_EQ(world.prompts.asked[0].icon, PromptIcon::critical);
        EXPECT_NEAR(world.ms(), c.ms, 100) << c.what;
    }
}

TEST(MarsRead, LinesOfAnEarlierReadDoNotCount) {
    MarsWorld world;
    world.socket.missingLine = 3;
    world.port.receive("R030 F F F F F F F F F F F F F F F F\r", 100);
    EXPECT_FALSE(world.mars.readMemory());
    EXPECT_EQ(digits(world.state.images.old, 0x30, 0x3F), std::string(16, '0'));
}

TEST(MarsRead, ADamagedLineIsReportedAndStoresNothing) {
    for (const std::string line :
         {"R", "R12", "RG00 1 2 3 4 5 6 7 8 9 A B C D E F 0", "R000 1 2 3 4 5 6 7 8 9 A B C D E F",
          "R000 1 2 3 4 5 6 7 8 9 A B C D E F x",
          "R000 1 2 3 4R010 1 2 3 4 5 6 7 8 9 A B C D E F 0",
          "R1F8 1 2 3 4 5 6 7 8 9 A B C D E F 0", "RFFF 1 2 3 4 5 6 7 8 9 A B C D E F 0"}) {
        MarsWorld world("ME111", 1);
        world.mars.parsePromLine(line);
        EXPECT_TRUE(world.prompts.told(" 107 Error Decoding PROM Data : ")) << line;
        EXPECT_EQ(world.state.images.old, MechImage{}) << line;
        EXPECT_FALSE(world.state.box.promReadDone) << line;
    }
    MarsWorld world;
    world.mars.parsePromLine("R0F0,1,2,3,4,5,6,7,8,9,a,b,c,d,e,f,0 and more");
    EXPECT_EQ(digits(world.state.images.old, 0xF0, 0xFF), "123456789ABCDEF0");
    EXPECT_TRUE(world.state.box.promReadDone);
}

// --- programming ---------------------------------------------------------------------------

TEST(MarsProgramE1, BothSegmentsOnceAndVerified) {
    MarsWorld world;
    world.state.prom.segmentSelected[1] = true;
    // Segments 3 and 4 are beyond a 1K PROM, selected or not.
    world.state.prom.segmentSelected[3] = true;
    world.setSampleSegment(1);
    world.setSampleSegment(7);
    world.prompts.expect("BOTH SWITCHES ON", Answer::ok);
    EXPECT_TRUE(world.mars.programAndVerify());
    EXPECT_EQ(world.port.sent, "EJ" + joined(kFirstSegment) + joined(kSecondSegment) + "EAW");
    EXPECT_EQ(world.prompts.texts(),
              "Load PROM: Insert Vantor E+1 PROM : BOTH SWITCHES ON\n"
              "Load PROM: Vantor E+1 PROM : TURN SWITCH 2 OFF\n"
              "Verify: Verify PROM OK\n");
    EXPECT_EQ(world.prompts.asked[0].buttons, PromptButtons::okCancel);
    EXPECT_EQ(world.prompts.asked[1].buttons, PromptButtons::ok);
    EXPECT_EQ(world.prompts.asked[2].icon, PromptIcon::none);
    // Twice 800 ms for the silent "E", 200 ms for the socket to settle, 5 ms for each answer.
    EXPECT_NEAR(world.ms(), 2 * 800 + 200 + 17 * 5, 60);
}

TEST(MarsProgramE1, TheProgressWindowFollowsEveryLine) {
    MarsWorld world;
    world.state.prom.segmentSelected[0] = false;
    world.state.prom.segmentSelected[1] = true;
    world.prompts.expect("BOTH SWITCHES ON", Answer::ok);
    EXPECT_TRUE(world.mars.programAndVerify());
    Lines expected = {"open Programming|PROM PROGRAMMING IN PROGRESS|segment"};
    for (int line = 1; line <= 8; ++line) {
        expected.emplace_back("segment 2");
        expected.push_back("bar " + std::to_string(2 * line));
    }
    expected.emplace_back("close");
    EXPECT_EQ(world.progress.told, expected);
}

TEST(MarsProgramBipolar, EveryLineIsBurntThreeTimes) {
    MarsWorld world;
    world.state.prom.target = TargetProm::bipolar;
    world.setSampleSegment();
    // Data in a segment that is not programmed does not matter.
    world.socket.cells[200] = '7';
    world.prompts.expect("Insert 1K Bipolar PROM", Answer::ok);
    EXPECT_TRUE(world.mars.programAndVerify());
    EXPECT_EQ(world.port.sent, "JEABJ" + joined(kFirstSegment, 3) + "EAW");
    EXPECT_EQ(world.prompts.texts(),
              "Load PROM: Insert 1K Bipolar PROM\n"
              "Verify: Verify PROM OK\n");
}

TEST(MarsProgramBipolar, AUsedPromIsOnlyTakenOnRequest) {
    struct Case {
        const char* what;
        std::vector<std::pair<const char*, Answer>> answers;
        bool programmed;
        std::string sent;
    };
    const std::string burn = joined(kFirstSegment, 3);
    const char* insert = "Insert 2K Bipolar PROM";
    const char* used =
        "Bipolar PROM is not blank\r\n\r\nPress OK to programme anyway\r\nPress CANCEL to abort";
    for (const Case& c :
         {Case{"taken anyway",
               {{insert, Answer::ok}, {used, Answer::ok}},
               true,
               "JEKBJ" + burn + "EKW"},
          Case{"another one is asked for, then given up",
               {{insert, Answer::ok}, {used, Answer::cancel}, {insert, Answer::cancel}},
               false,
               "JEKBW"},
          Case{"none inserted", {{insert, Answer::cancel}}, false, "B"}}) {
        MarsWorld world("ME111", 1);
        world.state.prom.target = TargetProm::bipolar;
        world.setSampleSegment();
        world.socket.cells[127] = '1';
        for (const auto& [text, answer] : c.answers) world.prompts.expect(text, answer);
        EXPECT_EQ(world.mars.programAndVerify(), c.programmed) << c.what;
        EXPECT_EQ(world.port.sent, c.sent) << c.what;
        EXPECT_TRUE(world.prompts.scriptDone()) << c.what;
    }
}

TEST(MarsProgramBipolar, APromThatCannotBeReadIsNotBlank) {
    MarsWorld world;
    world.state.prom.target = TargetProm::bipolar;
    world.setSampleSegment();
    world.socket.answersReads = false;
    world.prompts.expect("Insert 1K Bipolar PROM", Answer::ok);
    world.prompts.expect("Unable to Read PROM : timed out", Answer::ok,
                         [&] { world.socket.answersReads = true; });
    world.prompts.expect("Insert 1K Bipolar PROM", Answer::ok);
    EXPECT_TRUE(world.mars.programAndVerify());
    EXPECT_EQ(world.port.sent, "JEAJEABJ" + joined(kFirstSegment, 3) + "EAW");

    MarsWorld unplugged;
    unplugged.state.prom.target = TargetProm::bipolar;
    unplugged.loop.callAfter(std::chrono::seconds(1), [&] { unplugged.port.fail("gone"); });
    unplugged.socket.answersReads = false;
    unplugged.prompts.expect("Insert 1K Bipolar PROM", Answer::ok);
    EXPECT_FALSE(unplugged.mars.programAndVerify()) << "and no other PROM is asked for";
    EXPECT_EQ(unplugged.prompts.asked.size(), 2U);
}

TEST(MarsProgram, ADuplicatedSegmentIsProgrammedTwice) {
    for (const bool firstSelected : {true, false}) {
        MarsWorld world;
        world.state.prom.duplicateSegments = true;
        world.setSampleSegment();
        world.state.prom.segmentSelected[0] = firstSelected;
        world.state.prom.segmentSelected[1] = !firstSelected;
        world.prompts.expect("BOTH SWITCHES ON", Answer::ok);
        EXPECT_TRUE(world.mars.programAndVerify());
        EXPECT_TRUE(world.state.prom.segmentSelected[1]);
        if (firstSelected) {
            EXPECT_EQ(world.port.sent,
                      "EJ" + joined(kFirstSegment) + joined(kSecondSegment) + "EAW");
            EXPECT_EQ(world.limitsOf(12), world.limitsOf(6));
        } else {
            EXPECT_EQ(world.port.writes[2], "P0800000000000000000\r");
            EXPECT_EQ(world.limitsOf(12), (std::array<int, 6>{}));
        }
    }
}

TEST(MarsProgram, OnlyTheVerificationJudges) {
    struct Case {
        const char* what;
        bool acknowledges;
        bool burns;
        bool verified;
    };
    for (const Case& c : {Case{"no acknowledgement", false, true, true},
                          Case{"nothing stored", true, false, false}}) {
        MarsWorld world;
        world.setSampleSegment();
        world.socket.acknowledges = c.acknowledges;
        world.socket.burns = c.burns;
        world.prompts.expect("BOTH SWITCHES ON", Answer::ok);
        EXPECT_EQ(world.mars.programAndVerify(), c.verified) << c.what;
        EXPECT_EQ(world.port.sent, "EJ" + joined(kFirstSegment) + "EAW") << c.what;
        EXPECT_EQ(world.ms() > 8 * 5000, !c.acknowledges) << c.what;
        if (!c.verified) {
            EXPECT_EQ(world.prompts.asked.back().text, "Verify PROM FAILED");
            EXPECT_EQ(world.prompts.asked.back().icon, PromptIcon::exclamation);
        }
    }
}

TEST(MarsVerify, IsNeverOkWithoutAWholeRead) {
    struct Case {
        const char* what;
        bool answers;
        int missingLine;
    };
    // The intended image is all zeros, as is what was not read.
    for (const Case& c : {Case{"silence", false, -1}, Case{"a line lost", true, 2},
                          Case{"a line of another segment lost", true, 9}}) {
        MarsWorld world;
        world.prompts.expect("BOTH SWITCHES ON", Answer::ok);
        world.prompts.expect("TURN SWITCH 2 OFF", Answer::ok, [&] {
            world.socket.answersReads = c.answers;
            world.socket.missingLine = c.missingLine;
        });
        EXPECT_FALSE(world.mars.programAndVerify()) << c.what;
        EXPECT_TRUE(world.prompts.told("Unable to Read PROM : timed out")) << c.what;
        EXPECT_EQ(world.prompts.asked.back().text, "Verify PROM FAILED") << c.what;
    }
    MarsWorld nothing;
    nothing.state.prom.segmentSelected = {};
    nothing.prompts.expect("BOTH SWITCHES ON", Answer::ok);
    EXPECT_FALSE(nothing.mars.programAndVerify()) << "nothing was compared";
}

TEST(MarsVerify, ComparesTheSelectedSegmentsAlone) {
    for (const auto& [cell, good] : {std::pair{255U, true}, std::pair{127U, false}}) {
        MarsWorld world;
        world.prompts.expect("BOTH SWITCHES ON", Answer::ok);
        world.prompts.expect("TURN SWITCH 2 OFF", Answer::ok,
                             [&, at = cell] { world.socket.cells[at] = '8'; });
        EXPECT_EQ(world.mars.programAndVerify(), good) << cell;
    }
}

TEST(MarsProgram, EndsQuietlyAndSwitchesTheValidatorBack) {
    MarsWorld cancelled;
    cancelled.prompts.expect("BOTH SWITCHES ON", Answer::cancel);
    EXPECT_FALSE(cancelled.mars.programAndVerify());
    EXPECT_EQ(cancelled.port.sent, "E") << "nothing was switched yet";
    EXPECT_TRUE(cancelled.progress.told.empty());

    MarsWorld exited;
    exited.prompts.expect("BOTH SWITCHES ON", Answer::ok);
    exited.loop.callAfter(std::chrono::seconds(2), [&] { exited.link.endProgram(); });
    exited.socket.acknowledges = false;
    EXPECT_THROW((void)exited.mars.programAndVerify(), ProgramEnded);
    EXPECT_EQ(exited.progress.told.back(), "close");
    EXPECT_EQ(exited.port.writes.back(), "W");

    MarsWorld unplugged;
    unplugged.prompts.expect("BOTH SWITCHES ON", Answer::ok);
    unplugged.loop.callAfter(std::chrono::seconds(2), [&] { unplugged.port.fail("gone"); });
    unplugged.socket.acknowledges = false;
    EXPECT_FALSE(unplugged.mars.programAndVerify());
    EXPECT_EQ(unplugged.prompts.asked.back().text, "Verify PROM FAILED");
    EXPECT_LT(unplugged.ms(), 5000) << "a pulled adapter is not waited for, line by line";
}

// --- the old PROM --------------------------------------------------------------------------

TEST(MarsOldProm, IsReadCopiedAndTakenOut) {
    MarsWorld world;
    world.socket.cells.replace(1, 3, "C21");
    world.state.coinset.oldChannelSource[3] = 1;
    world.prompts.expect("Insert Old PROM to COPY\r\n\r\nVantor E+1 : Switch 1 ON and Switch 2 OFF",
                         Answer::ok);
    world.prompts.expect("Remove OLD PROM from Socket", Answer::cancel,
                         [&] { EXPECT_EQ(world.port.sent, "JEAW"); });
    world.mars.readOldMemory();
    EXPECT_EQ(world.port.sent, "JEAW");
    EXPECT_EQ(world.limitsOf(3)[0], 300);
    EXPECT_EQ(world.state.images.carryOver, world.state.images.old);
    EXPECT_TRUE(world.state.images.oldMemoryRead);
    EXPECT_EQ(world.prompts.asked[0].title, "Copy PROM");
    EXPECT_EQ(world.prompts.asked[1].title, "");

    world.prompts.expect("BOTH SWITCHES ON", Answer::ok);
    EXPECT_TRUE(world.mars.programAndVerify());
}

TEST(MarsOldProm, ThatWasNotReadKeepsTheMechFromBeingProgrammed) {
    for (const bool cancelled : {true, false}) {
        MarsWorld world;
        world.setLimits(3, {1, 2, 3, 4, 5, 6});
        world.state.coinset.oldChannelSource[3] = cancelled ? 3 : -3;
        world.socket.missingLine = 5;
        world.socket.cells.replace(13, 3, "C21");
        world.prompts.expect("Insert Old PROM to COPY", cancelled ? Answer::cancel : Answer::ok);
        if (!cancelled) world.prompts.expect("Unable to Read PROM : timed out", Answer::ok);
        if (!cancelled) world.prompts.expect("Remove OLD PROM", Answer::ok);
        world.mars.readOldMemory();
        EXPECT_TRUE(world.prompts.scriptDone());
        EXPECT_EQ(world.port.sent, cancelled ? "" : "JEAW");
        EXPECT_FALSE(world.state.images.oldMemoryRead);
        EXPECT_EQ(world.limitsOf(3), (std::array<int, 6>{1, 2, 3, 4, 5, 6}));

        world.port.sent.clear();
        EXPECT_FALSE(world.mars.programAndVerify());
        EXPECT_EQ(world.port.sent, "");
        EXPECT_EQ(world.prompts.asked.back().text, "Unable to Read PROM : timed out");
        EXPECT_EQ(world.prompts.asked.back().title, "Error");
    }
}

}  // namespace
}  // namespace vantor
