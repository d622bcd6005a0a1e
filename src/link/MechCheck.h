#pragma once

#include "link/MechFamily.h"
#include "link/ProgrammerLink.h"

namespace vantor {

/// The connection check that precedes all work, and the box's serial mode.
class MechCheck {
  public:
    MechCheck(SessionState& state, ProgrammerLink& link, const Families& families, Prompts& prompts,
              ErrorReporter& errors)
        : state_(state), link_(link), families_(families), prompts_(prompts), errors_(errors) {}

    /// Checks that the box answers and, with `detect`, that a validator is connected. False when
    /// the technician was told what is missing. Cancel on "No Response" ends the program.
    bool checkMech(bool detect);

    /// The start-up window's probe: ESC, "_", "J", "M", "J", "", "S". True when the box answered
    /// with a status line (also in `boxFound`).
    bool probeBox();

    /// Up to 5 attempts with a mode command such as "$05"; false was told (message 300), unless the
    /// run was cancelled meanwhile, which ends the attempts at once. The box is then told to go
    /// back, in case that it had gone over and its answer was lost.
    bool enterSerialMode(std::string_view modeCommand);
    /// Back to command mode: 150 ms break, 20 ESC; false for a box that stays stuck, which is told
    /// (302). Without an open port it only forgets the mode, which is false too.
    bool leaveSerialMode();

  private:
    bool runCheck(bool detect);
    void callBack(const std::function<bool()>& over);

    SessionState& state_;
    ProgrammerLink& link_;
    const Families& families_;
    Prompts& prompts_;
    ErrorReporter& errors_;
};

}  // namespace vantor
