#include <gtest/gtest.h>

#include "MeasureWorld.h"
#include "ScratchFolder.h"
#include "measure/Gather.h"
#include "measure/ResultsLog.h"

namespace vantor::test {
namespace {

struct Readings : ::testing::Test, MeasureWorld {
    Readings() {
        flows.updateStats(1);
        state.gather.runActive = true;
        state.gather.gatherActive = true;
        state.gather.coinsRemaining = 3;
    }
};

TEST_F(Readings, ADropIsReadCountedAndShown) {
    feed(drop(1203, 1498, 2210));
    EXPECT_EQ(state.item.readingCount, 1);
    EXPECT_EQ(state.item.readings[1][3], 2210);
    EXPECT_EQ(display.readings, " 1203; 1498; 2210;");
    EXPECT_EQ(display.number, " 2");
    EXPECT_EQ(state.item.limits[1], 1203);
    state.gather.gatherActive = false;
    feed(drop(1203, 1498, 2210));
    EXPECT_EQ(state.item.readingCount, 1) << "nobody gathers";
}

TEST_F(Readings, AnInvalidReadingIsToldAndNotCounted) {
    feed(drop(1, 1498, 2210));
    feed(drop(1, 1498, 2210));
    EXPECT_EQ(state.item.readingCount, 0);
    EXPECT_EQ(state.gather.coinsRemaining, 3);
    EXPECT_EQ(prompts.beeps, 4);
    ASSERT_FALSE(prompts.notices.empty());
    EXPECT_EQ(prompts.notices[0].text,
              "Out Of Range Value \r\n 1 1498 2210\r\nMeasurement Ignored");
    EXPECT_EQ(prompts.notices[0].title, "Error");
    EXPECT_TRUE(prompts.asked.empty()) << "nothing waits in the receive path";
}

TEST_F(Readings, DropsBeyondTheExpectedOnesAreIgnored) {
    for (int i = 0; i < 5; ++i) feed(drop(1000 + i, 1500, 2200));
    EXPECT_EQ(state.item.readingCount, 3);
    EXPECT_EQ(state.gather.coinsRemaining, 0);
}

TEST_F(Readings, BeyondTheFiveHundredthNothingIsStoredButTheGatherEnds) {
    state.gather.coinsRemaining = 502;
    for (int i = 0; i < 502; ++i) feed(drop(1000, 1500, 2200));
    EXPECT_EQ(state.item.readingCount, 500);
    EXPECT_EQ(state.gather.coinsRemaining, 0);
    EXPECT_TRUE(prompts.told(" 402 Error Updating latest results : "));
}

TEST_F(Readings, OutsideARunTheReadingsHeldAreShown) {
    state.gather.runActive = false;
    feed(drop(1000, 1500, 2200));
    EXPECT_EQ(display.number, " 1");
    EXPECT_EQ(state.gather.coinsRemaining, 3);
    state.item.limitAdjust[1] = 7;
    flows.updateStats(1);
    EXPECT_EQ(state.item.limitAdjust[1], 0);
    EXPECT_EQ(display.number, " 0");
    EXPECT_EQ(display.readings, "0;0;0;");
    EXPECT_EQ(state.item.mean[1], 0.0F);
}

struct Window : ::testing::Test, MeasureWorld {};

TEST_F(Window, FreshStartTellsTheBoxAndChoosesTheFirstSegment) {
    state.prom.promSizeCode = 1;
    state.prom.segmentSelected.fill(true);
    state.coinset.title = "old";
    state.item.limitOrigins[2].source = LimitSource::fixed;
    flows.CoinInitialise(0);
    EXPECT_EQ(port.sent, "M");
    EXPECT_TRUE(display.visible);
    EXPECT_EQ(display.caption, "Capture Measurements : ");
    EXPECT_EQ(state.coinset.title, "");
    EXPECT_EQ(state.item.limitOrigins[2].source, LimitSource::twoSd);
    EXPECT_TRUE(state.prom.segmentSelected[0]);
    EXPECT_FALSE(state.prom.segmentSelected[1]);
    EXPECT_EQ(state.prom.promSizeCode, 1);
    expectReady();
}

TEST_F(Window, AnotherPromSizeChoosesTheFirstSegmentAgain) {
    flows.choosePromSize(1);
    flows.chooseSegments({false, true, true, false});
    EXPECT_FALSE(state.prom.segmentSelected[0]);
    EXPECT_TRUE(state.prom.segmentSelected[2]);
    flows.choosePromSize(0);
    EXPECT_TRUE(state.prom.segmentSelected[0]);
    EXPECT_FALSE(state.prom.segmentSelected[2]);
}

TEST(ResultsLog, ItemsAreWrittenAsTextsIntegersAndShortestSingles) {
    EXPECT_EQ(formatLogLine({"a b", 12, -3, 0.1F, 2200.3333F, 16777216.0F, ""}),
              "\"a b\",12,-3,0.1,2200.3333,16777216,\"\"");
}

TEST(ResultsLog, LinesAreOnDiskAtOnce) {
    const ScratchFolder folder;
    const auto target = folder.path / "x.csv";
    ResultsLog log;
    log.write({"nobody listens"});
    log.open(target);
    log.write({"line", 1});
    EXPECT_EQ(readFile(ResultsLog::temporaryName(target)), "\"line\",1\r\n");
}

}  // namespace
}  // namespace vantor::test
