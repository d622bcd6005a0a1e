#pragma once

#include "FakePort.h"
#include "ScriptedPrompts.h"
#include "catalogue/ErrorReporter.h"
#include "catalogue/SessionState.h"
#include "link/MechCheck.h"
#include "link/ProgrammerLink.h"
#include "link/Receiver.h"
#include "platform/VirtualEventLoop.h"

namespace vantor::test {

/// The link floor on a line (a loop in virtual time and a port), ticks running.
template <class Line>
struct LinkOn : Line {
    using Line::loop;
    using Line::port;
    ScriptedPrompts prompts;
    SessionState state;
    ErrorReporter errors{state.messages, prompts};
    ProgrammerLink link{state, loop, port, prompts, errors};
    Receiver receiver{state, link, prompts, errors};
    Families families{state};
    MechCheck check{state, link, families, prompts, errors};

    LinkOn() {
        link.setByteHandler([this](std::uint8_t byte) { receiver.handleByte(byte); });
        link.setCoinDisplayReset([this] { receiver.resetValtestDisplay(); });
        link.startTicks();
    }

    void select(std::string_view maker, std::string_view model) {
        state.mech.manufacturer = maker;
        state.mech.mechType = model;
        applyMechType(state.mech, state.messages);
    }
    [[nodiscard]] double ms() const { return static_cast<double>(loop.now().count()) / 1000.0; }
    /// Handles text in the receive path as if it had just come from the box.
    void feed(std::string_view bytes) {
        for (const char c : bytes) receiver.handleByte(static_cast<std::uint8_t>(c));
    }
};

struct FakeLine {
    VirtualEventLoop loop;
    FakePort port{loop};
};

/// On a fake port, which is open.
struct LinkWorld : LinkOn<FakeLine> {
    LinkWorld() { link.openPort(1); }
};

inline std::string escapes(int count) {
    return std::string(static_cast<std::size_t>(count), '\x1B');
}

}  // namespace vantor::test
