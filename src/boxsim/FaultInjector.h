#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "boxsim/Fault.h"
#include "boxsim/Random.h"
#include "platform/EventLoop.h"

namespace vantor::boxsim {

/// What becomes of one byte on its way.
struct Verdict {
    std::uint8_t byte = 0;
    bool deliver = true;
    bool again = false;                    ///< it comes a second time
    std::optional<std::uint8_t> before{};  ///< a stray byte comes first
    Micros delay{};
    bool unplug = false;  ///< the port fails here; the byte is gone
};

/// Holds the faults and says, event by event, which of them strikes. Each fault counts the events
/// of its own sort only: bytes of its direction, commands, answers, lines, acknowledgements,
/// programmings of its cell.
class FaultInjector {
  public:
    explicit FaultInjector(std::uint64_t seed) : random_(seed) {}

    void add(const Fault& fault) { armed_.push_back({.fault = fault}); }
    void clear();

    /// `endsLine`: the last byte of a line, of a mech's reply, or of one write of the PC.
    [[nodiscard]] Verdict judge(Fault::Where where, std::uint8_t byte, bool endsLine);
    /// A command came: it is to be ignored.
    [[nodiscard]] bool silences() { return strikes(Fault::Kind::silentBox); }
    /// An answer is ready: the one before is to be sent in its place.
    [[nodiscard]] bool repeatsAnswer() { return strikes(Fault::Kind::previousReply); }
    /// A programming line is done: its acknowledgement is lost.
    [[nodiscard]] bool losesAck() { return strikes(Fault::Kind::lostAck); }
    /// A line was sent: a battery warning follows it.
    [[nodiscard]] bool warnsOfBattery() { return strikes(Fault::Kind::batteryLow); }
    /// A cell is programmed: it keeps its content.
    [[nodiscard]] bool cellSticks(int cell);

  private:
    struct Armed {
        Fault fault;
        int seen = 0;
        int struck = 0;
    };
    struct Direction {
        bool stalled = false;
        bool cutting = false;  ///< until the end of the line
    };

    [[nodiscard]] static bool strikes(Armed& armed);
    [[nodiscard]] bool strikes(Fault::Kind kind);
    void apply(const Fault& fault, Direction& direction, Verdict& verdict);

    Random random_;
    std::vector<Armed> armed_;
    Direction fromBox_, fromPc_;
};

}  // namespace vantor::boxsim
