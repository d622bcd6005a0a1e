#include "cc/frmEEPROMdata.h"

#include <QLabel>
#include <QLineEdit>

#include "catalogue/Text.h"
#include "cc/EepromUtilities.h"
#include "platform/qt/ActionFrame.h"
#include "platform/qt/Controls.h"
#include "platform/qt/QtText.h"
#include "ui_frmEEPROMdata.h"

namespace vantor {

namespace {

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
    : FrmMemory(state, actions), ui_(std::make_unique<Ui::frmEEPROMdata>()) {
    ui_->setupUi(this);
    makeTextPane(ui_->lblPROM, kPaneColumns, kPaneLines);
    makeSettingRows();
    setTabs();
    takeOver({.lblmechType = ui_->lblmechType,
              .cmbDisplay = ui_->cmbDisplay,
              .lblPROM = ui_->lblPROM,
              .cmdReadPROM = ui_->cmdReadPROM,
              .cmdSave = ui_->cmdSave,
              .cmdProgramme = ui_->cmdProgramme,
              .cmdBye = ui_->cmdBye});
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

void FrmEEPROMdata::setUtilities(EepromUtilities& utilities) {
    FrmMemory::setUtilities(utilities);
    actions_.onClick(ui_->cmdRouting, EepromUtilities::kRoutingError,
                     [&utilities] { utilities.programmeRouting(); });
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

// --- contents ------------------------------------------------------------------------------

void FrmEEPROMdata::applyCaptions() {
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

void FrmEEPROMdata::clear() {
    fillSettings({});
    showText({});
}

void FrmEEPROMdata::showText(const std::string& text) {
    FrmMemory::showText(text);
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
