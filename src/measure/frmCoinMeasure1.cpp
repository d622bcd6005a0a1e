#include "measure/frmCoinMeasure1.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QLabel>
#include <QRegularExpressionValidator>

#include "catalogue/Text.h"
#include "measure/LimitSource.h"
#include "measure/MeasureFlows.h"
#include "measure/TargetLists.h"
#include "platform/qt/ActionFrame.h"
#include "platform/qt/Controls.h"
#include "platform/qt/QtText.h"
#include "ui_frmCoinMeasure1.h"

namespace vantor {

namespace {

constexpr int kWidestPanelTwips = 11775, kParameterTwips = 1680;
constexpr int kSegmentsOf1K = 2;
constexpr std::string_view kWidestNumber = " 0000.0 ";
constexpr const char* kFirstCoinValue = "5";
constexpr const char* kWizardCoinValue = "10";

constexpr int kMsgSegmentsError = 400, kMsgBackError = 401, kMsgCancelWizardsError = 404,
              kMsgRunError = 495, kMsgWizardError = 429, kMsgSlugLayoutError = 435,
              kMsgCoinLayoutError = 438, kMsg1KError = 439, kMsg2KError = 440,
              kMsgSegmentHead = 425, kMsgOutputHead = 428, kMsgCoinListError = 441,
              kMsgSegmentListError = 443, kMsgDesignBack = 536;

enum Row {
    kNameRow,
    kReadingRow,
    kMeanRow,
    kSdRow,
    kExtremesRow,
    kSourceRow,
    kOffsetRow,
    kLimitRow
};

template <class Item>
Item* member(const std::vector<Item*>& items, int index) {
    return items.at(static_cast<std::size_t>(index));
}

QLabel* makeValue(QWidget* parent, const char* array, int index) {
    auto* label = new QLabel(parent);
    label->setObjectName(memberName(array, index));
    makeNumberField(label, kWidestNumber);
    return label;
}

void embolden(QLabel* label, double scale = 1.0) {
    QFont font = label->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * scale);
    label->setFont(font);
}

void fillList(QComboBox& list, const std::vector<std::string>& entries) {
    list.clear();
    for (const std::string& entry : entries) list.addItem(toQt(entry));
    list.setCurrentIndex(entries.empty() ? -1 : 0);
}

void keepPlace(QWidget* widget) {
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
}

}  // namespace

FrmCoinMeasure1::FrmCoinMeasure1(SessionState& state, ActionFrame& actions,
                                 const Families& families, ErrorReporter& errors)
    : state_(state),
      actions_(actions),
      families_(families),
      errors_(errors),
      ui_(std::make_unique<Ui::frmCoinMeasure1>()) {
    ui_->setupUi(this);
    chkSegment_ = {ui_->chkSegment_0, ui_->chkSegment_1, ui_->chkSegment_2, ui_->chkSegment_3};
    for (int p = 0; p < kMaxParameters; ++p) makeParameter(p);
    makeFields();
    connectChoices();
    connectButtons();
    setTabs();
    actions_.adopt(this);
    actions_.allowWhileBusy(ui_->cmdBack);
    actions_.onBusyChange([this](bool busy) {
        if (busy || !isVisible() || focusWidget() != this) return;
        const bool wizard = ui_->stkPanels->currentWidget() == ui_->pagWizard;
        (wizard ? static_cast<QWidget*>(ui_->cmbCoin) : ui_->cmdRunCoinset)->setFocus();
    });
    closeWindow();
}

FrmCoinMeasure1::~FrmCoinMeasure1() = default;

// --- building

void FrmCoinMeasure1::makeFields() {
    for (QLabel* label : {ui_->lblTitle, ui_->lblRefCode, ui_->lblVersion, ui_->lblMechType,
                          ui_->lblCoinCode, ui_->lblDescription, ui_->lblWizardMechType}) {
        makeField(label);
    }
    makeNumberField(ui_->lblNumber, kWidestNumber);
    ui_->txtCoinValue->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,5}")), this));
    embolden(ui_->lblNumber, 1.25);
    embolden(ui_->lblManufacturer, 1.25);
    ui_->lblManufacturer->setAlignment(Qt::AlignCenter);
    // Long texts of a coinset must not push the window wider.
    for (QLabel* label : {ui_->lblTitle, ui_->lblDescription}) {
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }
    ui_->layHeader->setColumnStretch(1, 1);
    ui_->layHeader->setRowMinimumHeight(2, fontMetrics().height() / 3);
    ui_->layWizard->setColumnStretch(3, 1);
    ui_->layWizard->setRowStretch(6, 1);
    const int frame = parameters_.front().frame->frameWidth();
    ui_->frmHeads->setContentsMargins(frame, frame, frame, frame);
    levelRows(*ui_->layHeads);
    ui_->layMeasurements->setStretch(0, 0);
    keepPlace(ui_->lblOffsetHead);
    showPlainText(this);
}

