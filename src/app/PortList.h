#pragma once

#include <QComboBox>

#include "platform/SerialPort.h"

namespace vantor {

/// A list COM1..COM30 whose tool tips say which device stands behind each port.
class PortList final : public QComboBox {
  public:
    using QComboBox::QComboBox;

    /// Fills the list and shows its first entry.
    void fill(const PortDirectory& directory);
    /// 1..30; another number shows the first entry.
    void showPort(int portNumber);
    /// The shown entry's port; 1 when none is selected.
    [[nodiscard]] int port() const;

    void showPopup() override;

  protected:
    bool event(QEvent* event) override;

  private:
    void describePorts();

    const PortDirectory* directory_ = nullptr;
};

}  // namespace vantor
