#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <map>

#include "catalogue/ErrorReporter.h"

namespace vantor {

/// The outermost frame of every slot, and the one busy guard of the program: while an action
/// runs, every other one is refused and its control is disabled. No exception leaves it.
class ActionFrame {
  public:
    /// `ended` runs once an action has unwound because the program is to end.
    ActionFrame(ErrorReporter& errors, std::function<void()> ended)
        : errors_(errors), ended_(std::move(ended)) {}

    /// Runs an action as the only one; false (and nothing done) while another runs. A run-time
    /// error that no step caught is reported under `errorMessage`.
    bool run(int errorMessage, const std::function<void()>& action);
    /// For what gets through while an action runs: Cancel Operation, Exit, the windows' X.
    void runThrough(int errorMessage, const std::function<void()>& action);
    [[nodiscard]] bool busy() const { return depth_ > 0; }

    /// Enables or disables a control; while an action runs it stays disabled all the same unless
    /// it was given to `allowWhileBusy`.
    void setEnabled(QWidget* control, bool enabled);
    void allowWhileBusy(QWidget* control);
    /// Puts a window's buttons, lists, options, check and text boxes under the guard.
    void adopt(QWidget* window);

    /// Called with every change of `busy`.
    void onBusyChange(std::function<void(bool)> listener) {
        listeners_.push_back(std::move(listener));
    }

  private:
    struct Control {
        QPointer<QWidget> widget;
        bool wanted = true;
        bool allowed = false;
    };

    Control& control(QWidget* widget);
    void apply(Control& control) const;
    void setDepth(int depth);
    void guarded(int errorMessage, const std::function<void()>& action);

    ErrorReporter& errors_;
    std::function<void()> ended_;
    std::map<QWidget*, Control> controls_;
    std::vector<std::function<void(bool)>> listeners_;
    QPointer<QWidget> focusBefore_;
    int depth_ = 0;
};

}  // namespace vantor
