#include "app/PortList.h"

#include <QEvent>

#include "platform/PortMap.h"
#include "platform/qt/QtText.h"

namespace vantor {

namespace {

QString describe(const QString& name, const PortDescription& port) {
    if (port.device.empty()) return name + QStringLiteral(": no device is assigned");
    QString text = name + QStringLiteral(": ") + QString::fromStdString(port.device);
    text += port.present ? QStringLiteral(", present") : QStringLiteral(", not there now");
    if (!port.calledItself.empty()) {
        text += QStringLiteral(" (") + toQt(port.calledItself) + QLatin1Char(')');
    }
    return text;
}

}  // namespace

void PortList::fill(const PortDirectory& directory) {
    directory_ = &directory;
    clear();
    for (int n = 1; n <= kPorts; ++n) addItem(QStringLiteral("COM%1").arg(n));
    setCurrentIndex(0);
}

void PortList::showPort(int portNumber) {
    setCurrentIndex(portNumber >= 1 && portNumber <= count() ? portNumber - 1 : 0);
}

int PortList::port() const {
    return currentIndex() < 0 ? 1 : currentIndex() + 1;
}

void PortList::showPopup() {
    describePorts();
    QComboBox::showPopup();
}

bool PortList::event(QEvent* event) {
    // Adapters come and go, so the machine is asked when somebody wants to know.
    if (event->type() == QEvent::ToolTip) describePorts();
    return QComboBox::event(event);
}

void PortList::describePorts() {
    if (directory_ == nullptr) return;
    for (int row = 0; row < count(); ++row) {
        setItemData(row, describe(itemText(row), directory_->describe(row + 1)), Qt::ToolTipRole);
    }
    setToolTip(itemData(currentIndex(), Qt::ToolTipRole).toString());
}

}  // namespace vantor