void FrmCoinMeasure1::makeParameter(int p) {
    ParameterColumn made;
    made.frame = new QFrame(ui_->frmMeasurements);
    made.frame->setObjectName(memberName("frmParameter", p));
    made.frame->setFrameStyle(int(QFrame::StyledPanel) | int(QFrame::Raised));
    auto* grid = new QGridLayout(made.frame);
    made.name = new QLabel(made.frame);
    made.name->setObjectName(memberName("lblParameter", p));
    made.name->setAlignment(Qt::AlignCenter);
    embolden(made.name);
    made.reading = makeValue(made.frame, "lblReading", p);
    embolden(made.reading);
    made.mean = makeValue(made.frame, "lblMean", p);
    made.sdLower = makeValue(made.frame, "lblSDL", p);
    made.sdUpper = makeValue(made.frame, "lblSDU", p);
    made.lowest = makeValue(made.frame, "lblLow", p);
    made.highest = makeValue(made.frame, "lblHigh", p);
    made.separation = makeValue(made.frame, "lblSeparation", p);
    grid->addWidget(made.name, kNameRow, 0, 1, 2);
    grid->addWidget(made.reading, kReadingRow, 0, 1, 2);
    grid->addWidget(made.mean, kMeanRow, 0, 1, 2);
    grid->addWidget(made.sdLower, kSdRow, 0);
    grid->addWidget(made.sdUpper, kSdRow, 1);
    grid->addWidget(made.lowest, kExtremesRow, 0);
    grid->addWidget(made.highest, kExtremesRow, 1);
    grid->addWidget(made.separation, kSourceRow, 0, 1, 2);
    for (int side = 0; side < 2; ++side) {
        QLabel* source = makeValue(made.frame, "lblSrc", 2 * p + side);
        QLabel* offset = makeValue(made.frame, "lblOffset", 2 * p + side);
        QLabel* limit = makeValue(made.frame, "lblLimit", 2 * p + side);
        embolden(limit);
        keepPlace(source);
        keepPlace(offset);
        grid->addWidget(source, kSourceRow, side);
        grid->addWidget(offset, kOffsetRow, side);
        grid->addWidget(limit, kLimitRow, side);
        lblSrc_.push_back(source);
        lblOffset_.push_back(offset);
        lblLimit_.push_back(limit);
    }
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    ui_->layMeasurements->addWidget(made.frame, 1);
    parameters_.push_back(made);
    levelRows(*grid);
}

// Heads and values stand in frames of their own; rows of one height keep them level.
void FrmCoinMeasure1::levelRows(QGridLayout& grid) const {
    const int height = parameters_.front().reading->sizeHint().height();
    grid.setVerticalSpacing(fontMetrics().height() / 4);
    for (int row = kNameRow; row <= kLimitRow; ++row) {
        grid.setRowStretch(row, 1);
        grid.setRowMinimumHeight(row, height);
    }
}

void FrmCoinMeasure1::connectChoices() {
    actions_.onClick(ui_->opt1K, kMsg1KError, [this] { flows_->choosePromSize(0); });
    actions_.onClick(ui_->opt2K, kMsg2KError, [this] { flows_->choosePromSize(1); });
    for (QCheckBox* box : chkSegment_) {
        actions_.onClick(box, kMsgSegmentsError, [this] {
            flows_->chooseSegments(checkedSegments());
            showPromChoices();
        });
    }
    actions_.onChoice(ui_->cmbSegment, kMsgCoinListError, [this] { fillTargetCoins(); });
    actions_.onChoice(ui_->cmbCoin, kMsgWizardError, [this] { chooseLinesOfCoin(); });
    connect(ui_->chkduplicate, &QCheckBox::clicked, this,
            [this](bool ticked) { state_.prom.duplicateSegments = ticked; });
}

