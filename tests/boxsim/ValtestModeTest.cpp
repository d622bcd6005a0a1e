#include "MechBench.h"

namespace vantor::boxsim::test {
namespace {

/// A PROM with one coin, channel C, in the segment that begins at `start`.
std::vector<std::uint8_t> promWithOneCoin(std::size_t start, std::array<int, 6> limits) {
    std::vector<std::uint8_t> cells(512);
    cells[start] = 15;
    // Low and high limit of thickness, diameter and material of the third coin.
    const std::array<std::size_t, 6> addresses = {13, 16, 49, 52, 85, 88};
    for (std::size_t i = 0; i < limits.size(); ++i) {
        const int limit = limits.at(i);
        const std::size_t at = start + addresses.at(i);
        cells[at] = static_cast<std::uint8_t>(limit % 16);
        cells[at + 1] = static_cast<std::uint8_t>(limit / 16 % 16);
        cells[at + 2] = static_cast<std::uint8_t>(limit / 256);
    }
    return cells;
}

struct TestBench : BoxBench {
    TestBench() { box.plugValidator("Mars", "ME111"); }

    std::string dropped(int v1, int v2, int v3) {
        received.clear();
        box.dropRaw(v1, v2, v3);
        loop.advance(1s);
        return received;
    }
    std::string run(const char* line) {
        received.clear();
        const BenchResult result = runBenchLine(box, line);
        loop.advance(1s);
        return result.ok() ? received : "error";
    }
};

TEST(ValtestMode, DropsAreReportedAsWhatTheMechMakesOfThem) {
    TestBench bench;
    bench.box.insertProm(PromKind::e1, 512, promWithOneCoin(128, {900, 1100, 1990, 2010, 1, 4095}));
    bench.ask("VN");
    EXPECT_EQ(bench.dropped(900, 2010, 4095), "V C\r");
    EXPECT_EQ(bench.dropped(899, 2010, 4095), "V R\r");
    EXPECT_EQ(bench.dropped(1000, 2011, 4095), "V R\r");
    EXPECT_EQ(bench.dropped(1000, 2000, 0), "V R\r");
    bench.ask("I");
    EXPECT_EQ(bench.dropped(900, 2010, 4095), "") << "coin data is off";
    bench.ask("MN");
    EXPECT_EQ(bench.dropped(900, 2010, 4095), "M 00900 02010 04095\r") << "measuring";
}

TEST(ValtestMode, TheBenchReportsEventsWhileTheValidatorIsTested) {
    TestBench bench;
    EXPECT_EQ(bench.run("coin A"), "error");
    bench.ask("O");
    EXPECT_EQ(bench.run("coin i"), "V I\r");
    EXPECT_EQ(bench.run("reject"), "V R\r");
    EXPECT_EQ(bench.run("pattern 0d"), "V X0D\r");
    for (const char* line : {"coin J", "coin", "coin AB", "reject A", "pattern D", "pattern 0G"}) {
        EXPECT_EQ(bench.run(line), "error") << line;
    }
    bench.box.unplugValidator();
    EXPECT_EQ(bench.run("reject"), "error");
}

}  // namespace
}  // namespace vantor::boxsim::test
