#include "platform/EventLoop.h"

namespace vantor {

void RepeatingTimer::start(Micros interval, EventLoop::Callback callback) {
    stop();
    interval_ = interval;
    callback_ = std::move(callback);
    due_ = loop_.now() + interval_;
    arm();
}

void RepeatingTimer::stop() {
    if (id_ != 0) loop_.cancel(id_);
    id_ = 0;
}

void RepeatingTimer::arm() {
    id_ = loop_.callAfter(due_ - loop_.now(), [this] { fire(); });
}

void RepeatingTimer::fire() {
    // Ticks that a busy machine missed are not made up for in a burst: whatever counts them, a
    // break on the line above all, would be over too soon.
    due_ += interval_;
    if (due_ < loop_.now()) due_ = loop_.now() + interval_;
    arm();
    // The callback may stop or restart the timer, so a copy is called.
    const auto callback = callback_;
    callback();
}

}  // namespace vantor
