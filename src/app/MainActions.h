#pragma once

#include <array>
#include <functional>
#include <string_view>

#include "app/ConfigPanel.h"
#include "app/frmMain.h"
#include "catalogue/ErrorReporter.h"
#include "catalogue/SessionState.h"
#include "link/MechCheck.h"
#include "link/ProgrammerLink.h"
#include "platform/qt/ActionFrame.h"

namespace vantor {

/// What the main window's buttons do.
class MainActions {
  public:
    struct Parts {
        SessionState& state;
        ErrorReporter& errors;
        ActionFrame& actions;
        ProgrammerLink& link;
        MechCheck& check;
        FrmMain& main;
        ConfigPanel& config;
    };

    /// Connects the buttons.
    explicit MainActions(const Parts& parts);

    /// Opens the measurement window over the hidden main window.
    std::function<void()> openMeasurement;
    /// Opens the memory utilities window of the stored maker over the hidden main window.
    std::function<void()> openMemoryUtilities;
    /// Opens the validator test for the stored maker and model; failed steps are reported under
    /// the number.
    std::function<void(int errorMessage)> openValidatorTest;

    /// The ready state of the main window; windows that return to it call this.
    void setupMainForm();
    /// From now on the buttons are offered: the start-up is over.
    void startOffering();
    /// The memory utilities of all makers, which are off while one of their windows is open.
    void enableUtilities(bool enabled);
    /// The validator tests of all makers, likewise.
    void enableValidatorTests(bool enabled);

  private:
    enum class Work { programMech, validatorTest, memoryUtilities };
    struct Action {
        const char* button;
        const char* list;  ///< of models
        std::string_view maker;
        int errorMessage;
        bool detect;  ///< the box must see a validator
        Work work;
    };
    static const std::array<Action, 9>& table();

    void perform(const Action& action);
    [[nodiscard]] bool mechAnswers(const Action& action);
    void programMech(const Action& action);
    void enableAll(bool enabled);
    void enableAllOf(Work work, bool enabled);

    Parts p_;
    bool offering_ = false;
};

}  // namespace vantor
