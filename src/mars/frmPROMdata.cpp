#include "mars/frmPROMdata.h"

#include "mars/PromUtilities.h"
#include "platform/qt/ActionFrame.h"
#include "platform/qt/Controls.h"
#include "platform/qt/QtText.h"
#include "ui_frmPROMdata.h"

namespace vantor {

namespace {

// The widest line is one of nibbles; the longest text has limits and coin values.
constexpr int kPaneColumns = 36;
constexpr int kPaneLines = 17;

}  // namespace

FrmPROMdata::FrmPROMdata(const SessionState& state, ActionFrame& actions)
    : FrmMemory(state, actions), ui_(std::make_unique<Ui::frmPROMdata>()) {
    ui_->setupUi(this);
    makeTextPane(ui_->lblPROM, kPaneColumns, kPaneLines);
    makeTextPane(ui_->lblPROM2, kPaneColumns, kPaneLines);
    ui_->cmbSize->addItems({QStringLiteral("1K"), QStringLiteral("2K")});
    chainTabs({ui_->cmbSize, ui_->cmbDisplay, ui_->lblPROM, ui_->lblPROM2, ui_->cmdReadPROM,
               ui_->cmdBye});
    takeOver({.lblmechType = ui_->lblmechType,
              .cmbDisplay = ui_->cmbDisplay,
              .lblPROM = ui_->lblPROM,
              .cmdReadPROM = ui_->cmdReadPROM,
              .cmdSave = nullptr,
              .cmdProgramme = nullptr,
              .cmdBye = ui_->cmdBye});
}

FrmPROMdata::~FrmPROMdata() = default;

void FrmPROMdata::setUtilities(PromUtilities& utilities) {
    FrmMemory::setUtilities(utilities);
    actions_.onChoice(ui_->cmbSize, PromUtilities::kSizeError,
                      [&utilities] { utilities.chooseSize(); });
}

void FrmPROMdata::applyCaptions() {
    setWindowTitle(QStringLiteral("PROM Utilities"));
    ui_->Label1->setText(message(1350));
    ui_->Label2->setText(message(1351));
    ui_->Label5->setText(message(1352));
    ui_->Label3->setText(message(1353));
    ui_->Label4->setText(message(1354));
    ui_->cmdReadPROM->setText(caption(1355));
    ui_->cmdBye->setText(caption(1356));
}

void FrmPROMdata::clear() {
    showPromSize(0, true);
    showPanes({}, {});
}

void FrmPROMdata::showPromSize(int promSizeCode, bool choosable) {
    ui_->cmbSize->setCurrentIndex(promSizeCode == 1 ? 1 : 0);
    actions_.setEnabled(ui_->cmbSize, choosable);
}

int FrmPROMdata::shownPromSize() const {
    return ui_->cmbSize->currentIndex() == 1 ? 1 : 0;
}

void FrmPROMdata::showPanes(const std::string& read, const std::string& next) {
    showText(read);
    ui_->lblPROM2->setPlainText(toBoxText(next));
}

}  // namespace vantor
