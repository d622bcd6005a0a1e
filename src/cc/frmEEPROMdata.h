#pragma once

#include <memory>
#include <vector>

#include "cc/RoutingDisplay.h"
#include "link/frmMemory.h"

class QLineEdit;
namespace Ui {
class frmEEPROMdata;
}

namespace vantor {

class EepromUtilities;

/// The EEPROM utilities window: what was read from a Coin Controls mech as text, or a 435's routing
/// in boxes.
class FrmEEPROMdata final : public FrmMemory, public RoutingDisplay {
  public:
    FrmEEPROMdata(const SessionState& state, ActionFrame& actions);
    ~FrmEEPROMdata() override;

    /// Connects what the controls call, the routing included; once, before the window is used.
    void setUtilities(EepromUtilities& utilities);

    /// In place of the boxes; a file can be programmed.
    void showText(const std::string& text) override;
    void showC435Settings(const C435Settings& settings) override;
    [[nodiscard]] C435Settings enteredC435Settings() const override;

  protected:
    void applyCaptions() override;
    void clear() override;

  private:
    void makeSettingRows();
    void setTabs();
    void fillSettings(const C435Settings& settings);
    void offerWriting(bool file, bool routing);

    std::unique_ptr<Ui::frmEEPROMdata> ui_;
    std::vector<QLabel*> heads_;    ///< path, its four choices, binary
    std::vector<QLabel*> lblCoin_;  ///< row heads
    std::vector<QLineEdit*> txtSort_;
    std::vector<QLineEdit*> txtCode_;
};

}  // namespace vantor
