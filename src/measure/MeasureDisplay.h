#pragma once

#include <string>

#include "link/MechFamily.h"

namespace vantor {

/// The measurement window as measure/ sees it. The window reads what it shows from SessionState
/// (`item`, `gather`, `coinset`, `mech`, `prom`) when it is told to show it.
class MeasureDisplay {
  public:
    virtual ~MeasureDisplay() = default;

    virtual void showMeasureWindow() = 0;  ///< in front
    virtual void hideMeasureWindow() = 0;
    virtual void hideMainWindow() = 0;
    /// Hides this window, shows the main window and runs its `setupMainForm`.
    virtual void backToMainWindow() = 0;

    virtual void setCaption(const std::string& caption) = 0;  ///< of the window
    virtual void setBackButton(int captionMessage, bool enabled) = 0;
    virtual void enableRunButtons(bool enabled) = 0;   ///< Run Coinset File and Wizards
    virtual void enablePromChoices(bool enabled) = 0;  ///< both size options, four segment boxes
    /// Measurements panel in front, wizard panel away (or the other way round).
    virtual void showWizardPanel(bool wizard) = 0;

    /// Mech type, maker name and colour, parameter names, panel width for n parameters; PROM
    /// frames only for a family with a PROM socket; the coin value where the model has one.
    virtual void showMech() = 0;
    /// The 1K/2K options and segment boxes, from `prom`.
    virtual void showPromChoices() = 0;
    /// Fills the segment list and the target coin list, from `prom` and the model.
    virtual void showTargetLists() = 0;
    /// Coin or slug layout of the results panel and all statistics, from `item`.
    virtual void showStatistics(bool coinLayout) = 0;
    virtual void showLimitSources() = 0;  ///< the source label of every limit
    virtual void showReading(int parameter, const std::string& text) = 0;  ///< parameter from 1
    virtual void showNumber(const std::string& text) = 0;  ///< coins remaining, or readings held
    virtual void showNumberCaption(const std::string& text) = 0;
    virtual void showItem(const std::string& code, const std::string& description) = 0;
    virtual void showCoinset() = 0;  ///< title, reference code, version, from `coinset`

    [[nodiscard]] virtual bool logResultsTicked() const = 0;
    [[nodiscard]] virtual bool duplicateTicked() const = 0;
    /// The text of the coin value box.
    [[nodiscard]] virtual std::string coinValueText() const = 0;

    /// The fields of the wizard panel as a wizard finds them: the model, the heads, what the model
    /// asks for, the first coin value.
    virtual void showWizardChoices(const WizardPanel& panel) = 0;
    /// The selected entry of the target coin list; empty without one.
    [[nodiscard]] virtual std::string chosenCoin() const = 0;
    [[nodiscard]] virtual int chosenOutputLine() const = 0;   ///< 1..6; 0 = none
    [[nodiscard]] virtual int chosenInhibitLine() const = 0;  ///< 1..6; 0 = none
};

}  // namespace vantor
