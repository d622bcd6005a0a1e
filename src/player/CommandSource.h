#pragma once

#include <condition_variable>
#include <deque>
#include <istream>
#include <memory>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

#include "player/Script.h"

namespace vantor::player {

/// There is no command yet: ask again later.
struct NotYet {};
/// The script is over.
struct NoMore {};
using NextCommand = std::variant<Command, NotYet, NoMore, ScriptError>;

/// Where a session's commands come from.
class CommandSource {
  public:
    virtual ~CommandSource() = default;
    /// Never waits.
    virtual NextCommand next() = 0;
};

/// A script that was read and checked as a whole.
class ScriptSource final : public CommandSource {
  public:
    explicit ScriptSource(std::vector<Command> commands) : commands_(std::move(commands)) {}
    NextCommand next() override;

  private:
    std::vector<Command> commands_;
    std::size_t position_ = 0;
};

/// Lines that come one by one, for example from the keyboard; a thread of its own reads them, so
/// that the program goes on meanwhile.
class StreamSource final : public CommandSource {
  public:
    /// The stream must live as long as the process: a read that is under way cannot be called off.
    /// `place`: what can be included from it.
    explicit StreamSource(std::istream& stream, ScriptPlace place = {});
    NextCommand next() override;
    /// Waits until a line or the end is there, at most `limit`; false when neither came.
    bool waitForLine(std::chrono::milliseconds limit);

  private:
    struct Shared {
        std::mutex lock;
        std::condition_variable arrived;
        std::deque<std::string> lines;
        bool ended = false;
    };
    std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
    ScriptPlace place_;
    std::deque<Command> pending_;  ///< of the line that was read last
};

}  // namespace vantor::player
