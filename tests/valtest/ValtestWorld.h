#pragma once

#include "LinkWorld.h"
#include "QuietFamily.h"
#include "valtest/ValidatorTest.h"

namespace vantor::test {

/// Remembers what the test window would show.
struct FakeValtestWindow final : ValtestWindow {
    std::string mechType;
    std::vector<std::string> variants;
    int chosenVariant = -1;
    bool variantsShown = false, binary = false, outputOffered = false, bitsShown = false;
    bool visible = false;
    int unloads = 0, shows = 0;
    std::vector<std::string> captions;
    std::array<std::string, kTestPositions> counts;
    std::array<std::uint32_t, kTestPositions> colours{};
    std::array<std::uint32_t, kOutputBits> bits{};

    void loadWindow(const std::string& type) override { mechType = type; }
    void fillVariants(const std::vector<std::string>& codes, int chosen) override {
        variants = codes;
        chosenVariant = chosen;
    }
    void showVariants(bool shown) override { variantsShown = shown; }
    void chooseOutput(bool chosen) override { binary = chosen; }
    void offerOutput(bool offered) override { outputOffered = offered; }
    void showOutputBits(bool shown) override { bitsShown = shown; }
    void showPositions(const std::vector<std::string>& texts) override { captions = texts; }
    void setCount(int position, const std::string& text) override {
        counts.at(static_cast<std::size_t>(position)) = text;
    }
    void colourPosition(int position, std::uint32_t rgb) override {
        colours.at(static_cast<std::size_t>(position)) = rgb;
    }
    void colourBit(int bit, std::uint32_t rgb) override {
        bits.at(static_cast<std::size_t>(bit)) = rgb;
    }
    void showWindow() override {
        visible = true;
        ++shows;
    }
    void hideWindow() override { visible = false; }
    void unloadWindow() override { ++unloads; }

    /// Positions and bits that are not grey: "+0" green, "-6" red, "b1" bit green.
    [[nodiscard]] std::string lit() const {
        std::string text;
        for (int i = 0; i < kTestPositions; ++i) {
            const std::uint32_t rgb = colours[static_cast<std::size_t>(i)];
            if (rgb == 0x00FF00) text += "+" + std::to_string(i) + " ";
            if (rgb == 0xFF0000) text += "-" + std::to_string(i) + " ";
        }
        for (int i = 0; i < kOutputBits; ++i) {
            if (bits[static_cast<std::size_t>(i)] == 0x00FF00) {
                text += "b" + std::to_string(i) + " ";
            }
        }
        return text;
    }
};

struct FakeValtestCallers final : ValtestCallers {
    std::string log;
    void hideMainWindow() override { log += "main hidden, "; }
    void hideLimitsWindow() override { log += "limits hidden, "; }
    void returnToMainWindow() override { log += "to main, "; }
    void returnToLimitsWindow() override { log += "to limits, "; }
    void enableValidatorTestButtons(bool enabled) override {
        log += enabled ? "buttons on, " : "buttons off, ";
    }
};

/// A maker's side of the test's set-up and nothing else.
class FakeTestFamily final : public QuietFamily {
  public:
    FakeTestFamily(std::string_view code, ProgrammerLink& link) : QuietFamily(code), link_(link) {}

    bool answers = true;

    [[nodiscard]] bool prepareValidatorTest() override {
        link_.sendString("<family>");
        return answers;
    }

  private:
    ProgrammerLink& link_;
};

/// The validator test on the link floor, with a mech of any maker behind the fake port.
struct ValtestWorld : LinkWorld {
    FakeValtestWindow window;
    FakeValtestCallers callers;
    FakeTestFamily mars{kMars, link}, nri{kNri, link};
    ValidatorTest test{{.state = state,
                        .link = link,
                        .check = check,
                        .families = families,
                        .receiver = receiver,
                        .prompts = prompts,
                        .errors = errors,
                        .window = window,
                        .callers = callers}};

    ValtestWorld() {
        families.add(mars);
        families.add(nri);
        state.box.boxVersion = "V1.95";
        state.box.mechPresent = true;
    }
    ValtestWorld(std::string_view maker, std::string_view model) : ValtestWorld() {
        select(maker, model);
    }

    void openFromMain() { test.openFromMain(808); }
    /// What was sent since the last call, without the wake-up of the box.
    std::string sent() {
        const std::string wakeUp = "<break></break>" + escapes(25);
        std::string text = std::exchange(port.sent, {});
        if (text.starts_with(wakeUp)) text.erase(0, wakeUp.size());
        return text;
    }
    [[nodiscard]] std::string captions() const {
        std::string text;
        for (const std::string& caption : window.captions) text += caption + "|";
        return text;
    }
};

}  // namespace vantor::test
