#include <gtest/gtest.h>

#include "MeasureWorld.h"
#include "measure/Gather.h"
#include "measure/Transfer.h"

namespace vantor::test {
namespace {

struct TransferTest : ::testing::Test, MeasureWorld {
    TransferTest() { state.prom.segmentSelected[0] = true; }

    void item(int kind, int channel, int low, int high) {
        auto& row = state.coinTable.itemLimits[state.item.nextItem++];
        row.fill(0);
        row[0] = kind;
        row[1] = channel;
        row[2] = low;
        row[3] = high;
    }
    [[nodiscard]] long told(const std::string& part) const {
        return std::ranges::count_if(prompts.asked, [&](const Prompt& box) {
            return box.text.find(part) != std::string::npos;
        });
    }
};

TEST_F(TransferTest, CoinsOfOneChannelWidenItAndTheSeventhIsRefused) {
    item(1, 1, 100, 140);
    item(1, 1, 95, 130);
    item(3, 1, 1, 4000);
    for (int i = 0; i < 4; ++i) item(1, 1, 100, 120);
    item(1, 1, 1, 4000);
    item(1, 2, 7, 8);
    flows.PROMxfr();
    EXPECT_EQ(limitsDisplay.firstRow(), "95;140;0;0;0;0;");
    EXPECT_EQ(state.limits.channelCoins[1].count, 6);
    EXPECT_EQ(state.limits.channelCoins[1].rows[3], 3);
    EXPECT_EQ(state.limits.channelLimits[2][2], 8);
    EXPECT_EQ(told("Too Many Coins to One Channel"), 1);
    // Again, as Restore Limits does: the same limits from the unchanged table.
    state.limits.channelLimits[1][1] = 1;
    flows.PROMxfr();
    EXPECT_EQ(limitsDisplay.firstRow(), "95;140;0;0;0;0;");
    EXPECT_EQ(state.limits.channelCoins[1].count, 6);
}

TEST_F(TransferTest, SlugsAndBadChannelsBeyondTheListsAreToldAndLeftOut) {
    for (int i = 0; i < 7; ++i) item(2, 0, i, i);
    item(1, 0, 1, 2);
    item(1, 25, 1, 2);
    item(1, 24, 3, 4);
    flows.PROMxfr();
    EXPECT_EQ(state.limits.slugCount, 6);
    EXPECT_EQ(state.limits.slugList[6], 5);
    EXPECT_EQ(told("Too Many Slug Records"), 1);
    EXPECT_EQ(told(" 455 Error Parsing Data Records for transfer : "), 2);
    EXPECT_EQ(state.limits.channelLimits[24][1], 3);
}

TEST_F(TransferTest, TheTableNeverGrowsBeyondItsLastRow) {
    std::string records;
    for (int i = 0; i < 102; ++i) records += "S,w" + std::to_string(i) + ",1,0,9,0,9,0,9\r\n";
    answerItems(102);
    port.answer("N", drops(1));
    run(records);
    EXPECT_EQ(state.item.nextItem, 99);
    EXPECT_EQ(state.coinTable.itemLimits[99][0], 2);
    EXPECT_EQ(told("Too Many Slug Records"), 94);
}

TEST_F(TransferTest, ReferenceLimitsAreTheFloorOfTheWholeSumWithinCapacity) {
    EXPECT_EQ(referenceLimit(200.4F, -6, 4095), 194);
    EXPECT_EQ(referenceLimit(200.4F, 7, 4095), 207);
    EXPECT_EQ(referenceLimit(200.5F, 0, 4095), 201);
    EXPECT_EQ(referenceLimit(3.0F, -4, 255), 0);
    EXPECT_EQ(referenceLimit(250.0F, 9, 255), 255);
    EXPECT_EQ(referenceLimit(250.0F, 2'147'483'647, 255), 255);
}

TEST_F(TransferTest, TheOldMemoryIsTakenOverOnlyWhereItIsNeeded) {
    flows.PROMxfr();
    EXPECT_EQ(family.calls, (std::vector<std::string>{"rebuild"}));
    state.coinset.usesOldChannels = true;
    flows.PROMxfr();
    EXPECT_EQ(family.called("read old"), 1);
    state.images.oldMemoryRead = true;
    flows.PROMxfr();
    EXPECT_EQ(family.called("read old"), 1);
    EXPECT_EQ(family.called("copy old"), 1);
    state.coinset.usesOldChannels = false;
    state.images.oldMemoryRead = false;
    family.rules.alwaysReadsOldMemory = true;
    flows.PROMxfr();
    EXPECT_EQ(family.called("read old"), 2);
}

TEST_F(TransferTest, OneSegmentIsAlwaysSelected) {
    for (const int size : {0, 1}) {
        flows.choosePromSize(size);
        // A 1K PROM has no third segment.
        flows.chooseSegments({false, false, size == 0, false});
        state.limits.limitsEdited = true;
        flows.PROMxfr();
        EXPECT_EQ(limitsDisplay.chosen, 0);
        EXPECT_TRUE(state.prom.segmentSelected[0]);
        EXPECT_FALSE(state.limits.limitsEdited || state.limits.changeFlag);
    }
    EXPECT_TRUE(prompts.asked.empty()) << "no edit is taken over by a transfer";
}

}  // namespace
}  // namespace vantor::test
