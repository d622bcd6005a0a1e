#include "player/Script.h"

#include "FuzzTarget.h"
#include "boxsim/BenchCommands.h"
#include "boxsim/SimulatedBox.h"
#include "platform/VirtualEventLoop.h"

// A session script of any content, and its bench commands on a bench.

namespace {

using namespace vantor;
using fuzz::require;

/// Files would be written wherever the input says.
bool writesFile(const player::Command& command) {
    return command.words.front().starts_with("save");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto parsed = player::parseScript(fuzz::textOf(data, size));
    const auto* commands = std::get_if<std::vector<player::Command>>(&parsed);
    if (commands == nullptr) return 0;
    VirtualEventLoop loop;
    boxsim::SimulatedBox box(loop, 1);
    for (const player::Command& command : *commands) {
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
