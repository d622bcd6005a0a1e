#pragma once

#include <QWidget>
#include <array>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "catalogue/SessionState.h"
#include "platform/SerialPort.h"

class QComboBox;
class QPushButton;

namespace Ui {
class frmMain;
}

namespace vantor {

class ActionFrame;

/// The main window: one tab per maker, the configuration panel that takes the tabs' place, the
/// box's last line and the versions.
class FrmMain final : public QWidget {
  public:
    FrmMain(const SessionState& state, ActionFrame& actions);
    ~FrmMain() override;

    /// What a button does, by its name ("cmdMars").
    void onClick(const char* button, std::function<void()> action);
    /// What the window's X does.
    void onClose(std::function<void()> action) { close_ = std::move(action); }

    void fillPorts(const PortDirectory& ports);
    void fillModels();
    void fillLanguages();
    void setMainCaptions();

    void showPort(int portNumber);
    [[nodiscard]] int chosenPort() const;
    void showLanguage(std::string_view name);
    [[nodiscard]] std::string chosenLanguage() const;

    /// The configuration panel in front of the tabs, or the tabs.
    void showConfigPanel(bool shown);
    void enableConfigButtons(bool change, bool cancel);
    /// The model lists; the action buttons are enabled one by one.
    void enableModelLists(bool enabled);
    void enableAction(const char* button, bool enabled);

    /// Shown text of a model list, by its name ("cmbMarsMech").
    [[nodiscard]] std::string chosenModel(const char* list) const;

    void showSoftwareVersion(const std::string& version);
    void showBoxVersion(const std::string& version);
    void showLastLine(const std::string& line);

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    [[nodiscard]] QPushButton* button(const char* name) const;

    const SessionState& state_;
    ActionFrame& actions_;
    std::unique_ptr<Ui::frmMain> ui_;
    std::function<void()> close_;
};

}  // namespace vantor
