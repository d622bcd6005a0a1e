#include "cc/frmEEPROMdata.h"

#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>
#include <functional>
#include <utility>

#include "catalogue/Text.h"
#include "cc/EepromUtilities.h"
#include "platform/qt/ActionFrame.h"
#include "platform/qt/Controls.h"
#include "platform/qt/QtText.h"
#include "ui_frmEEPROMdata.h"

namespace vantor {

namespace {

constexpr int kCloseError = 700, kFileError = 705, kReadError = 706, kViewError = 707,
              kRoutingError = 716, kSaveError = 720;

// The widest line is one of words; the longest text has the limits of 16 channels.
constexpr int kPaneColumns = 86;
constexpr int kPaneLines = 17;

constexpr int kHeadRows = 2;
constexpr int kBinaryColumn = kC435Choices + 1;

/// A box for a few characters, centred; `widest` has room in it.
void makeCodeBox(QLineEdit* box, const char* widest) {
    box->setFont(fixedFont());
    box->setAlignment(Qt::AlignCenter);
    const int text = box->fontMetrics().horizontalAdvance(QLatin1String(widest));
    box->setFixedWidth(text + 4 * box->fontMetrics().averageCharWidth());
}

}  // namespace

FrmEEPROMdata::FrmEEPROMdata(const SessionState& state, ActionFrame& actions)
    : state_(state), actions_(actions), ui_(std::make_unique<Ui::frmEEPROMdata>()) {
    ui_->setupUi(this);
    makeTextPane(ui_->lblPROM, kPaneColumns, kPaneLines);
    makeField(ui_->lblmechType);
    makeSettingRows();
    showPlainText(this);
    connectControls();
    setTabs();
    actions_.adopt(this);
    actions_.onBusyChange([this](bool busy) {
        if (!busy && isVisible() && (!focusWidget() || focusWidget() == this)) {
            ui_->cmdReadPROM->setFocus();
        }
    });
    closeEepromWindow();
}

FrmEEPROMdata::~FrmEEPROMdata() = default;

// --- making --------------------------------------------------------------------------------

void FrmEEPROMdata::makeSettingRows() {
    const auto box = [this](const char* array, int index, const char* widest) {
        auto* made = new QLineEdit(ui_->frm435);
        made->setObjectName(memberName(array, index));
        makeCodeBox(made, widest);
        return made;
    };
    const auto head = [this](const QString& name, int row, int column, int columns) {
        auto* made = new QLabel(ui_->frm435);
        made->setObjectName(name);
        made->setAlignment(Qt::AlignCenter);
        ui_->layRows->addWidget(made, row, column, 1, columns);
        return made;
    };
    heads_.push_back(head(QStringLiteral("lblPath"), 0, 1, kC435Choices));
    for (int choice = 0; choice < kC435Choices; ++choice) {
        heads_.push_back(head(memberName("lblChoice", choice), 1, choice + 1, 1));
    }
    heads_.push_back(head(QStringLiteral("lblBinary"), 1, kBinaryColumn, 1));
    for (int row = 0; row < kC435Rows; ++row) {
        lblCoin_.push_back(head(memberName("lblCoin", row), row + kHeadRows, 0, 1));
        for (int choice = 0; choice < kC435Choices; ++choice) {
            txtSort_.push_back(box("txtSort", row * kC435Choices + choice, "W"));
            ui_->layRows->addWidget(txtSort_.back(), row + kHeadRows, choice + 1, Qt::AlignHCenter);
        }
        txtCode_.push_back(box("txtCode", row, "0000"));
        ui_->layRows->addWidget(txtCode_.back(), row + kHeadRows, kBinaryColumn, Qt::AlignHCenter);
    }
    makeCodeBox(ui_->txtPlugDefault, "W");
}

void FrmEEPROMdata::connectControls() {
    const auto action = [this](auto* control, auto signal, int errorMessage,
                               std::function<void()> work) {
        connect(control, signal, this,
                [this, errorMessage, call = std::move(work)] { actions_.run(errorMessage, call); });
    };
    const auto clicked = &QPushButton::clicked;
    action(ui_->cmbDisplay, &QComboBox::activated, kViewError,
           [this] { utilities_->changeView(); });
    action(ui_->cmdReadPROM, clicked, kReadError, [this] { utilities_->readEeprom(); });
    action(ui_->cmdSave, clicked, kSaveError, [this] { utilities_->saveToFile(); });
    action(ui_->cmdProgramme, clicked, kFileError, [this] { utilities_->programmeFromFile(); });
    action(ui_->cmdRouting, clicked, kRoutingError, [this] { utilities_->programmeRouting(); });
    action(ui_->cmdBye, clicked, kCloseError, [this] { utilities_->closeWindow(); });
}

void FrmEEPROMdata::setTabs() {
    std::vector<QWidget*> order{ui_->cmbDisplay, ui_->lblPROM};
    for (std::size_t row = 0; row < txtCode_.size(); ++row) {
        for (std::size_t choice = 0; choice < kC435Choices; ++choice) {
            order.push_back(txtSort_.at(row * kC435Choices + choice));
        }
        order.push_back(txtCode_.at(row));
    }
    order.insert(order.end(), {ui_->optMemory, ui_->optPlug, ui_->txtPlugDefault, ui_->cmdReadPROM,
                               ui_->cmdSave, ui_->cmdProgramme, ui_->cmdRouting, ui_->cmdBye});
    chainTabs(order);
}

void FrmEEPROMdata::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (isVisible()) actions_.run(kCloseError, [this] { utilities_->closeWindow(); });
}

