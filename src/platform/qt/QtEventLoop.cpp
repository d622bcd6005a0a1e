#include "platform/qt/QtEventLoop.h"

#include <QCoreApplication>
#include <algorithm>
#include <exception>

#include "platform/ProgramEnded.h"

namespace vantor {

using std::chrono::milliseconds;

QtEventLoop::QtEventLoop() {
    clock_.start();
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &QtEventLoop::fire);
}

Micros QtEventLoop::now() const {
    return std::chrono::duration_cast<Micros>(std::chrono::nanoseconds(clock_.nsecsElapsed()));
}

EventLoop::TimerId QtEventLoop::callAfter(Micros delay, Callback callback) {
    const Micros due = now() + std::max(delay, Micros{0});
    const TimerId id = ++lastId_;
    calls_.emplace(Key{due, id}, std::move(callback));
    dueById_.emplace(id, due);
    if (calls_.begin()->first.second == id) arm();
    return id;
}

void QtEventLoop::cancel(TimerId id) {
    const auto found = dueById_.find(id);
    if (found == dueById_.end()) return;
    calls_.erase(Key{found->second, id});
    dueById_.erase(found);
}

void QtEventLoop::arm() {
    if (calls_.empty()) return;
    const Micros left = calls_.begin()->first.first - now();
    timer_.start(std::max(std::chrono::ceil<milliseconds>(left), milliseconds{0}));
}

void QtEventLoop::fire() {
    const auto first = calls_.begin();
    if (first == calls_.end()) return;
    if (first->first.first > now()) {
        arm();
        return;
    }
    const Callback callback = std::move(first->second);
    dueById_.erase(first->first.second);
    calls_.erase(first);
    // Armed before the call: a callback that waits needs the others to go on.
    arm();
    try {
        callback();
    } catch (const ProgramEnded&) {
        // The wait below this turn sees the same flag and unwinds by itself.
    } catch (const std::exception& error) {
        qCritical("unhandled failure in a timed call: %s", error.what());
    } catch (...) {
        qCritical("unhandled failure in a timed call");
    }
}

void QtEventLoop::pump() {
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void QtEventLoop::pumpHoldingInput() {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                    QEventLoop::WaitForMoreEvents);
}

}  // namespace vantor
