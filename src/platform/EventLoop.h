#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <utility>

namespace vantor {

using Micros = std::chrono::microseconds;

/// Time and the order of events. Everything that happens later goes through here, so that tests
/// can move time by hand and a ten-minute programming session takes milliseconds.
class EventLoop {
  public:
    using Callback = std::function<void()>;
    using TimerId = std::uint64_t;  ///< never 0

    virtual ~EventLoop() = default;

    /// Time since the loop began; never runs backwards.
    [[nodiscard]] virtual Micros now() const = 0;

    /// Calls `callback` once, `delay` from now (0 or less: on the next turn). Callbacks that are
    /// due at the same time run in the order in which they were asked for.
    virtual TimerId callAfter(Micros delay, Callback callback) = 0;

    /// Forgets a call that has not happened yet; an unknown or past id is ignored.
    virtual void cancel(TimerId id) = 0;

    /// One turn: handles what is due; when nothing is, waits for the next event and handles that.
    /// May be called from within a callback (a flow that waits inside an event).
    virtual void pump() = 0;

    /// The same, but what the technician does meanwhile is kept for later.
    virtual void pumpHoldingInput() { pump(); }
};

/// Calls back at a fixed interval until stopped or destroyed.
class RepeatingTimer {
  public:
    explicit RepeatingTimer(EventLoop& loop) : loop_(loop) {}
    ~RepeatingTimer() { stop(); }
    RepeatingTimer(const RepeatingTimer&) = delete;
    RepeatingTimer& operator=(const RepeatingTimer&) = delete;

    /// Starts anew; the first call comes one interval from now.
    void start(Micros interval, EventLoop::Callback callback);
    void stop();
    [[nodiscard]] bool running() const { return id_ != 0; }

  private:
    void arm();
    void fire();

    EventLoop& loop_;
    Micros interval_{};
    Micros due_{};
    EventLoop::Callback callback_;
    EventLoop::TimerId id_ = 0;
};

}  // namespace vantor
