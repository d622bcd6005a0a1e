#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "boxsim/FaultInjector.h"
#include "boxsim/Line.h"

namespace vantor::boxsim {

/// What leaves the box: text lines ended by CR, and the mech's own bytes in serial mode.
class Outbox {
  public:
    Outbox(Line& line, FaultInjector& faults) : line_(line), faults_(faults) {}

    void setLineFeeds(bool on) { lineFeeds_ = on; }
    /// The answer to a command, ready at `at`; a fault may put the answer before in its place.
    void answer(std::span<const std::string> lines, Micros at);
    /// A mech's reply; the same fault applies.
    void reply(std::span<const std::uint8_t> bytes, Micros at);
    /// A line that nobody asked for.
    void announce(std::string_view line, Micros at);

  private:
    using Bytes = std::vector<std::uint8_t>;

    [[nodiscard]] Bytes ended(std::string_view line) const;
    void send(std::vector<Bytes> pieces, bool asLines, Micros at);
    void put(const Bytes& piece, Micros at);
    void maybeLengthen(Bytes& piece, bool asLine);
    void maybeBatteryWarning(Micros at);

    Line& line_;
    FaultInjector& faults_;
    bool lineFeeds_ = false;
    std::vector<Bytes> previous_;
};

}  // namespace vantor::boxsim
