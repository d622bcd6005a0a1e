#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "platform/EventLoop.h"
#include "player/CommandSource.h"
#include "player/Controls.h"
#include "player/ScriptedQtPrompts.h"

namespace vantor::player {

/// What the player asks of the program whose windows it works.
struct Stage {
    /// No flow is running and the start-up is over, or the program has ended.
    std::function<bool()> idle;
    /// Runs one `bench` command; puts what is to be printed into `reply`.
    std::function<Problem(std::span<const std::string> words, std::string& reply)> bench;
    /// Called once when the run is over: flows that still wait are to unwind.
    std::function<void()> over;
    /// Called when the next command has not been written yet; may wait for it for a moment when
    /// the program's time stands still. Not needed.
    std::function<void()> noCommandYet;
};

/// Plays a script on the program's windows. It lives on the event loop and never blocks it: the
/// next command is already on its way when one that may start a flow is carried out, so a script
/// goes on while a flow waits.
///
/// A failed `expect` is counted and the run goes on; everything else that fails ends it.
class Player {
  public:
    using Report = std::function<void(const std::string& line)>;

    Player(EventLoop& loop, CommandSource& source, ScriptedQtPrompts& prompts, Stage stage,
           Report report);
    ~Player();
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    /// The first command comes on one of the next turns of the loop.
    void start();
    [[nodiscard]] bool finished() const { return finished_; }
    /// 0 when every expectation held and the script was played to its end, else 1.
    [[nodiscard]] int exitStatus() const { return finished_ && failures_ == 0 ? 0 : 1; }

  private:
    /// A command that is waiting for something.
    struct Wait {
        Command command;
        Micros began{};
        Micros deadline{};
        bool toleratesBoxes = false;  ///< a box that opens meanwhile is looked at afterwards
        bool passesAtDeadline = false;
        std::function<bool()> holds;
        std::function<Problem()> whyNot;
    };

    void schedule(Micros delay);
    void step();
    void pollWait();
    void begin(const Command& command);
    bool startsTooEarly(const Command& command);
    void execute(const Command& command);
    void wait(const Command& command);
    void useHands(const Command& command, QWidget* widget);
    void printControls(const Command& command, QWidget* widget);
    void shoot(const Command& command);
    void runBench(const Command& command);

    void say(const Command& command, const std::string& result);
    void passed(const Command& command) { say(command, "ok"); }
    void expectation(const Command& command, const Problem& problem);
    void fail(const Command& command, const Problem& problem);
    void finish();
    [[nodiscard]] std::string stamp() const;

    EventLoop& loop_;
    CommandSource& source_;
    ScriptedQtPrompts& prompts_;
    Stage stage_;
    Report report_;
    EventLoop::TimerId scheduled_ = 0;
    std::optional<Wait> wait_;
    std::optional<Command> held_;  ///< the first command, until the start-up is over
    Micros heldSince_{};
    bool startUpSeen_ = false;
    bool finished_ = false;
    int failures_ = 0;
    int commands_ = 0;
};

}  // namespace vantor::player
