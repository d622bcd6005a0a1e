#include "User.h"

#include <QFileDialog>
#include <QMessageBox>
#include <algorithm>
#include <array>

#include "Jobs.h"
#include "WorstCase.h"

namespace vantor::campaign {

using std::chrono::milliseconds;

namespace {

constexpr std::array kWindows = {"frmMain",    "frmOpening",  "frmCoinMeasure1",
                                 "frmPROM",    "frmPROMdata", "frmEEPROMdata",
                                 "frmNRIdata", "frmValtest",  "frmProgramming"};

/// Boxes and dialogs; their order must not depend on where they lie in memory.
std::vector<QWidget*> openBoxes() {
    std::vector<QWidget*> boxes;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        const bool box = dynamic_cast<QMessageBox*>(window) || dynamic_cast<QFileDialog*>(window);
        if (box && window->isVisible()) boxes.push_back(window);
    }
    const auto key = [](const QWidget* window) {
        const auto* box = dynamic_cast<const QMessageBox*>(window);
        return window->windowTitle() + (box ? box->text() : QString());
    };
    std::ranges::sort(boxes, {}, key);
    return boxes;
}

std::vector<QWidget*> openWindows() {
    std::vector<QWidget*> windows;
    for (const char* name : kWindows) {
        QWidget* window = test::windowNamed(name);
        if (window != nullptr && window->isVisible()) windows.push_back(window);
    }
    return windows;
}

template <class T>
T* picked(const std::vector<T*>& from, std::uint32_t pick) {
    return from.empty() ? nullptr : from[pick % from.size()];
}

std::string nameOf(const QWidget* widget) {
    const auto* button = dynamic_cast<const QAbstractButton*>(widget);
    QString name = widget->objectName();
    if (name.isEmpty() && button) name = button->text();
    if (!widget->isWindow()) name.prepend(widget->window()->objectName() + ".");
    return name.toStdString();
}

}  // namespace

User::User(World& world) : world_(world), patience_(world.loop) {
    patience_.start(milliseconds(500), [this] { loseHeart(); });
}

User::~User() {
    restrain();
}

void User::setOut(int step) {
    restrain();
    for (const Press& press : world_.plan.presses) {
        if (press.step != step) continue;
        timers_.push_back(
            world_.loop.callAfter(milliseconds(press.atMs), [this, press] { this->press(press); }));
    }
}

void User::restrain() {
    for (const EventLoop::TimerId timer : timers_) world_.loop.cancel(timer);
    timers_.clear();
}

void User::press(const Press& press) {
    if (world_.ended()) return;
    bool found = false;
    switch (press.what) {
        case Press::What::cancel:
            found = cancel();
            break;
        case Press::What::exit:
            found = exit();
            break;
        case Press::What::closeWindow:
            found = closeWindow(press.pick);
            break;
        case Press::What::anyButton:
            found = anyButton(press.pick);
            break;
    }
    constexpr milliseconds kLookAgain{20};
    if (found) {
        ++pressed_;
    } else {
        timers_.push_back(world_.loop.callAfter(kLookAgain, [this, press] { this->press(press); }));
    }
}

bool User::cancel() {
    for (QWidget* window : openBoxes()) {
        if (auto* dialog = dynamic_cast<QFileDialog*>(window)) {
            deeds.emplace_back("cancels the file dialog");
            dialog->reject();
            return true;
        }
        auto* button = dynamic_cast<QMessageBox*>(window)->button(QMessageBox::Cancel);
        if (button == nullptr) continue;
        deeds.emplace_back("cancels the box");
        button->click();
        return true;
    }
    auto* back = test::widget<QAbstractButton>("frmCoinMeasure1.cmdBack");
    if (!pressable(back)) return false;
    deeds.emplace_back("presses Cancel Operation or Back");
    back->click();
    return true;
}

bool User::exit() {
    deeds.emplace_back("presses Exit");
    test::click("frmMain.cmdExit");
    return true;
}

bool User::closeWindow(std::uint32_t pick) {
    std::vector<QWidget*> windows = openBoxes();
    for (QWidget* window : openWindows()) {
        if (pressable(window)) windows.push_back(window);
    }
    QWidget* window = picked(windows, pick);
    if (window == nullptr) return false;
    deeds.push_back("closes " + nameOf(window));
    window->close();
    return true;
}

bool User::anyButton(std::uint32_t pick) {
    std::vector<QAbstractButton*> buttons;
    const auto collect = [&](QWidget* window) {
        for (QAbstractButton* button : window->findChildren<QAbstractButton*>()) {
            // A dialog is a child of the window that it stands before.
            if (button->window() == window && pressable(button)) buttons.push_back(button);
        }
    };
    for (QWidget* window : openBoxes()) {
        // What a file dialog's own buttons do depends on the disc of this machine.
        if (dynamic_cast<QMessageBox*>(window)) collect(window);
    }
    for (QWidget* window : openWindows()) collect(window);
    QAbstractButton* button = picked(buttons, pick);
    if (button == nullptr) return false;
    deeds.push_back("presses " + nameOf(button));
    button->click();
    return true;
}

/// Coins that do not count are dropped for a while, then the technician cancels.
void User::loseHeart() {
    if (world_.ended()) return;
    const SessionState& state = world_.state();
    const std::string item = state.gather.runActive && state.gather.coinsRemaining > 0
                                 ? state.item.itemCode + state.item.itemDescription + "!"
                                 : "";
    if (item != item_) itemSince_ = world_.loop.now();
    item_ = item;
    if (item.empty() || world_.loop.now() - itemSince_ < patience()) return;
    auto* back = test::widget<QAbstractButton>("frmCoinMeasure1.cmdBack");
    if (!pressable(back)) return;
    deeds.emplace_back("gives up on the coins");
    back->click();
}

bool User::closeFrontWindow() {
    for (const char* button :
         {"frmPROMdata.cmdBye", "frmEEPROMdata.cmdBye", "frmNRIdata.cmdBye", "frmValtest.cmdBack",
          "frmPROM.cmdBack1", "frmCoinMeasure1.cmdCancelWizards", "frmCoinMeasure1.cmdBack",
          "frmMain.cmdCancConfig"}) {
        auto* found = test::widget<QAbstractButton>(button);
        if (!pressable(found)) continue;
        found->click();
        return true;
    }
    return false;
}

bool User::goHome() {
    for (QWidget* window : openBoxes()) {
        if (window->objectName() == QLatin1String("notice")) window->close();
    }
    constexpr int kMostWindows = 6;
    for (int i = 0; i < kMostWindows && closeFrontWindow(); ++i) {
        world_.loop.advance(milliseconds(100));
        (void)world_.loop.runUntil([this] { return world_.idle() || world_.ended(); },
                                   longestAction(world_.plan));
    }
    return !world_.ended() && test::visible("frmMain") && test::enabled("frmMain.cmdExit");
}

}  // namespace vantor::campaign
