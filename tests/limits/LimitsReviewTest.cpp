#include "limits/LimitsReview.h"

#include <gtest/gtest.h>

#include <map>

#include "FakeLimitsDisplay.h"
#include "LinkWorld.h"
#include "QuietFamily.h"

namespace vantor {
namespace {

using test::LinkWorld;

/// A family that only counts what it is asked for.
class CountingFamily final : public test::QuietFamily {
  public:
    SessionState& state;
    FamilyLook itsLook;
    LimitRules rules;
    bool twoSegments = false;
    bool programs = true;
    std::function<void()> whileProgramming;
    int rebuilds = 0;
    int programmed = 0;
    std::vector<bool> changeFlags;  ///< as they stood at each rebuild

    CountingFamily(SessionState& given, std::string_view code) : QuietFamily(code), state(given) {
        itsLook.promSocket = code == kMars;
        rules.capacity = code == kMars ? 4095 : 255;
        rules.displayedSegmentOnly = code == kMars;
    }
    [[nodiscard]] FamilyLook look() const override { return itsLook; }
    [[nodiscard]] LimitRules limitRules() const override { return rules; }
    [[nodiscard]] bool twoSegmentProm() const override { return twoSegments; }
    void rebuildImage() override {
        ++rebuilds;
        changeFlags.push_back(state.limits.changeFlag);
    }
    bool programAndVerify() override {
        ++programmed;
        if (whileProgramming) whileProgramming();
        return programs;
    }
};

struct LimitsWorld : LinkWorld {
    test::FakeLimitsDisplay window;
    CountingFamily family;
    LimitsReview review{state, link, families, prompts, errors, window};

