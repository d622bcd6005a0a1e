#pragma once

#include "link/MemoryUtilities.h"
#include "nri/NriFamily.h"

namespace vantor {

/// The work of the NRI memory utilities window: reading a mech's memory and showing it, saving it,
/// and programming it from a file.
class NriMemoryUtilities final : public MemoryUtilities {
  public:
    NriMemoryUtilities(SessionState& state, ProgrammerLink& link, ErrorReporter& errors,
                       NriFamily& family, MemoryDisplay& display);

    [[nodiscard]] std::string_view maker() const override { return family_.code(); }
    /// Reads the mech, then opens the window, also after a failed read: from a file the mech may
    /// still be rescued.
    void openFromMain() override;
    /// Reads the mech over what the session holds of it, then opens the window.
    void openFromLimits() override;

    void readMemory() override;
    void saveToFile() override;
    /// What the window shows afterwards is what the mech says, not what the file says.
    void programmeFromFile() override;

  protected:
    [[nodiscard]] std::vector<int> viewCaptions() const override;
    void showView(std::size_t view) override;

  private:
    NriFamily& family_;
};

}  // namespace vantor
