#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <stdexcept>
#include <string>

// What is on the screen, by the names of windows and controls.

namespace vantor::test {

inline QWidget* windowNamed(const std::string& name) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->objectName().toStdString() == name) return window;
    }
    return nullptr;
}

/// A control by "window.control", or a window by its name.
template <class Widget = QWidget>
Widget* widget(const std::string& name) {
    const auto stop = name.find('.');
    QWidget* window = windowNamed(name.substr(0, stop));
    if (window == nullptr) throw std::out_of_range("no window " + name);
    if (stop == std::string::npos) return dynamic_cast<Widget*>(window);
    auto* found = window->findChild<Widget*>(QString::fromStdString(name.substr(stop + 1)));
    if (found == nullptr) throw std::out_of_range("no control " + name);
    return found;
}

inline bool visible(const std::string& name) {
    return widget(name)->isVisible();
}
inline bool enabled(const std::string& name) {
    return widget(name)->isEnabled();
}
inline std::string label(const std::string& name) {
    return widget<QLabel>(name)->text().toStdString();
}
inline void click(const std::string& name) {
    widget<QAbstractButton>(name)->click();
}

/// The open box whose text contains `part`; nullptr when there is none.
inline QMessageBox* box(const std::string& part, const std::string& name = "prompt") {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* found = dynamic_cast<QMessageBox*>(window);
        if (found != nullptr && found->isVisible() && found->objectName().toStdString() == name &&
            found->text().contains(QString::fromStdString(part))) {
            return found;
        }
    }
    return nullptr;
}

}  // namespace vantor::test
