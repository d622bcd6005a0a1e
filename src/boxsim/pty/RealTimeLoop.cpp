#include "boxsim/pty/RealTimeLoop.h"

#include <sys/select.h>

#include <algorithm>
#include <csignal>
#include <optional>
#include <vector>

namespace vantor::boxsim {

Micros RealTimeLoop::now() const {
    return std::chrono::duration_cast<Micros>(std::chrono::steady_clock::now() - began_);
}

EventLoop::TimerId RealTimeLoop::callAfter(Micros delay, Callback callback) {
    const Micros due = now() + std::max(delay, Micros{0});
    const TimerId id = ++lastId_;
    events_.emplace(Key{due, id}, std::move(callback));
    dueById_.emplace(id, due);
    return id;
}

void RealTimeLoop::cancel(TimerId id) {
    const auto found = dueById_.find(id);
    if (found == dueById_.end()) return;
    events_.erase(Key{found->second, id});
    dueById_.erase(found);
}

void RealTimeLoop::pump() {
    if (!runDue()) waitForNext();
}

bool RealTimeLoop::runDue() {
    if (events_.empty() || events_.begin()->first.first > now()) return false;
    const auto first = events_.begin();
    const Callback callback = std::move(first->second);
    dueById_.erase(first->first.second);
    events_.erase(first);
    callback();
    return true;
}

void RealTimeLoop::waitForNext() {
    // pselect, because a byte time is a thousand microseconds and poll counts in whole
    // milliseconds.
    fd_set readable;
    FD_ZERO(&readable);
    int highest = -1;
    for (const auto& [descriptor, callback] : watched_) {
        FD_SET(descriptor, &readable);
        highest = std::max(highest, descriptor);
    }
    std::optional<timespec> timeout;
    if (!events_.empty()) {
        const auto left = std::max(events_.begin()->first.first - now(), Micros{0});
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
        timeout = timespec{.tv_sec = static_cast<time_t>(seconds.count()),
                           .tv_nsec = static_cast<long>((left - seconds).count() * 1000)};
    }
    // Signals that the program keeps blocked come in here alone, so that none falls between a
    // look at what it has set and the wait.
    sigset_t none;
    sigemptyset(&none);
    const int ready =
        pselect(highest + 1, &readable, nullptr, nullptr, timeout ? &*timeout : nullptr, &none);
    if (ready <= 0) return;
    std::vector<int> descriptors;
    for (const auto& [descriptor, callback] : watched_) {
        if (FD_ISSET(descriptor, &readable)) descriptors.push_back(descriptor);
    }
    for (const int descriptor : descriptors) {
        // A callback may have ended another's watch.
        const auto found = watched_.find(descriptor);
        if (found == watched_.end()) continue;
        const Callback callback = found->second;
        callback();
    }
}

}  // namespace vantor::boxsim
