#pragma once

#include <functional>

#include "cc/CcMemory.h"
#include "link/Receiver.h"

namespace vantor {

/// Coin readings of a CC mech while it is measured.
class CcCoinData {
  public:
    CcCoinData(SessionState& state, ProgrammerLink& link, ErrorReporter& errors, CcMemory& memory,
               const MessageSinks& sinks)
        : state_(state), link_(link), errors_(errors), memory_(memory), sinks_(sinks) {}

    /// Told after every attempt at a session for measuring; without one no coin will ever come,
    /// and only Cancel Operation ends the gather.
    std::function<void(bool open)> sessionOpened;

    /// Opens a session and asks for coins. For a Sentinel this gathers all of them.
    void enable();
    void disable();
    /// Asks for the next coin. A Sentinel is asked until no coin remains or the run is cancelled;
    /// its valid coins are counted down here, logged and taken in.
    void requestCcCoinData();

  private:
    void gatherFromSentinel();
    void takeSentinelReply();

    SessionState& state_;
    ProgrammerLink& link_;
    ErrorReporter& errors_;
    CcMemory& memory_;
    const MessageSinks& sinks_;
};

}  // namespace vantor
