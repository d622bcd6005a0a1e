#pragma once

#include <iosfwd>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "app/CommandLine.h"
#include "player/CommandSource.h"

namespace vantor::player {

/// What the player was asked for when it was started.
struct SessionOptions {
    CommandLine program;       ///< what it shares with the program itself
    std::string script;        ///< a file, or "-" for standard input
    bool virtualTime = false;  ///< --virtual-time
    std::string error;         ///< what is wrong with it; empty when nothing is
};

/// `arguments` without the player's name, in UTF-8.
[[nodiscard]] SessionOptions parseSessionOptions(std::span<const std::string> arguments);

[[nodiscard]] std::string sessionHelp();

// What a process that plays a script ends with.
inline constexpr int kAllHeld = 0;
inline constexpr int kNotAsExpected = 1;
inline constexpr int kNotStarted = 2;  ///< wrong options, or a script that cannot be read

/// Runs the program with all its windows and plays the script on it; needs the application
/// object. Everything is told on `out`, mistakes of the script before it starts on `err`.
int playSession(const SessionOptions& options, std::ostream& out, std::ostream& err);

}  // namespace vantor::player
