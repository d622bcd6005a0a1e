#pragma once

#include <cstdint>

#include "platform/EventLoop.h"

namespace vantor::boxsim {

/// How the PC gets the box's attention back: a break and then ESC, 20 in a row.
enum class Attention {
    none,
    wake,   ///< after a short break: command mode, said only when it was serial mode
    leave,  ///< after a long break: command mode, said in either mode
};

/// A break this long asks to leave serial mode; a shorter one wakes the box.
inline constexpr Micros kLongBreak{120'000};

/// Watches breaks and ESC.
class AttentionDetector {
  public:
    /// A line that cannot carry a break: 20 ESC alone count as one.
    void setEscapesAlone(bool on) { escapesAlone_ = on; }

    void breakEnded(Micros length);
    /// What this byte completes.
    [[nodiscard]] Attention take(std::uint8_t byte);
    /// A break has come and no other byte than ESC since: ESC is meant for the box itself.
    [[nodiscard]] bool waiting() const { return pending_ != Attention::none; }

  private:
    Attention pending_ = Attention::none;
    int escapes_ = 0;
    bool escapesAlone_ = false;
};

}  // namespace vantor::boxsim
