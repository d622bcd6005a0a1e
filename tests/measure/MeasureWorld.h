#pragma once

#include <algorithm>
#include <cstdio>
#include <fstream>

#include "FakeLimitsDisplay.h"
#include "FakeMeasureDisplay.h"
#include "LinkWorld.h"
#include "QuietFamily.h"
#include "ScratchFolder.h"
#include "measure/MeasureFlows.h"
#include "platform/Files.h"

namespace vantor::test {

/// A mech with a PROM socket and three parameters whose conversation is short enough to read.
class FakeFamily final : public QuietFamily {
  public:
    FakeFamily(SessionState& state, ProgrammerLink& link)
        : QuietFamily(kMars), state_(state), link_(link) {}

    // --- knobs
    CoinsetRules rules{.promLine = true, .alwaysReadsOldMemory = false};
    bool cloned = true;
    bool throwInStartRun = false;
    WizardPanel panel;
    int keptChannels = kChannels;
    int capacity = 4095;
    bool wizardAllowed = true;
    std::function<void()> whileRunStarts;
    std::function<void()> afterEnable;
    std::function<void()> whileStarting;
    std::vector<std::string> calls;
    WizardInputs wizard;  ///< what the last wizard started with

    [[nodiscard]] FamilyLook look() const override { return {.name = "Fake", .promSocket = true}; }
    [[nodiscard]] LimitRules limitRules() const override { return {.capacity = capacity}; }
    [[nodiscard]] CoinsetRules coinsetRules() const override { return rules; }
    void enableCoinData(int channel) override {
        calls.push_back("enable " + std::to_string(channel));
        link_.sendString("N");
        if (afterEnable) afterEnable();
    }
    void disableCoinData() override { link_.sendString("I"); }
    [[nodiscard]] bool readingValid() const override {
        return state_.gather.latestReading[0] >= 2 && state_.gather.latestReading[0] <= 3000;
    }
    void startMeasuring() override {
        link_.sendString("M");
        if (whileStarting) whileStarting();
    }
    void startRun() override {
        if (throwInStartRun) throw std::runtime_error("no timings");
        link_.sendString("<run>");
        if (whileRunStarts) whileRunStarts();
    }
    [[nodiscard]] WizardPanel wizardPanel() const override { return panel; }
    [[nodiscard]] bool keepsChannel(int channel) const override { return channel <= keptChannels; }
    [[nodiscard]] bool startWizard(const WizardInputs& inputs) override {
        wizard = inputs;
        calls.emplace_back("wizard");
        return wizardAllowed;
    }
    void finishWizard() override { calls.emplace_back("wizard done"); }
    bool programmeFromFile() override {
        calls.emplace_back("clone");
        return cloned;
    }
    void readOldMemory() override { calls.emplace_back("read old"); }
    void copyOldMemoryData() override { calls.emplace_back("copy old"); }
    void rebuildImage() override {
        calls.emplace_back(state_.limits.changeFlag ? "rebuild changed" : "rebuild");
    }

    [[nodiscard]] long called(const std::string& call) const {
        return std::ranges::count(calls, call);
    }

  private:
    SessionState& state_;
    ProgrammerLink& link_;
};

inline std::string drop(int a, int b, int c) {
    std::array<char, 32> line{};
    const int length = std::snprintf(line.data(), line.size(), "M %5d %5d %5d\r", a, b, c);
    return {line.data(), static_cast<std::size_t>(length)};
}

inline std::string drops(int count, int a = 1000, int b = 1500, int c = 2200) {
    std::string lines;
    for (int i = 0; i < count; ++i) lines += drop(a, b, c);
    return lines;
}

/// The measurement floor on a fake mech and a fake port in virtual time.
struct MeasureWorld : LinkWorld {
    ScratchFolder scratch;
    std::filesystem::path folder = scratch.path;
    FakeFamily family{state, link};
    FakeMeasureDisplay display;
    FakeLimitsDisplay limitsDisplay;
    LimitsReview limits{state, link, families, prompts, errors, limitsDisplay};
    MeasureFlows flows{{state, link, families, prompts, errors, display, limits, limitsDisplay}};

    MeasureWorld() {
        state.app.folder = folder;
        families.add(family);
        select(kMars, "ME111");
        receiver.sinks.marsMeasurement = [this](std::string_view line) {
            flows.loadMeasurement(line);
        };
        port.answer("Y", "Y   100   200   300\r");
    }

    static constexpr const char* kHead =
        "Mars.ME111,\"Coins, new\",REF0123,V123\r\n2K,1,0,0,0,90,110,190,210,290,310\r\n";

    std::filesystem::path file(const std::string& name, const std::string& text) {
        std::ofstream(folder / name, std::ios::binary) << text;
        return folder / name;
    }
    /// Runs a coinset of the usual head and `records`.
    void run(const std::string& records) { runText(kHead + records); }
    void runText(const std::string& text) {
        prompts.chooseFile(file("coins.cst", text));
        port.sent.clear();
        flows.runCoinsetFile();
    }
    void answerItems(int count, Answer answer = Answer::yes) {
        for (int i = 0; i < count; ++i) prompts.expect("Press YES to PROGRAM", answer);
    }
    [[nodiscard]] std::string log(const std::string& name = "log.csv") const {
        return readFile(folder / name).value_or("<none>");
    }
    /// Nothing of a run is left over and the window can be used.
    void expectReady() const {
        const GatherState& gather = state.gather;
        EXPECT_FALSE(gather.runActive || gather.gatherActive || gather.abortFlag ||
                     gather.logEnabled);
        EXPECT_EQ(gather.coinsRemaining, 0);
        EXPECT_TRUE(display.runEnabled && display.backEnabled && display.promChoicesEnabled);
        EXPECT_FALSE(display.wizardPanel);
        EXPECT_EQ(display.backCaption, 445);
        EXPECT_TRUE(state.item.isCoin);
    }
};

}  // namespace vantor::test
