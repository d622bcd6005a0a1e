#include "app/frmMain.h"

#include <QCloseEvent>
#include <stdexcept>

#include "catalogue/MechCatalogue.h"
#include "platform/qt/ActionFrame.h"
#include "platform/qt/Controls.h"
#include "platform/qt/QtText.h"
#include "ui_frmMain.h"

namespace vantor {

namespace {

const QString kStatusLine = QStringLiteral("C00000 00000 00000 00000 00000 00000 V0.00   ");

struct Caption {
    const char* button;
    int message;
};

constexpr std::array<Caption, 13> kCaptions = {{
    {"cmdSaveConfig", 858},
    {"cmdCancConfig", 859},
    {"cmdMars", 860},
    {"cmdValtest", 861},
    {"cmdPROMutilities", 862},
    {"cmdCCprog", 863},
    {"cmdCCValTest", 864},
    {"cmdCCprom", 865},
    {"cmdNRIprog", 866},
    {"cmdNRIvaltest", 867},
    {"cmdNRIprom", 868},
    {"cmdExit", 872},
    {"cmdConfig", 874},
}};

struct ModelList {
    const char* list;
    std::string_view maker;
};

constexpr std::array<ModelList, 3> kModelLists = {{
    {"cmbMarsMech", kMars},
    {"cmbCCmech", kCoinControls},
    {"cmbNRImech", kNri},
}};

}  // namespace

FrmMain::FrmMain(const SessionState& state, ActionFrame& actions)
    : state_(state), actions_(actions), ui_(std::make_unique<Ui::frmMain>()) {
    ui_->setupUi(this);
    // A whole status line of the box, which is what stands there most of the time.
    ui_->txtMessage->setMinimumWidth(ui_->txtMessage->fontMetrics().horizontalAdvance(kStatusLine));
    actions_.adopt(this);
    actions_.allowWhileBusy(ui_->cmdExit);
    actions_.allowWhileBusy(ui_->txtMessage);
}

FrmMain::~FrmMain() = default;

QPushButton* FrmMain::button(const char* name) const {
    auto* found = findChild<QPushButton*>(QLatin1String(name));
    if (found == nullptr) throw std::logic_error(name);
    return found;
}

void FrmMain::onClick(const char* name, std::function<void()> action) {
    connect(button(name), &QPushButton::clicked, this, [call = std::move(action)] { call(); });
}

void FrmMain::closeEvent(QCloseEvent* event) {
    // The program decides what the X means; the window stays until it is over.
    event->ignore();
    if (close_) close_();
}

void FrmMain::fillPorts(const PortDirectory& ports) {
    ui_->ComboPort->fill(ports);
}

void FrmMain::fillModels() {
    for (const ModelList& row : kModelLists) {
        auto* list = findChild<QComboBox*>(QLatin1String(row.list));
        list->clear();
        for (const std::string_view model : listedModels(row.maker)) list->addItem(toQt(model));
        list->setCurrentIndex(preselectedModel(row.maker));
    }
}

void FrmMain::fillLanguages() {
    ui_->cmbLanguage->clear();
    for (const Language& language : kLanguages) ui_->cmbLanguage->addItem(toQt(language.name));
    ui_->cmbLanguage->setCurrentIndex(0);
}

void FrmMain::setMainCaptions() {
    ui_->frmConfig->setTitle(toCaption(state_.msgText(850)));
    ui_->lblLanguage->setText(toQt(state_.msgText(856)));
    for (const Caption& row : kCaptions) {
        button(row.button)->setText(toCaption(state_.msgText(row.message)));
    }
    ui_->Label3->setText(toQt(state_.msgText(875)));
    ui_->Label4->setText(toQt(state_.msgText(876)));
}

void FrmMain::showPort(int portNumber) {
    ui_->ComboPort->showPort(portNumber);
}

int FrmMain::chosenPort() const {
    return ui_->ComboPort->port();
}

void FrmMain::showLanguage(std::string_view name) {
    ui_->cmbLanguage->setCurrentText(toQt(name));
}

std::string FrmMain::chosenLanguage() const {
    return fromQt(ui_->cmbLanguage->currentText());
}

void FrmMain::showConfigPanel(bool shown) {
    if (shown) {
        ui_->stkFront->setCurrentWidget(ui_->pagConfig);
        actions_.setFocus(ui_->ComboPort);
    } else {
        ui_->stkFront->setCurrentWidget(ui_->tabManufacturer);
    }
}

void FrmMain::enableConfigButtons(bool change, bool cancel) {
    actions_.setEnabled(ui_->cmdConfig, change);
    actions_.setEnabled(ui_->cmdCancConfig, cancel);
}

void FrmMain::enableModelLists(bool enabled) {
    for (const ModelList& row : kModelLists) {
        actions_.setEnabled(findChild<QComboBox*>(QLatin1String(row.list)), enabled);
    }
}

void FrmMain::enableAction(const char* name, bool enabled) {
    actions_.setEnabled(button(name), enabled);
}

std::string FrmMain::chosenModel(const char* list) const {
    return fromQt(findChild<QComboBox*>(QLatin1String(list))->currentText());
}

void FrmMain::showSoftwareVersion(const std::string& version) {
    ui_->lblVersion->setText(toQt(version));
}

void FrmMain::showBoxVersion(const std::string& version) {
    ui_->lblProgrammer->setText(toQt(version));
}

void FrmMain::showLastLine(const std::string& line) {
    ui_->txtMessage->setText(toQt(line));
    ui_->txtMessage->setCursorPosition(0);
}

}  // namespace vantor
