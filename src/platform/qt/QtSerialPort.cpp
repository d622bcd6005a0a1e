#include "platform/qt/QtSerialPort.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QSerialPortInfo>
#include <QThread>

#include "platform/qt/QtText.h"

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <sys/ioctl.h>
#include <termios.h>
#endif

namespace vantor {

namespace {

constexpr int kDrainMs = 200;
constexpr qint64 kKeepListMs = 1000;
constexpr unsigned long kDrainStepUs = 1000;
// The byte in the transmitter's own register is in no queue any more; it needs its 10 bits.
constexpr unsigned long kLastByteUs = 1100;

/// Bytes that the system still holds for the line; 0 when it does not tell.
int systemQueue(const QSerialPort& port) {
#ifdef Q_OS_WIN
    COMSTAT status{};
    DWORD errors = 0;
    return ClearCommError(port.handle(), &errors, &status) ? static_cast<int>(status.cbOutQue) : 0;
#else
    int bytes = 0;
    return ioctl(port.handle(), TIOCOUTQ, &bytes) == 0 ? bytes : 0;
#endif
}

}  // namespace

QtSerialPort::QtSerialPort(const PortMap& map) : map_(map) {
    connect(&port_, &QSerialPort::readyRead, this, &QtSerialPort::readyRead);
    connect(&port_, &QSerialPort::errorOccurred, this, &QtSerialPort::errorOccurred);
}

QtSerialPort::~QtSerialPort() {
    receiver_ = nullptr;
    failure_ = nullptr;
    close();
    // Destroying the port says "closed" through signals that this object no longer understands.
    port_.disconnect(this);
}

SerialPort::OpenResult QtSerialPort::open(int portNumber) {
    close();
    const std::string device = map_.device(portNumber);
    if (device.empty()) return {.open = false, .reason = "No device is assigned to this port"};
    port_.setPortName(QString::fromStdString(device));
    port_.setBaudRate(QSerialPort::Baud9600);
    port_.setDataBits(QSerialPort::Data8);
    port_.setParity(QSerialPort::NoParity);
    port_.setStopBits(QSerialPort::OneStop);
    port_.setFlowControl(QSerialPort::NoFlowControl);
    if (!port_.open(QIODevice::ReadWrite)) {
        return {.open = false, .reason = fromQt(port_.errorString())};
    }
    port_.setDataTerminalReady(true);
    port_.setRequestToSend(true);
    port_.setBreakEnabled(false);
    port_.clear(QSerialPort::Input);
    port_.clearError();
    open_ = true;
    failed_ = false;
    breakOn_ = false;
    return {.open = true, .reason = {}};
}

void QtSerialPort::close() {
    if (open_ && !failed_) {
        drainOutput();
        if (breakOn_) port_.setBreakEnabled(false);
    }
    shut();
}

void QtSerialPort::shut() {
    open_ = false;
    breakOn_ = false;
    if (port_.isOpen()) port_.close();
}

bool QtSerialPort::write(std::span<const std::uint8_t> bytes) {
    if (!open_ || failed_) return false;
    if (bytes.empty()) return true;
    const auto size = static_cast<qint64>(bytes.size());
    if (port_.write(reinterpret_cast<const char*>(bytes.data()), size) != size) return false;
    port_.flush();
    return !failed_;
}

void QtSerialPort::drainOutput() {
    const QDeadlineTimer deadline(kDrainMs);
    while (open_ && !failed_ && port_.bytesToWrite() > 0 && !deadline.hasExpired()) {
        if (!port_.waitForBytesWritten(static_cast<int>(deadline.remainingTime()))) break;
    }
    bool waited = false;
    while (open_ && !failed_ && systemQueue(port_) > 0 && !deadline.hasExpired()) {
        QThread::usleep(kDrainStepUs);
        waited = true;
    }
    if (waited) QThread::usleep(kLastByteUs);
}

void QtSerialPort::setBreak(bool on) {
    if (!open_ || failed_) return;
    if (on) drainOutput();
    if (failed_) return;
    breakOn_ = on;
    port_.setBreakEnabled(on);
}

void QtSerialPort::discardInput() {
    if (open_ && !failed_) port_.clear(QSerialPort::Input);
}

void QtSerialPort::readyRead() {
    const QByteArray bytes = port_.readAll();
    if (!open_ || !receiver_) return;
    receiver_({reinterpret_cast<const std::uint8_t*>(bytes.constData()),
               static_cast<std::size_t>(bytes.size())});
}

void QtSerialPort::errorOccurred(QSerialPort::SerialPortError error) {
    if (error == QSerialPort::NoError || error == QSerialPort::TimeoutError ||
        error == QSerialPort::UnsupportedOperationError) {
        return;
    }
    if (!open_ || failed_) return;
    failed_ = true;
    const std::string reason = fromQt(port_.errorString());
    // A pulled adapter stays "readable" for ever; closing it, on the next turn because this slot
    // belongs to the port, keeps the processor quiet.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (failed_) shut();
        },
        Qt::QueuedConnection);
    if (failure_) failure_(reason);
}

PortDescription QtPortDirectory::describe(int portNumber) const {
    PortDescription description;
    description.device = map_.device(portNumber);
    if (description.device.empty()) return description;
    const QString device = QString::fromStdString(description.device);
    // A list asks for all thirty in a row; the system is asked once for them together.
    if (!asked_.isValid() || asked_.hasExpired(kKeepListMs)) {
        ports_ = QSerialPortInfo::availablePorts();
        asked_.start();
    }
    const QString real = QFileInfo(device).canonicalFilePath();
    for (const QSerialPortInfo& info : ports_) {
        const QString location = info.systemLocation();
        if (location != device && location != real && info.portName() != device) continue;
        description.present = true;
        description.calledItself =
            fromQt((info.manufacturer() + QLatin1Char(' ') + info.description()).trimmed());
        return description;
    }
#ifndef Q_OS_WIN
    // Pseudo-terminals and the like are in no list. The nodes of built-in ports say nothing: they
    // exist whether or not there is a chip behind them.
    description.present = !device.startsWith(QLatin1String("/dev/ttyS")) && !real.isEmpty();
#endif
    return description;
}

}  // namespace vantor
