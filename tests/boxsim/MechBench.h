#pragma once

#include <string>
#include <string_view>

#include "BoxBench.h"
#include "boxsim/BenchCommands.h"
#include "boxsim/SimulatedMech.h"

namespace vantor::boxsim::test {

/// A bench with a mech that speaks for itself in serial mode.
struct MechBench : BoxBench {
    MechBench(std::string_view maker, std::string_view model) {
        EXPECT_TRUE(box.plugValidator(maker, model)) << model;
    }

    /// Into serial mode by this mode command; "*S" is not among what was received.
    void enter(std::string_view setUp, std::string_view modeCommand) {
        EXPECT_EQ(
            ask(std::string(setUp) + std::string(25, '\x1B') + std::string(modeCommand), 100ms),
            "*S\r");
    }
    void leave() { EXPECT_EQ(breakThen(150ms, 20), "*R\r"); }
    /// Of a bench command that must work.
    std::string bench(std::string_view line) {
        const BenchResult result = runBenchLine(box, line);
        EXPECT_EQ(result.error, "") << line;
        return result.reply;
    }
    std::string dropped(std::initializer_list<int> values) {
        received.clear();
        box.dropRaw(std::vector<int>(values));
        loop.advance(1s);
        return received;
    }
    std::string cell(int number) {
        for (const MemoryCell& cell : box.mech()->memory()) {
            if (cell.number == number) return cell.content;
        }
        return "none";
    }
};

/// Bytes given as numbers.
inline std::string bytes(std::initializer_list<int> values) {
    std::string text;
    for (const int value : values) text += static_cast<char>(value);
    return text;
}

}  // namespace vantor::boxsim::test
