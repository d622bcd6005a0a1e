#include "app/frmOpening.h"

#include <QCloseEvent>
#include <array>

#include "platform/qt/ActionFrame.h"
#include "platform/qt/QtText.h"
#include "ui_frmOpening.h"

namespace vantor {

namespace {

constexpr int kStatusLines = 4;

}  // namespace

FrmOpening::FrmOpening(ActionFrame& actions)
    : actions_(actions), ui_(std::make_unique<Ui::frmOpening>()) {
    ui_->setupUi(this);
    // Neither the status nor the buttons that come and go may move the rest about.
    ui_->LabelStatus->setMinimumHeight(kStatusLines *
                                       ui_->LabelStatus->fontMetrics().lineSpacing());
    for (QWidget* button : std::array<QWidget*, 2>{ui_->cmdRetry, ui_->cmdCancel}) {
        QSizePolicy policy = button->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        button->setSizePolicy(policy);
    }
    showRetryAndCancel(false);

    actions.adopt(this);
    actions.allowWhileBusy(ui_->cmdCancel);
    const auto call = [](const std::function<void()>& what) {
        if (what) what();
    };
    connect(ui_->cmdRetry, &QPushButton::clicked, this, [this, call] { call(retry); });
    connect(ui_->cmdCancel, &QPushButton::clicked, this, [this, call] { call(cancel); });
    connect(ui_->ComboPort, &QComboBox::activated, this, [this, call] { call(choosePort); });
}

FrmOpening::~FrmOpening() = default;

void FrmOpening::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (frameClosed) frameClosed();
}

void FrmOpening::fillPorts(const PortDirectory& ports) {
    ui_->ComboPort->fill(ports);
}

void FrmOpening::showPort(int portNumber) {
    ui_->ComboPort->showPort(portNumber);
}

int FrmOpening::chosenPort() const {
    return ui_->ComboPort->port();
}

void FrmOpening::setStatus(const std::string& text) {
    ui_->LabelStatus->setText(toBoxText(text));
}

std::string FrmOpening::status() const {
    return fromQt(ui_->LabelStatus->text());
}

void FrmOpening::showRetryAndCancel(bool shown) {
    ui_->cmdRetry->setVisible(shown);
    ui_->cmdCancel->setVisible(shown);
    if (shown) actions_.setFocus(ui_->cmdRetry);
}

}  // namespace vantor
