#pragma once

#include <QWidget>
#include <memory>

#include "catalogue/SessionState.h"
#include "nri/NriUtilitiesDisplay.h"

namespace Ui {
class frmNRIdata;
}

namespace vantor {

class ActionFrame;
class NriMemoryUtilities;

/// The NRI memory utilities window: what was read from an NRI mech, as text.
class FrmNRIdata final : public QWidget, public NriUtilitiesDisplay {
  public:
    FrmNRIdata(const SessionState& state, ActionFrame& actions);
    ~FrmNRIdata() override;

    /// What the buttons and the list call; must be set before the window is used.
    void setUtilities(NriMemoryUtilities& utilities) { utilities_ = &utilities; }

    void applyCaptions();

    void loadNriWindow() override;
    void showNriWindow() override;
    void closeNriWindow() override;
    void showNriMechType(const std::string& mechType) override;
    void listNriViews(const std::vector<std::string>& entries) override;
    [[nodiscard]] int chosenNriView() const override;
    void showNriText(const std::string& text) override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void connectControls();

    const SessionState& state_;
    ActionFrame& actions_;
    NriMemoryUtilities* utilities_ = nullptr;
    std::unique_ptr<Ui::frmNRIdata> ui_;
};

}  // namespace vantor
