#pragma once

#include "cc/CcFamily.h"
#include "cc/EepromText.h"
#include "cc/RoutingDisplay.h"
#include "link/MemoryUtilities.h"

namespace vantor {

/// The work of the EEPROM utilities window: reading a mech's memory and showing it, saving it,
/// programming it from a file, and editing a 435's routing.
class EepromUtilities final : public MemoryUtilities {
  public:
    static constexpr int kRoutingError = 716;

    /// `display` and `boxes` are two sides of the same window.
    EepromUtilities(SessionState& state, ProgrammerLink& link, ErrorReporter& errors,
                    CcFamily& family, MemoryDisplay& display, RoutingDisplay& boxes);

    [[nodiscard]] std::string_view maker() const override { return family_.code(); }
    /// Reads the mech, then opens the window, also after a failed read: from a file the mech may
    /// still be rescued.
    void openFromMain() override;
    /// Reads the mech over what the session holds of it, then opens the window.
    void openFromLimits() override;

    void readMemory() override;
    void saveToFile() override;
    void programmeFromFile() override;
    /// The boxes keep what was typed unless the mech was written.
    void programmeRouting();

  protected:
    [[nodiscard]] std::vector<int> viewCaptions() const override;
    void showView(std::size_t view) override;

  private:
    CcFamily& family_;
    RoutingDisplay& boxes_;
};

}  // namespace vantor
