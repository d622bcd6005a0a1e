#pragma once

#include <memory>

#include "link/frmMemory.h"

namespace Ui {
class frmNRIdata;
}

namespace vantor {

/// The NRI memory utilities window: what was read from an NRI mech, as text.
class FrmNRIdata final : public FrmMemory {
  public:
    FrmNRIdata(const SessionState& state, ActionFrame& actions);
    ~FrmNRIdata() override;

  protected:
    void applyCaptions() override;

  private:
    std::unique_ptr<Ui::frmNRIdata> ui_;
};

}  // namespace vantor
