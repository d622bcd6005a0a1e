#include "limits/Estimate.h"

#include <gtest/gtest.h>

#include <vector>

#include "limits/NormalTable.h"

namespace vantor {
namespace {

constexpr float kClose = 0.00005F;

TEST(NormalTable, InterpolatesAndEnds) {
    struct Case {
        float z;
        float probability;
    };
    for (const Case& c :
         {Case{0, 0.5F}, Case{1.05F, 0.8528F}, Case{-1.0F, 0.1587F}, Case{0.537F, 0.704154F},
          Case{-2.345F, 0.009575F}, Case{2.9F, 0.9981F}, Case{2.95F, 0.9981F}, Case{3.0F, 0.9981F},
          Case{-3.0F, 0.0019F}, Case{3.01F, 1.0F}, Case{-3.01F, 0.0F}, Case{1e30F, 1.0F}}) {
        EXPECT_NEAR(normalCdf(c.z), c.probability, kClose) << c.z;
    }
}

TEST(Estimate, ShareOfOneParameter) {
    struct Case {
        const char* what;
        Spread spread;
        float low, high, share;
    };
    const Spread skewed{100, 4, 8};
    for (const Case& c : {Case{"both sides of the mean", skewed, 94, 118, 0.9209F},
                          Case{"above the mean", skewed, 104, 118, 0.2962F},
                          Case{"below the mean", skewed, 90, 97, 0.22075F},
                          Case{"all readings equal", {100, 0, 0}, 100, 101, 0.5F},
                          Case{"an empty window", {100, 0, 0}, 100, 100, 0.0F},
                          Case{"high below low", skewed, 118, 94, -0.76075F}}) {
        EXPECT_NEAR(insideShare(c.spread, c.low, c.high), c.share, kClose) << c.what;
    }
}

TEST(Estimate, CoinRules) {
    struct Case {
        const char* what;
        Spread spread;
        Window window;
        int capacity;
        float share;
    };
    for (const Case& c : {Case{"no upper limit", {4090, 5, 6}, {4080, 4095}, 4095, 0.9772F},
                          Case{"the same without it", {4090, 5, 6}, {4080, 4095}, 5000, 0.774567F},
                          Case{"no upper limit, 8 bits", {250, 5, 6}, {245, 255}, 255, 0.8413F},
                          Case{"nothing to measure", {-1, 2, 2}, {0, 0}, 255, 0.6915F},
                          Case{"nothing measured", {0, 0, 0}, {0, 5}, 255, 1.0F}}) {
        EXPECT_NEAR(coinInsideShare(c.spread, c.window, c.capacity), c.share, kClose) << c.what;
    }
}

/// A mech with three or more parameters, filled by hand.
struct Measured {
    int n = 3;
    LimitsState limits;
    CoinTable table;
    SegmentView view;

    explicit Measured(int paramCount = 3) : n(paramCount) {
        view.paramCount = paramCount;
        view.rules.capacity = 4095;
    }
    void item(int row, const std::vector<Spread>& spreads) {
        int p = 0;
        for (const Spread& spread : spreads) {
            table.itemStats[row][p] = spread.mean;
            table.itemStats[row][n + p] = spread.lower;
            table.itemStats[row][2 * n + p] = spread.upper;
            ++p;
        }
    }
    void channel(int number, const std::vector<Window>& windows) {
        int column = 1;
        for (const Window& window : windows) {
            limits.channelLimits[number][column++] = window.low;
            limits.channelLimits[number][column++] = window.high;
        }
    }
    void feed(int number, std::initializer_list<int> rows) {
        for (const int row : rows) {
            ChannelCoinList& coins = limits.channelCoins[number];
            coins.rows[++coins.count] = row;
        }
    }
};

TEST(Estimate, AChannelAveragesItsCoins) {
    Measured mech;
    mech.item(0, {{1200, 4, 6}, {1500, 5, 5}, {2200, 10, 12}});
    mech.item(7, {{1210, 3, 3}, {1495, 6, 4}, {2230, 8, 8}});
    mech.channel(20, {{1192, 1212}, {1490, 1511}, {2180, 4095}});
    EXPECT_EQ(acceptanceOf(20, mech.limits, mech.table, mech.view), 1.0F) << "no coins";
    mech.feed(20, {0});
    EXPECT_NEAR(acceptanceOf(20, mech.limits, mech.table, mech.view), 0.898412F, kClose);
    mech.feed(20, {7});
    EXPECT_NEAR(acceptanceOf(20, mech.limits, mech.table, mech.view), 0.747115F, kClose);
    mech.channel(20, {{1212, 1192}, {1490, 1511}, {2180, 4095}});
    EXPECT_EQ(acceptanceOf(20, mech.limits, mech.table, mech.view), 0.0F) << "never below 0";
}

TEST(Estimate, ASlugIsJudgedByTheDisplayedSegment) {
    Measured mech;
    mech.item(4, {{1205, 5, 5}, {1503, 4, 4}, {2215, 9, 9}});
    mech.channel(19, {{1192, 1212}, {1490, 1511}, {2180, 2230}});
    mech.channel(1, {{1201, 1209}, {1480, 1520}, {2190, 2300}});
    mech.view.firstChannel = 19;
    EXPECT_NEAR(rejectionOf(4, mech.limits, mech.table, mech.view), 0.149246F, kClose);
    // A second channel lets more through than there is: the sum stays within 0..1.
    mech.channel(24, {{1201, 1209}, {1480, 1520}, {2190, 2300}});
    EXPECT_EQ(rejectionOf(4, mech.limits, mech.table, mech.view), 0.0F);
    mech.view.firstChannel = 7;
    EXPECT_EQ(rejectionOf(4, mech.limits, mech.table, mech.view), 1.0F);
}

TEST(Estimate, TheOptionalParameter) {
    Measured mech(5);
    mech.view.rules = {.capacity = 255, .optionalParameter = 4};
    mech.view.channelsPerSegment = 8;
    const std::vector<Spread> piece = {
        {100, 4, 4}, {100, 4, 4}, {100, 4, 4}, {100, 4, 4}, {50, 2, 2}};
    const Window wide{50, 150};
    mech.item(0, piece);
    mech.feed(1, {0});
    mech.channel(1, {wide, wide, wide, wide, {0, 0}});
    EXPECT_EQ(acceptanceOf(1, mech.limits, mech.table, mech.view), 1.0F) << "switched off";
    mech.channel(1, {wide, wide, wide, wide, {0, 50}});
    EXPECT_NEAR(acceptanceOf(1, mech.limits, mech.table, mech.view), 0.5F, kClose);

    // As a slug: its own high value there against the channel's.
    struct Case {
        const char* what;
        int slugHigh;
        int channel2High;
        float rejection;
    };
    for (const Case& c : {Case{"told apart in no channel", 60, 0, 0.0F},
                          Case{"a later channel that tells it apart takes all back", 60, 61, 1.0F},
                          Case{"not above the slug's own", 61, 61, 0.0F}}) {
        mech.table.itemLimits[0][11] = c.slugHigh;
        mech.channel(2, {wide, wide, wide, wide, {0, c.channel2High}});
        EXPECT_NEAR(rejectionOf(0, mech.limits, mech.table, mech.view), c.rejection, kClose)
            << c.what;
    }
}

}  // namespace
}  // namespace vantor
