#include "measure/Statistics.h"

#include <gtest/gtest.h>

#include "measure/CoinNumber.h"
#include "measure/Fliers.h"
#include "measure/LimitSource.h"

namespace vantor {
namespace {

MeasurementSession itemOf(const std::vector<int>& readings, int parameter = 1) {
    MeasurementSession item;
    for (const int x : readings) item.readings[++item.readingCount][parameter] = x;
    return item;
}

std::vector<int> limitsOf(const MeasurementSession& item, int count) {
    std::vector<int> limits;
    for (int i = 1; i <= count; ++i) limits.push_back(item.limits[i]);
    return limits;
}

TEST(Statistics, OneReadingHasTheLeastSpreadAndLimitsOnItself) {
    MeasurementSession item = itemOf({1203});
    calcStats(item, {.paramCount = 1, .capacity = 4095});
    EXPECT_EQ(item.mean[1], 1203.0F);
    EXPECT_EQ(item.sdLower[1], 0.1F);
    EXPECT_EQ(item.sdUpper[1], 0.1F);
    EXPECT_EQ(limitsOf(item, 2), (std::vector{1203, 1203}));
}

TEST(Statistics, SpreadsAreFoldedAboutTheMean) {
    MeasurementSession item = itemOf({10, 10, 12});
    calcStats(item, {.paramCount = 1, .capacity = 4095});
    EXPECT_NEAR(item.mean[1], 10.6667, 0.0001);
    EXPECT_NEAR(item.sdLower[1], 0.6667, 0.0001);
    EXPECT_NEAR(item.sdUpper[1], 1.3333, 0.0001);
    EXPECT_EQ(item.lowest[1], 10);
    EXPECT_EQ(item.highest[1], 12);
    // A mean of 10.5 rounds to the even 10: the tens count on both sides.
    const Spreads even = [] {
        MeasurementSession half = itemOf({10, 11});
        half.mean[1] = 10.5F;
        return foldedSpreads(half, 1);
    }();
    EXPECT_EQ(even.lower, 0.1F);
    EXPECT_NEAR(even.upper, 0.4714, 0.0001);
}

TEST(Statistics, LimitsFollowTheirSources) {
    // Mean 10.667, spreads 0.667 and 1.333, extremes 10 and 12.
    struct Case {
        LimitSource low, high;
        int lowAdjust, highAdjust;
        std::vector<int> limits;
    };
    using enum LimitSource;
    const Case cases[] = {
        {threeSd, threeSd, 0, 0, {9, 15}}, {twoSd, twoSd, -2, 2, {7, 15}},
        {mean, mean, -1, 1, {10, 12}},     {low, high, -3, 3, {7, 15}},
        {high, low, 0, 0, {12, 10}},       {fixed, fixed, 5, 4100, {5, 4095}},
        {fixed, unknown, 77, 9, {77, 77}}, {unknown, unknown, 50, 50, {0, 0}},
        {fixed, unknown, -3, 0, {0, 0}},   {mean, reference, 0, 0, {11, 11}},
    };
    for (const Case& c : cases) {
        MeasurementSession item = itemOf({10, 10, 12});
        item.limitOrigins[1].source = c.low;
        item.limitOrigins[2].source = c.high;
        item.limitAdjust[1] = c.lowAdjust;
        item.limitAdjust[2] = c.highAdjust;
        calcStats(item, {.paramCount = 1, .capacity = 4095});
        EXPECT_EQ(limitsOf(item, 2), c.limits)
            << static_cast<int>(c.low) << " " << static_cast<int>(c.high);
    }
}

TEST(Statistics, SlugLimitsAreWidenedAndIgnoreTheSources) {
    MeasurementSession item = itemOf({10, 10, 12});
    item.isCoin = false;
    item.limitOrigins[1].source = LimitSource::fixed;
    item.slugSeparation[1] = 2;
    calcStats(item, {.paramCount = 1, .capacity = 255});
    // 10.667 - 2 - 0.5 - 2 = 6.167 and 10.667 + 4 + 0.5 + 2 = 17.167
    EXPECT_EQ(limitsOf(item, 2), (std::vector{6, 17}));
    item.slugSeparation[1] = 300;
    calcStats(item, {.paramCount = 1, .capacity = 255});
    EXPECT_EQ(limitsOf(item, 2), (std::vector{0, 255}));
}

TEST(Statistics, AnUpwardsOnlyParameterIgnoresItsSourcesForCoinsAndSlugs) {
    ASSERT_EQ(findModel(kCoinControls, "435")->upwardsOnlyParameter, 5);
    for (const bool coin : {true, false}) {
        MeasurementSession item = itemOf({40, 60}, 5);
        item.isCoin = coin;
        calcStats(item, {.paramCount = 5, .capacity = 255, .upwardsOnlyParameter = 5});
        EXPECT_EQ(item.limits[9], 0);
        EXPECT_EQ(item.limits[10], 70);
    }
}

TEST(LimitSources, CodesAndTextsBelongTogether) {
    const MessageTable messages;
    const std::pair<const char*, const char*> cases[] = {
        {"3", "3*SD"}, {"2", "2*SD"},  {"M", "Mean"}, {"L", "Low"},
        {"H", "High"}, {"F", "Fixed"}, {"m", ""},     {"", ""},
    };
    for (const auto& [code, text] : cases) EXPECT_EQ(limitSourceText(messages, code), text);
    EXPECT_EQ(limitSourceText(messages, referenceOrigin("R05")), "Ref R05");
    EXPECT_EQ(referenceOrigin("R05").reference, 5);
    EXPECT_EQ(referenceOrigin("7").reference, 7);
    EXPECT_EQ(referenceOrigin("").reference, 0);
}

TEST(CoinNumber, FollowsTheFirstRuleThatFits) {
    const std::pair<const char*, int> cases[] = {
        {"R07", 7}, {"Coin 03", 3}, {"Coin 12", 12}, {"12", 12}, {"C2", 9}, {"A4", 19}, {"F1", 6},
        {"F4", 24}, {"Slug", 0},    {"", 0},         {"A", 1},   {"B9", 2}, {"R", 0},   {"D12", 4},
    };
    for (const auto& [code, number] : cases) EXPECT_EQ(coinnumber(code), number) << code;
    EXPECT_FALSE(isChannel(coinnumber("a1")));
    EXPECT_FALSE(isChannel(coinnumber("99999999999")));
    EXPECT_FALSE(isChannel(0));
}

struct FlierCase {
    int good, bad;  ///< readings of 1000 and of 2000
    int fliers, kept;
    bool again;
    int drops;
};

TEST(Fliers, RedropRule) {
    const FlierCase cases[] = {
        {12, 3, 3, 12, false, 0}, {5, 3, 3, 5, true, 3},  {8, 4, 4, 8, true, 2},
        {20, 0, 0, 20, false, 0}, {3, 0, 0, 3, false, 0}, {9, 1, 1, 9, true, 1},
        {10, 1, 1, 10, false, 0}, {4, 1, 1, 0, true, 5},
    };
    for (const FlierCase& c : cases) {
        MeasurementSession item = itemOf(std::vector<int>(static_cast<std::size_t>(c.good), 1000));
        for (int i = 0; i < c.bad; ++i) item.readings[++item.readingCount][1] = 2000;
        // Wide enough that the outliers' pull on the mean leaves the good readings inside.
        item.flierTolerance[1] = 28;
        const FlierResult found = findFliers(item);
        EXPECT_EQ(found.fliers, c.fliers) << c.good << "+" << c.bad;
        EXPECT_EQ(found.kept.size(), static_cast<std::size_t>(c.kept)) << c.good << "+" << c.bad;
        EXPECT_EQ(found.gatherAgain, c.again);
        EXPECT_EQ(found.coinsToDrop, c.drops);
    }
}

TEST(Fliers, BandsIncludeTheirEndsAtEveryMean) {
    // The others' mean is exactly `middle`; the band of pass 2 ends at 2 %.
    for (const auto& [middle, x, flier] : {std::tuple{1000, 1020, 0},
                                           {1000, 980, 0},
                                           {1000, 1021, 1},
                                           {1000, 979, 1},
                                           {1050, 1071, 0},
                                           {1050, 1029, 0},
                                           {1050, 1072, 1},
                                           {350, 357, 0},
                                           {350, 343, 0},
                                           {350, 358, 1}}) {
        std::vector<int> readings(11, middle);
        readings.push_back(x);
        MeasurementSession item = itemOf(readings);
        item.flierTolerance[1] = 2;
        EXPECT_EQ(findFliers(item).fliers, flier) << middle << " " << x;
    }
}

TEST(Fliers, PassOneUsesOneAndAHalfToleranceAndNotesEachParameter) {
    MeasurementSession item;
    for (int r = 1; r <= 12; ++r) {
        for (int p = 1; p <= 3; ++p) item.readings[r][p] = 1000;
    }
    item.readingCount = 12;
    item.readings[3][1] = 1025;  // inside 3 %, outside 2 %
    item.readings[5][2] = 1031;
    item.readings[5][3] = 900;
    for (int p = 1; p <= 3; ++p) item.flierTolerance[p] = 2;
    const FlierResult found = findFliers(item);
    EXPECT_EQ(found.fliers, 2);
    ASSERT_EQ(found.notes.size(), 3U);
    const MessageTable messages;
    EXPECT_EQ(flierLine(messages, found.notes[0], 3),
              "Pass 1 Eliminating ( 5) - on parameter 2 Reading  1000 1031 900 Means "
              "1002.1 1002.6 991.7 ");
    EXPECT_EQ(found.notes[1].parameter, 3);
    EXPECT_EQ(flierLine(messages, found.notes[2], 4),
              "Pass 2 Eliminating ( 3) - on parameter 1 Reading  1025 1000 1000 0 Means "
              "1002.3 1000.0 1000.0 0.0 ");
    EXPECT_FALSE(found.gatherAgain);
}

TEST(Fliers, ARemovedDropTakesAllItsParametersAlong) {
    MeasurementSession item;
    for (int r = 1; r <= 3; ++r) {
        for (int p = 1; p <= 6; ++p) item.readings[r][p] = 10 * r + p;
    }
    item.readingCount = 3;
    keepReadings(item, {1, 3}, 6);
    EXPECT_EQ(item.readingCount, 2);
    for (int p = 1; p <= 6; ++p) EXPECT_EQ(item.readings[2][p], 30 + p);
}

TEST(Fliers, WildTolerancesDoNotOverflow) {
    for (const int tolerance : {2'147'483'647, -2'147'483'647, 0}) {
        MeasurementSession item = itemOf(std::vector<int>(kMostReadings, 99'999));
        item.flierTolerance[1] = tolerance;
        EXPECT_EQ(findFliers(item).fliers, tolerance < 0 ? kMostReadings : 0);
    }
}

}  // namespace
}  // namespace vantor
