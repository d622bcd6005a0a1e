#pragma once

#include "catalogue/ErrorReporter.h"
#include "catalogue/SessionState.h"
#include "platform/Services.h"

namespace vantor {

/// The two sounds that mark a coin.
class Sounds {
  public:
    Sounds(const SessionState& state, SoundPlayer& player, ErrorReporter& errors)
        : state_(state), player_(player), errors_(errors) {}

    /// Plays to the end; `kind` 0 is an accepted coin, any other value a rejected one.
    void makeSound(int kind) {
        errors_.attempt(835, [&] {
            player_.play(state_.app.folder / (kind == 0 ? "accept.wav" : "reject.wav"));
        });
    }

  private:
    const SessionState& state_;
    SoundPlayer& player_;
    ErrorReporter& errors_;
};

}  // namespace vantor
