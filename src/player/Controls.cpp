#include "player/Controls.h"

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QSpinBox>
#include <QTabWidget>
#include <algorithm>
#include <map>

#include "catalogue/Text.h"

namespace vantor::player {

namespace {

QString fromScript(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QString oneLineEnd(QString text) {
    return text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
}

/// "&&" is an ampersand that is shown, a single "&" marks a shortcut.
QString withoutShortcut(const QString& caption) {
    QString shown;
    for (qsizetype i = 0; i < caption.size(); ++i) {
        if (caption[i] == QLatin1Char('&') && ++i == caption.size()) break;
        shown += caption[i];
    }
    return shown;
}

std::string quoted(const QString& text) {
    QString escaped = text;
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    escaped.replace(QLatin1Char('"'), QLatin1String("\\\""));
    escaped.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    return '"' + escaped.toStdString() + '"';
}

std::string listed(const std::vector<QString>& entries) {
    std::string all;
    for (const QString& entry : entries) all += (all.empty() ? "" : ", ") + quoted(entry);
    return all.empty() ? "none" : all;
}

bool isOwnControl(const QWidget* child, const QWidget* window) {
    const QString name = child->objectName();
    // The toolkit names the arrows of its tab bars too.
    if (qobject_cast<const QTabBar*>(child->parentWidget())) return false;
    return !name.isEmpty() && !name.startsWith(QLatin1String("qt_")) && !child->isWindow() &&
           child->window() == window;
}

/// Which entry "#2" means, from 0; no entry at all is -1. A script that is played in several
/// languages cannot know the entries' texts.
int placeOf(std::string_view entry, int count) {
    if (!entry.starts_with('#')) return -1;
    const int place = lenientInteger(entry.substr(1));
    return place >= 1 && place <= count ? place - 1 : -1;
}

/// A box that keeps the technician's hands off a window.
const QWidget* boxInTheWay(const QWidget* widget) {
    const QWidget* modal = QApplication::activeModalWidget();
    const QWidget* window = widget->window();
    if (!modal || modal == window || modal->isAncestorOf(window)) return nullptr;
    if (modal->windowModality() == Qt::ApplicationModal) return modal;
    for (const QWidget* owner = modal->parentWidget(); owner; owner = owner->parentWidget()) {
        if (owner->window() == window) return modal;
    }
    return nullptr;
}

void press(QWidget* widget, int key, const QString& text) {
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(widget, &down);
    QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QApplication::sendEvent(widget, &up);
}

void focus(QWidget* widget) {
    if (widget->focusPolicy() & Qt::ClickFocus) widget->setFocus(Qt::MouseFocusReason);
}

QPalette::ColorRole backgroundRole(const QWidget* widget) {
    if (qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QPlainTextEdit*>(widget)) {
        return QPalette::Base;
    }
    return widget->backgroundRole();
}

Problem refusal(const QWidget* widget) {
    if (!widget->window()->isVisible()) return "its window is not shown";
    if (!widget->isVisible()) return "it is not visible";
    if (!widget->isEnabled()) return "it is disabled";
    if (const QWidget* box = boxInTheWay(widget)) {
        return "the open box " + quoted(box->windowTitle()) + " is in front of it";
    }
    return {};
}

}  // namespace

QWidget* findWindow(std::string_view name) {
    const QString wanted = fromScript(name);
    QWidget* found = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->objectName() == wanted && (!found || window->isVisible())) found = window;
    }
    return found;
}

Target findTarget(std::string_view name) {
    const std::size_t stop = name.find('.');
    const std::string_view windowName = name.substr(0, stop);
    QWidget* window = findWindow(windowName);
    if (!window) return {nullptr, "there is no window " + std::string(windowName)};
    if (stop == name.npos) return {window, {}};
    const std::string_view controlName = name.substr(stop + 1);
    for (QWidget* child : window->findChildren<QWidget*>(fromScript(controlName))) {
        if (isOwnControl(child, window)) return {child, {}};
    }
    return {nullptr, "the window " + std::string(windowName) + " has no control " +
                         std::string(controlName)};
}

