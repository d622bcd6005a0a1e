#include "boxsim/pty/Options.h"

#include <algorithm>
#include <charconv>

#include "catalogue/MechCatalogue.h"

namespace vantor::boxsim {

namespace {

std::string setOption(std::string_view name, std::string_view value, Options& options) {
    if (name == "--model") {
        options.model = value;
    } else if (name == "--maker") {
        options.maker = value;
    } else if (name == "--link") {
        options.link = value;
    } else if (name == "--prom" && (value == "e1" || value == "bipolar" || value == "none")) {
        options.prom = value == "e1"        ? PromKind::e1
                       : value == "bipolar" ? PromKind::bipolar
                                            : PromKind::none;
    } else if (name == "--size" && (value == "1K" || value == "2K")) {
        options.words = value == "1K" ? 256 : 512;
    } else if (name == "--seed") {
        const char* const end = value.data() + value.size();
        const auto [stop, error] = std::from_chars(value.data(), end, options.seed);
        if (error != std::errc{} || stop != end) return "--seed needs a number";
    } else {
        return "cannot use " + std::string(name) + " " + std::string(value);
    }
    return {};
}

}  // namespace

std::string readOptions(std::span<char* const> words, Options& options) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view name = words[i];
        if (name == "--help" || name == "-h") {
            options.help = true;
            return {};
        }
        if (i + 1 == words.size()) return "cannot use " + std::string(name);
        std::string error = setOption(name, words[++i], options);
        if (!error.empty()) return error;
    }
    const auto models = mechModels();
    const auto found = std::find_if(models.begin(), models.end(), [&](const MechModel& row) {
        return row.code == options.model && (options.maker.empty() || row.maker == options.maker);
    });
    if (found == models.end()) return "there is no model " + options.model;
    options.maker = found->maker;
    return {};
}

std::string usage() {
    return "vantor-boxsim: a programmer box with a coin mech, behind a pseudo-terminal\n"
           "  --model CODE              the validator plugged in (ME111)\n"
           "  --maker Mars|CC|NRI       its maker, when the code alone does not say\n"
           "  --prom e1|bipolar|none    what is in the PROM socket (e1)\n"
           "  --size 1K|2K              and of which size (1K)\n"
           "  --seed N                  draws other coins (1)\n"
           "  --link PATH               a symbolic link to the pseudo-terminal\n"
           "Bench commands are read from the standard input:\n";
}

}  // namespace vantor::boxsim
