#include "limits/frmPROM.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QLabel>

#include "limits/LimitsReview.h"
#include "platform/qt/ActionFrame.h"
#include "platform/qt/Controls.h"
#include "platform/qt/QtText.h"
#include "ui_frmPROM.h"

namespace vantor {

namespace {

constexpr int kMostRows = 8;  ///< channels of one segment
constexpr int kSlugRows = kMostSlugs;

constexpr int kMsgBackError = 1200, kMsgChangeError = 1201, kMsgUtilitiesError = 1202,
              kMsgProgramError = 1219, kMsgRestoreError = 1220, kMsgValtestError = 1221,
              kMsgLayoutError = 1234, kMsgSegmentError = 1239;

// Grid columns: row head and a gap, per parameter a low and a high box and a gap, the estimate.
constexpr int kHeadGapColumn = 1;
constexpr int lowColumn(int parameter) {
    return 2 + 3 * parameter;
}

template <class Item>
Item* member(const std::vector<Item*>& items, int index) {
    return items.at(static_cast<std::size_t>(index));
}

template <class Item>
std::vector<Item*> makeMembers(QWidget* parent, const char* name, int count) {
    std::vector<Item*> items;
    for (int i = 0; i < count; ++i) {
        auto* item = new Item(parent);
        item->setObjectName(memberName(name, i));
        items.push_back(item);
    }
    return items;
}

void paintBase(QWidget* box, std::uint32_t rgb) {
    QPalette palette = box->palette();
    palette.setColor(QPalette::Base, QColor(static_cast<QRgb>(rgb)));
    // White, yellow and cyan want dark digits, whatever the desktop's colours are.
    palette.setColor(QPalette::Text, Qt::black);
    box->setPalette(palette);
}

}  // namespace

FrmPROM::FrmPROM(SessionState& state, ActionFrame& actions, ErrorReporter& errors)
    : state_(state), actions_(actions), errors_(errors), ui_(std::make_unique<Ui::frmPROM>()) {
    ui_->setupUi(this);
    optSeg_ = {ui_->optSeg_0, ui_->optSeg_1, ui_->optSeg_2, ui_->optSeg_3};
    makeControls();
    showPlainText(this);
    connectButtons();
    setTabs();
    actions_.adopt(this);
    actions_.onBusyChange([this](bool busy) {
        if (busy || !isVisible() || focusWidget()) return;
        for (QRadioButton* option : optSeg_) {
            if (option->isChecked()) option->setFocus();
        }
    });
    closeWindow();
}

FrmPROM::~FrmPROM() = default;

void FrmPROM::makeControls() {
    QWidget* frame = ui_->frmLimits;
    makeField(ui_->lblMechType);
    makeField(ui_->lblSize);
    lblPtitle_ = makeMembers<QLabel>(frame, "lblPtitle", kMaxParameters);
    lblPlow_ = makeMembers<QLabel>(frame, "lblPlow", kMaxParameters);
    lblPhigh_ = makeMembers<QLabel>(frame, "lblPhigh", kMaxParameters);
    lblCoin_ = makeMembers<QLabel>(frame, "lblCoin", kMostRows);
    lblAcceptance_ = makeMembers<QLabel>(frame, "lblAcceptance", kMostRows);
    label10_ = makeMembers<QLabel>(frame, "Label10", kSlugRows);
    lblRejection_ = makeMembers<QLabel>(frame, "lblRejection", kSlugRows);
    lblSlugLimits_ = makeMembers<QLabel>(frame, "lblSlugLimits", kSlugRows * kLimitColumns);
    for (NumberBox* box : makeMembers<NumberBox>(frame, "txtProm", kMostRows * kLimitColumns)) {
        txtProm_.push_back(box);
        connect(box, &QLineEdit::textEdited, this, [this] { state_.limits.limitsEdited = true; });
    }
    lblAcc_ = new QLabel(frame);
    lblAcc_->setObjectName(QStringLiteral("lblAcc"));
    lblRej_ = new QLabel(frame);
    lblRej_->setObjectName(QStringLiteral("lblRej"));

    for (QLabel* label : lblPtitle_) {
        QFont bold = label->font();
        bold.setBold(true);
        label->setFont(bold);
        label->setAlignment(Qt::AlignCenter);
    }
    for (const auto& labels : {lblPlow_, lblPhigh_}) {
        for (QLabel* label : labels) label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
    for (QLabel* label : lblSlugLimits_) {
        makeNumberField(label, "00000");
        label->setBackgroundRole(QPalette::Window);
        label->setForegroundRole(QPalette::WindowText);
    }
    for (const auto& labels : {lblAcceptance_, lblRejection_}) {
        for (QLabel* label : labels) makeNumberField(label, "000.0");
    }
    for (QLabel* label : {lblAcc_, lblRej_}) {
        label->setAlignment(Qt::AlignRight | Qt::AlignBottom);
    }
}

void FrmPROM::connectButtons() {
    for (int i = 0; i < int(optSeg_.size()); ++i) {
        actions_.onClick(member(optSeg_, i), kMsgSegmentError,
                         [this, i] { review_->selectSegment(i); });
    }
    connect(ui_->optBipolarPROM, &QRadioButton::clicked, this,
            [this] { state_.prom.target = TargetProm::bipolar; });
    connect(ui_->optVantorPROM, &QRadioButton::clicked, this,
            [this] { state_.prom.target = TargetProm::vantorE1; });
    actions_.onClick(ui_->cmdChangeLimits, kMsgChangeError, [this] { review_->changeLimits(); });
    actions_.onClick(ui_->cmdRestore, kMsgRestoreError, [this] { review_->restoreLimits(); });
    actions_.onClick(ui_->cmdProgPROM, kMsgProgramError, [this] { review_->programNew(); });
    actions_.onClick(ui_->cmdValtest, kMsgValtestError, [this] { validatorTest(); });
    actions_.onClick(ui_->cmdPROMutilities, kMsgUtilitiesError, [this] { utilities(); });
    actions_.onClick(ui_->cmdBack1, kMsgBackError, [this] { goBack(); });
}

void FrmPROM::setTabs() {
    std::vector<QWidget*> order(optSeg_.begin(), optSeg_.end());
    order.insert(order.end(), {ui_->optVantorPROM, ui_->optBipolarPROM});
    order.insert(order.end(), txtProm_.begin(), txtProm_.end());
    order.insert(order.end(), {ui_->cmdChangeLimits, ui_->cmdRestore, ui_->cmdProgPROM,
                               ui_->cmdValtest, ui_->cmdPROMutilities, ui_->cmdBack1});
    chainTabs(order);
}

void FrmPROM::applyCaptions() {
    const auto message = [this](int number) { return toQt(state_.msgText(number)); };
    const auto caption = [this](int number) { return toCaption(state_.msgText(number)); };
    setWindowTitle(QStringLiteral("PROM Limits"));
    ui_->Frame3->setTitle(caption(1277));
    ui_->frmPromSize->setTitle(caption(1276));
    ui_->frmPromType->setTitle(caption(1278));
    ui_->optVantorPROM->setText(caption(1279));
    ui_->optBipolarPROM->setText(caption(1280));
    ui_->frmLimits->setTitle(caption(1250));
    lblAcc_->setText(message(1257));
    lblRej_->setText(message(1266));
    for (int i = 0; i < kSlugRows; ++i) member(label10_, i)->setText(message(1267 + i));
    for (int p = 0; p < kMaxParameters; ++p) {
        member(lblPlow_, p)->setText(message(154));
        member(lblPhigh_, p)->setText(message(155));
    }
    ui_->cmdRestore->setText(caption(1273));
    ui_->cmdChangeLimits->setText(caption(1274));
    ui_->cmdValtest->setText(caption(1282));
    ui_->cmdBack1->setText(caption(1284));
    applyLayoutCaptions();
}

void FrmPROM::applyLayoutCaptions() {
    const auto caption = [this](int number) { return toCaption(state_.msgText(number)); };
    ui_->frmDisplay->setTitle(caption(layout_.displayCaption));
    ui_->cmdProgPROM->setText(caption(layout_.programCaption));
    ui_->cmdPROMutilities->setText(caption(layout_.utilitiesCaption));
}

void FrmPROM::openWindow() {
    if (!isVisible()) applyCaptions();
    show();
    raise();
    activateWindow();
}

void FrmPROM::closeWindow() {
    hide();
    layout_ = LimitsLayout{};
    layout_.displayCaption = 1226;
    layout_.programCaption = 1227;
    layout_.utilitiesCaption = 1228;
    emptyGrid();
    ui_->optSeg_0->setChecked(true);
    ui_->lblMechType->clear();
    ui_->lblSize->clear();
    state_.prom.target = TargetProm::vantorE1;
    showTarget();
    enableValidatorTest(false);
}

void FrmPROM::goBack() {
    hide();
    if (back) back();
    closeWindow();
}

void FrmPROM::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (isVisible()) actions_.run(kMsgBackError, [this] { goBack(); });
}

// --- layout

void FrmPROM::layOut(const LimitsLayout& layout) {
    const bool sameShape = layout.paramNames.size() == layout_.paramNames.size() &&
                           layout.rowHeads.size() == layout_.rowHeads.size();
    layout_ = layout;
    errors_.attempt(kMsgLayoutError, [this] { layGrid(layout_); });
    errors_.attempt(kMsgLayoutError, [this] { showOptions(layout_); });
    applyLayoutCaptions();
    enableValidatorTest(false);
    if (!sameShape) fitToContents(this);
}

void FrmPROM::emptyGrid() {
    delete ui_->frmLimits->layout();
    for (QWidget* control : ui_->frmLimits->findChildren<QWidget*>()) control->hide();
    for (QLineEdit* box : txtProm_) box->clear();
    for (const auto& labels : {lblSlugLimits_, lblAcceptance_, lblRejection_, lblCoin_}) {
        for (QLabel* label : labels) label->clear();
    }
    clearColours();
    columns_ = 0;
}

void FrmPROM::layGrid(const LimitsLayout& layout) {
    emptyGrid();
    columns_ = 2 * qMin(int(layout.paramNames.size()), kMaxParameters);
    const int rows = qMin(int(layout.rowHeads.size()), kMostRows);
    auto* grid = new QGridLayout(ui_->frmLimits);
    grid->setHorizontalSpacing(2);
    grid->setVerticalSpacing(3);
    layHeads(*grid, layout);
    layRows(*grid, rows);
    laySlugs(*grid, 2 + rows);
    const int gap = fontMetrics().averageCharWidth();
    grid->setColumnMinimumWidth(kHeadGapColumn, gap);
    for (int p = 0; p < columns_ / 2; ++p) {
        grid->setColumnMinimumWidth(lowColumn(p) + 2, gap);
        grid->setColumnStretch(lowColumn(p), 1);
        grid->setColumnStretch(lowColumn(p) + 1, 1);
    }
    // The slug rows keep some distance from the coin rows; all else stays at its own height.
    grid->setRowMinimumHeight(2 + rows, fontMetrics().height());
    grid->setRowStretch(grid->rowCount(), 1);
    for (int row = 0; row < rows; ++row) {
        setRowHead(row, layout.rowHeads.at(static_cast<std::size_t>(row)));
    }
}

void FrmPROM::layHeads(QGridLayout& grid, const LimitsLayout& layout) {
    for (int p = 0; p < columns_ / 2; ++p) {
        QLabel* title = member(lblPtitle_, p);
        title->setText(toQt(layout.paramNames.at(static_cast<std::size_t>(p))));
        grid.addWidget(title, 0, lowColumn(p), 1, 2);
        grid.addWidget(member(lblPlow_, p), 1, lowColumn(p));
        grid.addWidget(member(lblPhigh_, p), 1, lowColumn(p) + 1);
        title->show();
        member(lblPlow_, p)->show();
        member(lblPhigh_, p)->show();
    }
    grid.addWidget(lblAcc_, 0, lowColumn(columns_ / 2), 2, 1);
    lblAcc_->show();
}

void FrmPROM::layRows(QGridLayout& grid, int rows) {
    for (int row = 0; row < rows; ++row) {
        grid.addWidget(member(lblCoin_, row), 2 + row, 0);
        grid.addWidget(member(lblAcceptance_, row), 2 + row, lowColumn(columns_ / 2));
        member(lblCoin_, row)->show();
        member(lblAcceptance_, row)->show();
        for (int column = 1; column <= columns_; ++column) {
            QLineEdit* box = member(txtProm_, boxIndex(row, column));
            grid.addWidget(box, 2 + row, lowColumn((column - 1) / 2) + (column - 1) % 2);
            box->show();
        }
    }
}

void FrmPROM::laySlugs(QGridLayout& grid, int firstGridRow) {
    grid.addWidget(lblRej_, firstGridRow, lowColumn(columns_ / 2));
    lblRej_->show();
    for (int slug = 1; slug <= kSlugRows; ++slug) {
        const int gridRow = firstGridRow + slug;
        grid.addWidget(member(label10_, slug - 1), gridRow, 0);
        grid.addWidget(member(lblRejection_, slug - 1), gridRow, lowColumn(columns_ / 2));
        member(label10_, slug - 1)->show();
        member(lblRejection_, slug - 1)->show();
        for (int column = 1; column <= columns_; ++column) {
            QLabel* label = member(lblSlugLimits_, boxIndex(slug - 1, column));
            grid.addWidget(label, gridRow, lowColumn((column - 1) / 2) + (column - 1) % 2);
            label->show();
        }
    }
}

void FrmPROM::showOptions(const LimitsLayout& layout) {
    for (int i = 0; i < int(optSeg_.size()); ++i) {
        actions_.setEnabled(member(optSeg_, i),
                            layout.segmentEnabled.at(static_cast<std::size_t>(i)));
    }
    chooseSegment(layout.chosenSegment);
    ui_->frmPromSize->setVisible(layout.promSocket);
    ui_->frmPromType->setVisible(layout.promSocket);
    ui_->lblSize->setText(toQt(layout.promSize));
    ui_->lblMechType->setText(toQt(layout.mechType));
    showTarget();
}

void FrmPROM::showTarget() {
    const bool bipolar = state_.prom.target == TargetProm::bipolar;
    (bipolar ? ui_->optBipolarPROM : ui_->optVantorPROM)->setChecked(true);
}

// --- contents

int FrmPROM::boxIndex(int row, int column) const {
    if (column < 1 || column > columns_) throw std::out_of_range("Subscript out of range");
    return row * columns_ + column - 1;
}

void FrmPROM::chooseSegment(int segment) {
    member(optSeg_, segment)->setChecked(true);
}

void FrmPROM::setRowHead(int row, const std::string& text) {
    member(lblCoin_, row)->setText(toQt(text));
}

void FrmPROM::setLimit(int row, int column, const std::string& text) {
    member(txtProm_, boxIndex(row, column))->setText(toQt(text));
}

std::string FrmPROM::limitText(int row, int column) const {
    return fromQt(member(txtProm_, boxIndex(row, column))->text());
}

void FrmPROM::setSlugLimit(int slug, int column, const std::string& text) {
    member(lblSlugLimits_, boxIndex(slug - 1, column))->setText(toQt(text));
}

void FrmPROM::clearColours() {
    for (QLineEdit* box : txtProm_) paintBase(box, kWhite);
    for (QLabel* label : lblSlugLimits_) {
        QPalette own;
        own.setColor(QPalette::Window, palette().color(QPalette::Button));
        label->setPalette(own);
    }
}

void FrmPROM::colourRow(int row, std::uint32_t rgb) {
    for (int column = 1; column <= columns_; ++column) {
        paintBase(member(txtProm_, boxIndex(row, column)), rgb);
    }
}

void FrmPROM::colourSlug(int slug, std::uint32_t rgb) {
    for (int column = 1; column <= columns_; ++column) {
        QPalette own;
        own.setColor(QPalette::Window, QColor(static_cast<QRgb>(rgb)));
        own.setColor(QPalette::WindowText, Qt::black);
        member(lblSlugLimits_, boxIndex(slug - 1, column))->setPalette(own);
    }
}

void FrmPROM::setAcceptance(int row, const std::string& text) {
    member(lblAcceptance_, row)->setText(toQt(text));
}

void FrmPROM::setRejection(int slug, const std::string& text) {
    member(lblRejection_, slug - 1)->setText(toQt(text));
}

void FrmPROM::enableValidatorTest(bool enabled) {
    actions_.setEnabled(ui_->cmdValtest, enabled);
}

void FrmPROM::enableUtilities(bool enabled) {
    actions_.setEnabled(ui_->cmdPROMutilities, enabled);
}

}  // namespace vantor
