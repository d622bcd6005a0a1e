#pragma once

#include <QWidget>
#include <memory>

#include "catalogue/SessionState.h"
#include "mars/PromUtilitiesDisplay.h"

namespace Ui {
class frmPROMdata;
}

namespace vantor {

class ActionFrame;
class PromUtilities;

/// The PROM utilities window: the PROM in the socket beside the data that would be programmed.
class FrmPROMdata final : public QWidget, public PromUtilitiesDisplay {
  public:
    FrmPROMdata(const SessionState& state, ActionFrame& actions);
    ~FrmPROMdata() override;

    /// What the buttons and lists call; must be set before the window is used.
    void setUtilities(PromUtilities& utilities) { utilities_ = &utilities; }

    void applyCaptions();

    void loadPromWindow() override;
    void showPromWindow() override;
    void closePromWindow() override;
    void showPromSize(int promSizeCode, bool choosable) override;
    [[nodiscard]] int shownPromSize() const override;
    void showPromMechType(const std::string& mechType) override;
    void listViews(const std::vector<std::string>& entries) override;
    [[nodiscard]] int chosenView() const override;
    void showPanes(const std::string& read, const std::string& next) override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void connectControls();

    const SessionState& state_;
    ActionFrame& actions_;
    PromUtilities* utilities_ = nullptr;
    std::unique_ptr<Ui::frmPROMdata> ui_;
};

}  // namespace vantor
