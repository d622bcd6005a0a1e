#pragma once

#include <functional>
#include <string_view>

#include "link/MechCheck.h"
#include "link/ProgrammerLink.h"
#include "nri/NriModels.h"

namespace vantor {

/// Asks the box's interface board for its version, with the mech heard as the probe's model.
struct InterfaceProbe {
    std::function<bool()> open;   ///< true when the board answered; its version stands in the state
    std::function<void()> close;  ///< after a successful `open`
};

/// The text commands of an NRI mech in the box's serial mode.
class NriComms {
  public:
    NriComms(SessionState& state, ProgrammerLink& link, MechCheck& check, Prompts& prompts,
             ErrorReporter& errors, InterfaceProbe probe)
        : state_(state),
          link_(link),
          check_(check),
          prompts_(prompts),
          errors_(errors),
          probe_(std::move(probe)) {}

    /// Sends a command; a handshake mech gets the rest after it acknowledged the first letter, or
    /// after 500 ms without that.
    void nriSend(std::string_view text);
    /// Sends `text`, unless it is empty, and waits 500 ms per line for `lines` carriage returns;
    /// for a negative number as long as it takes. True when they came. The reply, without the
    /// carriage returns, stands in `replyText`. Cancel Operation and a lost port end the wait.
    bool nriCommand(std::string_view text, int lines);
    /// After a command that was not answered: waits until nothing comes any more and throws away
    /// what came, so that a late answer is not taken for the next one.
    void awaitQuiet();
    /// True when the mech accepted everything. A plain mech acknowledges nothing: there true means
    /// that all was sent, and `nriQueryFlag` tells of a refusal, now or a little later. A trailing
    /// odd character of a handshake mech's data is not sent. Empty data is a failure and sends
    /// nothing.
    bool nriWrite(std::string_view command, std::string_view data);

    /// True, and `mechPresent`, when the mech answers as the selected model does.
    bool identifyNriMech();
    /// Serial mode and identification. On failure the box may be left in serial mode: whoever
    /// gives up leaves it (`settle`).
    bool setupNriComms();
    /// `attempts` times, 500 ms after each failure; the interface is probed and its warning shown
    /// at most once.
    bool setUp(int attempts);
    /// Command mode again, where the box is in serial mode; false when it does not come back.
    bool settle();

    [[nodiscard]] const NriModel& model() const { return nriModel(state_.mech.mechType); }
    /// Cancel Operation, or no port any more.
    [[nodiscard]] bool givenUp() const { return state_.gather.abortFlag || !state_.link.portOpen; }

  private:
    void clearReply();
    bool openWith(std::string_view modeCommand);
    bool attempt();
    void probeInterface();
    bool writePairs(std::string_view data);
    void writeCharacters(std::string_view data);

    SessionState& state_;
    ProgrammerLink& link_;
    MechCheck& check_;
    Prompts& prompts_;
    ErrorReporter& errors_;
    InterfaceProbe probe_;
    bool probed_ = false;  ///< in the set-up under way
};

}  // namespace vantor
