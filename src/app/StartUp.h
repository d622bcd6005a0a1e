#pragma once

#include "app/ConfigPanel.h"
#include "app/frmMain.h"
#include "app/frmOpening.h"
#include "catalogue/ErrorReporter.h"
#include "catalogue/SessionState.h"
#include "link/MechCheck.h"
#include "link/ProgrammerLink.h"
#include "platform/Prompts.h"
#include "platform/SerialPort.h"
#include "platform/Services.h"
#include "platform/qt/ActionFrame.h"

namespace vantor {

class MainActions;

/// From nothing to the ready main window: the second copy, the configuration, the port and the
/// box. Nothing else is offered before the box has answered.
class StartUp {
  public:
    struct Parts {
        SessionState& state;
        ErrorReporter& errors;
        ActionFrame& actions;
        ProgrammerLink& link;
        MechCheck& check;
        Prompts& prompts;
        PortDirectory& ports;
        InstanceGuard& guard;
        FrmMain& main;
        FrmOpening& opening;
        ConfigPanel& config;
        MainActions& mainActions;
    };

    /// Connects the start-up window's controls.
    explicit StartUp(const Parts& parts);

    /// The main window's load routine. Waits, so it runs inside the event loop.
    void load();
    /// The main window is ready.
    [[nodiscard]] bool over() const { return over_; }

  private:
    void loadSteps();
    void refuseSecondCopy();
    void fillWindow();
    void waitForFirstConfig();
    void findBox();
    void lastCheck();

    void loadOpening();
    void boxCheck();
    void retry();
    void choosePort();

    Parts p_;
    bool over_ = false;
};

}  // namespace vantor
