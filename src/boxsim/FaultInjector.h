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
/// breaks, writes, programmings of its cell; of the mech its answers, requests, sums and
/// openings.
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
    /// An answer is ready: how many characters too many it has; nothing = none.
    [[nodiscard]] std::optional<std::size_t> lengthensAnswer();
    /// A break has ended: the box has not seen it.
    [[nodiscard]] bool losesBreak() { return strikes(Fault::Kind::breakLost) || fromPc_.stalled; }
    /// A line, word or block is to be written: it is acknowledged and not done.
    [[nodiscard]] bool liesAboutWrite() { return strikes(Fault::Kind::lyingWrite); }
    /// The same moment: half of it is done, and how long the mech is dead; nothing = it has power.
    [[nodiscard]] std::optional<Micros> losesPower();

    /// The mech is about to answer: it stays silent.
    [[nodiscard]] bool silencesMech() { return strikes(Fault::Kind::mechSilent); }
    /// The mech is about to answer: how late it will; nothing = in time.
    [[nodiscard]] std::optional<Micros> delaysAnswer();
    /// The mech is about to answer: how many characters will come; nothing = all.
    [[nodiscard]] std::optional<std::size_t> cutsAnswer();
    /// The mech is asked for something it may refuse.
    [[nodiscard]] bool refuses() { return strikes(Fault::Kind::mechRefuses); }
    /// The mech sends a sum.
    [[nodiscard]] bool spoilsSum() { return strikes(Fault::Kind::wrongSum); }
    /// A session with the mech is to be opened.
    [[nodiscard]] bool barsSession() { return strikes(Fault::Kind::noSession); }

    /// How often anything has gone wrong since `clear`.
    [[nodiscard]] int struck() const;
    /// How many events of its sort each fault let through before it struck, in the order of `add`.
    [[nodiscard]] std::vector<int> letThrough() const;

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
    /// The value of the fault that strikes.
    [[nodiscard]] std::optional<int> strikesWith(Fault::Kind kind);
    void apply(const Fault& fault, Direction& direction, Verdict& verdict);

    Random random_;
    std::vector<Armed> armed_;
    Direction fromBox_, fromPc_;
};

}  // namespace vantor::boxsim
