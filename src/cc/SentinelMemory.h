#pragma once

#include <string_view>

#include "link/MechCheck.h"
#include "link/ProgrammerLink.h"

namespace vantor {

/// The conversation with a Sentinel's serial EEPROM. It depends on no selected CC model, but the
/// receive path must hear the mech as a Sentinel (maker and model in the session's state).
class SentinelMemory {
  public:
    SentinelMemory(SessionState& state, ProgrammerLink& link, MechCheck& check, Prompts& prompts,
                   ErrorReporter& errors)
        : state_(state), link_(link), check_(check), prompts_(prompts), errors_(errors) {}

    /// Sends `text` character by character, each after the echo of the one before it (or 200 ms),
    /// then waits up to `timeoutMs` for `lines` carriage returns since the last character. True
    /// when they came; the reply, without the echo, stands in `replyText`. Ends at once on
    /// Cancel Operation and when the port is gone.
    bool sentinelCommand(std::string_view text, int lines, int timeoutMs);

    /// Enters serial mode and asks for the interface's version (`sentinelVersion`, also `I0.0`
    /// when nothing answered). False when the mech does not answer; the box may then be left in
    /// serial mode. True without `sentinelOpen` after a hardware error, which was told.
    bool openSentinelSession();
    /// Ends the session and leaves serial mode.
    void closeSentinelSession();
    /// Ends the session without waiting, for when the program ends.
    void abandonSession();

    /// Word 0..65535 of an address (its low 6 bits count); -1 when it could not be read, which was
    /// told unless the run was cancelled.
    int readSentinelWord(int address);
    /// True when the mech answered the last of the four commands, or when the old image says that
    /// the word already holds `value`.
    bool writeSentinelWord(int address, int value);

  private:
    bool exchange(std::string_view text, int lines, int timeoutMs);
    bool open();
    [[nodiscard]] bool givenUp() const;

    SessionState& state_;
    ProgrammerLink& link_;
    MechCheck& check_;
    Prompts& prompts_;
    ErrorReporter& errors_;
};

}  // namespace vantor