void FrmCoinMeasure1::chooseLinesOfCoin() {
    const MechFamily* family = families_.current();
    const int line = lineOfCoin(chosenCoin());
    if (!family || !family->wizardPanel().lines || line == 0) return;
    ui_->cmbOutput->setCurrentIndex(line - 1);
    ui_->cmbInhibit->setCurrentIndex(line - 1);
}

// A click on a segment that the PROM does not have selects nothing; it can only clear one.
std::array<bool, kMarsSegments> FrmCoinMeasure1::checkedSegments() const {
    std::array<bool, kMarsSegments> checked{};
    for (int i = 0; i < kMarsSegments; ++i) {
        const bool known = exists(i) || state_.prom.segmentSelected[i];
        checked.at(static_cast<std::size_t>(i)) = known && member(chkSegment_, i)->isChecked();
    }
    return checked;
}

bool FrmCoinMeasure1::exists(int segment) const {
    return state_.prom.promSizeCode == 1 || segment < kSegmentsOf1K;
}

void FrmCoinMeasure1::connectButtons() {
    actions_.onClick(ui_->cmdRunCoinset, kMsgRunError, [this] { flows_->runCoinsetFile(); });
    actions_.onClick(ui_->cmdSpecialUtilities, kMsgWizardError, [this] { flows_->openWizards(); });
    actions_.onClick(ui_->cmdCancelWizards, kMsgCancelWizardsError,
                     [this] { flows_->cancelWizards(); });
    const std::pair<QPushButton*, WizardMode> wizards[] = {
        {ui_->cmdEditLimits, WizardMode::editLimits},
        {ui_->cmdAddReplace, WizardMode::addReplace},
        {ui_->cmdSlugFix, WizardMode::slugFix}};
    for (const auto& [button, mode] : wizards) {
        actions_.onClick(button, kMsgWizardError, [this, mode = mode] { flows_->runWizard(mode); });
    }
    connect(ui_->cmdBack, &QPushButton::clicked, this, [this] { pressBack(); });
}

void FrmCoinMeasure1::setTabs() {
    chainTabs({ui_->cmdRunCoinset,
               ui_->cmdSpecialUtilities,
               ui_->opt1K,
               ui_->opt2K,
               ui_->chkSegment_0,
               ui_->chkSegment_1,
               ui_->chkSegment_2,
               ui_->chkSegment_3,
               ui_->chkLog,
               ui_->chkduplicate,
               ui_->cmbSegment,
               ui_->cmbCoin,
               ui_->txtCoinValue,
               ui_->cmbOutput,
               ui_->cmbInhibit,
               ui_->cmdAddReplace,
               ui_->cmdSlugFix,
               ui_->cmdEditLimits,
               ui_->cmdCancelWizards,
               ui_->cmdBack});
}

void FrmCoinMeasure1::applyCaptions() {
    const auto message = [this](int number) { return toQt(state_.msgText(number)); };
    const auto caption = [this](int number) { return toCaption(state_.msgText(number)); };
    ui_->lblTitleHead->setText(message(510));
    ui_->lblRefCodeHead->setText(message(511));
    ui_->lblVersionHead->setText(message(512));
    ui_->lblCoinCodeHead->setText(message(513));
    ui_->lblDescriptionHead->setText(message(514));
    ui_->lblMechTypeHead->setText(message(515));
    ui_->lblNumberHead->setText(message(516));
    ui_->frmMeasurements->setTitle(caption(517));
    for (int p = 1; p <= kMaxParameters; ++p) column(p).name->setText(message(517 + p));
    ui_->lblReadingHead->setText(message(524));
    ui_->lblMeanHead->setText(message(525));
    ui_->lblSDHead->setText(message(526));
    ui_->lblExtremesHead->setText(message(527));
    ui_->lblSrcHead->setText(message(528));
    ui_->lblOffsetHead->setText(message(529));
    ui_->lblLimitHead->setText(message(530));
    // The heads change with every slug; the column has room for the longest of them.
    int widest = 0;
    for (const int head : {433, 434, 436, 437}) {
        widest = qMax(widest, ui_->lblSrcHead->fontMetrics().horizontalAdvance(message(head)));
    }
    ui_->lblSrcHead->setMinimumWidth(widest);
    ui_->chkLog->setText(caption(531));
    ui_->frmPromSize->setTitle(caption(532));
    ui_->frmPromSegments->setTitle(caption(533));
    ui_->cmdRunCoinset->setText(caption(534));
    ui_->cmdSpecialUtilities->setText(caption(535));
    ui_->cmdBack->setText(caption(kMsgDesignBack));
    const MechFamily* family = families_.current();
    ui_->chkduplicate->setText(caption(family ? family->look().duplicateCaption : 548));
    applyWizardCaptions();
}

