#include "nri/frmNRIdata.h"

#include "platform/qt/Controls.h"
#include "ui_frmNRIdata.h"

namespace vantor {

namespace {

// The widest line is one of limits; the longest text has 12 channels, tubes and a date.
constexpr int kPaneColumns = 86;
constexpr int kPaneLines = 19;

}  // namespace

FrmNRIdata::FrmNRIdata(const SessionState& state, ActionFrame& actions)
    : FrmMemory(state, actions), ui_(std::make_unique<Ui::frmNRIdata>()) {
    ui_->setupUi(this);
    makeTextPane(ui_->lblPROM, kPaneColumns, kPaneLines);
    chainTabs({ui_->cmbDisplay, ui_->lblPROM, ui_->cmdReadPROM, ui_->cmdSave, ui_->cmdProgramme,
               ui_->cmdBye});
    takeOver({.lblmechType = ui_->lblmechType,
              .cmbDisplay = ui_->cmbDisplay,
              .lblPROM = ui_->lblPROM,
              .cmdReadPROM = ui_->cmdReadPROM,
              .cmdSave = ui_->cmdSave,
              .cmdProgramme = ui_->cmdProgramme,
              .cmdBye = ui_->cmdBye});
}

FrmNRIdata::~FrmNRIdata() = default;

void FrmNRIdata::applyCaptions() {
    setWindowTitle(message(868));
    ui_->Label1->setText(message(970));
    ui_->Label2->setText(message(971));
    ui_->Label3->setText(message(972));
    ui_->cmdReadPROM->setText(caption(973));
    ui_->cmdSave->setText(caption(974));
    ui_->cmdProgramme->setText(caption(975));
    ui_->cmdBye->setText(caption(976));
}

}  // namespace vantor