QString textOf(const QWidget* widget) {
    if (widget->isWindow()) return oneLineEnd(widget->windowTitle());
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
        return oneLineEnd(withoutShortcut(button->text()));
    }
    if (const auto* label = qobject_cast<const QLabel*>(widget)) {
        return oneLineEnd(label->buddy() ? withoutShortcut(label->text()) : label->text());
    }
    if (const auto* edit = qobject_cast<const QLineEdit*>(widget)) return edit->text();
    if (const auto* edit = qobject_cast<const QPlainTextEdit*>(widget)) return edit->toPlainText();
    if (const auto* list = qobject_cast<const QComboBox*>(widget)) return list->currentText();
    if (const auto* box = qobject_cast<const QGroupBox*>(widget)) {
        return withoutShortcut(box->title());
    }
    if (const auto* tabs = qobject_cast<const QTabWidget*>(widget)) {
        return withoutShortcut(tabs->tabText(tabs->currentIndex()));
    }
    if (const auto* spin = qobject_cast<const QSpinBox*>(widget)) return spin->cleanText();
    return valueOf(widget);
}

QString valueOf(const QWidget* widget) {
    if (const auto* box = qobject_cast<const QCheckBox*>(widget)) {
        if (box->checkState() == Qt::PartiallyChecked) return QStringLiteral("grey");
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
        if (!button->isCheckable()) return {};
        return button->isChecked() ? QStringLiteral("on") : QStringLiteral("off");
    }
    if (const auto* bar = qobject_cast<const QProgressBar*>(widget)) {
        return QString::number(bar->value());
    }
    if (const auto* list = qobject_cast<const QComboBox*>(widget)) {
        return QString::number(list->currentIndex());
    }
    if (const auto* tabs = qobject_cast<const QTabWidget*>(widget)) {
        return QString::number(tabs->currentIndex());
    }
    return {};
}

QColor colourOf(const QWidget* widget) {
    const QPalette palette = widget->palette();
    const auto background = backgroundRole(widget);
    const bool painted = background == QPalette::Base || background == QPalette::Button ||
                         widget->autoFillBackground() || widget->isWindow();
    const auto foreground =
        background == QPalette::Base ? QPalette::Text : widget->foregroundRole();
    const bool own = painted && palette.isBrushSet(QPalette::Active, background);
    const bool ownText = palette.isBrushSet(QPalette::Active, foreground);
    const bool label = qobject_cast<const QLabel*>(widget) != nullptr && !painted;
    return palette.color(QPalette::Active, (!own && ownText) || label ? foreground : background);
}

bool shows(const QWidget* widget, std::string_view wanted) {
    const QString text = oneLineEnd(fromScript(wanted));
    return textOf(widget) == text || (!valueOf(widget).isEmpty() && valueOf(widget) == text);
}

std::string describe(const QWidget* widget, std::string_view name) {
    const QString value = valueOf(widget);
    return std::string(name) + "  text=" + quoted(textOf(widget)) +
           (value.isEmpty() ? "" : "  value=" + value.toStdString()) +
           "  enabled=" + (widget->isEnabled() ? "yes" : "no") +
           "  visible=" + (widget->isVisible() ? "yes" : "no") +
           "  colour=" + colourOf(widget).name().toStdString();
}

std::vector<std::string> describeAll(QWidget* window) {
    std::map<std::string, const QWidget*> byName;
    for (const QWidget* child : window->findChildren<QWidget*>()) {
        if (isOwnControl(child, window)) byName.emplace(child->objectName().toStdString(), child);
    }
    const std::string windowName = window->objectName().toStdString();
    std::vector<std::string> lines = {describe(window, windowName)};
    for (const auto& [name, child] : byName)
        lines.push_back(describe(child, windowName + '.' + name));
    return lines;
}

Problem click(QWidget* widget, const Accepted& accepted) {
    auto* button = qobject_cast<QAbstractButton*>(widget);
    if (!button) return "it is nothing that can be clicked";
    if (Problem problem = refusal(widget); !problem.empty()) return problem;
    focus(widget);
    accepted();
    button->click();
    return {};
}

Problem closeWindow(QWidget* window, const Accepted& accepted) {
    if (Problem problem = refusal(window); !problem.empty()) return problem;
    accepted();
    window->close();
    return {};
}

