#pragma once

#include "link/Receiver.h"
#include "nri/NriComms.h"
#include "nri/NriLayout.h"

namespace vantor {

/// Coin readings of an NRI mech while it is measured.
class NriCoinData {
  public:
    NriCoinData(SessionState& state, ProgrammerLink& link, MechCheck& check, Prompts& prompts,
                ErrorReporter& errors, NriComms& comms, const MessageSinks& sinks)
        : state_(state),
          link_(link),
          check_(check),
          prompts_(prompts),
          errors_(errors),
          comms_(comms),
          sinks_(sinks) {}

    /// In serial mode: asks for coins until none remains or the run is cancelled, counts them down,
    /// logs them and hands them over; then leaves serial mode. `channel` (1..24, or 0) picks the
    /// parameter map of models whose readings are mapped.
    void getNriReadings(int channel);

  private:
    bool takeCoin(int channel);

    SessionState& state_;
    ProgrammerLink& link_;
    MechCheck& check_;
    Prompts& prompts_;
    ErrorReporter& errors_;
    NriComms& comms_;
    const MessageSinks& sinks_;
};

}  // namespace vantor
