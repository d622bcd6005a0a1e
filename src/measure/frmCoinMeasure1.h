#pragma once

#include <QWidget>
#include <array>
#include <functional>
#include <memory>
#include <vector>

#include "catalogue/ErrorReporter.h"
#include "catalogue/SessionState.h"
#include "link/MechFamily.h"
#include "measure/MeasureDisplay.h"

class QCheckBox;
class QFrame;
class QGridLayout;
class QLabel;

namespace Ui {
class frmCoinMeasure1;
}

namespace vantor {

class ActionFrame;
class MeasureFlows;

/// The measurement window: readings, statistics and limits of the item being measured, and the
/// choices and buttons of a run. The wizard panel takes the place of the measurements panel.
class FrmCoinMeasure1 final : public QWidget, public MeasureDisplay {
  public:
    FrmCoinMeasure1(SessionState& state, ActionFrame& actions, const Families& families,
                    ErrorReporter& errors);
    ~FrmCoinMeasure1() override;

    /// What the buttons call; must be set before the window is opened.
    void setFlows(MeasureFlows& flows) { flows_ = &flows; }

    // Other windows.
    std::function<void()> hideMain;
    std::function<void()> backToMain;  ///< shows the main window and runs its setupMainForm

    void applyCaptions();
    /// Captions, the fresh set-up (which shows the window), the duplicate / clone box.
    void openWindow();
    /// Hides the window and resets it, and the choices that it holds in the session's state, to
    /// the design state.
    void closeWindow();

    void showMeasureWindow() override;
    void hideMeasureWindow() override { hide(); }
    void hideMainWindow() override;
    void backToMainWindow() override;
    void setCaption(const std::string& caption) override;
    void setBackButton(int captionMessage, bool enabled) override;
    void enableRunButtons(bool enabled) override;
    void enablePromChoices(bool enabled) override;
    void showWizardPanel(bool wizard) override;
    void showMech() override;
    void showPromChoices() override;
    void showTargetLists() override;
    void showStatistics(bool coinLayout) override;
    void showLimitSources() override;
    void showReading(int parameter, const std::string& text) override;
    void showNumber(const std::string& text) override;
    void showNumberCaption(const std::string& text) override;
    void showItem(const std::string& code, const std::string& description) override;
    void showCoinset() override;
    [[nodiscard]] bool logResultsTicked() const override;
    [[nodiscard]] bool duplicateTicked() const override;
    [[nodiscard]] std::string coinValueText() const override;
    void showWizardChoices(const WizardPanel& panel) override;
    [[nodiscard]] std::string chosenCoin() const override;
    [[nodiscard]] int chosenOutputLine() const override;
    [[nodiscard]] int chosenInhibitLine() const override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    /// One measured parameter: its column of the measurements panel.
    struct ParameterColumn {
        QFrame* frame = nullptr;
        QLabel *name = nullptr, *reading = nullptr, *mean = nullptr, *sdLower = nullptr,
               *sdUpper = nullptr, *lowest = nullptr, *highest = nullptr, *separation = nullptr;
    };

    void makeFields();
    void makeParameter(int p);
    void levelRows(QGridLayout& grid) const;
    void connectChoices();
    void connectButtons();
    void setTabs();
    void applyWizardCaptions();
    [[nodiscard]] std::array<bool, kMarsSegments> checkedSegments() const;
    [[nodiscard]] bool exists(int segment) const;  ///< 0-based; in a PROM of the chosen size
    void showParameterCount();
    void fillTargetCoins();
    void chooseLinesOfCoin();
    void showItemLayout(bool coinLayout);
    void pressBack();
    [[nodiscard]] ParameterColumn& column(int parameter);

    SessionState& state_;
    ActionFrame& actions_;
    const Families& families_;
    ErrorReporter& errors_;
    MeasureFlows* flows_ = nullptr;
    std::unique_ptr<Ui::frmCoinMeasure1> ui_;

    std::vector<QCheckBox*> chkSegment_;
    std::vector<ParameterColumn> parameters_;
    std::vector<QLabel*> lblSrc_, lblOffset_, lblLimit_;  ///< limit i at i - 1
};

}  // namespace vantor
