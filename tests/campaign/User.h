#pragma once

#include <string>
#include <vector>

#include "World.h"

namespace vantor::campaign {

/// The one who presses what the work does not ask for, and who gives up on coins that never count.
class User {
  public:
    explicit User(World& world);
    ~User();
    User(const User&) = delete;
    User& operator=(const User&) = delete;

    /// The presses of a step, at their time from now on.
    void setOut(int step);
    /// Presses nothing any more.
    void restrain();
    /// Closes what is open, up to the main window; false when it is not reached.
    bool goHome();
    /// How many presses found something to press.
    [[nodiscard]] int pressed() const { return pressed_; }

    std::vector<std::string> deeds;  ///< for people

  private:
    /// Until the step is over it is tried again: something to press comes into sight.
    void press(const Press& press);
    bool cancel();
    bool exit();
    bool closeWindow(std::uint32_t pick);
    bool anyButton(std::uint32_t pick);
    bool closeFrontWindow();
    void loseHeart();

    World& world_;
    std::vector<EventLoop::TimerId> timers_;
    RepeatingTimer patience_;
    std::string item_;
    Micros itemSince_{};
    int pressed_ = 0;
};

}  // namespace vantor::campaign
