#include <numeric>

#include "BoxBench.h"

namespace vantor::boxsim::test {
namespace {

TEST(Prom, ASmallOneDrivesNothingAboveItsOwnAddressesAndEachReadingNeedsItsE) {
    BoxBench bench;
    EXPECT_EQ(bench.ask("EK"), "") << "an empty socket";
    bench.box.insertProm(PromKind::bipolar, 256);
    EXPECT_TRUE(bench.ask("EK").ends_with("R1F0 F F F F F F F F F F F F F F F F \r"));
    EXPECT_EQ(bench.ask("A"), "");
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

}  // namespace
}  // namespace vantor::boxsim::test
