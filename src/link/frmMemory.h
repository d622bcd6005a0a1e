#pragma once

#include <QWidget>

#include "catalogue/SessionState.h"
#include "link/MemoryUtilities.h"

class QComboBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace vantor {

class ActionFrame;

/// What the memory utilities windows of all makers have in common: mech type, a list of views, a
/// pane with what was read, and the buttons below.
class FrmMemory : public QWidget, public MemoryDisplay {
  public:
    /// Connects what the buttons and the list of views call; once, before the window is used.
    void setUtilities(MemoryUtilities& utilities);

    void loadWindow() override;
    void showWindow() override;
    void closeWindow() override;
    void showMechType(const std::string& mechType) override;
    void listViews(const std::vector<std::string>& entries) override;
    [[nodiscard]] int chosenView() const override;
    void showText(const std::string& text) override;

  protected:
    struct Controls {
        QLabel* lblmechType;
        QComboBox* cmbDisplay;
        QPlainTextEdit* lblPROM;
        QPushButton* cmdReadPROM;
        QPushButton* cmdSave;       ///< nullptr: memory of this kind is not kept in files
        QPushButton* cmdProgramme;  ///< likewise
        QPushButton* cmdBye;
    };

    FrmMemory(const SessionState& state, ActionFrame& actions);
    /// The last step of the making: all controls are there, in their tab order.
    void takeOver(const Controls& controls);

    virtual void applyCaptions() = 0;
    /// What is shown of a mech, out of all panes and boxes.
    virtual void clear() { showText({}); }
    void closeEvent(QCloseEvent* event) override;

    [[nodiscard]] QString message(int number) const;
    [[nodiscard]] QString caption(int number) const;  ///< of a button or a frame

    ActionFrame& actions_;

  private:
    const SessionState& state_;
    MemoryUtilities* utilities_ = nullptr;
    Controls controls_{};
};

}  // namespace vantor
