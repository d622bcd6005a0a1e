#include <gtest/gtest.h>

#include <algorithm>

#include "NriWorld.h"
#include "platform/Files.h"

namespace vantor {
namespace {

using test::NriWorld;

const std::string kNotProgrammed = "Error: Error Programming NRI Memory\n";
const std::string kEnter = "C00<25 esc>";

// --- identity ------------------------------------------------------------------------------

TEST(NriIdentify, EachModelKnowsItsAnswers) {
    struct Case {
        const char* model;
        const char* mode;
        std::vector<std::string> good, bad;
    };
    for (const Case& c : std::vector<Case>{{"G13-0000", "$01", {"0"}, {"?", "07"}},
                                           {"G13-6000", "$05", {"07"}, {"06", "7", ""}},
                                           {"G18-0000", "$01", {"?"}, {"0"}},
                                           {"G18-3000", "$05", {"05", "01"}, {"07"}},
                                           {"G10-4000", "$23", {"?"}, {"03"}},
                                           {"G10-4000/5", "$23", {"03", "06", "08"}, {"02"}},
                                           {"G40-0000", "$05", {"02"}, {"2", "020"}}}) {
        const auto answered = [&](const std::string& identity) {
            NriWorld world(c.model);
            world.mech.identity = identity;
            world.interfaceVersion = "I2.0";
            const bool known = world.nri.comms().setupNriComms();
            EXPECT_TRUE(world.transcript().starts_with(kEnter + c.mode + "I")) << c.model;
            const bool waits =
                std::string(c.model).starts_with("G10") || std::string(c.model).ends_with("-0000");
            if (known) {
                EXPECT_EQ(world.ms() > 250, waits && std::string(c.model) != "G40-0000")
                    << c.model << world.ms();
            }
            return known;
        };
        for (const std::string& identity : c.good) EXPECT_TRUE(answered(identity)) << identity;
        for (const std::string& identity : c.bad) EXPECT_FALSE(answered(identity)) << identity;
    }
}

TEST(NriIdentify, TheSecondModeOfAModelIsTriedAfterLeavingTheFirst) {
    NriWorld world("G10-4000/5");
    world.mech.modeWanted = "$25";
    EXPECT_TRUE(world.nri.comms().setupNriComms());
    EXPECT_EQ(world.transcript(), kEnter + "$23I<break></break><45 esc>$25I");
}

TEST(NriIdentify, ACoinThatFallsAmidTheAnswerOfAG10IsNoWrongMech) {
    const std::string record = "\x80\x1A\r";
    // What the flush before the question leaves of a record may be any end of it.
    for (const std::size_t flushed : {0U, 1U, 2U}) {
        for (const int falls : {1, 2, 3}) {
            NriWorld world("G10-4000/5");
            for (int i = 0; i < falls; ++i) {
                world.port.answer("I", record.substr(flushed) + "06\r" + record);
            }
            world.port.answer("I", "06\r");
            world.port.answer("$25", "");  // would be tried next
            EXPECT_EQ(world.nri.comms().setupNriComms(), falls < 3) << flushed << falls;
        }
    }
}

TEST(NriIdentify, ASilentModelAsksForTheInterfaceOnceAndWarnsOfAnOldOne) {
    struct Case {
        const char* version;
        bool answers;
        bool warned;
    };
    for (const Case& c :
         {Case{"I0.0", false, true}, Case{"I1.9", true, true}, Case{"I2.0", true, false}}) {
        NriWorld world("G18-3000");
        world.mech.identity.clear();
        world.interfaceVersion = c.version;
        world.interfaceAnswers = c.answers;
        EXPECT_FALSE(world.nri.readMemory());
        EXPECT_EQ(world.probes, 1) << "four attempts, one warning";
        std::string expected;
        for (int i = 0; i < 4; ++i) {
            expected += kEnter + "$05I" + NriWorld::kLeave;
            if (i == 0 && c.answers) expected += NriWorld::kLeave;  // the probe's own
        }
        EXPECT_EQ(world.transcript(), expected) << "every attempt enters serial mode anew";
        EXPECT_EQ(world.state.mech.manufacturer + world.state.mech.mechType, "NRIG18-3000");
        EXPECT_EQ(world.prompts.texts(),
                  std::string(c.warned ? "G18 Warning: G18 requires Resistor Link "
                                         "Modification\r\nor Alternative Interface "
                                         "Board\n"
                                       : "") +
                      NriWorld::kReadFailure);
        EXPECT_TRUE(world.inCommandMode());
    }
}

// --- reading -------------------------------------------------------------------------------

TEST(NriRead, AHandshakeMechBlockByBlock) {
    NriWorld world("G18-3000");
    world.state.nri.blocks[28] = "of an earlier mech";
    world.state.box.nriG10Mode = true;  // of a validator test before it
    EXPECT_TRUE(world.nri.readMemory());
    EXPECT_EQ(world.transcript(),
              kEnter +
                  "$05IX00X01X02X03X04X05X06X07X08X09X0AX0BX0CX0DX0EX0FX10X12X13X14X15X16"
                  "X17X18X19X11" +
                  NriWorld::kLeave);
    const auto at = std::ranges::find(world.port.writes, "0F");
    ASSERT_NE(at, world.port.writes.end());
    EXPECT_EQ(*(at - 1), "X") << "the first letter goes alone";
    EXPECT_TRUE(world.state.oldImageWhole());
    EXPECT_EQ(world.state.nri.old.limits[9][2], 0xAC) << "channel 9 is block 12";
    EXPECT_EQ(world.state.nri.old.routeText[0], "123456789ABC");
    EXPECT_EQ(world.progress.told.front(), "open NRI Memory Read|READING MEMORY IN PROGRESS");
    EXPECT_EQ(world.progress.bar, 16);
    EXPECT_FALSE(world.progress.open);
    EXPECT_TRUE(world.prompts.asked.empty()) << world.prompts.texts();
    const auto dump = readFile(world.folder / "G18-3000temp.txt");
    ASSERT_TRUE(dump);
    EXPECT_NE(dump->find("\r\n16,\"0102040810200102040810FF\"\r\n"), std::string::npos) << *dump;
    EXPECT_TRUE(dump->ends_with("28,\"of an earlier mech\"\r\n"));
    EXPECT_LT(world.ms(), 2000);
}

TEST(NriRead, ThePlainMechs) {
    NriWorld world("G18-0000");
    EXPECT_TRUE(world.nri.readMemory());
    EXPECT_EQ(world.transcript(), kEnter + "$01IZYV1V2V3V4V5V6" + NriWorld::kLeave);
    EXPECT_EQ(world.state.nri.blocks[8], "07/03/09");
    EXPECT_EQ(world.state.nri.blocks[7], "005060050040030020010");
    EXPECT_EQ(world.state.nri.old.limits[6][2] * 1000 + world.state.nri.old.limits[6][1], 206106);
    EXPECT_EQ(world.state.nri.old.date, "070309");
    EXPECT_GE(world.ms(), 8 * 200);

    NriWorld g10("G10-4000");
    EXPECT_TRUE(g10.nri.readMemory());
    EXPECT_EQ(g10.transcript(), kEnter + "$23IZXV1V2V3V4V5V6V7V8" + NriWorld::kLeave);
    EXPECT_EQ(g10.state.nri.old.coinValues[8], 1000);
}

TEST(NriRead, WhatDidNotComeWholeIsNoRead) {
    struct Case {
        const char* what;
        const char* model;
        std::function<void(NriWorld&)> spoil;
        std::string told;
    };
    for (const Case& c : std::vector<Case>{
             {"silence from the start", "G40-0000", [](NriWorld& w) { w.mech.identity.clear(); },
              NriWorld::kReadFailure},
             {"silence to one command", "G40-0000", [](NriWorld& w) { w.mech.silentTo = {"X0F"}; },
              "X0F"},
             {"a late answer", "G40-0000", [](NriWorld& w) { w.mech.lateTo = {"X0F"}; }, "X0F"},
             {"a late answer of many lines", "G13-0000",
              [](NriWorld& w) {
                  w.mech.silentTo = {"Y"};
                  w.mech.lateTo = {"Z"};
              },
              "Z Y"},
             {"spoilt blocks", "G40-0000",
              [](NriWorld& w) {
                  w.mech.answers["X03"] = "2810";
                  w.mech.answers["X0D"] = "A0100A010A010A010A010A010";
                  w.mech.answers["X13"] = "";
              },
              "X03 X0D X13"}}) {
        NriWorld world(c.model);
        c.spoil(world);
        EXPECT_FALSE(world.nri.readMemory()) << c.what;
        EXPECT_FALSE(world.state.oldImageWhole()) << c.what;
        EXPECT_EQ(world.prompts.texts(),
                  c.told.size() > 20 ? c.told
                                     : "Error: Error Reading NRI Memory Address : " + c.told + "\n")
            << c.what;
        EXPECT_TRUE(world.inCommandMode()) << c.what;
        EXPECT_FALSE(world.progress.open) << c.what;
        if (c.told.size() > 20) continue;
        // The blocks behind the one that failed hold their own answers.
        const bool handshake = std::string(c.model) == "G40-0000";
        EXPECT_EQ(world.state.nri.blocks[handshake ? 17 : 1],
                  handshake ? "8305060708090A0B0C0D0E0F10" : "201202203204101102103104")
            << c.what;
        for (const NriReadStep& step : nriReadSteps(nriShape(c.model))) {
            if (!handshake || c.told.find(step.command) != std::string::npos) continue;
            EXPECT_EQ(world.state.nri.blocks[step.block], world.mech.answers[step.command])
                << c.what << " " << step.command;
        }
        const std::size_t asked = world.prompts.asked.size();
        const std::size_t sent = world.port.sent.size();
        EXPECT_FALSE(world.nri.programAndVerify()) << c.what;
        EXPECT_EQ(world.prompts.asked.size(), asked + 1);
        EXPECT_TRUE(world.prompts.texts().ends_with(kNotProgrammed)) << world.prompts.texts();
        EXPECT_EQ(world.port.sent.size(), sent) << "nothing goes out: " << c.what;
    }
}

TEST(NriRead, FourAttemptsAtASilentMechInOneSerialMode) {
    NriWorld world("G13-6000");
    world.mech.identity.clear();
    EXPECT_FALSE(world.nri.readMemory());
    std::string expected;
    for (int i = 0; i < 4; ++i) expected += kEnter + "$05I";
    EXPECT_EQ(world.transcript(), expected + NriWorld::kLeave);
    EXPECT_FALSE(std::filesystem::exists(world.folder / "G13-6000temp.txt"));
}

TEST(NriRead, EachAttemptAtAModelWithTwoModesTriesBoth) {
    NriWorld world("G10-4000/5");
    world.mech.modeWanted = "$23";
    const std::string identity = std::exchange(world.mech.identity, "");
    world.loop.callAfter(std::chrono::seconds(4), [&] { world.mech.identity = identity; });
    EXPECT_TRUE(world.nri.readMemory()) << world.prompts.texts();
    EXPECT_TRUE(world.inCommandMode());
}

TEST(NriRead, AnotherMechsMemoryIsNotKeptForOneThatDoesNotAnswer) {
    NriWorld world("G13-6000");
    EXPECT_TRUE(world.nri.readMemory());
    world.mech.identity.clear();
    EXPECT_FALSE(world.nri.readMemory());
    EXPECT_NE(world.state.nri.blocks[4], "") << "its own is";
    world.select(kNri, "G18-3000");
    EXPECT_FALSE(world.nri.readMemory());
    EXPECT_EQ(world.state.nri.blocks, NriBlockTexts{});
}

TEST(NriRead, CancelStopsItAndLeavesSerialMode) {
    NriWorld world("G40-0000");
    world.loop.callAfter(std::chrono::milliseconds(250),
                         [&world] { world.state.gather.abortFlag = true; });
    EXPECT_FALSE(world.nri.readMemory());
    EXPECT_TRUE(world.prompts.asked.empty()) << world.prompts.texts();
    EXPECT_TRUE(world.inCommandMode());
    EXPECT_TRUE(world.transcript().ends_with(NriWorld::kLeave));
    EXPECT_FALSE(std::filesystem::exists(world.folder / "G40-0000temp.txt"));
}

// --- programming ---------------------------------------------------------------------------

struct Programmed : NriWorld {
    explicit Programmed(std::string_view model) : NriWorld(model) {
        EXPECT_TRUE(nri.readMemory());
        state.nri.next = state.nri.old;
        state.images.oldMemoryRead = true;
        for (int channel = 1; channel <= kChannels; ++channel) {
            state.limits.channelLimits[channel][1] = 0x10;
            state.limits.channelLimits[channel][2] = 0x20 + channel;
        }
        port.sent.clear();
        port.writes.clear();
        progress.told.clear();
    }
};

TEST(NriProgram, AHandshakeMech) {
    Programmed world("G10-4000/5");
    EXPECT_TRUE(world.nri.programAndVerify());
    std::string channels;
    for (int channel = 1; channel <= 12; ++channel) {
        channels += std::string("Z0") + "3456789ABCDE"[channel - 1] +
                    hex(static_cast<unsigned>(0x20 + channel), 2) + "10" + std::string(20, '0');
    }
    EXPECT_EQ(world.transcript(),
              "J" + kEnter + "$23I" + channels + "Z02090B1A" +
                  "Z0FABCDEF01000100020003000400050010002000500100020000000000" +
                  "Z10123456789ABCZ11123456789ABC" + NriWorld::kLeave + "W");
    EXPECT_EQ(world.prompts.texts(), "OK: NRI Memory Programmed OK\n");
    EXPECT_EQ(world.progress.told.front(), "open NRI Memory |PROGRAMMING MEMORY IN PROGRESS");
    EXPECT_EQ(world.progress.bar, 16);
}

TEST(NriProgram, APlainMechCharacterByCharacter) {
    Programmed world("G13-0000");
    const double before = world.ms();
    EXPECT_TRUE(world.nri.programAndVerify());
    std::string channels;
    for (const char c : std::string("123456")) {
        const int high = 0x20 + c - '0';
        channels += std::string("D") + c + "0" + std::to_string(high) + "000000000|016000000000|";
    }
    EXPECT_EQ(world.transcript(), "J" + kEnter + "$01I" + channels +
                                      "B005060050040030020010|E09/11/26|" + NriWorld::kLeave + "W");
    const auto d = std::ranges::find(world.port.writes, "D");
    EXPECT_EQ(*(d + 1) + *(d + 2), "10");
    // 6 x 27 + 22 + 9 characters of at least 50 ms, and the pauses.
    EXPECT_GE(world.ms() - before, 193 * 50 + 6 * 300 + 400 + 200);
    EXPECT_EQ(world.prompts.texts(), "OK: NRI Memory Programmed OK\n");
}

TEST(NriProgram, WhatTheMechDoesNotTakeIsNoSuccess) {
    struct Case {
        const char* what;
        const char* model;
        std::function<void(Programmed&)> spoil;
        const char* lastWrite;  ///< of the handshake commands
    };
    for (const Case& c : std::vector<Case>{
             {"a refused pair", "G40-0000", [](Programmed& w) { w.mech.refusedPair = 3; }, "Z02"},
             {"a lost pair", "G40-0000", [](Programmed& w) { w.mech.lostPair = 12; }, "Z13"},
             {"no acknowledgement at all", "G40-0000",
              [](Programmed& w) { w.mech.silentTo = {"Z"}; }, "Z02"},
             {"no header", "G10-4000/5", [](Programmed& w) { w.state.nri.next.header.clear(); },
              "nothing"},
             {"a route that is none", "G40-0000",
              [](Programmed& w) { w.state.nri.next.routeText[0] = "01020408"; }, "nothing"},
             {"no header", "G10-4000", [](Programmed& w) { w.state.nri.next.header.clear(); }, ""},
             {"refused", "G13-0000", [](Programmed& w) { w.port.receive("?\r", 3000); }, ""},
             {"refused late", "G13-0000",
              [](Programmed& w) {
                  w.port.answer("\r", "", 5);
                  w.port.answer("\r", "?\r", 200);
                  w.port.answer("\r", "", 5);
              },
              ""},
             {"the line fell silent", "G13-0000",
              [](Programmed& w) {
                  for (int i = 0; i < 3; ++i) w.prompts.expect("No Response", Answer::ok);
                  w.loop.callAfter(std::chrono::seconds(4), [&w] { w.port.responder = nullptr; });
              },
              ""},
             {"pulled out", "G13-0000",
              [](Programmed& w) {
                  w.prompts.expect("No Response", Answer::ok);
                  w.loop.callAfter(std::chrono::seconds(4), [&w] { w.port.fail("gone"); });
              },
              ""}}) {
        Programmed world(c.model);
        c.spoil(world);
        EXPECT_FALSE(world.nri.programAndVerify()) << c.what;
        EXPECT_NE(world.prompts.texts().find(kNotProgrammed), std::string::npos)
            << world.prompts.texts();
        EXPECT_FALSE(world.prompts.told("Programmed OK")) << c.what;
        EXPECT_FALSE(world.state.box.serialModeFlag) << c.what;
        EXPECT_FALSE(world.progress.open) << c.what;
        if (*c.lastWrite == '\0') continue;
        if (std::string(c.lastWrite) == "nothing") {
            EXPECT_EQ(world.transcript(), "JW") << c.what;
            continue;
        }
        // Every channel and the date are tried; nothing else follows a failure.
        const std::string sent = world.transcript();
        EXPECT_NE(sent.find("Z02"), std::string::npos) << c.what;
        if (std::string(c.lastWrite) == "Z02") {
            EXPECT_EQ(sent.find("Z0F"), std::string::npos) << c.what << sent;
        }
        EXPECT_TRUE(sent.ends_with(std::string(NriWorld::kLeave) + "W")) << sent;
    }
}

// --- files ---------------------------------------------------------------------------------

TEST(NriClone, NothingIsSentWithoutAnAnswerOrAWholeFile) {
    NriWorld world("G13-6000");
    EXPECT_TRUE(world.nri.readMemory());
    world.port.sent.clear();
    const auto write = [&](const char* name, const std::string& text) {
        writeFileWhole(world.folder / name, text);
        world.prompts.chooseFile(world.folder / name);
    };
    world.prompts.chooseFile(std::nullopt);
    EXPECT_FALSE(world.nri.programmeFromFile());
    world.prompts.chooseFile(world.folder / "none.txt");
    EXPECT_FALSE(world.nri.programmeFromFile());
    EXPECT_EQ(world.prompts.asked.back().text, "Invalid Filename");
    write("short.txt", "1,\"00\"\r\nrubbish\r\n");
    world.prompts.expect("Confirm", Answer::ok);
    EXPECT_FALSE(world.nri.programmeFromFile());
    EXPECT_EQ(world.prompts.asked.back().text, "Error Writing Data");
    EXPECT_TRUE(world.prompts.notices.back().text.starts_with("short.txt: 1 lines"));
    write("declined.txt", "1,\"00\"\r\n");
    world.prompts.expect("Confirm", Answer::cancel);
    EXPECT_FALSE(world.nri.programmeFromFile());
    EXPECT_EQ(world.port.sent, "");
    EXPECT_EQ(world.state.nri.blocks[1], "AB00") << "the blocks are still the mech's";
    EXPECT_TRUE(world.state.oldImageWhole());
}

TEST(NriClone, AFailedWriteIsTold) {
    NriWorld world("G13-6000");
    EXPECT_TRUE(world.nri.readMemory());
    world.prompts.chooseFile(world.folder / "mech.txt");
    world.nri.utilities().saveToFile();
    world.mech.refusedPair = 6;
    world.prompts.chooseFile(world.folder / "mech.txt");
    world.prompts.expect("Confirm", Answer::ok);
    EXPECT_FALSE(world.nri.programmeFromFile());
    EXPECT_EQ(world.prompts.asked.back().text, "Error Writing Data");
    EXPECT_TRUE(world.inCommandMode());
    EXPECT_FALSE(world.state.oldImageWhole()) << "what the mech holds now was not read";
}

}  // namespace
}  // namespace vantor
