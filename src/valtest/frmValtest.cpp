#include "valtest/frmValtest.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QLabel>
#include <QScreen>

#include "catalogue/Text.h"
#include "platform/qt/ActionFrame.h"
#include "platform/qt/Controls.h"
#include "platform/qt/QtText.h"
#include "ui_frmValtest.h"
#include "valtest/TestLayouts.h"
#include "valtest/ValidatorTest.h"

namespace vantor {

namespace {

constexpr int kMsgBackError = 1400, kMsgDisplayError = 1405;
constexpr int kMsgCountHead = 1420, kMsgMechType = 1422, kMsgDesignCoin = 1423,
              kMsgOutputMode = 1439, kMsgSingle = 1440, kMsgBinary = 1441, kMsgClearCounts = 1442,
              kMsgBack = 1443, kMsgTitle = 1444;

constexpr int kLongestColumn = 10;  ///< more positions stand in two columns
constexpr int kRowsOfTwoColumns = 8;
// Grid columns of a block: caption, indicator, count, and a gap to the next block.
constexpr int kBlockWidth = 4;

/// What an output bit stands for: the weights of the code and the strobe that comes with it.
constexpr std::array<const char*, kOutputBits> kBitNames = {"8", "S", "4", "2", "1"};

template <class Item>
Item* member(const std::vector<Item*>& items, int index) {
    return items.at(static_cast<std::size_t>(index));
}

template <class Item>
Item* makeMember(std::vector<Item*>& items, QWidget* parent, const char* name) {
    auto* item = new Item(parent);
    item->setObjectName(memberName(name, static_cast<int>(items.size())));
    items.push_back(item);
    return item;
}

void makeShape(QFrame* shape) {
    const int height = shape->fontMetrics().height();
    shape->setFixedSize(2 * height, height);
    shape->setFrameStyle(int(QFrame::Box) | int(QFrame::Plain));
    shape->setAutoFillBackground(true);
}

void paintShape(QFrame* shape, std::uint32_t rgb) {
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(static_cast<QRgb>(rgb)));
    palette.setColor(QPalette::WindowText, Qt::gray);
    shape->setPalette(palette);
}

}  // namespace

FrmValtest::FrmValtest(const SessionState& state, ActionFrame& actions)
    : state_(state), actions_(actions), ui_(std::make_unique<Ui::frmValtest>()) {
    ui_->setupUi(this);
    makeField(ui_->lblmechType);
    makePositions();
    makeBits();
    showPlainText(this);
    connectButtons();
    chainTabs({ui_->cmbG40, ui_->optSingle, ui_->optBinary, ui_->cmdClearCount, ui_->cmdBack});
    actions_.adopt(this);
    unloadWindow();
}

FrmValtest::~FrmValtest() = default;

void FrmValtest::makePositions() {
    QWidget* frame = ui_->frmPositions;
    for (int position = 0; position < kTestPositions; ++position) {
        makeMember(lblCoin_, frame, "lblCoin");
        makeShape(makeMember(shpCoin_, frame, "shpCoin"));
        makeNumberField(makeMember(lblCount_, frame, "lblCount"), " 00000");
    }
    lblCountText_ = {new QLabel(frame), new QLabel(frame)};
    lblCountText_[0]->setObjectName(QStringLiteral("lblCountText"));
    lblCountText_[1]->setObjectName(QStringLiteral("lblCountText2"));
    for (QLabel* head : lblCountText_) head->setAlignment(Qt::AlignRight | Qt::AlignBottom);
}

void FrmValtest::makeBits() {
    QWidget* frame = ui_->frmBits;
    auto* grid = new QGridLayout(frame);
    for (int bit = 0; bit < kOutputBits; ++bit) {
        QLabel* name = makeMember(lblBinCode_, frame, "lblBinCode");
        name->setText(QLatin1String(kBitNames.at(static_cast<std::size_t>(bit))));
        QFrame* shape = makeMember(shpBinary_, frame, "shpBinary");
        makeShape(shape);
        grid->addWidget(name, 0, bit, Qt::AlignCenter);
        grid->addWidget(shape, 1, bit, Qt::AlignCenter);
    }
}

void FrmValtest::connectButtons() {
    actions_.onClick(ui_->optSingle, kMsgDisplayError, [this] { test_->chooseSingle(); });
    actions_.onClick(ui_->optBinary, kMsgDisplayError, [this] { test_->chooseBinary(); });
    actions_.onClick(ui_->cmdClearCount, kMsgDisplayError, [this] { test_->clearValtestCounts(); });
    actions_.onClick(ui_->cmdBack, kMsgBackError, [this] { test_->back(); });
    actions_.onChoice(ui_->cmbG40, kMsgDisplayError,
                      [this] { test_->chooseVariant(fromQt(ui_->cmbG40->currentText())); });
}

void FrmValtest::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (isVisible()) actions_.run(kMsgBackError, [this] { test_->back(); });
}

// --- opening and closing

