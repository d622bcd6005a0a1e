#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "boxsim/SimulatedBox.h"

namespace vantor::boxsim {

/// What the command line of the box says.
struct Options {
    std::string maker;  ///< empty: the maker of `model`
    std::string model = "ME111";
    PromKind prom = PromKind::e1;
    int words = 256;  ///< 256 (1K) or 512 (2K)
    std::uint64_t seed = 1;
    std::filesystem::path link;
    bool help = false;
};

/// Reads the words behind the program's name; an error text, empty when all is well.
std::string readOptions(std::span<char* const> words, Options& options);
[[nodiscard]] std::string usage();

}  // namespace vantor::boxsim
