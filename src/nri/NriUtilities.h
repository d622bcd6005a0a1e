#pragma once

#include "link/MemoryFiles.h"
#include "nri/NriMemory.h"
#include "nri/NriText.h"

namespace vantor {

/// What the memory utilities window and the clone box do with a mech's memory.
class NriUtilities {
  public:
    NriUtilities(SessionState& state, ProgrammerLink& link, Prompts& prompts, ErrorReporter& errors,
                 NriMemory& memory);

    /// "J", read, "W"; true when every block came.
    bool readMemory();
    /// Asks for a name and writes the blocks there; an existing file only after asking.
    void saveToFile();
    /// Asks for a data file and, after a question, programs the mech from it block by block. True
    /// when everything was sent and nothing refused; what kept it from that was told. The blocks
    /// of the session are the file's from then on.
    bool NRIprogramme();

    /// The views of the selected model, and the text of one of them.
    [[nodiscard]] std::vector<NriView> views() const;
    [[nodiscard]] std::string text(NriPage page) const;

  private:
    bool programFile();

    SessionState& state_;
    ProgrammerLink& link_;
    Prompts& prompts_;
    ErrorReporter& errors_;
    NriMemory& memory_;
    MemoryFiles files_;
};

}  // namespace vantor
