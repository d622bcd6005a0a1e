#include "platform/qt/ActionFrame.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>

namespace vantor {

bool ActionFrame::run(int errorMessage, const std::function<void()>& action) {
    if (busy()) return false;
    setDepth(1);
    guarded(errorMessage, action);
    setDepth(0);
    return true;
}

void ActionFrame::runThrough(int errorMessage, const std::function<void()>& action) {
    guarded(errorMessage, action);
}

void ActionFrame::guarded(int errorMessage, const std::function<void()>& action) {
    try {
        errors_.attempt(errorMessage, action);
    } catch (const ProgramEnded&) {
        ended_();
    } catch (...) {
        try {
            errors_.report(errorMessage, "unknown failure", 0);
        } catch (...) {
            ended_();
        }
    }
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
    if (control.widget) control.widget->setEnabled(control.wanted && (!busy() || control.allowed));
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

void ActionFrame::adopt(QWidget* window) {
    for (QWidget* child : window->findChildren<QWidget*>()) {
        if (qobject_cast<QAbstractButton*>(child) || qobject_cast<QComboBox*>(child) ||
            qobject_cast<QLineEdit*>(child)) {
            apply(control(child));
        }
    }
}

void ActionFrame::setDepth(int depth) {
    if (depth > 0) focusBefore_ = QApplication::focusWidget();
    depth_ = depth;
    for (auto& [widget, entry] : controls_) apply(entry);
    // A disabled control loses the focus; the keyboard user gets it back.
    if (depth == 0 && focusBefore_ && focusBefore_->isEnabled() && focusBefore_->isVisible() &&
        QApplication::focusWidget() == nullptr) {
        focusBefore_->setFocus();
    }
    for (const auto& listener : listeners_) listener(busy());
}

}  // namespace vantor
