#include "platform/qt/ActionFrame.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>

namespace vantor {

bool ActionFrame::run(int errorMessage, const std::function<void()>& action) {
    if (busy_ || (held_ && held_())) return false;
    ++frames_;
    setBusy(true);
    guarded(errorMessage, action);
    setBusy(false);
    leave();
    return true;
}

void ActionFrame::runThrough(int errorMessage, const std::function<void()>& action) {
    ++frames_;
    guarded(errorMessage, action);
    leave();
}

void ActionFrame::onClick(QAbstractButton* button, int errorMessage, std::function<void()> action) {
    QObject::connect(button, &QAbstractButton::clicked, button,
                     [this, errorMessage, call = std::move(action)] { run(errorMessage, call); });
}

void ActionFrame::onChoice(QComboBox* list, int errorMessage, std::function<void()> action) {
    QObject::connect(list, &QComboBox::activated, list,
                     [this, errorMessage, call = std::move(action)] { run(errorMessage, call); });
}

void ActionFrame::guarded(int errorMessage, const std::function<void()>& action) {
    try {
        errors_.attempt(errorMessage, action);
    } catch (const ProgramEnded&) {
        ending_ = true;
    } catch (...) {
        try {
            errors_.report(errorMessage, "unknown failure", 0);
        } catch (...) {
            ending_ = true;
        }
    }
}

void ActionFrame::leave() {
    if (--frames_ > 0 || !ending_) return;
    ending_ = false;
    ended_();
}

ActionFrame::Control& ActionFrame::control(QWidget* widget) {
    auto [entry, added] = controls_.try_emplace(widget);
    if (added || entry->second.widget != widget) {
        entry->second = {.widget = widget,
                         .wanted = widget->isEnabledTo(widget->parentWidget()),
                         .allowed = false};
    }
    return entry->second;
}

void ActionFrame::apply(Control& control) const {
    if (control.widget) control.widget->setEnabled(control.wanted && (!busy_ || control.allowed));
}

void ActionFrame::setEnabled(QWidget* widget, bool enabled) {
    Control& entry = control(widget);
    entry.wanted = enabled;
    apply(entry);
}

void ActionFrame::allowWhileBusy(QWidget* widget) {
    Control& entry = control(widget);
    entry.allowed = true;
    apply(entry);
}

void ActionFrame::setFocus(QWidget* widget) {
    if (busy_) {
        focusBefore_ = widget;
    } else {
        widget->setFocus();
    }
}

void ActionFrame::adopt(QWidget* window) {
    for (QWidget* child : window->findChildren<QWidget*>()) {
        if (qobject_cast<QAbstractButton*>(child) || qobject_cast<QComboBox*>(child) ||
            qobject_cast<QLineEdit*>(child)) {
            apply(control(child));
        }
    }
}

void ActionFrame::setBusy(bool busy) {
    if (busy) parkFocus();
    busy_ = busy;
    for (auto& [widget, entry] : controls_) apply(entry);
    if (!busy) giveFocusBack();
    for (const auto& listener : listeners_) listener(busy);
}

// A control that is disabled hands the focus on to the next enabled one, and that is Exit or
// Cancel Operation: a second press of the space bar must not hit those. So the window itself holds
// the focus meanwhile.
void ActionFrame::parkFocus() {
    focusBefore_ = QApplication::focusWidget();
    if (!focusBefore_ || focusBefore_->isWindow()) return;
    const auto entry = controls_.find(focusBefore_);
    if (entry == controls_.end() || entry->second.allowed) return;
    focusBefore_->window()->setFocus();
}

void ActionFrame::giveFocusBack() {
    if (!focusBefore_ || !focusBefore_->isEnabled() || !focusBefore_->isVisible()) return;
    QWidget* window = focusBefore_->window();
    const QWidget* holder = window->focusWidget();
    // Where the technician has moved on meanwhile, the focus stays.
    if (holder == nullptr || holder == window) focusBefore_->setFocus();
}

}  // namespace vantor
