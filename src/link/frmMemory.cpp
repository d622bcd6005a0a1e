#include "link/frmMemory.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include "platform/qt/ActionFrame.h"
#include "platform/qt/Controls.h"
#include "platform/qt/QtText.h"

namespace vantor {

FrmMemory::FrmMemory(const SessionState& state, ActionFrame& actions)
    : actions_(actions), state_(state) {}

void FrmMemory::takeOver(const Controls& controls) {
    controls_ = controls;
    makeField(controls_.lblmechType);
    showPlainText(this);
    actions_.adopt(this);
    actions_.onBusyChange([this](bool busy) {
        if (!busy && isVisible() && (!focusWidget() || focusWidget() == this)) {
            controls_.cmdReadPROM->setFocus();
        }
    });
    closeWindow();
}

void FrmMemory::setUtilities(MemoryUtilities& utilities) {
    utilities_ = &utilities;
    const UtilitiesErrors& errors = utilities.errorNumbers();
    actions_.onChoice(controls_.cmbDisplay, errors.changeView,
                      [&utilities] { utilities.changeView(); });
    actions_.onClick(controls_.cmdReadPROM, errors.read, [&utilities] { utilities.readMemory(); });
    if (controls_.cmdSave != nullptr) {
        actions_.onClick(controls_.cmdSave, errors.save, [&utilities] { utilities.saveToFile(); });
    }
    if (controls_.cmdProgramme != nullptr) {
        actions_.onClick(controls_.cmdProgramme, errors.programme,
                         [&utilities] { utilities.programmeFromFile(); });
    }
    actions_.onClick(controls_.cmdBye, errors.close, [&utilities] { utilities.closeWindow(); });
}

void FrmMemory::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (!isVisible()) return;
    actions_.run(utilities_->errorNumbers().close, [this] { utilities_->closeWindow(); });
}

// --- contents ------------------------------------------------------------------------------

QString FrmMemory::message(int number) const {
    return toQt(state_.msgText(number));
}

QString FrmMemory::caption(int number) const {
    return toCaption(state_.msgText(number));
}

void FrmMemory::loadWindow() {
    applyCaptions();
    clear();
}

void FrmMemory::showWindow() {
    if (!isVisible()) fitToContents(this);
    show();
    raise();
    activateWindow();
}

void FrmMemory::closeWindow() {
    hide();
    showMechType({});
    listViews({});
    clear();
}

void FrmMemory::showMechType(const std::string& mechType) {
    controls_.lblmechType->setText(toQt(mechType));
}

void FrmMemory::listViews(const std::vector<std::string>& entries) {
    controls_.cmbDisplay->clear();
    for (const std::string& entry : entries) controls_.cmbDisplay->addItem(toQt(entry));
    controls_.cmbDisplay->setCurrentIndex(entries.empty() ? -1 : 0);
}

int FrmMemory::chosenView() const {
    return controls_.cmbDisplay->currentIndex();
}

void FrmMemory::showText(const std::string& text) {
    controls_.lblPROM->setPlainText(toBoxText(text));
}

}  // namespace vantor
