#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace vantor {

/// One serial port at a time, 9600 baud, no parity, 8 data bits, 1 stop bit, no flow control.
/// Ports have numbers 1..30 (COM1..COM30).
class SerialPort {
  public:
    struct OpenResult {
        bool open = false;
        std::string reason;  ///< why not, in the system's words (Windows-1252); empty when open
    };
    using Receiver = std::function<void(std::span<const std::uint8_t>)>;
    using FailureHandler = std::function<void(const std::string& reason)>;

    virtual ~SerialPort() = default;

    /// Opens a port; an open one is closed first. The input is empty afterwards.
    virtual OpenResult open(int portNumber) = 0;
    /// Lets what was written leave (at most 200 ms), ends a break, closes. Harmless when closed.
    virtual void close() = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;

    /// Hands bytes to the line at once; writing nothing is no error. False when the port is not
    /// open or the system refused the bytes.
    [[nodiscard]] virtual bool write(std::span<const std::uint8_t> bytes) = 0;
    /// Holds the line in the break state, or ends that. What was written leaves first.
    virtual void setBreak(bool on) = 0;
    /// Throws away received bytes that were not yet handed to the receiver.
    virtual void discardInput() = 0;

    /// Called with received bytes, in order; must only store them and return.
    virtual void setReceiver(Receiver receiver) = 0;
    /// Called once when an open port fails (an adapter was pulled); must only note it and return.
    virtual void setFailureHandler(FailureHandler handler) = 0;
};

/// What the port lists say about a port.
struct PortDescription {
    std::string device;  ///< the system's name, for example /dev/ttyUSB0
    bool present = false;
    std::string calledItself;  ///< what the adapter says it is; may be empty
};

/// Knows which device stands behind COMn.
class PortDirectory {
  public:
    virtual ~PortDirectory() = default;
    [[nodiscard]] virtual PortDescription describe(int portNumber) const = 0;
};

}  // namespace vantor