// --- contents ------------------------------------------------------------------------------

void FrmEEPROMdata::applyCaptions() {
    const auto message = [this](int number) { return toQt(state_.msgText(number)); };
    const auto caption = [this](int number) { return toCaption(state_.msgText(number)); };
    setWindowTitle(message(1232));
    ui_->Label1->setText(message(750));
    ui_->frm435->setTitle(caption(751));
    for (std::size_t i = 0; i < heads_.size(); ++i) {
        heads_[i]->setText(message(752 + static_cast<int>(i)));
    }
    for (std::size_t row = 0; row < lblCoin_.size(); ++row) {
        lblCoin_[row]->setText(message(1233) + toQt(padded(static_cast<int>(row) + 1, 2)));
    }
    ui_->lblRouting->setText(message(758));
    ui_->optMemory->setText(caption(759));
    ui_->optPlug->setText(caption(760));
    ui_->lblPlugDefault->setText(message(761));
    ui_->Label2->setText(message(762));
    ui_->Label3->setText(message(763));
    ui_->cmdReadPROM->setText(caption(764));
    ui_->cmdSave->setText(caption(765));
    ui_->cmdRouting->setText(caption(766));
    ui_->cmdProgramme->setText(caption(767));
    ui_->cmdBye->setText(caption(768));
}

void FrmEEPROMdata::loadEepromWindow() {
    applyCaptions();
    fillSettings({});
    showEepromText({});
}

void FrmEEPROMdata::showEepromWindow() {
    if (!isVisible()) fitToContents(this);
    show();
    raise();
    activateWindow();
}

void FrmEEPROMdata::closeEepromWindow() {
    hide();
    showEepromMechType({});
    listEepromViews({});
    fillSettings({});
    showEepromText({});
}

void FrmEEPROMdata::showEepromMechType(const std::string& mechType) {
    ui_->lblmechType->setText(toQt(mechType));
}

void FrmEEPROMdata::listEepromViews(const std::vector<std::string>& entries) {
    ui_->cmbDisplay->clear();
    for (const std::string& entry : entries) ui_->cmbDisplay->addItem(toQt(entry));
    ui_->cmbDisplay->setCurrentIndex(entries.empty() ? -1 : 0);
}

int FrmEEPROMdata::chosenEepromView() const {
    return ui_->cmbDisplay->currentIndex();
}

void FrmEEPROMdata::showEepromText(const std::string& text) {
    ui_->lblPROM->setPlainText(toBoxText(text));
    ui_->stkViews->setCurrentWidget(ui_->pagText);
    offerWriting(true, false);
}

void FrmEEPROMdata::showC435Settings(const C435Settings& settings) {
    fillSettings(settings);
    ui_->stkViews->setCurrentWidget(ui_->pagC435);
    offerWriting(false, true);
}

void FrmEEPROMdata::offerWriting(bool file, bool routing) {
    actions_.setEnabled(ui_->cmdProgramme, file);
    actions_.setEnabled(ui_->cmdRouting, routing);
}

void FrmEEPROMdata::fillSettings(const C435Settings& settings) {
    for (std::size_t i = 0; i < txtSort_.size(); ++i) {
        txtSort_[i]->setText(toQt(settings.paths.at(i)));
    }
    for (std::size_t i = 0; i < txtCode_.size(); ++i) {
        txtCode_[i]->setText(toQt(settings.codes.at(i)));
    }
    (settings.fromMemory ? ui_->optMemory : ui_->optPlug)->setChecked(true);
    ui_->txtPlugDefault->setText(toQt(settings.plugDefault));
}

C435Settings FrmEEPROMdata::enteredC435Settings() const {
    C435Settings settings;
    for (std::size_t i = 0; i < txtSort_.size(); ++i) {
        settings.paths.at(i) = fromQt(txtSort_[i]->text());
    }
    for (std::size_t i = 0; i < txtCode_.size(); ++i) {
        settings.codes.at(i) = fromQt(txtCode_[i]->text());
    }
    settings.fromMemory = ui_->optMemory->isChecked();
    settings.plugDefault = fromQt(ui_->txtPlugDefault->text());
    return settings;
}

}  // namespace vantor
