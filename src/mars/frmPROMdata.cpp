#include "mars/frmPROMdata.h"

#include <QCloseEvent>
#include <functional>
#include <utility>

#include "mars/PromUtilities.h"
#include "platform/qt/ActionFrame.h"
#include "platform/qt/Controls.h"
#include "platform/qt/QtText.h"
#include "ui_frmPROMdata.h"

namespace vantor {

namespace {

constexpr int kSizeError = 1301, kCloseError = 1302, kReadError = 1303, kViewError = 1304;

// The widest line is one of nibbles; the longest text has limits and coin values.
constexpr int kPaneColumns = 36;
constexpr int kPaneLines = 17;

}  // namespace

FrmPROMdata::FrmPROMdata(const SessionState& state, ActionFrame& actions)
    : state_(state), actions_(actions), ui_(std::make_unique<Ui::frmPROMdata>()) {
    ui_->setupUi(this);
    makeTextPane(ui_->lblPROM, kPaneColumns, kPaneLines);
    makeTextPane(ui_->lblPROM2, kPaneColumns, kPaneLines);
    makeField(ui_->lblmechType);
    showPlainText(this);
    ui_->cmbSize->addItems({QStringLiteral("1K"), QStringLiteral("2K")});
    connectControls();
    chainTabs({ui_->cmbSize, ui_->cmbDisplay, ui_->lblPROM, ui_->lblPROM2, ui_->cmdReadPROM,
               ui_->cmdBye});
    actions_.adopt(this);
    actions_.onBusyChange([this](bool busy) {
        if (!busy && isVisible() && (!focusWidget() || focusWidget() == this)) {
            ui_->cmdReadPROM->setFocus();
        }
    });
    closePromWindow();
}

FrmPROMdata::~FrmPROMdata() = default;

void FrmPROMdata::connectControls() {
    const auto action = [this](auto* control, auto signal, int errorMessage,
                               std::function<void()> work) {
        connect(control, signal, this,
                [this, errorMessage, call = std::move(work)] { actions_.run(errorMessage, call); });
    };
    action(ui_->cmbSize, &QComboBox::activated, kSizeError, [this] { utilities_->chooseSize(); });
    action(ui_->cmbDisplay, &QComboBox::activated, kViewError,
           [this] { utilities_->displayPROM(); });
    action(ui_->cmdReadPROM, &QPushButton::clicked, kReadError, [this] { utilities_->readPROM(); });
    action(ui_->cmdBye, &QPushButton::clicked, kCloseError, [this] { utilities_->closeWindow(); });
}

void FrmPROMdata::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (isVisible()) actions_.run(kCloseError, [this] { utilities_->closeWindow(); });
}

void FrmPROMdata::applyCaptions() {
    const auto message = [this](int number) { return toQt(state_.msgText(number)); };
    setWindowTitle(QStringLiteral("PROM Utilities"));
    ui_->Label1->setText(message(1350));
    ui_->Label2->setText(message(1351));
    ui_->Label5->setText(message(1352));
    ui_->Label3->setText(message(1353));
    ui_->Label4->setText(message(1354));
    ui_->cmdReadPROM->setText(toCaption(state_.msgText(1355)));
    ui_->cmdBye->setText(toCaption(state_.msgText(1356)));
}

void FrmPROMdata::loadPromWindow() {
    applyCaptions();
    showPanes({}, {});
}

void FrmPROMdata::showPromWindow() {
    if (!isVisible()) fitToContents(this);
    show();
    raise();
    activateWindow();
}

void FrmPROMdata::closePromWindow() {
    hide();
    showPromSize(0, true);
    showPromMechType({});
    listViews({});
    showPanes({}, {});
}

void FrmPROMdata::showPromSize(int promSizeCode, bool choosable) {
    ui_->cmbSize->setCurrentIndex(promSizeCode == 1 ? 1 : 0);
    actions_.setEnabled(ui_->cmbSize, choosable);
}

int FrmPROMdata::shownPromSize() const {
    return ui_->cmbSize->currentIndex() == 1 ? 1 : 0;
}

void FrmPROMdata::showPromMechType(const std::string& mechType) {
    ui_->lblmechType->setText(toQt(mechType));
}

void FrmPROMdata::listViews(const std::vector<std::string>& entries) {
    ui_->cmbDisplay->clear();
    for (const std::string& entry : entries) ui_->cmbDisplay->addItem(toQt(entry));
    ui_->cmbDisplay->setCurrentIndex(entries.empty() ? -1 : 0);
}

int FrmPROMdata::chosenView() const {
    return ui_->cmbDisplay->currentIndex();
}

void FrmPROMdata::showPanes(const std::string& read, const std::string& next) {
    ui_->lblPROM->setPlainText(toBoxText(read));
    ui_->lblPROM2->setPlainText(toBoxText(next));
}

}  // namespace vantor
