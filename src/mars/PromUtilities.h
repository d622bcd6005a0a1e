#pragma once

#include "link/MechFamily.h"
#include "link/MemoryUtilities.h"
#include "link/ProgrammerLink.h"
#include "mars/PromDisplay.h"
#include "mars/PromText.h"

namespace vantor {

/// The work of the PROM utilities window: reading the PROM in the socket and showing it beside the
/// data that would be programmed. It is opened from the main window or from the limits window and
/// goes back to where it came from.
class PromUtilities final : public MemoryUtilities {
  public:
    static constexpr int kSizeError = 1301;

    /// `display` and `panes` are two sides of the same window.
    PromUtilities(SessionState& state, ProgrammerLink& link, const Families& families,
                  ErrorReporter& errors, MemoryDisplay& display, PromDisplay& panes);

    [[nodiscard]] std::string_view maker() const override { return kMars; }
    /// Reads the PROM as a 1K one, opens the window and shows what was read. The images of an
    /// earlier session are gone.
    void openFromMain() override;
    /// Opens with the session's PROM size; nothing is read yet.
    void openFromLimits() override;

    void chooseSize();
    void readMemory() override;

  protected:
    void prepare(bool fromLimits) override;
    [[nodiscard]] std::vector<int> viewCaptions() const override;
    void showView(std::size_t view) override;

  private:
    [[nodiscard]] const MarsLayout& layout() const;

    const Families& families_;
    PromDisplay& panes_;
};

}  // namespace vantor