    LimitsWorld(std::string_view maker, std::string_view model) : family(state, maker) {
        select(maker, model);
        families.add(family);
        state.prom.promSizeCode = 1;
        state.prom.segmentSelected[0] = true;
    }
    /// The technician types into a box of the displayed segment.
    void type(int row, int column, const std::string& text) {
        window.limits[{row, column}] = text;
        state.limits.limitsEdited = true;
    }
    [[nodiscard]] int limit(int channel, int column) const {
        return state.limits.channelLimits[channel][column];
    }
};

/// Ticks of four segments as text: "0110".
std::array<bool, 4> ticks(std::string_view text) {
    std::array<bool, 4> all{};
    for (std::size_t i = 0; i < 4; ++i) all.at(i) = text[i] == '1';
    return all;
}

TEST(LimitsLayout, FollowsMechAndSegments) {
    struct Case {
        const char* what;
        std::string_view maker, model;
        int promSizeCode;
        const char* selected;
        bool twoSegments;
        const char* enabled;
        int chosen;
        const char* head;
        std::size_t rows, params;
    };
    const Case cases[] = {
        {"only segment 3", kMars, "ME111", 1, "0010", false, "0010", 2, "Coin A1", 6, 3},
        {"the lowest one is chosen", kMars, "ME111", 1, "0111", false, "0111", 1, "Coin A1", 6, 3},
        {"1K has no segment 3", kMars, "ME111", 0, "0111", false, "0100", 1, "Coin A1", 6, 3},
        {"two segments in 2K", kMars, "ME181", 1, "1111", true, "1100", 0, "Coin A1", 6, 3},
        {"an EEPROM", kCoinControls, "435", 0, "1000", false, "1100", 0, "Coin 01", 8, 5}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        LimitsWorld world(c.maker, c.model);
        world.family.twoSegments = c.twoSegments;
        world.state.prom.promSizeCode = c.promSizeCode;
        for (int i = 0; i < 4; ++i) world.state.prom.segmentSelected[i] = c.selected[i] == '1';
        world.state.limits.limitsEdited = true;
        world.review.setupfrmPROM();
        const LimitsLayout& shown = world.window.layout;
        EXPECT_EQ(shown.segmentEnabled, ticks(c.enabled));
        EXPECT_EQ(shown.chosenSegment, c.chosen);
        EXPECT_EQ(world.state.limits.selectedSegment, c.chosen);
        EXPECT_EQ(shown.rowHeads.at(0), c.head);
        EXPECT_EQ(shown.rowHeads.size(), c.rows);
        EXPECT_EQ(shown.paramNames.size(), c.params);
        EXPECT_FALSE(world.state.limits.limitsEdited);
    }
}

TEST(LimitsEdits, AreClampedRoundedAndShownAsStored) {
    struct Case {
        std::string_view maker, model;
        const char* typed;
        int stored;
    };
    for (const Case& c :
         {Case{kCoinControls, "435", "300", 255}, Case{kCoinControls, "435", "-5", 0},
          Case{kCoinControls, "435", "12.5", 12}, Case{kCoinControls, "435", "13.5", 14},
          Case{kMars, "ME111", "5000", 4095}, Case{kMars, "ME111", " 77 coins", 77},
          Case{kMars, "ME111", "", 0}, Case{kMars, "ME111", "1e300", 4095}}) {
        LimitsWorld world(c.maker, c.model);
        world.review.selectSegment(1);
        world.type(2, 3, c.typed);
        world.review.changeLimits();
        EXPECT_EQ(world.limit(world.review.firstChannel() + 2, 3), c.stored) << c.typed;
        EXPECT_EQ((world.window.limits[{2, 3}]), std::to_string(c.stored)) << c.typed;
        EXPECT_FALSE(world.state.limits.limitsEdited);
        EXPECT_EQ(world.family.changeFlags, std::vector<bool>{true});
        EXPECT_TRUE(world.prompts.asked.empty());
    }
}

TEST(LimitsEdits, PendingOnesBelongToTheSegmentThatWasLeft) {
    LimitsWorld world(kMars, "ME111");
    world.review.selectSegment(1);
    world.type(0, 1, "123");
    world.prompts.expect("Limits edited - using new values ", Answer::ok);
    world.review.selectSegment(2);
    EXPECT_EQ(world.prompts.asked.size(), 1U);
    EXPECT_EQ(world.prompts.asked[0].title, "Limits Changed");
    EXPECT_EQ(world.prompts.asked[0].icon, PromptIcon::information);
    EXPECT_EQ(world.limit(7, 1), 123);
    EXPECT_EQ(world.limit(13, 1), 0);
    EXPECT_EQ(world.state.limits.selectedSegment, 2);
    EXPECT_EQ((world.window.limits[{0, 1}]), "0");
    EXPECT_EQ(world.window.heads[0], "Coin A3");
    world.review.selectSegment(4);
    EXPECT_TRUE(world.prompts.told("1239 Error Selecting PROM Segments : "));
    EXPECT_EQ(world.state.limits.selectedSegment, 2);
}

TEST(LimitsEdits, RestoreDropsThemAndRunsTheTransfer) {
    LimitsWorld world(kMars, "ME111");
    world.review.selectSegment(0);
    world.state.limits.channelLimits[24][6] = 9;
    world.type(0, 1, "123");
    bool ran = false;
    world.review.setTransfer([&] {
        ran = true;
        EXPECT_EQ(world.limit(24, 6), 0);
        EXPECT_FALSE(world.state.limits.limitsEdited);
    });
    world.review.restoreLimits();
    EXPECT_TRUE(ran);
    EXPECT_EQ(world.limit(1, 1), 0);

    world.review.setTransfer([] { throw std::out_of_range("no such row"); });
    world.review.restoreLimits();
    EXPECT_TRUE(world.prompts.told(" 1220 Error Restoring Limits :  \r\nno such row - 9"));
}

TEST(LimitsProgram, AsksBeforeItUsesPendingEdits) {
    const char* question = "Limits edited - OK to use new values \r\nCANCEL to abort programming";
    LimitsWorld world(kMars, "ME111");
    world.review.selectSegment(0);
    world.type(1, 1, "200");
    world.prompts.expect(question, Answer::cancel);
    world.review.programNew();
    EXPECT_EQ(world.family.programmed, 0);
    EXPECT_TRUE(world.state.limits.limitsEdited) << "still pending";
    EXPECT_EQ(world.limit(2, 1), 0);
    EXPECT_EQ(world.prompts.asked[0].icon, PromptIcon::question);

    world.prompts.expect(question, Answer::ok);
    world.family.whileProgramming = [&] {
        EXPECT_EQ(world.limit(2, 1), 200);
        EXPECT_EQ(world.family.rebuilds, 1);
    };
    world.review.programNew();
    EXPECT_EQ(world.family.programmed, 1);
    EXPECT_TRUE(world.window.validatorTest);
}

TEST(LimitsProgram, OnlyAVerifiedMechMayBeTested) {
    LimitsWorld world(kMars, "ME111");
    world.review.selectSegment(1);
    world.family.programs = false;
    world.family.whileProgramming = [&] { world.state.limits.channelLimits[7][1] = 88; };
    world.review.programNew();
    EXPECT_FALSE(world.window.validatorTest);
    EXPECT_EQ((world.window.limits[{0, 1}]), "88") << "a duplicated segment is shown as it is now";

    world.family.whileProgramming = [] { throw std::out_of_range("cell"); };
    world.family.programs = true;
    world.review.programNew();
    EXPECT_FALSE(world.window.validatorTest);
    EXPECT_TRUE(world.prompts.told("1219 Error Programming PROM routine : "));
}

TEST(LimitsJudging, ColoursAndFiguresOfTheDisplayedSegment) {
    LimitsWorld world(kMars, "ME111");
    LimitsState& limits = world.state.limits;
    for (const int channel : {7, 9}) {
        for (int p = 1; p <= 3; ++p) {
            limits.channelLimits[channel][2 * p - 1] = 100;
            limits.channelLimits[channel][2 * p] = 140;
        }
    }
    limits.channelLimits[9][1] = 140;
    limits.channelLimits[9][2] = 180;
    // A coin on channel 9 with its mean on the low limit; a slug that fits channel 7 alone.
    limits.channelCoins[9].count = 1;
    limits.channelCoins[9].rows[1] = 3;
    for (int p = 0; p < 3; ++p) {
        world.state.coinTable.itemStats[3][p] = p == 0 ? 140.0F : 120.0F;
        world.state.coinTable.itemStats[5][p] = 120.0F;
    }
    limits.slugCount = 1;
    limits.slugList[1] = 5;
    for (int p = 0; p < 3; ++p) {
        world.state.coinTable.itemLimits[5][2 * p + 2] = 115;
        world.state.coinTable.itemLimits[5][2 * p + 3] = 125;
    }
    limits.rejectionEstimate[4] = 0.25F;
    world.state.coinset.oldChannelSource[8] = 8;
    world.state.coinset.oldChannelSource[10] = -10;

    world.review.showSlugLimits();
    world.review.selectSegment(1);
    EXPECT_EQ(world.window.rowColours, (std::map<int, std::uint32_t>{{0, kCyan}, {2, kYellow}}));
    EXPECT_EQ(world.window.slugColours, (std::map<int, std::uint32_t>{{1, kCyan}}));
    EXPECT_EQ(
        world.window.acceptance,
        (std::map<int, std::string>{
            {0, "100.0"}, {1, "???"}, {2, "50.0"}, {3, "100.0"}, {4, "100.0"}, {5, "100.0"}}));
    EXPECT_EQ(world.window.rejection,
              (std::map<int, std::string>{
                  {1, "0.0"}, {2, "0.0"}, {3, "0.0"}, {4, "25.0"}, {5, "0.0"}, {6, "0.0"}}));
    EXPECT_EQ((world.window.slugLimits[{1, 6}]), " 125");

    world.review.selectSegment(0);
    EXPECT_TRUE(world.window.rowColours.empty());
    EXPECT_EQ(world.window.rejection[1], "100.0");
}

}  // namespace
}  // namespace vantor