void FrmValtest::loadWindow(const std::string& mechType) {
    const auto caption = [this](int number) { return toCaption(state_.msgText(number)); };
    setWindowTitle(toQt(state_.msgText(kMsgTitle)));
    ui_->lblType->setText(toQt(state_.msgText(kMsgMechType)));
    ui_->lblmechType->setText(toQt(mechType));
    for (int i = 0; i < 2; ++i) {
        member(lblCountText_, i)->setText(toQt(state_.msgText(kMsgCountHead + i)));
    }
    for (int i = 0; i < kTestPositions; ++i) {
        member(lblCoin_, i)->setText(toQt(state_.msgText(kMsgDesignCoin + i)));
    }
    ui_->frmOptions->setTitle(caption(kMsgOutputMode));
    ui_->optSingle->setText(caption(kMsgSingle));
    ui_->optBinary->setText(caption(kMsgBinary));
    ui_->cmdClearCount->setText(caption(kMsgClearCounts));
    ui_->cmdBack->setText(caption(kMsgBack));
}

void FrmValtest::unloadWindow() {
    hide();
    ui_->lblmechType->clear();
    fillVariants({}, -1);
    showVariants(false);
    chooseOutput(false);
    offerOutput(false);
    showOutputBits(false);
    showPositions({});
    for (int position = 0; position < kTestPositions; ++position) {
        setCount(position, spacedNumber(0));
        colourPosition(position, kIndicatorOff);
    }
    for (int bit = 0; bit < kOutputBits; ++bit) colourBit(bit, kIndicatorOff);
}

void FrmValtest::showWindow() {
    fitToContents(this);
    show();
    if (main_ != nullptr) {
        QRect frame = frameGeometry();
        frame.moveCenter(main_->frameGeometry().center());
        const QRect room = screen()->availableGeometry();
        frame.moveRight(qMin(frame.right(), room.right()));
        frame.moveBottom(qMin(frame.bottom(), room.bottom()));
        frame.moveTopLeft({qMax(frame.left(), room.left()), qMax(frame.top(), room.top())});
        move(frame.topLeft());
    }
    raise();
    activateWindow();
}

// --- contents

void FrmValtest::fillVariants(const std::vector<std::string>& codes, int chosen) {
    ui_->cmbG40->clear();
    for (const std::string& code : codes) ui_->cmbG40->addItem(toQt(code));
    ui_->cmbG40->setCurrentIndex(chosen);
}

void FrmValtest::showVariants(bool shown) {
    ui_->cmbG40->setVisible(shown);
    ui_->lblmechType->setVisible(!shown);
}

void FrmValtest::chooseOutput(bool binary) {
    (binary ? ui_->optBinary : ui_->optSingle)->setChecked(true);
}

void FrmValtest::offerOutput(bool offered) {
    ui_->frmOptions->setVisible(offered);
}

void FrmValtest::showOutputBits(bool shown) {
    ui_->frmBits->setVisible(shown);
    if (shown && isVisible()) showWindow();
}

void FrmValtest::showPositions(const std::vector<std::string>& captions) {
    delete ui_->frmPositions->layout();
    for (QWidget* control : ui_->frmPositions->findChildren<QWidget*>()) control->hide();
    if (captions.empty()) return;
    auto* grid = new QGridLayout(ui_->frmPositions);
    grid->setHorizontalSpacing(fontMetrics().averageCharWidth());
    grid->setVerticalSpacing(3);
    const int count = static_cast<int>(captions.size());
    const int rows = count > kLongestColumn ? kRowsOfTwoColumns : count;
    for (int position = 0; position < count; ++position) {
        member(lblCoin_, position)->setText(toQt(captions.at(static_cast<std::size_t>(position))));
        layPosition(*grid, position, position / rows, 1 + position % rows);
    }
    for (int block = 0; block * rows < count; ++block) {
        QLabel* head = member(lblCountText_, block);
        grid->addWidget(head, 0, block * kBlockWidth, 1, kBlockWidth - 1);
        grid->setColumnStretch(block * kBlockWidth, 1);
        if (block > 0) {
            grid->setColumnMinimumWidth(block * kBlockWidth - 1,
                                        3 * fontMetrics().averageCharWidth());
        }
        head->show();
    }
    grid->setRowStretch(1 + rows, 1);
}

void FrmValtest::layPosition(QGridLayout& grid, int position, int block, int gridRow) {
    const int column = block * kBlockWidth;
    int offset = 0;
    for (QWidget* control : {static_cast<QWidget*>(member(lblCoin_, position)),
                             static_cast<QWidget*>(member(shpCoin_, position)),
                             static_cast<QWidget*>(member(lblCount_, position))}) {
        grid.addWidget(control, gridRow, column + offset++);
        control->show();
    }
}

void FrmValtest::setCount(int position, const std::string& text) {
    member(lblCount_, position)->setText(toQt(text));
}

void FrmValtest::colourPosition(int position, std::uint32_t rgb) {
    paintShape(member(shpCoin_, position), rgb);
}

void FrmValtest::colourBit(int bit, std::uint32_t rgb) {
    paintShape(member(shpBinary_, bit), rgb);
}

}  // namespace vantor
