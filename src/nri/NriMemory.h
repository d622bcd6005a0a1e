#pragma once

#include <span>
#include <string>
#include <vector>

#include "link/ProgressDisplay.h"
#include "nri/NriComms.h"
#include "nri/NriWrites.h"

namespace vantor {

/// The operations on the whole memory of the selected NRI mech. Each enters serial mode, and
/// leaves it again.
class NriMemory {
  public:
    NriMemory(SessionState& state, ProgrammerLink& link, Prompts& prompts, ErrorReporter& errors,
              ProgressDisplay& progress, const Calendar& calendar, NriComms& comms)
        : state_(state),
          link_(link),
          prompts_(prompts),
          errors_(errors),
          progress_(progress),
          calendar_(calendar),
          comms_(comms) {}

    /// Reads all blocks of the model, decodes them into the old fields and writes them to a dump
    /// file in the program's folder. True (and `oldImageWhole`) when every block came and is long
    /// enough to mean something; a failure was told. Blocks that the model lacks stay as they are.
    bool readNriMemory();
    /// Writes the channel limits and the new fields, with today's date. True, and told so, when
    /// everything was sent and nothing refused; handshake models have acknowledged it then.
    /// Without a whole read and a take-over from it nothing is sent, because half of what is
    /// written is carried over from there.
    bool programNriMemory();
    /// Sends the writes of a data file, between "J" and "W". True, and told so, as above.
    bool programBlocks(const std::vector<NriWrite>& writes);

    /// Tells that the mech did not answer; `first` is the first of three message numbers.
    void tellSetupFailure(int first);
    void tellNotProgrammed();

    /// The last read was whole, and so was the one that limits and fields were taken over from: a
    /// later read does not give back what a failed one kept from them.
    [[nodiscard]] bool oldMemoryTaken() const {
        return state_.images.oldMemoryRead && state_.oldImageWhole();
    }
    [[nodiscard]] NriShape shape() const { return nriShape(state_.mech.mechType); }

  private:
    std::string readBlocks();
    bool send(const std::vector<NriWrite>& writes);
    [[nodiscard]] bool refusedPlainly() const;
    [[nodiscard]] bool vouchedFor(bool backInCommandMode) const;
    void writeDump();
    void tell(int title, const std::string& text, PromptIcon icon = PromptIcon::critical);

    SessionState& state_;
    ProgrammerLink& link_;
    Prompts& prompts_;
    ErrorReporter& errors_;
    ProgressDisplay& progress_;
    const Calendar& calendar_;
    NriComms& comms_;
};

/// The bracket of a flow on an NRI mech: "J" before, "W" behind.
class NriFlow {
  public:
    NriFlow(const SessionState& state, ProgrammerLink& link) : state_(state), link_(link) {
        link_.sendJ();
    }
    /// In serial mode (the program is ending) nobody would understand it.
    ~NriFlow() {
        if (state_.box.serialModeFlag) return;
        try {
            link_.sendW();
        } catch (...) {  // NOLINT(bugprone-empty-catch): a destructor
        }
    }
    NriFlow(const NriFlow&) = delete;
    NriFlow& operator=(const NriFlow&) = delete;

  private:
    const SessionState& state_;
    ProgrammerLink& link_;
};

}  // namespace vantor
