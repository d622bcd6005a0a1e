#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "boxsim/MechVoice.h"

namespace vantor::boxsim {

/// The interface of the box as it works in the Sentinel's mode: it hands every character back and
/// cuts the text into commands ended by CR.
///
///     T K I       the version and CR, in the place of the echo of I: "I1.2" opens a session,
///                 "E" and a number says what is wrong with the lines to the mech
///     #           ends the session; "%" may follow
class EchoTerminal {
  public:
    explicit EchoTerminal(MechVoice& voice) : voice_(voice) {}

    /// Takes one character; the command that it completes, without the CR. `faults` may bar the
    /// opening of a session.
    [[nodiscard]] std::optional<std::string> take(std::uint8_t byte, FaultInjector& faults);
    [[nodiscard]] bool sessionOpen() const { return open_; }
    /// Serial mode was entered or left.
    void reset();

    void setVersion(std::string_view version) { version_ = version; }
    void setEndMark(bool on) { endMark_ = on; }

  private:
    MechVoice& voice_;
    std::string line_;
    std::string version_ = "I1.2";
    bool endMark_ = false;
    bool open_ = false;
};

}  // namespace vantor::boxsim