void FrmCoinMeasure1::applyWizardCaptions() {
    const auto message = [this](int number) { return toQt(state_.msgText(number)); };
    const auto caption = [this](int number) { return toCaption(state_.msgText(number)); };
    ui_->frmWizard->setTitle(caption(537));
    ui_->lblWizardMechHead->setText(message(538));
    ui_->lblSegmentHead->setText(message(539));
    ui_->lblCoinHead->setText(message(540));
    ui_->lblOutputHead->setText(message(kMsgOutputHead));
    ui_->lblCoinValueHead->setText(message(541));
    ui_->lblInhibitHead->setText(message(542));
    ui_->cmdAddReplace->setText(caption(543));
    ui_->frmWizards->setTitle(caption(544));
    ui_->cmdCancelWizards->setText(caption(545));
    ui_->cmdEditLimits->setText(caption(546));
    ui_->cmdSlugFix->setText(caption(547));
}

// --- opening and closing

void FrmCoinMeasure1::openWindow() {
    applyCaptions();
    flows_->CoinInitialise(0);
    ui_->chkduplicate->show();
}

void FrmCoinMeasure1::closeWindow() {
    hide();
    setWindowTitle(QStringLiteral("Capture Coin Measurements"));
    state_.prom.promSizeCode = 0;
    state_.prom.segmentSelected.fill(false);
    state_.prom.segmentSelected[0] = true;
    state_.prom.duplicateSegments = false;
    ui_->chkduplicate->setChecked(false);
    ui_->chkLog->setChecked(false);
    for (QLabel* label : {ui_->lblTitle, ui_->lblRefCode, ui_->lblVersion, ui_->lblCoinCode,
                          ui_->lblDescription, ui_->lblNumber}) {
        label->clear();
    }
    ui_->txtCoinValue->setText(QLatin1String(kFirstCoinValue));
    showPromChoices();
    showWizardPanel(false);
    showItemLayout(true);
    enableRunButtons(true);
}

void FrmCoinMeasure1::showMeasureWindow() {
    if (!isVisible()) {
        // The window itself takes the focus: while an action runs, Cancel Operation is the only
        // control that could, and a stray press of the space bar must not hit it.
        setFocus();
        show();
    }
    raise();
    activateWindow();
}

void FrmCoinMeasure1::hideMainWindow() {
    if (hideMain) hideMain();
}

void FrmCoinMeasure1::backToMainWindow() {
    closeWindow();
    if (backToMain) backToMain();
}

void FrmCoinMeasure1::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (isVisible() && ui_->cmdBack->isEnabled()) pressBack();
}

// Cancel Operation gets through while a run waits; Back to Main Window is an action of its own.
void FrmCoinMeasure1::pressBack() {
    if (state_.gather.runActive) {
        actions_.runThrough(kMsgBackError, [this] { flows_->backButton(); });
    } else {
        actions_.run(kMsgBackError, [this] { flows_->backButton(); });
    }
}

// --- MeasureDisplay

void FrmCoinMeasure1::setCaption(const std::string& caption) {
    setWindowTitle(toQt(caption));
}

void FrmCoinMeasure1::setBackButton(int captionMessage, bool enabled) {
    ui_->cmdBack->setText(toCaption(state_.msgText(captionMessage)));
    actions_.setEnabled(ui_->cmdBack, enabled);
}

void FrmCoinMeasure1::enableRunButtons(bool enabled) {
    actions_.setEnabled(ui_->cmdRunCoinset, enabled);
    actions_.setEnabled(ui_->cmdSpecialUtilities, enabled);
}

void FrmCoinMeasure1::enablePromChoices(bool enabled) {
    actions_.setEnabled(ui_->opt1K, enabled);
    actions_.setEnabled(ui_->opt2K, enabled);
    for (QCheckBox* box : chkSegment_) actions_.setEnabled(box, enabled);
}

