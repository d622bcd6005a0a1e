#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "platform/SerialPort.h"

class QComboBox;

namespace Ui {
class frmOpening;
}

namespace vantor {

class ActionFrame;

/// The start-up window: port, what the box check found, and Retry and Cancel once it failed.
class FrmOpening final : public QWidget {
  public:
    explicit FrmOpening(ActionFrame& actions);
    ~FrmOpening() override;

    // What its controls do; `frameClosed` is the X.
    std::function<void()> retry;
    std::function<void()> cancel;
    std::function<void()> choosePort;
    std::function<void()> frameClosed;

    void fillPorts(const PortDirectory& ports);
    void showPort(int portNumber);
    [[nodiscard]] int chosenPort() const;

    /// The status text, Windows-1252.
    void setStatus(const std::string& text);
    [[nodiscard]] std::string status() const;
    void showRetryAndCancel(bool shown);

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    ActionFrame& actions_;
    std::unique_ptr<Ui::frmOpening> ui_;
};

}  // namespace vantor
