#include "platform/VirtualEventLoop.h"

#include <algorithm>
#include <stdexcept>

namespace vantor {

namespace {
constexpr int kMostEmptyTurns = 1'000'000;
}

EventLoop::TimerId VirtualEventLoop::callAfter(Micros delay, Callback callback) {
    const Micros due = now_ + std::max(delay, Micros{0});
    const TimerId id = ++lastId_;
    events_.emplace(Key{due, id}, std::move(callback));
    dueById_.emplace(id, due);
    return id;
}

void VirtualEventLoop::cancel(TimerId id) {
    const auto found = dueById_.find(id);
    if (found == dueById_.end()) return;
    events_.erase(Key{found->second, id});
    dueById_.erase(found);
}

void VirtualEventLoop::runFirst() {
    const auto first = events_.begin();
    now_ = std::max(now_, first->first.first);
    const Callback callback = std::move(first->second);
    dueById_.erase(first->first.second);
    events_.erase(first);
    callback();
}

void VirtualEventLoop::pump() {
    if (companion_) companion_();
    if (events_.empty()) {
        if (++emptyTurns_ > kMostEmptyTurns) throw std::logic_error("waiting with nothing to come");
        return;
    }
    emptyTurns_ = 0;
    runFirst();
}

bool VirtualEventLoop::runUntil(const std::function<bool()>& done, Micros limit) {
    const Micros end = now_ + limit;
    while (!done()) {
        if (companion_) companion_();
        if (done()) return true;
        if (events_.empty() || events_.begin()->first.first > end) {
            now_ = std::max(now_, end);
            return done();
        }
        runFirst();
    }
    return true;
}

void VirtualEventLoop::advance(Micros span) {
    (void)runUntil([] { return false; }, span);
}

}  // namespace vantor