void FrmCoinMeasure1::showWizardPanel(bool wizard) {
    ui_->stkPanels->setCurrentWidget(wizard ? ui_->pagWizard : ui_->pagMeasure);
}

void FrmCoinMeasure1::showMech() {
    ui_->lblMechType->setText(toQt(state_.mech.mechType));
    const MechFamily* family = families_.current();
    const FamilyLook look = family ? family->look() : FamilyLook{};
    ui_->lblManufacturer->setText(toQt(look.name));
    QPalette maker;
    maker.setColor(QPalette::WindowText, QColor(static_cast<QRgb>(look.colour)));
    ui_->lblManufacturer->setPalette(maker);
    ui_->frmPromSize->setVisible(look.promSocket);
    ui_->frmPromSegments->setVisible(look.promSocket);
    const bool coinValue = family && family->hasCoinValue();
    ui_->lblCoinValueHead->setVisible(coinValue);
    ui_->txtCoinValue->setVisible(coinValue);
    ui_->txtCoinValue->setText(QLatin1String(kFirstCoinValue));
    showParameterCount();
}

void FrmCoinMeasure1::showParameterCount() {
    const int n = qBound(1, state_.n(), kMaxParameters);
    const int twips = kWidestPanelTwips - (kMaxParameters - n) * kParameterTwips;
    const bool sameWidth = ui_->frmMeasurements->property("widthTwips").toInt() == twips;
    ui_->frmMeasurements->setProperty("widthTwips", twips);
    int widest = 0;
    for (int p = 1; p <= kMaxParameters; ++p) {
        const std::string& name = state_.mech.info.paramNames.at(static_cast<std::size_t>(p - 1));
        column(p).name->setText(toQt(name));
        column(p).frame->setVisible(p <= n);
        column(p).frame->setMinimumWidth(0);
        if (p <= n) widest = qMax(widest, column(p).frame->minimumSizeHint().width());
    }
    for (ParameterColumn& parameter : parameters_) parameter.frame->setMinimumWidth(widest);
    if (!sameWidth) fitToContents(this);
}

void FrmCoinMeasure1::showPromChoices() {
    const bool large = state_.prom.promSizeCode == 1;
    (large ? ui_->opt2K : ui_->opt1K)->setChecked(true);
    for (int i = 0; i < kMarsSegments; ++i) {
        const Qt::CheckState unselected = exists(i) ? Qt::Unchecked : Qt::PartiallyChecked;
        member(chkSegment_, i)
            ->setCheckState(state_.prom.segmentSelected[i] ? Qt::Checked : unselected);
    }
}

void FrmCoinMeasure1::showTargetLists() {
    errors_.attempt(kMsgSegmentListError, [this] {
        const MechFamily* family = families_.current();
        fillList(*ui_->cmbSegment, segmentEntries(state_.prom, family && family->twoSegmentProm()));
    });
    errors_.attempt(kMsgCoinListError, [this] { fillTargetCoins(); });
}

void FrmCoinMeasure1::fillTargetCoins() {
    const MechFamily* family = families_.current();
    const bool segments = family && family->look().promSocket;
    fillList(*ui_->cmbCoin, segments ? segmentCoins(fromQt(ui_->cmbSegment->currentText()))
                                     : numberedCoins(state_.mech.info.channelCount));
    fillList(*ui_->cmbOutput, lineEntries());
    fillList(*ui_->cmbInhibit, lineEntries());
}

void FrmCoinMeasure1::showStatistics(bool coinLayout) {
    const int layoutError = coinLayout ? kMsgCoinLayoutError : kMsgSlugLayoutError;
    errors_.attempt(layoutError, [&] { showItemLayout(coinLayout); });
    const MeasurementSession& item = state_.item;
    const auto number = [](int value) { return toQt(spacedNumber(value)); };
    const int n = qBound(1, state_.n(), kMaxParameters);
    for (int p = 1; p <= n; ++p) {
        ParameterColumn& shown = column(p);
        shown.mean->setText(toQt(oneDecimal(item.mean[p])));
        shown.sdLower->setText(toQt(oneDecimal(item.sdLower[p])));
        shown.sdUpper->setText(toQt(oneDecimal(item.sdUpper[p])));
        shown.lowest->setText(number(item.lowest[p]));
        shown.highest->setText(number(item.highest[p]));
        shown.separation->setText(number(item.slugSeparation[p]));
    }
    for (int i = 1; i <= 2 * n; ++i) {
        member(lblOffset_, i - 1)->setText(number(item.limitAdjust[i]));
        member(lblLimit_, i - 1)->setText(number(item.limits[i]));
    }
}

