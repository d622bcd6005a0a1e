#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>

#include "limits/LimitsReview.h"
#include "link/MechCheck.h"
#include "link/MechFamily.h"
#include "measure/MeasureDisplay.h"
#include "platform/Services.h"

namespace vantor {

class ResultsLog;

/// The work of the measurement window: readings, gathers, coinset runs and the transfer. Each
/// button of the window is one call here.
class MeasureFlows {
  public:
    struct Parts {
        SessionState& state;
        ProgrammerLink& link;
        const Families& families;
        Prompts& prompts;
        ErrorReporter& errors;
        MeasureDisplay& display;
        LimitsReview& limits;
        LimitsDisplay& limitsDisplay;
    };

    explicit MeasureFlows(const Parts& parts);
    ~MeasureFlows();
    MeasureFlows(const MeasureFlows&) = delete;
    MeasureFlows& operator=(const MeasureFlows&) = delete;

    /// Window set-up; `mode` 0 is a fresh start, any other value keeps the run controls.
    void CoinInitialise(int mode);

    // --- buttons and choices
    void runCoinsetFile();
    /// The wizard panel, and back from it to the measurements panel.
    void openWizards();
    void cancelWizards();
    /// Runs a wizard on what the wizard panel says.
    void runWizard(WizardMode mode);
    /// Cancel Operation while a run is active, else back to the main window.
    void backButton();
    void choosePromSize(int promSizeCode);                    ///< 0 = 1K, 1 = 2K
    void chooseSegments(const std::array<bool, 4>& checked);  ///< mapCheckedSegments

    // --- readings, called by the receive path
    void loadMeasurement(std::string_view line);  ///< a Mars "M" line
    void updateStats(int mode);                   ///< 1 resets the item, else takes latestReading
    void logReading();                            ///< one log line, while the log is on

    /// The transfer to the limits window; also Restore Limits.
    void PROMxfr();

    /// Closes the log, if open.
    void closeFiles();

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace vantor
