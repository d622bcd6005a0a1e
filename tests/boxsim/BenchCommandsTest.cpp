#include "boxsim/BenchCommands.h"

#include <sstream>

#include "BoxBench.h"
#include "ScratchFolder.h"

namespace vantor::boxsim::test {
namespace {

TEST(BenchCommands, DoWhatTheySay) {
    BoxBench bench;
    const auto run = [&](const char* line) {
        const BenchResult result = runBenchLine(bench.box, line);
        EXPECT_EQ(result.error, "") << line;
        return result.reply;
    };
    run("validator in ME111");
    run("binary on");
    EXPECT_EQ(bench.ask("*"), "D\r");
    EXPECT_EQ(run("  # a remark"), "");
    run("battery low");
    run("fault drop box after 1 times 2");
    EXPECT_EQ(bench.ask("*"), "B\r");  // the CR and the D are lost
    run("fault clear");
    run("fault silent always");
    EXPECT_EQ(bench.ask("*"), "");
    run("fault clear");
    run("unplug");
    EXPECT_FALSE(bench.failure.empty());
    run("replug");
    EXPECT_EQ(bench.ask("*"), "D\r");
}

TEST(BenchCommands, PromsGoInAndAreSavedAndCompared) {
    const vantor::test::ScratchFolder folder;
    const std::string name = "'" + (folder.path / "prom.txt").string() + "'";
    BoxBench bench;
    const auto error = [&](const std::string& line) { return runBenchLine(bench.box, line).error; };
    EXPECT_EQ(error("insert e1 2K"), "");
    EXPECT_EQ(error("switch 1 on"), "");
    EXPECT_EQ(error("switch 2 on"), "");
    bench.ask("P1F00123456789ABCDEF\r");
    EXPECT_EQ(error("expect-prom 1F0 0123456789ABCDEF"), "");
    EXPECT_EQ(error("expect-prom 1EF 01234"), "cell 1F0 holds 0, not 1");
    EXPECT_NE(error("expect-prom 1FF F0"), "");
    EXPECT_EQ(error("save-prom " + name), "");

    EXPECT_EQ(error("insert bipolar 2K blank"), "");
    EXPECT_EQ(error("expect-prom " + name), "cell 1F1 holds 0, not 1");
    EXPECT_NE(error("insert bipolar 1K " + name), "");
    EXPECT_EQ(bench.box.promCells().size(), 512U);  // the refused one changed nothing
    EXPECT_EQ(error("insert bipolar 2K " + name), "");
    EXPECT_EQ(error("expect-prom " + name), "");
}

TEST(BenchCommands, RefuseWhatTheyDoNotUnderstand) {
    BoxBench bench;
    EXPECT_FALSE(runBenchLine(bench.box, "drop \"1 Dorin\"").ok());  // no validator
    EXPECT_FALSE(runBenchLine(bench.box, "validator in").ok());      // never was one
    ASSERT_TRUE(bench.box.plugValidator("Mars", "ME111"));
    // Separated by strokes.
    const std::string lines =
        "frob|drop|drop nothing|drop '1 Dorin' 0|drop '1 Dorin' 2 3 4|"
        "drop '1 Dorin' every|drop-raw 1 2|drop-raw 1 2 x|insert|insert e1|insert e1 3K|"
        "insert e1 1K /no/such/file|switch 3 on|switch 1 up|validator|validator in ME999|"
        "validator out ME111|silent|silent maybe|battery|version|version V1.2345|fault|"
        "fault frob|fault drop after|fault drop x|save-prom|save-prom x|expect-prom|"
        "drop '1 Dorin";
    std::istringstream each(lines);
    for (std::string line; std::getline(each, line, '|');) {
        EXPECT_FALSE(runBenchLine(bench.box, line).ok()) << line;
    }
    EXPECT_EQ(bench.box.validator(), "ME111");
}

TEST(BenchCommands, ReportEventsWhileTheValidatorIsTested) {
    BoxBench bench;
    bench.box.plugValidator("Mars", "ME111");
    const auto works = [&](const char* line) { return runBenchLine(bench.box, line).ok(); };
    EXPECT_FALSE(works("coin A"));
    bench.ask("O");
    for (const char* line : {"coin J", "coin", "coin AB", "reject A", "pattern D", "pattern 0G"}) {
        EXPECT_FALSE(works(line)) << line;
    }
    EXPECT_TRUE(works("reject"));
    bench.box.unplugValidator();
    EXPECT_FALSE(works("reject"));
}

}  // namespace
}  // namespace vantor::boxsim::test
