#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "boxsim/SimulatedBox.h"

namespace vantor::boxsim {

/// What came of a bench command.
struct BenchResult {
    std::string error;  ///< why nothing was done, or what differs from the expected; empty = done
    std::string reply;  ///< what the command shows; often empty

    [[nodiscard]] bool ok() const { return error.empty(); }
};

/// Does one thing on the bench: `words` as a script gives them, the command's name first.
/// `benchHelp` lists all commands. What takes time (drops) is only begun.
BenchResult runBenchCommand(SimulatedBox& box, std::span<const std::string> words);
/// The same for a line of text, split as a shell does: blanks, "..." with backslashes, '...'.
/// An empty line and one that begins with # do nothing.
BenchResult runBenchLine(SimulatedBox& box, std::string_view line);

/// One line per command.
[[nodiscard]] std::string benchHelp();

}  // namespace vantor::boxsim
