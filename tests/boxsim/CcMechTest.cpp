#include "MechBench.h"
#include "ScratchFolder.h"

namespace vantor::boxsim::test {
namespace {

const std::string kDone = "\x05";
const std::string kSet435 = "#80C08";

struct I2cBench : MechBench {
    explicit I2cBench(std::string_view model, bool opened = true) : MechBench("CC", model) {
        enter(model == "C120" ? "#80C00" : kSet435, "$05");
        if (opened) {
            EXPECT_EQ(ask("xx"), kDone) << model;
        }
    }
};

TEST(I2cMech, TakesNoPacketThatDoesNotHold) {
    I2cBench bench("435");
    // Sums that do not hold, of a read and of a write.
    EXPECT_EQ(bench.ask(bytes({0x7B, 0x00, 0x7C})), "");
    EXPECT_EQ(bench.ask(bytes({0x7A, 0x05, 0x01, 0x02, 0x83})), "");
    EXPECT_EQ(bench.cell(5), "FFFF");
    EXPECT_EQ(bench.ask("yy"), kDone);
    EXPECT_EQ(bench.ask(bytes({0x7B, 0x00, 0x7B})), "");  // the channel is closed

    I2cBench smaller("450");
    EXPECT_EQ(smaller.ask(bytes({0x7B, 128, 0xFB})), "");
    EXPECT_EQ(smaller.ask(bytes({0x7A, 128, 0, 0, 0xFA})), "\x06");
}

TEST(I2cMech, OpensOnlyWhereTheBoxWasSetUpForIt) {
    struct Case {
        const char* model;
        const char* setUp;
        const char* mode;
        bool opens;
    };
    for (const Case& c :
         {Case{"C120", "#80C00", "$05", true}, Case{"C120", "#80C08", "$05", false},
          Case{"C120", "C00", "$05", false}, Case{"C120", "#80C00", "$06", false},
          Case{"335", "#80C08", "$05", true}, Case{"335", "#80C00", "$05", false}}) {
        MechBench bench("CC", c.model);
        bench.enter(c.setUp, c.mode);
        EXPECT_EQ(bench.ask("xx"), c.opens ? kDone : "") << c.model << c.setUp << c.mode;
    }
}

TEST(I2cMech, SkipsWhatIsNoPacketAndStaysInStep) {
    I2cBench bench("220B");
    const std::string opening = "#80C08" + std::string(25, '\x1B') + "$05";
    EXPECT_EQ(bench.ask(opening), "");
    EXPECT_EQ(bench.ask("xx"), kDone);
    EXPECT_EQ(bench.ask(opening + "xx"), kDone);
    // The beginning of a packet whose end was lost: before a pause, or before the next packet.
    bench.ask(bytes({0x7A, 0x05, 0x01}));
    EXPECT_EQ(bench.ask("xx"), kDone);
    EXPECT_EQ(bench.ask("x\x1Bxx"), kDone);
    EXPECT_EQ(bench.ask("\xFFxx"), kDone);
    EXPECT_EQ(bench.box.unknownBytes(), 0);
}

TEST(I2cMech, LongCoinFramesNeverEndWhereShortOnesDo) {
    I2cBench bench("C120");
    bench.bench("option long-frames on");
    bench.ask(bytes({0x7F, 0x1F, 0x9E}));
    EXPECT_EQ(bench.dropped({100, 200, 50}), bytes({0x3F, 100, 200, 50, 0x43, 0x44, 0x40, 0x64}));
    // 3F + 7A + 43 + 44 = 40: the byte in the place of the shorter frame's sum gives way.
    bench.ask(bytes({0x7F, 0x1F, 0x9E}));
    EXPECT_EQ(bench.dropped({0x40, 0x3A, 0}), bytes({0x3F, 0x40, 0x3A, 0, 0x43, 0x44, 0x41, 0x81}));
    EXPECT_FALSE(runBenchLine(bench.box, "option long-frames maybe").ok());
    I2cBench other("450");
    EXPECT_FALSE(runBenchLine(other.box, "option long-frames on").ok());
}

TEST(I2cMech, A335ForgetsAfterAWhileThatItWasAskedForACoin) {
    for (const bool askedAgain : {false, true}) {
        I2cBench bench("335");
        bench.ask("\xFF\xFF", 12s);
        if (askedAgain) bench.ask("\xFF\xFF", 1s);
        bench.loop.advance(10s);
        EXPECT_EQ(bench.dropped({1, 2, 3}), askedAgain ? bytes({0x3F, 1, 2, 3, 0x45}) : "");
    }
}

TEST(I2cMech, GoesWrongAsTheBenchSays) {
    const std::string read0 = bytes({0x7B, 0x00, 0x7B});
    const std::string write5 = bytes({0x7A, 0x05, 0x12, 0x34, 0xC5});
    struct Case {
        const char* fault;
        std::string request;
        std::string first, second;  // answers to it
        const char* word5;          // afterwards
    };
    const std::string word0 = bytes({0x3B, 0x01, 0x20, 0x5C});
    const Case cases[] = {
        {"fault wrong-sum after 1", read0, word0, bytes({0x3B, 0x01, 0x20, 0x5D}), "1C1C"},
        {"fault refuse", write5, "\x06", kDone, "1234"},
        {"fault refuse always", write5, "\x06", "\x06", "1C1C"},
        {"fault mech-silent after 1", read0, word0, "", "1C1C"},
        {"fault mech-cut value 2", read0, bytes({0x3B, 0x01}), word0, "1C1C"},
        {"fault stuck value 5 times 2", write5, kDone, kDone, "1C1C"},
        {"fault stuck value 6 always", write5, kDone, kDone, "1234"},
        {"fault mech-late value 2500", read0, word0, word0, "1C1C"},
    };
    for (const Case& c : cases) {
        I2cBench bench("C120");
        bench.bench(c.fault);
        EXPECT_EQ(bench.ask(c.request), c.first) << c.fault;
        EXPECT_EQ(bench.ask(c.request), c.second) << c.fault;
        EXPECT_EQ(bench.cell(5), c.word5) << c.fault;
    }
    I2cBench bench("435", false);
    bench.bench("fault no-session times 2");
    EXPECT_EQ(bench.ask("xx"), "");
    EXPECT_EQ(bench.ask("yy"), "");
    EXPECT_EQ(bench.ask("xx"), "");
    EXPECT_EQ(bench.ask("xx"), kDone);
    bench.bench("fault wrong-sum");
    bench.bench("fault refuse");
    const std::string ask = bytes({0x7F, 0x1F, 0x9E});
    EXPECT_EQ(bench.ask(ask), "\x06");
    EXPECT_EQ(bench.dropped({1, 2, 3, 4, 5}), "");
    EXPECT_EQ(bench.ask(ask), "");
    EXPECT_EQ(bench.dropped({1, 2, 3, 4, 5}), bytes({0x3F, 1, 2, 3, 4, 5, 0x4F}));
}

TEST(I2cMech, ALateAnswerNeverReachesCommandMode) {
    I2cBench bench("C120");
    bench.bench("fault mech-late value 3000");
    EXPECT_EQ(bench.ask(bytes({0x7B, 0x00, 0x7B}), 2s), "");
    bench.leave();
    EXPECT_EQ(bench.ask("J", 5s), "");
}

TEST(BenchCommands, ShowSaveSetAndCompareTheMechsMemory) {
    const vantor::test::ScratchFolder folder;
    const std::string name = "'" + (folder.path / "memory.txt").string() + "'";
    MechBench bench("CC", "C120");
    EXPECT_TRUE(
        bench.bench("show-memory").starts_with("0: 0120 4C01 93B7 0207 0A32 1C1C 0000 0000\n8: "));
    bench.bench("set-memory 5 12ab");
    bench.bench("save-memory " + name);
    bench.bench("expect-memory " + name);

    bench.bench("validator out");
    bench.bench("validator in");  // the same one
    bench.bench("expect-memory 5 12AB");
    bench.bench("validator in C120");  // another one
    bench.bench("expect-memory 5 1C1C");
    EXPECT_FALSE(runBenchLine(bench.box, "expect-memory " + name).ok());
    for (const char* line :
         {"set-memory 128 0", "set-memory 5 12345", "set-memory 5 xyz", "expect-memory 128 0000",
          "expect-memory 5 1C1D", "option frob on", "save-memory", "expect-memory /no/such/file"}) {
        EXPECT_FALSE(runBenchLine(bench.box, line).ok()) << line;
    }
    bench.bench("validator in ME111");
    EXPECT_FALSE(runBenchLine(bench.box, "show-memory").ok());
}

}  // namespace
}  // namespace vantor::boxsim::test
