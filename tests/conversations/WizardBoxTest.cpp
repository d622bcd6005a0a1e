#include <gtest/gtest.h>

#include "FakeDisplays.h"
#include "OldProm.h"
#include "ScriptedPrompts.h"
#include "boxsim/SimulatedBox.h"
#include "catalogue/Text.h"
#include "link/Receiver.h"
#include "mars/MarsFamily.h"
#include "measure/MeasureFlows.h"
#include "platform/Files.h"
#include "platform/VirtualEventLoop.h"

namespace vantor::test {
namespace {

/// The wizards of a Mars mech against the simulated box, which knows none of its encoders.
struct WizardBench {
    VirtualEventLoop loop;
    boxsim::SimulatedBox box{loop, 1};
    boxsim::SimulatedPort port{loop, box};
    ScriptedPrompts prompts;
    SessionState state;
    ErrorReporter errors{state.messages, prompts};
    ProgrammerLink link{state, loop, port, prompts, errors};
    Receiver receiver{state, link, prompts, errors};
    Families families{state};
    NoProgress progress;
    MarsFamily mars{state, link, prompts, errors, progress};
    FakeMeasureDisplay display;
    FakeLimitsDisplay limitsDisplay;
    LimitsReview limits{state, link, families, prompts, errors, limitsDisplay};
    MeasureFlows flows{{state, link, families, prompts, errors, display, limits, limitsDisplay}};
    std::filesystem::path log =
        std::filesystem::path(::testing::TempDir()) /
        (std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()) + ".csv");

    WizardBench(std::string_view model, int promSizeCode) {
        link.setByteHandler([this](std::uint8_t byte) { receiver.handleByte(byte); });
        receiver.sinks.promLine = [this](std::string_view line) { mars.parsePromLine(line); };
        receiver.sinks.marsMeasurement = [this](std::string_view line) {
            flows.loadMeasurement(line);
        };
        link.startTicks();
        families.add(mars);
        state.mech.manufacturer = kMars;
        state.mech.mechType = model;
        applyMechType(state.mech, state.messages);
        (void)box.plugValidator(kMars, model);
        link.startupPort();
        flows.CoinInitialise(0);
        flows.choosePromSize(promSizeCode);
        flows.chooseSegments({true, true, promSizeCode == 1, promSizeCode == 1});
        std::filesystem::remove(log);
    }
    ~WizardBench() { std::filesystem::remove(log); }

