#include <gtest/gtest.h>

#include "MeasureWorld.h"
#include "measure/TargetLists.h"

namespace vantor::test {
namespace {

struct Wizard : ::testing::Test, MeasureWorld {
    void run(WizardMode mode) {
        flows.openWizards();
        port.sent.clear();
        prompts.asked.clear();
        flows.runWizard(mode);
    }
    [[nodiscard]] std::string asked() const {
        std::string texts;
        for (const Prompt& box : prompts.asked) texts += box.title + "[" + box.text + "] ";
        return texts;
    }
    [[nodiscard]] std::string row(int index) const {
        std::string cells;
        for (int column = 0; column <= 8; ++column) {
            cells += std::to_string(state.coinTable.itemLimits[index][column]) + " ";
        }
        return cells;
    }
};

TEST_F(Wizard, AddReplaceMeasuresOneChannelAndKeepsTheOthers) {
    display.log = true;
    display.coinValue = "25";
    family.keptChannels = 12;
    prompts.chooseFile(folder / "log.csv");
    prompts.expect("Start Coin Drop", Answer::ok, [this] {
        EXPECT_EQ(display.code + "/" + display.description, "C2/Coin to Add or Replace");
        EXPECT_EQ(display.number, " 20");
        EXPECT_EQ(state.item.flierTolerance[1] * 100 + state.item.slugSeparation[3], 2002);
    });
    port.answer("N", drops(10) + drops(9, 1010) + drops(1, 1300));
    run(WizardMode::addReplace);

    // The flier is beyond the band of 20 %, ten readings are enough.
    EXPECT_EQ(asked(), "[Start Coin Drop] [Gathered Coin Data] ");
    EXPECT_EQ(port.sent, "<run>JYNIW");
    EXPECT_EQ(family.calls, (std::vector<std::string>{"wizard", "enable 9", "wizard done",
                                                      "read old", "rebuild"}));
    EXPECT_EQ(family.wizard.channel * 1000 + family.wizard.coinValue, 9025);
    EXPECT_EQ(family.wizard.outputLine * 10 + family.wizard.inhibitLine, 34);
    EXPECT_EQ(state.coinset.referenceCode + state.coinset.version, "WIZ2");
    EXPECT_EQ(row(0), "1 9 993 1017 1498 1502 2198 2202 0 ");
    EXPECT_EQ(state.item.nextItem, 1);
    for (int channel = 1; channel <= kChannels; ++channel) {
        EXPECT_EQ(state.coinset.oldChannelSource[channel],
                  channel == 9 || channel > 12 ? 0 : channel);
    }
    EXPECT_TRUE(state.coinset.usesOldChannels && state.gather.wizardRun);
    EXPECT_EQ(state.limits.channelLimits[9][1], 993);
    EXPECT_TRUE(log().starts_with("\"Wizard\",2\r\n\"Idles\",100,200,300\r\n"));
    expectReady();
}

TEST_F(Wizard, SlugFixStoresTheCoinsStatisticsAndTheSlugsLimits) {
    port.answer("N", drops(20));
    port.answer("N", drops(20, 900, 1400, 2100));
    prompts.expect("Start Slug Drop", Answer::ok, [this] {
        EXPECT_EQ(display.description, "Slug to Fix");
        EXPECT_FALSE(display.coinLayout);
        EXPECT_TRUE(state.item.isCoin);
    });
    run(WizardMode::slugFix);
    EXPECT_EQ(asked(),
              "[Start Coin Drop] [Gathered Coin Data] [Start Slug Drop] [Gathered Slug Data] ");
    EXPECT_EQ(port.sent, "<run>JNINIW");
    EXPECT_EQ(row(0), "1 9 0 0 0 0 0 0 0 ");
    EXPECT_EQ(state.coinTable.itemStats[0][0], 1000.0F);
    // A coin's limits, 2 spreads and the margin: those of a slug would begin at 897.
    EXPECT_EQ(row(1), "2 9 898 902 1398 1402 2098 2102 0 ");
    EXPECT_EQ(state.coinset.oldChannelSource[9], -9);
    EXPECT_EQ(state.coinset.oldChannelSource[8], 8);
    EXPECT_EQ(limitsDisplay.firstSlug(), " 898; 902; 1398; 1402; 2098; 2102;");
    EXPECT_EQ(state.coinset.version, "3");
    expectReady();
}

TEST_F(Wizard, WhatTheFamilyRefusesIsNotTransferred) {
    family.wizardAllowed = false;
    run(WizardMode::addReplace);
    EXPECT_EQ(port.sent, "<run>JWM");
    EXPECT_EQ(family.calls, std::vector<std::string>{"wizard"});
    expectReady();

    family.throwInStartRun = true;
    run(WizardMode::addReplace);
    EXPECT_EQ(asked(), "Error detected[ 429 Error in Wizard routine :  \r\nno timings - 51] ");
    EXPECT_EQ(port.sent, "W");
    EXPECT_FALSE(limitsDisplay.visible);
    expectReady();
}

TEST_F(Wizard, AParameterThatIsJudgedUpwardsHasSourcesOfItsOwn) {
    family.maker = kCoinControls;
    family.capacity = 255;
    select(kCoinControls, "435");
    display.target = "Coin 03";
    const auto sources = [this] {
        std::string text;
        for (int i = 8; i <= 10; ++i) {
            text += std::to_string(static_cast<int>(state.item.limitOrigins[i].source)) + ":" +
                    std::to_string(state.item.limitAdjust[i]) + " ";
        }
        return text;
    };
    ASSERT_EQ(static_cast<int>(LimitSource::twoSd) + static_cast<int>(LimitSource::low), 4);
    ASSERT_EQ(static_cast<int>(LimitSource::high) * 10 + static_cast<int>(LimitSource::fixed), 45);
    family.rules.promLine = false;
    std::string coin;
    std::string slug;
    family.rules.alwaysReadsOldMemory = true;
    prompts.expect("Start Coin Drop", Answer::ok, [&] { coin = sources(); });
    prompts.expect("Start Slug Drop", Answer::ok, [&] {
        slug = sources();
        flows.backButton();
    });
    family.afterEnable = [this] {
        for (int p = 0; p < 5; ++p) state.gather.latestReading[p] = 100;
        state.gather.gatherActive = true;
        while (state.gather.coinsRemaining > 0) flows.updateStats(0);
    };
    run(WizardMode::slugFix);
    EXPECT_EQ(coin, "1:2 3:-10 5:255 ");
    EXPECT_EQ(slug, "1:2 5:0 4:10 ");
}

TEST(TargetLists, TheLineOfACoin) {
    const std::pair<const char*, int> cases[] = {{"Coin 01", 1}, {"Coin 06", 6}, {"Coin 07", 1},
                                                 {"Coin 12", 6}, {"Coin 13", 0}, {"Coin 16", 0},
                                                 {"", 0}};
    for (const auto& [coin, line] : cases) EXPECT_EQ(lineOfCoin(coin), line) << coin;
}

}  // namespace
}  // namespace vantor::test