Problem choose(QWidget* widget, std::string_view entry, const Accepted& accepted) {
    auto* list = qobject_cast<QComboBox*>(widget);
    if (!list) return "it is no list";
    if (Problem problem = refusal(widget); !problem.empty()) return problem;
    int index = list->findText(fromScript(entry), Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index < 0) index = placeOf(entry, list->count());
    if (index < 0) {
        std::vector<QString> entries;
        for (int i = 0; i < list->count(); ++i) entries.push_back(list->itemText(i));
        return "it has no such entry, only " + listed(entries);
    }
    const auto flags = list->model()->flags(list->model()->index(index, list->modelColumn()));
    if (!(flags & Qt::ItemIsEnabled)) return "that entry is disabled";
    focus(list);
    accepted();
    list->setCurrentIndex(index);
    emit list->activated(index);
    emit list->textActivated(list->itemText(index));
    return {};
}

Problem typeInto(QWidget* widget, std::string_view text, const Accepted& accepted) {
    auto* line = qobject_cast<QLineEdit*>(widget);
    auto* page = qobject_cast<QPlainTextEdit*>(widget);
    auto* spin = qobject_cast<QSpinBox*>(widget);
    if (spin) line = spin->findChild<QLineEdit*>();
    if (!line && !page) return "it is nothing to type into";
    if (Problem problem = refusal(widget); !problem.empty()) return problem;
    if (line ? line->isReadOnly() : page->isReadOnly()) return "it is read-only";
    focus(widget);
    accepted();
    // Real key presses, so that the program hears of them as of a technician's.
    line ? line->selectAll() : page->selectAll();
    QWidget* keys = line ? static_cast<QWidget*>(line) : page;
    if (text.empty()) press(keys, Qt::Key_Delete, {});
    const QString wanted = fromScript(text);
    for (const QChar c : wanted) press(keys, 0, QString(c));
    if (spin) spin->interpretText();
    if (!shows(widget, text)) return "it took " + quoted(textOf(widget)) + " instead";
    return {};
}

Problem tick(QWidget* widget, bool on, const Accepted& accepted) {
    auto* button = qobject_cast<QAbstractButton*>(widget);
    if (!button || !button->isCheckable()) return "it is nothing that can be ticked";
    if (Problem problem = refusal(widget); !problem.empty()) return problem;
    const QString wanted = on ? QStringLiteral("on") : QStringLiteral("off");
    focus(button);
    accepted();
    // A box with a grey state may need two clicks.
    for (int clicks = 0; clicks < 2 && valueOf(button) != wanted; ++clicks) button->click();
    if (valueOf(button) != wanted) return "it stays " + valueOf(button).toStdString();
    return {};
}

Problem chooseTab(QWidget* widget, std::string_view label, const Accepted& accepted) {
    auto* tabs = qobject_cast<QTabWidget*>(widget);
    if (!tabs) return "it is no tab strip";
    if (Problem problem = refusal(widget); !problem.empty()) return problem;
    std::vector<QString> labels;
    for (int i = 0; i < tabs->count(); ++i) {
        labels.push_back(withoutShortcut(tabs->tabText(i)));
        if (labels.back() != fromScript(label)) continue;
        if (!tabs->isTabEnabled(i)) return "that tab is disabled";
        accepted();
        tabs->setCurrentIndex(i);
        return {};
    }
    return "it has no such tab, only " + listed(labels);
}

QWidget* windowInFront() {
    QWidget* best = nullptr;
    const auto rank = [](const QWidget* window) {
        const bool box = qobject_cast<const QMessageBox*>(window) != nullptr;
        const bool bench = window->objectName() == QLatin1String("frmBench");
        return std::tuple(window == QApplication::activeModalWidget(), box, !bench,
                          window == QApplication::activeWindow(),
                          window->width() * window->height());
    };
    for (QWidget* window : QApplication::topLevelWidgets()) {
        const bool candidate = window->isVisible() && window->windowType() != Qt::Popup &&
                               window->windowType() != Qt::ToolTip;
        if (candidate && (!best || rank(window) > rank(best))) best = window;
    }
    return best;
}

}  // namespace vantor::player
