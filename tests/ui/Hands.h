#pragma once

#include <gtest/gtest.h>

#include <QComboBox>
#include <deque>
#include <functional>
#include <string>

#include "Screen.h"
#include "platform/EventLoop.h"

namespace vantor::test {

inline void choose(const std::string& name, const std::string& entry) {
    auto* list = widget<QComboBox>(name);
    const int row = list->findText(QString::fromStdString(entry));
    ASSERT_GE(row, 0) << entry;
    list->setCurrentIndex(row);
    emit list->activated(row);
}

inline void press(QMessageBox* box, QMessageBox::StandardButton button) {
    ASSERT_NE(box, nullptr);
    ASSERT_NE(box->button(button), nullptr);
    box->button(button)->click();
}

/// A technician's hands: each step waits until what it looks for is there, then acts, while the
/// program waits somewhere in the same loop.
class Hands {
  public:
    explicit Hands(EventLoop& loop) : timer_(loop), loop_(loop) {}

    Hands& when(std::string what, std::function<bool()> there, std::function<void()> act = {}) {
        steps_.push_back({std::move(what), std::move(there), std::move(act)});
        return *this;
    }
    Hands& answer(const std::string& part, QMessageBox::StandardButton button) {
        return when(
            "box " + part, [part] { return box(part) != nullptr; },
            [part, button] { press(box(part), button); });
    }
    /// Begins; `giveUp` runs when a step was not reached within `limit`.
    void start(Micros limit, std::function<void()> giveUp) {
        deadline_ = loop_.now() + limit;
        giveUp_ = std::move(giveUp);
        timer_.start(std::chrono::milliseconds(10), [this] { look(); });
    }
    [[nodiscard]] bool done() const { return steps_.empty(); }

  private:
    struct Step {
        std::string what;
        std::function<bool()> there;
        std::function<void()> act;
    };

    void look() {
        if (steps_.empty()) {
            timer_.stop();
        } else if (steps_.front().there()) {
            // Taken out first: what it does may wait, and the hands go on meanwhile.
            const Step step = std::move(steps_.front());
            steps_.pop_front();
            if (step.act) step.act();
        } else if (loop_.now() > deadline_) {
            ADD_FAILURE() << "never came: " << steps_.front().what;
            steps_.clear();
            giveUp_();
        }
    }

    RepeatingTimer timer_;
    EventLoop& loop_;
    Micros deadline_{};
    std::function<void()> giveUp_;
    std::deque<Step> steps_;
};

}  // namespace vantor::test
