#pragma once

#include "cc/CcMemory.h"
#include "link/MemoryFiles.h"

namespace vantor {

/// What the EEPROM utilities window and the clone box do with a mech's memory.
class CcUtilities {
  public:
    CcUtilities(SessionState& state, ProgrammerLink& link, Prompts& prompts, ErrorReporter& errors,
                CcMemory& memory);

    /// "J", read, "W"; true when every word came.
    bool readEeprom();
    /// Asks for a name and writes the old image there; an existing file only after asking.
    void saveToFile();
    /// Asks for a data file, shows what will be overwritten, writes and verifies. True only for a
    /// verified mech. Works without a memory read before: it is the rescue of a spoilt mech.
    bool eeProgramme();
    /// Clone Coin Mech: reads the mech first, so that only what differs is written.
    bool cloneFromFile();
    /// Builds the new image from a 435's settings and asks whether to write it. False after an
    /// incomplete read, with invalid settings or when the technician declined; nothing was sent,
    /// and the first two were told.
    bool prepareRouting(const C435Settings& settings);
    /// The same, then writes and verifies. False also after a failed verification, which was told.
    bool programmeRouting(const C435Settings& settings);

  private:
    bool programFile();
    bool confirm(int title, int text, int words);
    bool buildRouting(const C435Settings& settings);
    void tell(int title, int text);

    SessionState& state_;
    ProgrammerLink& link_;
    Prompts& prompts_;
    ErrorReporter& errors_;
    CcMemory& memory_;
    MemoryFiles files_;
};

}  // namespace vantor