void FrmCoinMeasure1::showItemLayout(bool coinLayout) {
    ui_->lblLimitHead->setText(toQt(state_.msgText(coinLayout ? 436 : 433)));
    ui_->lblSrcHead->setText(toQt(state_.msgText(coinLayout ? 437 : 434)));
    ui_->lblOffsetHead->setVisible(coinLayout);
    for (ParameterColumn& parameter : parameters_) parameter.separation->setVisible(!coinLayout);
    for (const auto& labels : {lblSrc_, lblOffset_}) {
        for (QLabel* label : labels) label->setVisible(coinLayout);
    }
}

void FrmCoinMeasure1::showLimitSources() {
    for (int i = 1; i <= kLimitColumns; ++i) {
        member(lblSrc_, i - 1)
            ->setText(toQt(limitSourceText(state_.messages, state_.item.limitOrigins[i])));
    }
}

void FrmCoinMeasure1::showReading(int parameter, const std::string& text) {
    column(parameter).reading->setText(toQt(text));
}

void FrmCoinMeasure1::showNumber(const std::string& text) {
    ui_->lblNumber->setText(toQt(text));
}

void FrmCoinMeasure1::showNumberCaption(const std::string& text) {
    ui_->lblNumberHead->setText(toQt(text));
}

void FrmCoinMeasure1::showItem(const std::string& code, const std::string& description) {
    ui_->lblCoinCode->setText(toQt(code));
    ui_->lblDescription->setText(toQt(description));
    ui_->lblDescription->setToolTip(toQt(description).toHtmlEscaped());
}

void FrmCoinMeasure1::showCoinset() {
    ui_->lblTitle->setText(toQt(state_.coinset.title));
    ui_->lblTitle->setToolTip(toQt(state_.coinset.title).toHtmlEscaped());
    ui_->lblRefCode->setText(toQt(state_.coinset.referenceCode));
    ui_->lblVersion->setText(toQt(state_.coinset.version));
}

bool FrmCoinMeasure1::logResultsTicked() const {
    return ui_->chkLog->isChecked();
}

bool FrmCoinMeasure1::duplicateTicked() const {
    return ui_->chkduplicate->isChecked();
}

std::string FrmCoinMeasure1::coinValueText() const {
    return fromQt(ui_->txtCoinValue->text());
}

void FrmCoinMeasure1::showWizardChoices(const WizardPanel& panel) {
    const MechFamily* family = families_.current();
    const bool segments = family && family->look().promSocket;
    ui_->lblWizardMechType->setText(toQt(state_.mech.mechType));
    ui_->lblSegmentHead->setText(toQt(state_.msgText(kMsgSegmentHead)));
    ui_->lblCoinHead->setText(toQt(state_.msgText(panel.coinCaption)));
    ui_->lblOutputHead->setText(toQt(state_.msgText(kMsgOutputHead)));
    const auto show = [](QWidget* head, QWidget* choice, bool shown) {
        head->setVisible(shown);
        choice->setVisible(shown);
    };
    show(ui_->lblSegmentHead, ui_->cmbSegment, segments);
    show(ui_->lblCoinValueHead, ui_->txtCoinValue, panel.coinValue);
    show(ui_->lblOutputHead, ui_->cmbOutput, panel.lines);
    show(ui_->lblInhibitHead, ui_->cmbInhibit, panel.lines);
    if (panel.coinValue) ui_->txtCoinValue->setText(QLatin1String(kWizardCoinValue));
}

std::string FrmCoinMeasure1::chosenCoin() const {
    return fromQt(ui_->cmbCoin->currentText());
}

int FrmCoinMeasure1::chosenOutputLine() const {
    return ui_->cmbOutput->currentIndex() + 1;
}

int FrmCoinMeasure1::chosenInhibitLine() const {
    return ui_->cmbInhibit->currentIndex() + 1;
}

FrmCoinMeasure1::ParameterColumn& FrmCoinMeasure1::column(int parameter) {
    return parameters_.at(static_cast<std::size_t>(parameter - 1));
}

}  // namespace vantor
