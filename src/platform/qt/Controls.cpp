#include "platform/qt/Controls.h"

#include <QFontDatabase>
#include <QLabel>
#include <QLayout>
#include <QPlainTextEdit>
#include <QScreen>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QTextDocument>
#include <cmath>
#include <ranges>

namespace vantor {

namespace {

constexpr int kLongestNumber = 12;
const QString kWidestLimit = QStringLiteral("00000");

}  // namespace

NumberBox::NumberBox(QWidget* parent) : QLineEdit(parent) {
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setMaxLength(kLongestNumber);
    setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::Fixed);
}

QSize NumberBox::sizeHint() const {
    return minimumSizeHint();
}

QSize NumberBox::minimumSizeHint() const {
    const QSize usual = QLineEdit::sizeHint();
    QStyleOptionFrame option;
    initStyleOption(&option);
    // The line edit keeps a margin of two pixels at each end inside its contents rectangle.
    const QMargins inside = textMargins();
    const QSize text(
        fontMetrics().horizontalAdvance(kWidestLimit) + 4 + inside.left() + inside.right(),
        usual.height());
    const QSize whole = style()->sizeFromContents(QStyle::CT_LineEdit, &option, text, this);
    return {whole.width(), usual.height()};
}

QString memberName(const char* array, int index) {
    return QLatin1String(array) + QLatin1Char('_') + QString::number(index);
}

void makeField(QLabel* label) {
    label->setTextFormat(Qt::PlainText);
    label->setFrameStyle(int(QFrame::StyledPanel) | int(QFrame::Sunken));
    label->setBackgroundRole(QPalette::Base);
    label->setForegroundRole(QPalette::Text);
    label->setAutoFillBackground(true);
    label->setMargin(label->fontMetrics().averageCharWidth() / 3);
}

void makeNumberField(QLabel* label, std::string_view widest) {
    makeField(label);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    const QString text = QString::fromLatin1(widest.data(), static_cast<qsizetype>(widest.size()));
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(text) +
                           2 * (label->margin() + label->frameWidth()));
}

void showPlainText(QWidget* window) {
    for (QLabel* label : window->findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
}

QFont fixedFont() {
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setStyleHint(QFont::Monospace);
    fixed.setFixedPitch(true);
    return fixed;
}

void makeTextPane(QPlainTextEdit* pane, int columns, int lines) {
    const QFont fixed = fixedFont();
    pane->setFont(fixed);
    pane->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    const QFontMetricsF metrics(fixed);
    // With room for both scroll bars, or neither goes away because the other one is there.
    const double border = 2 * (pane->frameWidth() + pane->document()->documentMargin()) +
                          pane->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    const double width = columns * metrics.horizontalAdvance(QLatin1Char('0')) + border;
    const double height = lines * metrics.lineSpacing() + border;
    pane->setMinimumSize(int(std::ceil(width)), int(std::ceil(height)));
}

void fitToContents(QWidget* window) {
    // Parents stand before their children in this list: the innermost layouts settle first.
    const QList<QWidget*> inside = window->findChildren<QWidget*>();
    for (QWidget* child : inside | std::views::reverse) {
        if (QLayout* layout = child->layout()) {
            layout->invalidate();
            layout->activate();
        }
    }
    window->layout()->invalidate();
    window->layout()->activate();
    const QSize room = window->screen()->availableSize();
    window->resize(window->sizeHint().boundedTo(room).expandedTo(window->minimumSizeHint()));
}

void chainTabs(const std::vector<QWidget*>& controls) {
    for (std::size_t i = 1; i < controls.size(); ++i) {
        QWidget::setTabOrder(controls[i - 1], controls[i]);
    }
}

}  // namespace vantor
