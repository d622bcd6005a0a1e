#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <map>
#include <vector>

#include "catalogue/ErrorReporter.h"

class QAbstractButton;
class QComboBox;

namespace vantor {

/// The outermost frame of every slot, and the one busy guard of the program: while an action
/// runs, every other one is refused and its control is disabled. No exception leaves it.
class ActionFrame {
  public:
    /// `ended` runs when the program is to end and the last frame has unwound, so that nothing of
    /// the program's own is left on the stack; it may run again when a later frame ends so.
    ActionFrame(ErrorReporter& errors, std::function<void()> ended)
        : errors_(errors), ended_(std::move(ended)) {}
    ActionFrame(const ActionFrame&) = delete;
    ActionFrame& operator=(const ActionFrame&) = delete;

    /// While `held` says so a decoder pauses, and an action would overtake it: none is begun.
    void setHold(std::function<bool()> held) { held_ = std::move(held); }

    /// Runs an action as the only one; false (and nothing done) while another runs. A run-time
    /// error that no step caught is reported under `errorMessage`.
    bool run(int errorMessage, const std::function<void()>& action);
    /// For what gets through while an action runs: Cancel Operation, Exit, the windows' X.
    void runThrough(int errorMessage, const std::function<void()>& action);
    /// A click on the button, or a choice from the list, runs an action from now on.
    void onClick(QAbstractButton* button, int errorMessage, std::function<void()> action);
    void onChoice(QComboBox* list, int errorMessage, std::function<void()> action);
    [[nodiscard]] bool busy() const { return busy_; }

    /// Enables or disables a control; while an action runs it stays disabled all the same unless
    /// it was given to `allowWhileBusy`.
    void setEnabled(QWidget* control, bool enabled);
    void allowWhileBusy(QWidget* control);
    /// Gives a control the focus; while an action runs, at its end, because a control that is
    /// disabled takes none.
    void setFocus(QWidget* control);
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
    void setBusy(bool busy);
    void parkFocus();
    void giveFocusBack();
    void guarded(int errorMessage, const std::function<void()>& action);
    void leave();

    ErrorReporter& errors_;
    std::function<void()> ended_;
    std::function<bool()> held_;
    std::map<QWidget*, Control> controls_;
    std::vector<std::function<void(bool)>> listeners_;
    QPointer<QWidget> focusBefore_;
    bool busy_ = false;
    bool ending_ = false;  ///< a frame has unwound because the program is to end
    int frames_ = 0;       ///< frames on the stack
};

}  // namespace vantor
