#pragma once

#include <map>
#include <utility>

#include "platform/EventLoop.h"

namespace vantor {

/// Virtual time: a turn that finds nothing due jumps straight to the next event.
class VirtualEventLoop final : public EventLoop {
  public:
    [[nodiscard]] Micros now() const override { return now_; }
    TimerId callAfter(Micros delay, Callback callback) override;
    void cancel(TimerId id) override;

    /// Runs one due event. With no event at all the turn returns and time stands still; a flow
    /// waiting on that would spin for ever, so it throws std::logic_error after a million such
    /// turns in a row.
    void pump() override;

    /// Runs events until `done` holds or `limit` has passed; true when it holds.
    bool runUntil(const std::function<bool()>& done, Micros limit);

    /// Runs everything that is due within `span` and leaves the time at its end.
    void advance(Micros span);

    /// Work of another event source (a toolkit's queue), done at the start of every turn.
    void setCompanion(Callback companion) { companion_ = std::move(companion); }

  private:
    using Key = std::pair<Micros, TimerId>;

    void runFirst();

    Micros now_{0};
    TimerId lastId_ = 0;
    std::map<Key, Callback> events_;
    std::map<TimerId, Micros> dueById_;
    Callback companion_;
    int emptyTurns_ = 0;
};

}  // namespace vantor
