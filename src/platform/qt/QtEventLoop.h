#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <map>
#include <utility>

#include "platform/EventLoop.h"

namespace vantor {

/// The toolkit's event loop as the program's. Delays are rounded up to whole milliseconds; a pump
/// with nothing to do sleeps.
class QtEventLoop final : public QObject, public EventLoop {
  public:
    QtEventLoop();

    [[nodiscard]] Micros now() const override;
    TimerId callAfter(Micros delay, Callback callback) override;
    void cancel(TimerId id) override;
    void pump() override;
    void pumpHoldingInput() override;

  private:
    using Key = std::pair<Micros, TimerId>;

    void arm();
    void fire();

    QElapsedTimer clock_;
    QTimer timer_;
    TimerId lastId_ = 0;
    std::map<Key, Callback> calls_;
    std::map<TimerId, Micros> dueById_;
};

}  // namespace vantor
