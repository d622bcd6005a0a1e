#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace vantor {

/// What the program was asked for when it was started.
struct CommandLine {
    struct Simulated {
        std::string maker;  ///< of the mech that is plugged in
        std::string model;
    };

    std::optional<std::filesystem::path> folder;     ///< --folder DIR
    std::vector<std::pair<int, std::string>> ports;  ///< --port n=device
    std::optional<Simulated> simulate;               ///< --simulate [MODEL]
    bool help = false;
    bool version = false;
    std::vector<std::string> rest;  ///< everything that is none of these, in order

    std::string error;  ///< what is wrong with it; empty when nothing is
};

/// `arguments` without the program's name, in UTF-8.
[[nodiscard]] CommandLine parseCommandLine(std::span<const std::string> arguments);

/// The options above, one a line, for a help text.
[[nodiscard]] std::string commandLineHelp();

}  // namespace vantor
