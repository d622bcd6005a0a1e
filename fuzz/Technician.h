#pragma once

#include <algorithm>
#include <chrono>

#include "Core.h"
#include "FuzzTarget.h"
#include "boxsim/SimulatedBox.h"
#include "boxsim/SimulatedMech.h"
#include "catalogue/Text.h"
#include "platform/VirtualEventLoop.h"

namespace vantor::fuzz {

/// A bench with the simulated box and a technician who answers every box at once: as the moods say
/// (a byte a question, 0 = goes along with it), and goes along when they have run out.
class Bench final : public Prompts {
  public:
    Bench(std::string_view maker, std::string_view model, std::string_view moods,
          std::filesystem::path file)
        : moods_(moods), file_(std::move(file)) {
        // Every input meets the same bench: a log that an earlier one left would be one more box.
        std::filesystem::remove(log_);
        core.select(maker, model);
        core.state.app.folder = scratchFolder();
        require(box.plugValidator(maker, model), "the bench has every model");
        core.link.startupPort();
        hand_.start(std::chrono::milliseconds(kHandMs), [this] { dropCoins(); });
    }

    VirtualEventLoop loop;
    boxsim::SimulatedBox box{loop, 1};
    boxsim::SimulatedPort port{loop, box};
    Core core{loop, port, *this};

    // --- what the technician is asked

    Answer ask(const Prompt& prompt) override {
        // Who is asked this often wants out, so that no input takes for ever.
        if (++asked_ == kMostQuestions) cancelRun();
        const int mood = nextMood();
        if (prompt.buttons == PromptButtons::ok) return Answer::ok;
        if (prompt.buttons == PromptButtons::yesNoCancel) return answerDrop(prompt, mood);
        if (mood % 2 == 1) return Answer::cancel;
        handleProm(prompt.text);
        return Answer::ok;
    }
    void notice(const Prompt&) override {}
    std::optional<std::filesystem::path> askFile(const FileQuestion& question) override {
        if (question.saving) return log_;
        return file_;
    }
    void beep() override {}

    /// No flow runs, nothing is left open.
    void requireIdle() {
        const GatherState& gather = core.state.gather;
        require(!gather.runActive && !gather.gatherActive && !gather.abortFlag, "the run is over");
        require(!core.state.box.serialModeFlag, "the program left serial mode");
        loop.advance(std::chrono::seconds(1));
        require(!box.inSerialMode(), "the box is in command mode");
        require(!box.coinDataOn(), "coin data is off");
        require(box.unknownBytes() == 0, "the box knows everything that it was sent");
    }

  private:
    static constexpr int kHandMs = 3500;
    static constexpr int kHandful = 10;
    static constexpr int kMostHandfuls = 4;
    static constexpr int kMostQuestions = 150;

    /// The button is Cancel Operation during a run, and disabled during any other work.
    void cancelRun() {
        if (core.state.gather.runActive) core.flows.backButton();
    }

    int nextMood() {
        if (moods_.empty()) return 0;
        const int mood = static_cast<unsigned char>(moods_.front());
        moods_.remove_prefix(1);
        return mood;
    }

    Answer answerDrop(const Prompt& prompt, int mood) {
        handfuls_ = 0;
        coin_ = prompt.title.substr(std::min(prompt.title.size(), kDropTitle.size()));
        const auto coins = box.coins();
        if (std::ranges::find(coins, coin_) == coins.end() || mood % 4 == 3) {
            coin_ = coins.empty() ? "" : coins[static_cast<std::size_t>(mood) % coins.size()];
        }
        if (mood >= 128) {
            loop.callAfter(std::chrono::milliseconds(50 * (mood - 127)), [this] { cancelRun(); });
        }
        constexpr Answer kAnswers[] = {Answer::yes, Answer::no, Answer::cancel, Answer::yes};
        return kAnswers[mood % 4];
    }

    void dropCoins() {
        const GatherState& gather = core.state.gather;
        if (!gather.runActive || gather.coinsRemaining <= 0) return;
        // A coinset may want more coins than a technician has.
        if (++handfuls_ > kMostHandfuls) return cancelRun();
        (void)box.drop(coin_, std::min(gather.coinsRemaining, kHandful), 300);
    }

    void handleProm(const std::string& text) {
        const auto says = [&](const char* part) { return text.find(part) != std::string::npos; };
        const int cells = core.state.prom.promSizeCode == 1 ? 512 : 256;
        if (says("Insert Old PROM")) {
            std::vector<std::uint8_t> old(static_cast<std::size_t>(cells));
            for (std::size_t i = 0; i < old.size(); ++i) {
                old[i] = static_cast<std::uint8_t>(i * 7 % 16);
            }
            box.insertProm(boxsim::PromKind::e1, cells, old);
        }
        if (says("BOTH SWITCHES ON")) {
            box.insertProm(boxsim::PromKind::e1, cells);
            box.setSwitch(1, true);
            box.setSwitch(2, true);
        }
        if (says("TURN SWITCH 2 OFF")) box.setSwitch(2, false);
    }

    static constexpr std::string_view kDropTitle = "Data Gather: ";
    std::string_view moods_;
    std::filesystem::path file_;
    const std::filesystem::path log_ = scratchFolder() / "log.csv";
    std::string coin_;
    int asked_ = 0;
    int handfuls_ = 0;
    RepeatingTimer hand_{loop};
};

}  // namespace vantor::fuzz
