#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "catalogue/ErrorReporter.h"
#include "link/MemoryDisplay.h"
#include "link/ProgrammerLink.h"

namespace vantor {

/// Message numbers under which the failures of a memory utilities window are reported.
struct UtilitiesErrors {
    int openFromMain = 0;
    int load = 0;
    int setup = 0;
    int lists = 0;       ///< of views
    int changeView = 0;  ///< another view was chosen
    int display = 0;
    int read = 0;
    int save = 0;
    int programme = 0;  ///< from a file
    int close = 0;
};

/// The work of the memory utilities window of one maker: opened from the main window or from the
/// limits window, it shows a mech's memory in one of several views and goes back to where it came
/// from. Each maker says how its memory is read, shown and programmed.
class MemoryUtilities {
  public:
    virtual ~MemoryUtilities() = default;
    MemoryUtilities(const MemoryUtilities&) = delete;
    MemoryUtilities& operator=(const MemoryUtilities&) = delete;

    [[nodiscard]] virtual std::string_view maker() const = 0;  ///< kMars, kCoinControls or kNri

    /// From the main window, the box checked and maker and model chosen.
    virtual void openFromMain() = 0;
    virtual void openFromLimits() = 0;

    // --- buttons and choices of the window
    void changeView();
    /// Reads the mech and shows what came.
    virtual void readMemory() = 0;
    virtual void saveToFile() {}
    virtual void programmeFromFile() {}
    void closeWindow();

    [[nodiscard]] const UtilitiesErrors& errorNumbers() const { return numbers_; }

    // The other windows. `fromLimits` says which of the two opened this one.
    std::function<void(bool fromLimits)> leave;   ///< hides it and disables the utilities buttons
    std::function<void(bool fromLimits)> goBack;  ///< enables the buttons and shows it again

  protected:
    static constexpr int kOpenFromLimitsError = 1202;

    MemoryUtilities(SessionState& state, ProgrammerLink& link, ErrorReporter& errors,
                    MemoryDisplay& display, const UtilitiesErrors& numbers)
        : state_(state), link_(link), errors_(errors), display_(display), numbers_(numbers) {}

    /// The last step of either way to open: the window comes up in place of its caller.
    void open(bool fromLimits);
    void listViews();
    /// Shows the session's memory in the chosen view.
    void displayMemory();

    /// What a model or a maker has beside mech type and views, before the window comes up.
    virtual void prepare(bool /*fromLimits*/) {}
    /// Message numbers of the views that there are now.
    [[nodiscard]] virtual std::vector<int> viewCaptions() const = 0;
    virtual void showView(std::size_t view) = 0;  ///< 0-based, in the order of the captions

    SessionState& state_;
    ProgrammerLink& link_;
    ErrorReporter& errors_;
    MemoryDisplay& display_;

  private:
    void bringUp();

    const UtilitiesErrors& numbers_;
};

}  // namespace vantor
