#include "boxsim/SimulatedBox.h"

namespace vantor::boxsim {

SimulatedPort::SimulatedPort(EventLoop& loop, SimulatedBox& box, int portNumber)
    : loop_(loop), box_(box), portNumber_(portNumber) {}

SimulatedPort::~SimulatedPort() {
    close();
}

SerialPort::OpenResult SimulatedPort::open(int portNumber) {
    close();
    if (portNumber != portNumber_) return {.reason = "No such file or directory"};
    if (!box_.pluggedIn()) return {.reason = "No such device"};
    box_.setOutput(
        [this](std::uint8_t byte) {
            if (receiver_) receiver_(std::span(&byte, 1));
        },
        [this](const std::string& reason) { failed(reason); });
    open_ = true;
    return {.open = true, .reason = {}};
}

void SimulatedPort::close() {
    if (!open_) return;
    // What was written is on the line already and reaches the box after the close.
    setBreak(false);
    if (failureReport_ != 0) loop_.cancel(failureReport_);
    failureReport_ = 0;
    box_.setOutput({}, {});
    open_ = false;
}

bool SimulatedPort::isOpen() const {
    return open_;
}

bool SimulatedPort::write(std::span<const std::uint8_t> bytes) {
    if (!open_ || !box_.pluggedIn()) return false;
    box_.fromPc(bytes);
    return true;
}

void SimulatedPort::setBreak(bool on) {
    if (!open_ || on == breaking_) return;
    breaking_ = on;
    box_.setBreak(on);
}

// A byte is handed over as soon as it has arrived, so nothing ever waits here.
void SimulatedPort::discardInput() {}

void SimulatedPort::setReceiver(Receiver receiver) {
    receiver_ = std::move(receiver);
}

void SimulatedPort::setFailureHandler(FailureHandler handler) {
    failureHandler_ = std::move(handler);
}

void SimulatedPort::failed(const std::string& reason) {
    // As with a real adapter the news comes by itself, not from within a call.
    failureReport_ = loop_.callAfter(Micros{0}, [this, reason] {
        failureReport_ = 0;
        if (failureHandler_) failureHandler_(reason);
    });
}

}  // namespace vantor::boxsim
