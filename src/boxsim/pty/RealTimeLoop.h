#pragma once

#include <chrono>
#include <map>
#include <utility>

#include "platform/EventLoop.h"

namespace vantor::boxsim {

/// Real time for a program without a toolkit: timers and readable file descriptors, in one
/// thread. Sleeps between events.
class RealTimeLoop final : public EventLoop {
  public:
    [[nodiscard]] Micros now() const override;
    TimerId callAfter(Micros delay, Callback callback) override;
    void cancel(TimerId id) override;
    /// Returns early, with nothing done, when a signal comes.
    void pump() override;

    /// Calls back on every turn in which something can be read from `descriptor`.
    void watch(int descriptor, Callback readable) { watched_[descriptor] = std::move(readable); }
    void unwatch(int descriptor) { watched_.erase(descriptor); }

  private:
    bool runDue();
    void waitForNext();

    using Key = std::pair<Micros, TimerId>;
    std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
    TimerId lastId_ = 0;
    std::map<Key, Callback> events_;
    std::map<TimerId, Micros> dueById_;
    std::map<int, Callback> watched_;
};

}  // namespace vantor::boxsim
