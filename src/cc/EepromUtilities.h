#pragma once

#include "cc/CcFamily.h"
#include "cc/EepromText.h"
#include "cc/EepromUtilitiesDisplay.h"
#include "link/MemoryUtilities.h"

namespace vantor {

/// The work of the EEPROM utilities window: reading a mech's memory and showing it, saving it,
/// programming it from a file, and editing a 435's routing.
class EepromUtilities final : public MemoryUtilities {
  public:
    EepromUtilities(SessionState& state, ProgrammerLink& link, ErrorReporter& errors,
                    CcFamily& family, EepromUtilitiesDisplay& display)
        : state_(state), link_(link), errors_(errors), family_(family), display_(display) {}

    [[nodiscard]] std::string_view maker() const override { return family_.code(); }
    /// Reads the mech, then opens the window, also after a failed read: from a file the mech may
    /// still be rescued.
    void openFromMain() override;
    /// Reads the mech over what the session holds of it, then opens the window.
    void openFromLimits() override;

    // --- buttons and choices
    void changeView();
    void readEeprom();
    void saveToFile();
    void programmeFromFile();
    /// The boxes keep what was typed unless the mech was written.
    void programmeRouting();
    void closeWindow();

  private:
    void open();
    void setup();
    void displayEEPROM();
    void showView(EepromView view);

    SessionState& state_;
    ProgrammerLink& link_;
    ErrorReporter& errors_;
    CcFamily& family_;
    EepromUtilitiesDisplay& display_;
};

}  // namespace vantor
