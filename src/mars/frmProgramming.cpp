#include "mars/frmProgramming.h"

#include <QApplication>
#include <QCloseEvent>
#include <QWindow>

#include "catalogue/Text.h"
#include "platform/qt/Controls.h"
#include "platform/qt/QtText.h"
#include "ui_frmProgramming.h"

namespace vantor {

namespace {

constexpr int kMsgTitle = 1100;
constexpr int kMsgSegment = 1101;

}  // namespace

FrmProgramming::FrmProgramming(SessionState& state)
    : QWidget(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      state_(state),
      ui_(std::make_unique<Ui::frmProgramming>()) {
    ui_->setupUi(this);
    showPlainText(this);
    ui_->prgProg->setRange(0, kRange);
    QFont title = ui_->lblTitle->font();
    title.setBold(true);
    ui_->lblTitle->setFont(title);
    resetToDesign();
}

FrmProgramming::~FrmProgramming() = default;

void FrmProgramming::applyCaptions() {
    ui_->lblTitle->setText(toQt(state_.msgText(kMsgTitle)));
    ui_->lblSeg->setText(toQt(state_.msgText(kMsgSegment)));
}

void FrmProgramming::openProgress(const std::string& caption, const std::string& title,
                                  bool withSegment) {
    resetToDesign();
    applyCaptions();
    setWindowTitle(toQt(caption));
    ui_->lblTitle->setText(toQt(title));
    ui_->lblSeg->setVisible(withSegment);
    ui_->lblSegment->setVisible(withSegment);
    fitToContents(this);
    // It stays above the window that it reports for, without belonging to it.
    const QWidget* below = QApplication::activeWindow();
    create();
    if (below && below != this && windowHandle()) {
        windowHandle()->setTransientParent(below->windowHandle());
    }
    show();
    raise();
}

void FrmProgramming::showProgress(int value) {
    ui_->prgProg->setValue(qBound(0, value, int(kRange)));
}

void FrmProgramming::showSegment(int segment) {
    ui_->lblSegment->setText(toQt(spacedNumber(segment)));
}

void FrmProgramming::closeProgress() {
    hide();
    resetToDesign();
}

void FrmProgramming::closeEvent(QCloseEvent* event) {
    event->ignore();
}

void FrmProgramming::resetToDesign() {
    ui_->prgProg->setValue(0);
    ui_->lblSegment->clear();
    ui_->lblSeg->show();
    ui_->lblSegment->show();
}

}  // namespace vantor
