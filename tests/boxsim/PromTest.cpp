#include <numeric>

#include "BoxBench.h"

namespace vantor::boxsim::test {
namespace {

std::vector<std::uint8_t> counting(std::size_t words) {
    std::vector<std::uint8_t> cells(words);
    for (std::size_t i = 0; i < words; ++i) cells[i] = static_cast<std::uint8_t>((i + i / 16) % 16);
    return cells;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t from = 0;
    for (std::size_t cr = text.find('\r'); cr != std::string::npos; cr = text.find('\r', from)) {
        lines.push_back(text.substr(from, cr - from));
        from = cr + 1;
    }
    return lines;
}

TEST(Prom, ReadingGivesAllLinesOfTheSizeAskedFor) {
    BoxBench bench;
    bench.box.insertProm(PromKind::bipolar, 512, counting(512));
    EXPECT_EQ(bench.ask("E"), "");
    const auto small = linesOf(bench.ask("A"));
    ASSERT_EQ(small.size(), 16U);
    EXPECT_EQ(small[0], "R000 0 1 2 3 4 5 6 7 8 9 A B C D E F ");
    EXPECT_EQ(small[15], "R0F0 F 0 1 2 3 4 5 6 7 8 9 A B C D E ");
    const auto large = linesOf(bench.ask("EK"));
    ASSERT_EQ(large.size(), 32U);
    EXPECT_EQ(large[31], "R1F0 F 0 1 2 3 4 5 6 7 8 9 A B C D E ");
    // Half a reading is no reading, and each needs an E of its own.
    EXPECT_EQ(bench.ask("A"), "");
    // A small PROM drives nothing above its own addresses.
    bench.box.insertProm(PromKind::bipolar, 256, counting(256));
    const auto beyond = linesOf(bench.ask("EK"));
    ASSERT_EQ(beyond.size(), 32U);
    EXPECT_EQ(beyond[15], small[15]);
    EXPECT_EQ(beyond[16], "R100 F F F F F F F F F F F F F F F F ");
}

TEST(Prom, AnEmptySocketSendsNothing) {
    BoxBench bench;
    EXPECT_EQ(bench.ask("EK"), "");
    EXPECT_EQ(bench.ask("P0001\r"), "");
    EXPECT_TRUE(bench.box.promCells().empty());
}

TEST(Prom, ABipolarCellOnlyGainsBits) {
    BoxBench bench;
    bench.box.insertProm(PromKind::bipolar, 256);
    EXPECT_EQ(bench.ask("P0800123456789ABCDEF\r"), "Z\r");
    EXPECT_EQ(bench.ask("P0808888888888888888\r"), "Z\r");
    const std::vector<std::uint8_t> burnt = {8, 9, 10, 11, 12, 13, 14, 15,
                                             8, 9, 10, 11, 12, 13, 14, 15};
    const auto cells = bench.box.promCells().subspan(128, 16);
    EXPECT_EQ(std::vector<std::uint8_t>(cells.begin(), cells.end()), burnt);
    EXPECT_EQ(std::accumulate(bench.box.promCells().begin(), bench.box.promCells().end(), 0), 184);
}

TEST(Prom, AnE1DeviceObeysItsSwitches) {
    struct Case {
        bool switch1, switch2;
        int stored;         // after 5 was programmed over 12
        const char* shown;  // what a reading shows of it
    };
    const Case cases[] = {{true, true, 5, "F"},
                          {true, false, 12, "C"},
                          {false, true, 12, "F"},
                          {false, false, 12, "C"}};
    for (const Case& c : cases) {
        BoxBench bench;
        const std::vector<std::uint8_t> old = {12};
        bench.box.insertProm(PromKind::e1, 256, old);
        bench.box.setSwitch(1, c.switch1);
        bench.box.setSwitch(2, c.switch2);
        EXPECT_EQ(bench.ask("P0005\r"), "Z\r");
        EXPECT_EQ(bench.box.promCells()[0], c.stored);
        EXPECT_EQ(bench.ask("EA").substr(5, 1), c.shown);
        bench.box.setSwitch(2, false);
        EXPECT_EQ(bench.ask("EA").substr(5, 1), c.stored == 5 ? "5" : "C");
    }
}

TEST(Prom, WhatCannotBeUnderstoodIsNeitherStoredNorAcknowledged) {
    BoxBench bench;
    bench.box.insertProm(PromKind::bipolar, 256);
    for (const char* line : {"P000\r", "P00\r", "P0x01\r", "P000G\r", "P00012345678901234567\r"}) {
        EXPECT_EQ(bench.ask(line), "") << line;
    }
    EXPECT_EQ(bench.ask("P1FF1\r"), "Z\r");  // beyond the PROM: understood, nothing there
    EXPECT_EQ(std::accumulate(bench.box.promCells().begin(), bench.box.promCells().end(), 0), 0);
}

TEST(Prom, ProgrammingTakesItsTimeAndTheBoxHearsLater) {
    BoxBench bench;
    bench.box.insertProm(PromKind::bipolar, 256);
    bench.send("P0000000000000000000\rN");  // 21 bytes and the N behind them
    bench.loop.advance(50ms);
    EXPECT_FALSE(bench.box.coinDataOn());  // it has come, but the box is at work
    bench.loop.advance(1s);
    EXPECT_TRUE(bench.box.coinDataOn());
    const auto& wire = bench.box.transcript();
    const auto ack = std::find_if(wire.begin(), wire.end(), [](auto& w) { return w.fromBox; });
    // 21 bytes, 16 cells of 2 ms, 0.5 ms, one byte.
    EXPECT_EQ(ack->at, 21875us + 32500us + 1042us);
    EXPECT_EQ(bench.box.ownTime(), 32500us);
}

}  // namespace
}  // namespace vantor::boxsim::test
