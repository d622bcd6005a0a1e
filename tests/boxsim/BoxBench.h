#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "boxsim/SimulatedBox.h"
#include "platform/VirtualEventLoop.h"

namespace vantor::boxsim::test {

using namespace std::chrono_literals;

/// A box on a bench in virtual time, and a PC that keeps what it receives.
struct BoxBench {
    explicit BoxBench(std::uint64_t seed = 1) : box(loop, seed) {
        box.setOutput([this](std::uint8_t byte) { received += static_cast<char>(byte); },
                      [this](const std::string& reason) { failure = reason; });
    }

    void send(std::string_view bytes) {
        box.fromPc({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    }
    /// Sends, lets everything settle, and returns what came meanwhile.
    std::string ask(std::string_view bytes, Micros settle = 3s) {
        received.clear();
        send(bytes);
        loop.advance(settle);
        return received;
    }
    std::string breakThen(Micros length, int escapes) {
        box.setBreak(true);
        loop.advance(length);
        box.setBreak(false);
        return ask(std::string(static_cast<std::size_t>(escapes), '\x1B'));
    }

    VirtualEventLoop loop;
    SimulatedBox box;
    std::string received;
    std::string failure;
};

}  // namespace vantor::boxsim::test
