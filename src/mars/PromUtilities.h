#pragma once

#include "link/MechFamily.h"
#include "link/MemoryUtilities.h"
#include "link/ProgrammerLink.h"
#include "mars/PromText.h"
#include "mars/PromUtilitiesDisplay.h"

namespace vantor {

/// The work of the PROM utilities window: reading the PROM in the socket and showing it beside the
/// data that would be programmed. It is opened from the main window or from the limits window and
/// goes back to where it came from.
class PromUtilities final : public MemoryUtilities {
  public:
    PromUtilities(SessionState& state, ProgrammerLink& link, const Families& families,
                  ErrorReporter& errors, PromUtilitiesDisplay& display)
        : state_(state), link_(link), families_(families), errors_(errors), display_(display) {}

    [[nodiscard]] std::string_view maker() const override { return kMars; }
    /// Reads the PROM as a 1K one, opens the window and shows what was read. The images of an
    /// earlier session are gone.
    void openFromMain() override;
    /// Opens with the session's PROM size; nothing is read yet.
    void openFromLimits() override;

    // --- buttons and choices
    void chooseSize();
    void displayPROM();
    void readPROM();
    void closeWindow();

  private:
    void open();
    void setup(bool fromLimits);
    void setupLists();
    void showView(const PromView& view);
    [[nodiscard]] const MarsLayout& layout() const;

    SessionState& state_;
    ProgrammerLink& link_;
    const Families& families_;
    ErrorReporter& errors_;
    PromUtilitiesDisplay& display_;
};

}  // namespace vantor
