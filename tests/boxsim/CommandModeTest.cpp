#include "BoxBench.h"

namespace vantor::boxsim::test {
namespace {

TEST(CommandMode, AnswersAreLiteral) {
    struct Case {
        const char* sent;
        const char* answer;
    };
    BoxBench bench;
    const auto check = [&](std::initializer_list<Case> cases) {
        for (const Case& c : cases) EXPECT_EQ(bench.ask(c.sent), c.answer) << c.sent;
    };
    check({{"S", "N00000 00000 00000 00000 00 V1.95\r"}, {"Y", "Y 00000 00000 00000\r"}});
    ASSERT_TRUE(bench.box.plugValidator("Mars", "ME111"));
    check({{"S", "C00000 00000 00000 00000 00 V1.95\r"},
           {"Y", "Y 00304 00212 00498\r"},
           {"*", ""},
           {"Z030020150100\r", ""},
           {"Z03002015010\r", ""},   // too short: nothing stored
           {"Z0300201501x0\r", ""},  // not a number
           {"S", "C00030 00020 00150 00100 00 V1.95\r"}});
    bench.box.setVersion("V1.90x");
    bench.box.setBinaryOutput(true);
    bench.box.setLineFeeds(true);
    check({{"S", "C00030 00020 00150 00100 00 V1.90\r\n"}, {"*", "D\r\n"}});
}

TEST(CommandMode, EscapeDropsAPartialCommandAndUnknownBytesAreCounted) {
    BoxBench bench;
    // The S that follows is a command of its own only because ESC dropped what came before.
    for (const char* partial : {"C", "C0", "$0", "#8", "Z030020", "P0000"}) {
        EXPECT_EQ(bench.ask(std::string(partial) + "\x1BS").size(), 34U) << partial;
    }
    EXPECT_EQ(bench.box.unknownBytes(), 0);
    bench.box.insertProm(PromKind::bipolar, 256);
    EXPECT_EQ(bench.ask("E\x1B"
                        "A"),
              "");  // disarmed
    EXPECT_EQ(bench.ask("q\r\xFFK"), "");
    EXPECT_EQ(bench.box.unknownBytes(), 5);
}

TEST(CommandMode, TheLineRunsAt9600BaudAndTheBoxTakesItsTime) {
    BoxBench bench;
    bench.send("S");
    EXPECT_TRUE(bench.received.empty());
    bench.loop.advance(5s);
    const auto& wire = bench.box.transcript();
    ASSERT_EQ(wire.size(), 1U + 34U);
    EXPECT_EQ(wire[0].at, 1042us);  // 10 bits at 9600 baud
    // 1041.67 us for the command, 500 us of the box's own, then 34 bytes.
    EXPECT_EQ(wire[1].at, 1042us + 500us + 1042us);
    EXPECT_EQ(wire.back().at, 1042us + 500us + 35417us);
    EXPECT_EQ(bench.box.ownTime(), 500us);
}

TEST(CommandMode, ABatteryWarningWaitsForCommandMode) {
    BoxBench bench;
    bench.box.batteryLow();
    EXPECT_EQ(bench.ask(""), "B\r");
    EXPECT_EQ(bench.ask("$05"), "*S\r");
    bench.box.batteryLow();
    EXPECT_EQ(bench.ask(""), "");
    EXPECT_EQ(bench.breakThen(150ms, 20), "*R\rB\r");
}

TEST(SerialMode, BreakAndEscapes) {
    struct Case {
        const char* what;
        bool serial;
        Micros breakLength;
        int escapes;
        const char* answer;
        bool serialAfter;
    };
    const Case cases[] = {
        {"leave", true, 150ms, 20, "*R\r", false},
        {"leave again, in command mode", false, 150ms, 20, "*R\r", false},
        {"shortest break that leaves", false, 120ms, 20, "*R\r", false},
        {"wake in command mode", false, 100ms, 25, "", false},
        {"wake in serial mode", true, 100ms, 25, "*R\r", false},
        {"one ESC too few", true, 150ms, 19, "", true},
        {"no break", true, 0ms, 25, "", true},
        {"25 ESC say it once", true, 150ms, 25, "*R\r", false},
    };
    for (const Case& c : cases) {
        BoxBench bench;
        ASSERT_TRUE(bench.box.plugValidator("NRI", "G13-6000"));
        if (c.serial) {
            EXPECT_EQ(bench.ask("\x1B\x1B$05"), "*S\r");
            EXPECT_TRUE(bench.box.inSerialMode());
            EXPECT_EQ(bench.ask("SxxI\r"), "");  // the mech's bytes now, and it is silent
        }
        EXPECT_EQ(bench.breakThen(c.breakLength, c.escapes), c.answer) << c.what;
        EXPECT_EQ(bench.box.inSerialMode(), c.serialAfter) << c.what;
    }
}

TEST(SerialMode, Options) {
    BoxBench early;
    early.box.setReadyAtBreakEnd(true);
    early.ask("$05");
    early.received.clear();
    early.box.setBreak(true);
    early.loop.advance(150ms);
    early.box.setBreak(false);
    early.loop.advance(100ms);
    EXPECT_EQ(early.received, "*R\r");
    EXPECT_EQ(early.ask(std::string(20, '\x1B')), "");

    BoxBench noBreaks;
    noBreaks.box.setEscapesAloneAsBreak(true);
    EXPECT_EQ(noBreaks.ask(std::string(25, '\x1B') + "$05"), "*R\r*S\r");
    EXPECT_EQ(noBreaks.ask(std::string(19, '\x1B') + "x"), "");
    EXPECT_EQ(noBreaks.ask(std::string(20, '\x1B')), "*R\r");
    EXPECT_FALSE(noBreaks.box.inSerialMode());
}

TEST(SerialMode, ABreakBehindUnsentBytesKeepsItsLength) {
    BoxBench bench;
    bench.ask("$05");
    bench.received.clear();
    bench.send(std::string(96, 'x'));  // 100 ms on the line
    bench.box.setBreak(true);
    bench.loop.advance(150ms);
    bench.box.setBreak(false);
    bench.send(std::string(20, '\x1B'));
    bench.loop.advance(99ms);
    EXPECT_TRUE(bench.box.inSerialMode());
    bench.loop.advance(1s);
    EXPECT_EQ(bench.received, "*R\r");
}

}  // namespace
}  // namespace vantor::boxsim::test
