#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QSerialPort>
#include <QSerialPortInfo>

#include "platform/PortMap.h"
#include "platform/SerialPort.h"

namespace vantor {

/// A port of the machine.
class QtSerialPort final : public QObject, public SerialPort {
  public:
    explicit QtSerialPort(const PortMap& map);
    ~QtSerialPort() override;

    OpenResult open(int portNumber) override;
    void close() override;
    [[nodiscard]] bool isOpen() const override { return open_ && !failed_; }
    [[nodiscard]] bool write(std::span<const std::uint8_t> bytes) override;
    void setBreak(bool on) override;
    void discardInput() override;
    void setReceiver(Receiver receiver) override { receiver_ = std::move(receiver); }
    void setFailureHandler(FailureHandler handler) override { failure_ = std::move(handler); }

  private:
    void readyRead();
    void errorOccurred(QSerialPort::SerialPortError error);
    void drainOutput();
    void shut();

    const PortMap& map_;
    QSerialPort port_;
    Receiver receiver_;
    FailureHandler failure_;
    bool open_ = false;
    bool failed_ = false;
    bool breakOn_ = false;
};

/// What the machine knows of its ports.
class QtPortDirectory final : public PortDirectory {
  public:
    explicit QtPortDirectory(const PortMap& map) : map_(map) {}
    [[nodiscard]] PortDescription describe(int portNumber) const override;

  private:
    const PortMap& map_;
    mutable QElapsedTimer asked_;
    mutable QList<QSerialPortInfo> ports_;
};

}  // namespace vantor
