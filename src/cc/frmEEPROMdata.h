#pragma once

#include <QWidget>
#include <memory>
#include <vector>

#include "catalogue/SessionState.h"
#include "cc/EepromUtilitiesDisplay.h"

class QLabel;
class QLineEdit;
namespace Ui {
class frmEEPROMdata;
}

namespace vantor {

class ActionFrame;
class EepromUtilities;

/// The EEPROM utilities window: what was read from a Coin Controls mech as text, or a 435's routing
/// in boxes.
class FrmEEPROMdata final : public QWidget, public EepromUtilitiesDisplay {
  public:
    FrmEEPROMdata(const SessionState& state, ActionFrame& actions);
    ~FrmEEPROMdata() override;

    /// What the buttons and the list call; must be set before the window is used.
    void setUtilities(EepromUtilities& utilities) { utilities_ = &utilities; }

    void applyCaptions();

    void loadEepromWindow() override;
    void showEepromWindow() override;
    void closeEepromWindow() override;
    void showEepromMechType(const std::string& mechType) override;
    void listEepromViews(const std::vector<std::string>& entries) override;
    [[nodiscard]] int chosenEepromView() const override;
    void showEepromText(const std::string& text) override;
    void showC435Settings(const C435Settings& settings) override;
    [[nodiscard]] C435Settings enteredC435Settings() const override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void makeSettingRows();
    void connectControls();
    void setTabs();
    void fillSettings(const C435Settings& settings);
    void offerWriting(bool file, bool routing);

    const SessionState& state_;
    ActionFrame& actions_;
    EepromUtilities* utilities_ = nullptr;
    std::unique_ptr<Ui::frmEEPROMdata> ui_;
    std::vector<QLabel*> heads_;    ///< path, its four choices, binary
    std::vector<QLabel*> lblCoin_;  ///< row heads
    std::vector<QLineEdit*> txtSort_;
    std::vector<QLineEdit*> txtCode_;
};

}  // namespace vantor
