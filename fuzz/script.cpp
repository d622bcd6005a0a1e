#include "player/Script.h"

#include "FuzzTarget.h"
#include "boxsim/BenchCommands.h"
#include "boxsim/SimulatedBox.h"
#include "platform/VirtualEventLoop.h"

// A session script of any content, and its bench commands on a bench. What stands behind 0 bytes
// are the scripts that it includes, in the order in which it asks for them.

namespace {

using namespace vantor;
using fuzz::require;

/// Files would be written wherever the input says.
bool writesFile(const player::Command& command) {
    return command.words.front().starts_with("save");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view rest = fuzz::textOf(data, size);
    const std::string_view script = fuzz::cut(rest, '\0');
    const auto parsed = player::parseScript(
        script, {.read = [&rest](const std::string&) -> std::optional<std::string> {
            if (rest.empty()) return std::nullopt;
            return std::string(fuzz::cut(rest, '\0'));
        }});
    const auto* commands = std::get_if<std::vector<player::Command>>(&parsed);
    if (commands == nullptr) return 0;
    VirtualEventLoop loop;
    boxsim::SimulatedBox box(loop, 1);
    for (const player::Command& command : *commands) {
        if (command.verb == player::Verb::remark) continue;
        const auto again = player::parseLine(command.written, command.line);
        const auto* same = std::get_if<player::Command>(&again);
        require(same != nullptr && same->verb == command.verb && same->words == command.words,
                "a command is what it is written as");
        if (command.verb == player::Verb::bench && !writesFile(command)) {
            (void)boxsim::runBenchCommand(box, command.words);
            loop.advance(std::chrono::milliseconds(10));
        }
    }
    return 0;
}
