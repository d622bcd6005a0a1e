#include "boxsim/qt/BenchWindow.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFileDialog>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSpinBox>
#include <algorithm>

#include "boxsim/SimulatedMech.h"
#include "catalogue/MechCatalogue.h"

namespace vantor::boxsim {

namespace {

/// Often enough for the eye, seldom enough to cost nothing.
constexpr std::chrono::milliseconds kRefresh{200};
/// Bytes that the traffic view shows.
constexpr std::size_t kShownTraffic = 2000;

struct FaultName {
    const char* caption;
    Fault::Kind kind;
};
constexpr std::array kFaults = {
    FaultName{"Drop a byte", Fault::Kind::dropByte},
    FaultName{"Repeat a byte", Fault::Kind::repeatByte},
    FaultName{"Flip a bit", Fault::Kind::flipBit},
    FaultName{"Insert a stray byte", Fault::Kind::insertByte},
    FaultName{"Delay a byte (ms)", Fault::Kind::delayByte},
    FaultName{"Stall for ever", Fault::Kind::stall},
    FaultName{"Cut a line short", Fault::Kind::cutLine},
    FaultName{"Send the previous reply", Fault::Kind::previousReply},
    FaultName{"Lose an acknowledgement", Fault::Kind::lostAck},
    FaultName{"Stuck cell (address)", Fault::Kind::stuckCell},
    FaultName{"Box stays silent", Fault::Kind::silentBox},
    FaultName{"Pull the cable", Fault::Kind::unplug},
    FaultName{"Battery warning", Fault::Kind::batteryLow},
    FaultName{"Mech does not answer", Fault::Kind::mechSilent},
    FaultName{"Mech answers late (ms)", Fault::Kind::mechLate},
    FaultName{"Mech's answer cut (characters)", Fault::Kind::mechCut},
    FaultName{"Mech refuses", Fault::Kind::mechRefuses},
    FaultName{"Mech's sum is wrong", Fault::Kind::wrongSum},
    FaultName{"Mech opens no session", Fault::Kind::noSession},
    FaultName{"Answer too long (characters)", Fault::Kind::longReply},
    FaultName{"Write that lies", Fault::Kind::lyingWrite},
    FaultName{"Mech loses power amid a write (ms)", Fault::Kind::powerLoss},
    FaultName{"Break is not seen", Fault::Kind::breakLost},
};

QPlainTextEdit* instrument(const char* name) {
    auto* text = new QPlainTextEdit;
    text->setObjectName(QLatin1String(name));
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    return text;
}

template <typename Widget>
Widget* named(Widget* widget, const char* name) {
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QHBoxLayout* row(std::initializer_list<QWidget*> widgets) {
    auto* layout = new QHBoxLayout;
    for (QWidget* widget : widgets) layout->addWidget(widget);
    layout->addStretch();
    return layout;
}

QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

BenchWindow::BenchWindow(EventLoop& loop, SimulatedBox& box, RunBench runBench)
    : box_(box), runBench_(std::move(runBench)), timer_(loop) {
    setObjectName(QStringLiteral("frmBench"));
    setWindowTitle(tr("Bench"));
    auto* hands = new QVBoxLayout;
    for (QGroupBox* group : {makeMechGroup(), makePromGroup(), makeSwitches(), makeCoinGroup(),
                             makeBoxGroup(), makeFaultGroup()}) {
        hands->addWidget(group);
    }
    said_ = named(new QLabel, "lblSaid");
    said_->setTextFormat(Qt::PlainText);
    said_->setWordWrap(true);
    hands->addWidget(said_);
    hands->addStretch();

    auto* columns = new QHBoxLayout(this);
    columns->addLayout(hands);
    columns->addWidget(makeTrafficGroup(), 1);
    refresh();
}

QPushButton* BenchWindow::button(const char* name, const QString& caption,
                                 std::function<void()> clicked) {
    auto* made = named(new QPushButton(caption), name);
    connect(made, &QPushButton::clicked, this, [this, clicked = std::move(clicked)] {
        clicked();
        refresh();
    });
    return made;
}

QSpinBox* BenchWindow::number(const char* name, int low, int high, int value) {
    auto* made = named(new QSpinBox, name);
    made->setRange(low, high);
    made->setValue(value);
    return made;
}

QGroupBox* BenchWindow::makeMechGroup() {
    auto* group = named(new QGroupBox(tr("Validator")), "frmMech");
    auto* layout = new QVBoxLayout(group);
    mechs_ = named(new QComboBox, "cmbMech");
    for (const MechModel& model : mechModels()) {
        mechs_->addItem(fromUtf8(model.code), fromUtf8(model.maker));
    }
    mech_ = named(new QLabel, "lblMech");
    layout->addLayout(row({mechs_, button("cmdPlugIn", tr("Plug In"), [this] { plugIn(); }),
                           button("cmdUnplug", tr("Unplug"), [this] { box_.unplugValidator(); })}));
    layout->addWidget(mech_);
    return group;
}

QGroupBox* BenchWindow::makePromGroup() {
    auto* group = named(new QGroupBox(tr("PROM Socket")), "frmSocket");
    auto* layout = new QVBoxLayout(group);
    noProm_ = named(new QRadioButton(tr("None")), "optNone");
    bipolar_ = named(new QRadioButton(tr("Bipolar")), "optBipolar");
    e1_ = named(new QRadioButton(tr("Vantor E+1")), "optE1");
    e1_->setChecked(true);
    promSize_ = named(new QComboBox, "cmbPromSize");
    promSize_->addItems({QStringLiteral("1K"), QStringLiteral("2K")});
    prom_ = named(new QLabel, "lblProm");
    layout->addLayout(row({noProm_, bipolar_, e1_, promSize_}));
    layout->addLayout(row({button("cmdInsert", tr("Insert Blank"), [this] { insertProm("blank"); }),
                           button("cmdInsertFile", tr("Insert from File"),
                                  [this] {
                                      chooseFile(false, [this](const QString& file) {
                                          insertProm(file.toStdString());
                                          refresh();
                                      });
                                  }),
                           button("cmdSaveProm", tr("Save PROM"), [this] {
                               chooseFile(true, [this](const QString& file) {
                                   bench({"save-prom", file.toStdString()});
                               });
                           })}));
    layout->addWidget(prom_);
    return group;
}

QGroupBox* BenchWindow::makeSwitches() {
    auto* group = named(new QGroupBox(tr("Switches of the E+1 Device")), "frmSwitches");
    auto* layout = new QHBoxLayout(group);
    for (int number = 1; number <= 2; ++number) {
        auto* box = new QCheckBox(tr("Switch %1 on").arg(number));
        box->setObjectName(QStringLiteral("chkSwitch_%1").arg(number - 1));
        connect(box, &QCheckBox::clicked, this,
                [this, number](bool on) { box_.setSwitch(number, on); });
        switches_.at(static_cast<std::size_t>(number - 1)) = box;
        layout->addWidget(box);
    }
    return group;
}

QGroupBox* BenchWindow::makeCoinGroup() {
    auto* group = named(new QGroupBox(tr("Coins and Slugs")), "frmCoins");
    auto* layout = new QVBoxLayout(group);
    coins_ = named(new QComboBox, "cmbCoin");
    count_ = number("txtCount", 1, 500, 1);
    every_ = number("txtEvery", 50, 60'000, 400);
    every_->setSuffix(tr(" ms"));
    const auto drop = [this] {
        bench({"drop", coins_->currentText().toStdString(), std::to_string(count_->value()),
               std::to_string(every_->value())});
    };
    layout->addLayout(row({coins_, count_, every_, button("cmdDrop", tr("Drop"), drop)}));
    auto* raw = new QHBoxLayout;
    for (std::size_t i = 0; i < raw_.size(); ++i) {
        raw_.at(i) = number("txtRaw", 0, 99'999, 1000);
        raw_.at(i)->setObjectName(QStringLiteral("txtRaw_%1").arg(i));
        raw->addWidget(raw_.at(i));
    }
    raw->addWidget(button("cmdDropRaw", tr("Drop Values"), [this] {
        box_.dropRaw(raw_[0]->value(), raw_[1]->value(), raw_[2]->value());
    }));
    raw->addStretch();
    layout->addLayout(raw);
    return group;
}

QGroupBox* BenchWindow::makeBoxGroup() {
    auto* group = named(new QGroupBox(tr("Programmer Box")), "frmBox");
    auto* layout = new QVBoxLayout(group);
    silent_ = named(new QCheckBox(tr("Silent")), "chkSilent");
    connect(silent_, &QCheckBox::clicked, this, [this](bool on) { box_.setSilent(on); });
    cable_ = named(new QCheckBox(tr("Cable pulled")), "chkCablePulled");
    connect(cable_, &QCheckBox::clicked, this,
            [this](bool pulled) { pulled ? box_.unplug() : box_.replug(); });
    version_ = named(new QLineEdit(QStringLiteral("V1.95")), "txtVersion");
    version_->setMaxLength(5);
    layout->addLayout(row({silent_, cable_, button("cmdBatteryLow", tr("Battery Low"), [this] {
                               box_.batteryLow();
                           })}));
    layout->addLayout(row({version_, button("cmdVersion", tr("Set Version"), [this] {
                               bench({"version", version_->text().toStdString()});
                           })}));
    return group;
}

QGroupBox* BenchWindow::makeFaultGroup() {
    auto* group = named(new QGroupBox(tr("Faults")), "frmFaults");
    auto* layout = new QGridLayout(group);
    faultKind_ = named(new QComboBox, "cmbFault");
    for (const FaultName& fault : kFaults) faultKind_->addItem(tr(fault.caption));
    faultWhere_ = named(new QComboBox, "cmbFaultWhere");
    faultWhere_->addItems({tr("from the box"), tr("from the PC")});
    faultAfter_ = number("txtFaultAfter", 0, 100'000, 0);
    faultTimes_ = number("txtFaultTimes", -1, 100'000, 1);
    faultValue_ = number("txtFaultValue", 0, 100'000, 0);
    layout->addWidget(faultKind_, 0, 0, 1, 2);
    layout->addWidget(faultWhere_, 0, 2);
    int column = 0;
    for (const auto& [caption, box] :
         {std::pair(tr("After"), faultAfter_), std::pair(tr("Times (-1: always)"), faultTimes_),
          std::pair(tr("Value"), faultValue_)}) {
        layout->addWidget(new QLabel(caption), 1, column);
        layout->addWidget(box, 2, column++);
    }
    layout->addWidget(button("cmdAddFault", tr("Add Fault"), [this] { addFault(); }), 3, 0);
    layout->addWidget(button("cmdClearFaults", tr("Clear Faults"), [this] { box_.clearFaults(); }),
                      3, 1);
    return group;
}

QGroupBox* BenchWindow::makeTrafficGroup() {
    auto* group = named(new QGroupBox(tr("Instruments")), "frmInstruments");
    auto* layout = new QVBoxLayout(group);
    cells_ = instrument("txtPromCells");
    memory_ = instrument("txtMemory");
    traffic_ = instrument("txtTraffic");
    layout->addWidget(new QLabel(tr("PROM contents")));
    layout->addWidget(cells_, 1);
    layout->addWidget(new QLabel(tr("Memory of the validator")));
    layout->addWidget(memory_, 1);
    layout->addWidget(new QLabel(tr("Traffic")));
    layout->addWidget(traffic_, 1);
    layout->addLayout(
        row({button("cmdClearTraffic", tr("Clear Traffic"), [this] { box_.clearTranscript(); })}));
    group->setMinimumWidth(420);
    return group;
}

void BenchWindow::bench(const std::vector<std::string>& words) {
    said_->setText(fromUtf8(runBench_(words)));
}

void BenchWindow::plugIn() {
    const std::string maker = mechs_->currentData().toString().toStdString();
    const bool known = box_.plugValidator(maker, mechs_->currentText().toStdString());
    said_->setText(known ? QString() : tr("The bench has no such validator"));
}

void BenchWindow::insertProm(const std::string& contents) {
    const std::string kind = bipolar_->isChecked() ? "bipolar" : e1_->isChecked() ? "e1" : "none";
    const std::string size = promSize_->currentText().toStdString();
    bench(kind == "none" ? std::vector<std::string>{"insert", kind}
                         : std::vector<std::string>{"insert", kind, size, contents});
}

void BenchWindow::chooseFile(bool saving, std::function<void(const QString&)> chosen) {
    // Never a dialog that waits: the program beside it has to go on.
    auto* dialog = new QFileDialog(this, saving ? tr("Save PROM") : tr("Insert PROM"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    connect(dialog, &QFileDialog::fileSelected, this, std::move(chosen));
    dialog->open();
}

void BenchWindow::addFault() {
    Fault fault;
    fault.kind = kFaults.at(static_cast<std::size_t>(faultKind_->currentIndex())).kind;
    fault.where = faultWhere_->currentIndex() == 0 ? Fault::Where::fromBox : Fault::Where::fromPc;
    fault.after = faultAfter_->value();
    fault.times = faultTimes_->value();
    fault.value = faultValue_->value();
    box_.addFault(fault);
}

void BenchWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    showMinimized();
}

void BenchWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    timer_.start(kRefresh, [this] { refresh(); });
}

void BenchWindow::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    timer_.stop();
}

void BenchWindow::refresh() {
    refreshMech();
    refreshProm();
    refreshMemory();
    refreshTraffic();
    for (int number = 1; number <= 2; ++number) {
        switches_.at(static_cast<std::size_t>(number - 1))->setChecked(box_.switchOn(number));
    }
    cable_->setChecked(!box_.pluggedIn());
}

void BenchWindow::refreshMech() {
    if (box_.validator() == shownMech_) return;
    shownMech_ = box_.validator();
    mech_->setText(shownMech_.empty() ? tr("No validator is plugged in")
                                      : tr("Plugged in: %1").arg(fromUtf8(shownMech_)));
    const int index = mechs_->findText(fromUtf8(shownMech_));
    if (index >= 0) mechs_->setCurrentIndex(index);
    coins_->clear();
    for (const std::string& coin : box_.coins()) coins_->addItem(fromUtf8(coin));
}

void BenchWindow::refreshProm() {
    const auto cells = box_.promCells();
    const bool same =
        promShown_ && box_.promKind() == shownKind_ && std::ranges::equal(cells, shownCells_);
    if (same) return;
    promShown_ = true;
    shownKind_ = box_.promKind();
    shownCells_.assign(cells.begin(), cells.end());
    const QString size = cells.size() > 256 ? tr("2K") : tr("1K");
    const bool none = shownKind_ == PromKind::none;
    const QString kind = shownKind_ == PromKind::e1 ? tr("Vantor E+1") : tr("Bipolar");
    prom_->setText(none ? tr("The socket is empty") : tr("Inserted: %1 %2").arg(kind, size));
    cells_->setPlainText(fromUtf8(hexDump(cells)));
}

void BenchWindow::refreshMemory() {
    const SimulatedMech* mech = box_.mech();
    const std::string text = mech == nullptr ? std::string() : memoryText(mech->memory());
    if (text == shownMemory_) return;
    shownMemory_ = text;
    memory_->setPlainText(fromUtf8(text));
}

void BenchWindow::refreshTraffic() {
    const auto& bytes = box_.transcript();
    const Micros last = bytes.empty() ? Micros{-1} : bytes.back().at;
    if (last == shownUntil_) return;
    shownUntil_ = last;
    const std::size_t first = bytes.size() > kShownTraffic ? bytes.size() - kShownTraffic : 0;
    traffic_->setPlainText(fromUtf8(trafficText(std::span(bytes).subspan(first))));
    traffic_->verticalScrollBar()->setValue(traffic_->verticalScrollBar()->maximum());
}

}  // namespace vantor::boxsim