    /// What the program sends for a wizard; the coins drop by themselves.
    std::string run(WizardMode mode, std::string coin) {
        display.target = std::move(coin);
        prompts.expect("Insert Old PROM to COPY", Answer::ok, [this] {
            const int cells = state.prom.promSizeCode == 1 ? 512 : 256;
            box.insertProm(boxsim::PromKind::e1, cells,
                           oldProm(state.mech.mechType == "ME181", cells));
        });
        prompts.expect("Remove OLD PROM", Answer::ok);
        loop.advance(std::chrono::milliseconds(100));
        box.clearTranscript();
        flows.runWizard(mode);
        loop.advance(std::chrono::milliseconds(100));
        return box.sentByPc();
    }
    void expectDrops(const std::string& prompt, const std::string& coin) {
        prompts.expect(prompt, Answer::ok, [this, coin] {
            loop.callAfter(std::chrono::milliseconds(100),
                           [this, coin] { EXPECT_TRUE(box.drop(coin, 20, 300)); });
        });
    }
    /// "kept" where a channel's limits are those of the old PROM, "none" where they are 0.
    [[nodiscard]] std::string channel(int number) const {
        bool kept = true;
        bool none = true;
        for (int column = 1; column <= 6; ++column) {
            const int limit = state.limits.channelLimits[number][column];
            kept = kept && limit == oldLimit(number, column);
            none = none && limit == 0;
        }
        return kept ? "kept" : none ? "none" : "new";
    }
};

struct Case {
    const char* model;
    int promSizeCode;
    bool log;
    const char* coin;
    int channel;
    int lastKept;
    const char* sent;
};

TEST(WizardsOnTheBox, AddReplaceMeasuresOneChannelAndTakesTheOthersOver) {
    for (const Case& c :
         {Case{"ME111", 0, false, "E1", 5, 12, "Z030020150100\rSMIJNIJEAWW"},
          Case{"ME111", 1, true, "F4", 24, 24, "Z030020150100\rSMIJYNIJEKWW"},
          Case{"MS1000", 1, true, "C2", 9, 24, "Z150150150425\rSMIJYNIJEKWW"},
          Case{"MS1400", 0, false, "A1", 1, 12, "C02Z150150150425\rSMIJNIJEAWW"},
          Case{"MS111", 0, true, "B2", 8, 12, "Z030020150100\rSMIJYNIJEAWW"},
          Case{"MS130B1", 1, false, "D3", 16, 24, "Z030020150100\rSMIJNIJEKWW"},
          Case{"ME181", 1, true, "C2", 9, 12, "Z030020150100\rSMIWCFDJJYNIJEKWW"}}) {
        SCOPED_TRACE(std::string(c.model) + " " + c.coin);
        WizardBench bench(c.model, c.promSizeCode);
        bench.display.log = c.log;
        bench.display.coinValue = "77";
        if (c.log) bench.prompts.chooseFile(bench.log);
        bench.expectDrops("Start Coin Drop", "20 Pell");
        const Micros start = bench.loop.now();
        EXPECT_EQ(bench.run(WizardMode::addReplace, c.coin), c.sent);
        EXPECT_GE(bench.loop.now() - start, std::chrono::milliseconds(20 * 300));
        for (int channel = 1; channel <= kChannels; ++channel) {
            EXPECT_EQ(bench.channel(channel), channel == c.channel    ? "new"
                                              : channel <= c.lastKept ? "kept"
                                                                      : "none")
                << channel;
        }
        EXPECT_EQ(bench.state.item.nextItem, 1);
        EXPECT_TRUE(bench.limitsDisplay.visible);
        EXPECT_TRUE(bench.prompts.scriptDone());
        EXPECT_EQ(bench.box.unknownBytes(), 0);
        const std::string log = readFile(bench.log).value_or("");
        EXPECT_EQ(log.starts_with("\"Wizard\",2\r\n\"Idles\","), c.log) << log;
    }
}

TEST(WizardsOnTheBox, AnME181KeepsTheOtherCoinValues) {
    for (const WizardMode mode : {WizardMode::addReplace, WizardMode::slugFix}) {
        WizardBench bench("ME181", 1);
        bench.display.coinValue = "77";
        bench.expectDrops("Start Coin Drop", "20 Pell");
        if (mode == WizardMode::slugFix) bench.expectDrops("Start Slug Drop", "Brass Disc");
        bench.run(mode, "C2");
        for (int channel = 1; channel <= 12; ++channel) {
            const int value =
                channel == 9 && mode == WizardMode::addReplace ? 77 : oldCoinValue(channel);
            const int at = kValueCells[channel - 1];
            EXPECT_EQ(bench.state.images.next[at] + 16 * bench.state.images.next[at + 1], value)
                << channel;
        }
        EXPECT_EQ(bench.state.images.next[0] + bench.state.images.next[256], 30);
        // The wizard's name and mode stand where a coinset's would.
        std::string reference;
        for (const int at : {496, 498, 500, 506}) {
            reference += static_cast<char>(16 * bench.state.images.next[at] +
                                           bench.state.images.next[at + 1]);
        }
        EXPECT_EQ(reference, mode == WizardMode::addReplace ? "WIZ2" : "WIZ3");
    }
}

TEST(WizardsOnTheBox, SlugFixAndEditLimitsKeepEveryChannel) {
    WizardBench slug("ME111", 1);
    slug.expectDrops("Start Coin Drop", "1 Dorin");
    slug.expectDrops("Start Slug Drop", "Brass Disc");
    EXPECT_EQ(slug.run(WizardMode::slugFix, "E1"), "Z030020150100\rSMIJNINIJEKWW");
    WizardBench edit("MS1000", 1);
    EXPECT_EQ(edit.run(WizardMode::editLimits, "E1"), "Z150150150425\rSMIJJEKWW");
    for (int channel = 1; channel <= kChannels; ++channel) {
        EXPECT_EQ(slug.channel(channel), "kept") << channel;
        EXPECT_EQ(edit.channel(channel), "kept") << channel;
    }
    // The coin that was measured has an estimate of its own, the others have none.
    EXPECT_EQ(slug.limitsDisplay.acceptance.at(0), "???");
    EXPECT_NE(slug.limitsDisplay.acceptance.at(4), "???");
    EXPECT_EQ(edit.limitsDisplay.acceptance.at(4), "???");
    EXPECT_EQ(slug.state.limits.slugCount, 1);
    EXPECT_EQ(edit.prompts.asked.size(), 2U) << "the old PROM goes in and out, nothing is dropped";
}

TEST(WizardsOnTheBox, CancelledOnTheWireNothingIsReadOrWritten) {
    struct Step {
        const char* name;
        int afterMs;  ///< from the start of the wizard
        const char* sent;
    };
    for (const Step& step : {Step{"sensor timings", 400, "Z150150150425\rWM"},
                             Step{"mode", 1200, "Z150150150425\rSMWM"},
                             Step{"sensors settle", 2200, "Z150150150425\rSMIJWM"},
                             Step{"first drops", 3000, "Z150150150425\rSMIJYNIWM"},
                             Step{"later drops", 6000, "Z150150150425\rSMIJYNIWM"}}) {
        SCOPED_TRACE(step.name);
        WizardBench bench("MS1000", 1);
        bench.display.log = true;
        if (step.afterMs > 2000) bench.prompts.chooseFile(bench.log);
        bench.loop.callAfter(std::chrono::milliseconds(step.afterMs + 100),
                             [&] { bench.flows.backButton(); });
        if (step.afterMs > 2500) bench.expectDrops("Start Coin Drop", "20 Pell");
        bench.display.target = "A1";
        bench.loop.advance(std::chrono::milliseconds(100));
        bench.box.clearTranscript();
        const Micros start = bench.loop.now();
        bench.flows.runWizard(WizardMode::addReplace);
        EXPECT_LE(bench.loop.now() - start, std::chrono::milliseconds(step.afterMs + 250));
        bench.loop.advance(std::chrono::milliseconds(100));
        EXPECT_EQ(bench.box.sentByPc(), step.sent);
        EXPECT_FALSE(bench.box.coinDataOn());
        EXPECT_FALSE(bench.limitsDisplay.visible || bench.state.gather.runActive);
        EXPECT_EQ(bench.display.backCaption, 445);
        EXPECT_TRUE(bench.prompts.scriptDone());
    }
}

}  // namespace
}  // namespace vantor::test
