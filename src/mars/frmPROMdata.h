#pragma once

#include <memory>

#include "link/frmMemory.h"
#include "mars/PromDisplay.h"

namespace Ui {
class frmPROMdata;
}

namespace vantor {

class PromUtilities;

/// The PROM utilities window: the PROM in the socket beside the data that would be programmed.
class FrmPROMdata final : public FrmMemory, public PromDisplay {
  public:
    FrmPROMdata(const SessionState& state, ActionFrame& actions);
    ~FrmPROMdata() override;

    /// Connects what the controls call, the size included; once, before the window is used.
    void setUtilities(PromUtilities& utilities);

    void showPromSize(int promSizeCode, bool choosable) override;
    [[nodiscard]] int shownPromSize() const override;
    void showPanes(const std::string& read, const std::string& next) override;

  protected:
    void applyCaptions() override;
    void clear() override;

  private:
    std::unique_ptr<Ui::frmPROMdata> ui_;
};

}  // namespace vantor
