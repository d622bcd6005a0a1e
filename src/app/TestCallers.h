#pragma once

#include "app/MainActions.h"
#include "app/frmMain.h"
#include "limits/frmPROM.h"
#include "valtest/ValtestWindow.h"

namespace vantor {

/// The windows that the validator test is opened from, as the test sees them.
class TestCallers final : public ValtestCallers {
  public:
    TestCallers(FrmMain& main, MainActions& mainActions, FrmPROM& limits)
        : main_(main), mainActions_(mainActions), limits_(limits) {}

    void hideMainWindow() override { main_.hide(); }
    void hideLimitsWindow() override { limits_.hideLimitsWindow(); }
    void returnToMainWindow() override {
        main_.show();
        mainActions_.setupMainForm();
    }
    void returnToLimitsWindow() override { limits_.showLimitsWindow(); }
    void enableValidatorTestButtons(bool enabled) override {
        mainActions_.enableValidatorTests(enabled);
        limits_.enableValidatorTest(enabled);
    }

  private:
    FrmMain& main_;
    MainActions& mainActions_;
    FrmPROM& limits_;
};

}  // namespace vantor
