#pragma once

#include "link/MemoryUtilities.h"
#include "nri/NriFamily.h"
#include "nri/NriUtilitiesDisplay.h"

namespace vantor {

/// The work of the NRI memory utilities window: reading a mech's memory and showing it, saving it,
/// and programming it from a file.
class NriMemoryUtilities final : public MemoryUtilities {
  public:
    NriMemoryUtilities(SessionState& state, ProgrammerLink& link, ErrorReporter& errors,
                       NriFamily& family, NriUtilitiesDisplay& display)
        : state_(state), link_(link), errors_(errors), family_(family), display_(display) {}

    [[nodiscard]] std::string_view maker() const override { return family_.code(); }
    /// Reads the mech, then opens the window, also after a failed read: from a file the mech may
    /// still be rescued.
    void openFromMain() override;
    /// Reads the mech over what the session holds of it, then opens the window.
    void openFromLimits() override;

    // --- buttons and choices
    void changeView();
    void readMemory();
    void saveToFile();
    /// What the window shows afterwards is what the mech says, not what the file says.
    void programmeFromFile();
    void closeWindow();

  private:
    void open();
    void setup();
    void displayEEPROM();

    SessionState& state_;
    ProgrammerLink& link_;
    ErrorReporter& errors_;
    NriFamily& family_;
    NriUtilitiesDisplay& display_;
};

}  // namespace vantor
