#include "nri/frmNRIdata.h"

#include <QCloseEvent>
#include <functional>
#include <utility>

#include "nri/NriMemoryUtilities.h"
#include "platform/qt/ActionFrame.h"
#include "platform/qt/Controls.h"
#include "platform/qt/QtText.h"
#include "ui_frmNRIdata.h"

namespace vantor {

namespace {

constexpr int kCloseError = 900, kProgrammeError = 914, kReadError = 915, kViewError = 916,
              kSaveError = 920;

// The widest line is one of limits; the longest text has 12 channels, tubes and a date.
constexpr int kPaneColumns = 86;
constexpr int kPaneLines = 19;

}  // namespace

FrmNRIdata::FrmNRIdata(const SessionState& state, ActionFrame& actions)
    : state_(state), actions_(actions), ui_(std::make_unique<Ui::frmNRIdata>()) {
    ui_->setupUi(this);
    makeTextPane(ui_->lblPROM, kPaneColumns, kPaneLines);
    makeField(ui_->lblmechType);
    showPlainText(this);
    connectControls();
    chainTabs({ui_->cmbDisplay, ui_->lblPROM, ui_->cmdReadPROM, ui_->cmdSave, ui_->cmdProgramme,
               ui_->cmdBye});
    actions_.adopt(this);
    actions_.onBusyChange([this](bool busy) {
        if (!busy && isVisible() && (!focusWidget() || focusWidget() == this)) {
            ui_->cmdReadPROM->setFocus();
        }
    });
    closeNriWindow();
}

FrmNRIdata::~FrmNRIdata() = default;

void FrmNRIdata::connectControls() {
    const auto action = [this](auto* control, auto signal, int errorMessage,
                               std::function<void()> work) {
        connect(control, signal, this,
                [this, errorMessage, call = std::move(work)] { actions_.run(errorMessage, call); });
    };
    const auto clicked = &QPushButton::clicked;
    action(ui_->cmbDisplay, &QComboBox::activated, kViewError,
           [this] { utilities_->changeView(); });
    action(ui_->cmdReadPROM, clicked, kReadError, [this] { utilities_->readMemory(); });
    action(ui_->cmdSave, clicked, kSaveError, [this] { utilities_->saveToFile(); });
    action(ui_->cmdProgramme, clicked, kProgrammeError,
           [this] { utilities_->programmeFromFile(); });
    action(ui_->cmdBye, clicked, kCloseError, [this] { utilities_->closeWindow(); });
}

void FrmNRIdata::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (isVisible()) actions_.run(kCloseError, [this] { utilities_->closeWindow(); });
}

// --- contents ------------------------------------------------------------------------------

void FrmNRIdata::applyCaptions() {
    const auto message = [this](int number) { return toQt(state_.msgText(number)); };
    const auto caption = [this](int number) { return toCaption(state_.msgText(number)); };
    setWindowTitle(message(868));
    ui_->Label1->setText(message(970));
    ui_->Label2->setText(message(971));
    ui_->Label3->setText(message(972));
    ui_->cmdReadPROM->setText(caption(973));
    ui_->cmdSave->setText(caption(974));
    ui_->cmdProgramme->setText(caption(975));
    ui_->cmdBye->setText(caption(976));
}

void FrmNRIdata::loadNriWindow() {
    applyCaptions();
    showNriText({});
}

void FrmNRIdata::showNriWindow() {
    if (!isVisible()) fitToContents(this);
    show();
    raise();
    activateWindow();
}

void FrmNRIdata::closeNriWindow() {
    hide();
    showNriMechType({});
    listNriViews({});
    showNriText({});
}

void FrmNRIdata::showNriMechType(const std::string& mechType) {
    ui_->lblmechType->setText(toQt(mechType));
}

void FrmNRIdata::listNriViews(const std::vector<std::string>& entries) {
    ui_->cmbDisplay->clear();
    for (const std::string& entry : entries) ui_->cmbDisplay->addItem(toQt(entry));
    ui_->cmbDisplay->setCurrentIndex(entries.empty() ? -1 : 0);
}

int FrmNRIdata::chosenNriView() const {
    return ui_->cmbDisplay->currentIndex();
}

void FrmNRIdata::showNriText(const std::string& text) {
    ui_->lblPROM->setPlainText(toBoxText(text));
}

}  // namespace vantor
