#pragma once

#include <QFont>
#include <QLineEdit>
#include <string_view>
#include <vector>

class QLabel;
class QPlainTextEdit;
class QString;
class QWidget;

namespace vantor {

/// A text box as wide as the numbers that go into it, right-aligned.
class NumberBox final : public QLineEdit {
  public:
    explicit NumberBox(QWidget* parent = nullptr);
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
};

/// The object name of a member of a control array: "txtProm_3".
[[nodiscard]] QString memberName(const char* array, int index);

/// Makes a label show its text plainly, as a framed read-only field on the colour of text boxes.
void makeField(QLabel* label);
/// A field for a number: right-aligned, and wide enough for `widest` whatever it shows.
void makeNumberField(QLabel* label, std::string_view widest);
/// Makes every label below `window` show plain text.
void showPlainText(QWidget* window);

/// The system's font of fixed pitch.
[[nodiscard]] QFont fixedFont();
/// A text in fixed pitch that can be selected and copied, with room for so many columns and lines.
void makeTextPane(QPlainTextEdit* pane, int columns, int lines);

/// Gives a window the size that its contents ask for now, within the screen. Unlike
/// QWidget::adjustSize it does not wait for pending layout events and may fill the screen.
void fitToContents(QWidget* window);

/// The Tab key visits the controls in this order.
void chainTabs(const std::vector<QWidget*>& controls);

}  // namespace vantor
