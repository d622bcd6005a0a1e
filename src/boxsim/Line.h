#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>

#include "boxsim/FaultInjector.h"
#include "platform/EventLoop.h"

namespace vantor::boxsim {

/// One direction of the serial line: bytes queue up and arrive one by one at the pace of
/// 9600 baud, 10 bits a byte. A byte is handed over when its stop bit has ended, never from
/// within the call that puts it.
class Line {
  public:
    /// Decides what becomes of a byte, when it has crossed the line.
    using Judge = std::function<Verdict(std::uint8_t byte, bool endsLine)>;
    using Deliver = std::function<void(std::uint8_t)>;

    Line(EventLoop& loop, Judge judge, Deliver deliver);
    ~Line();
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    /// Called when the end of a break arrives, with the break's length.
    void onBreakEnd(std::function<void(Micros length)> handler) {
        breakEnded_ = std::move(handler);
    }
    /// Called when a fault unplugs the line.
    void onUnplug(std::function<void()> handler) { unplugged_ = std::move(handler); }

    /// Queues a byte that starts at `notBefore` or when what was put before has crossed.
    void put(std::uint8_t byte, Micros notBefore, bool endsLine);
    /// Queues the end of a break that began when what was put before had crossed.
    void putBreak(Micros end, Micros length);
    /// Forgets everything on its way.
    void clear();
    /// When everything put so far will have crossed.
    [[nodiscard]] Micros freeAt() const;

  private:
    /// Thirds of a microsecond: a byte takes 1041 2/3 us.
    using Thirds = std::int64_t;

    struct Item {
        std::uint8_t byte = 0;
        bool endsLine = false;
        Thirds notBefore = 0;
        Thirds length = 0;
        std::optional<Micros> breakLength{};  ///< not a byte but the end of a break
        std::optional<Verdict> verdict{};     ///< already judged
    };

    [[nodiscard]] static Micros rounded(Thirds thirds);
    void arm();
    void fire();
    void pass(Item item, Verdict verdict);

    EventLoop& loop_;
    Judge judge_;
    Deliver deliver_;
    std::function<void(Micros)> breakEnded_;
    std::function<void()> unplugged_;
    std::deque<Item> queue_;
    Thirds free_ = 0;  ///< when the last byte that crossed had crossed
    Thirds due_ = 0;   ///< of the front item while the timer is armed
    EventLoop::TimerId timer_ = 0;
};

}  // namespace vantor::boxsim
