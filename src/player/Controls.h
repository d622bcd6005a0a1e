#pragma once

#include <QString>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

class QColor;
class QWidget;

namespace vantor::player {

/// Why something could not be done, for the technician who wrote the script; empty = done.
using Problem = std::string;

/// A window or control by object names: "frmPROM" or "frmPROM.txtProm_3".
struct Target {
    QWidget* widget = nullptr;
    Problem problem;  ///< names the part that is missing, and what stands there instead
};

[[nodiscard]] QWidget* findWindow(std::string_view name);
[[nodiscard]] Target findTarget(std::string_view name);

// What a control shows. Texts have their shortcut marks removed and lines ended by LF alone.
[[nodiscard]] QString textOf(const QWidget* widget);
/// "on", "off" or "grey" for what can be ticked, the number of a progress bar, the 0-based entry
/// of a list or tab strip; empty for anything else.
[[nodiscard]] QString valueOf(const QWidget* widget);
/// The colour that the program gave the control: of its background where it has one, else of its
/// text.
[[nodiscard]] QColor colourOf(const QWidget* widget);
/// True when `wanted` is what the control shows as its text or its value.
[[nodiscard]] bool shows(const QWidget* widget, std::string_view wanted);
/// One line for `print`.
[[nodiscard]] std::string describe(const QWidget* widget, std::string_view name);
/// A window itself and its named controls as lines of `describe`, sorted by name.
[[nodiscard]] std::vector<std::string> describeAll(QWidget* window);

/// Called once it is clear that a control takes what it is given, before it gets it: what
/// follows may be a flow that runs for minutes.
using Accepted = std::function<void()>;

// What a technician's hands do. Each refuses what hands could not: a control that is hidden,
// disabled, or behind an open box.
[[nodiscard]] Problem click(QWidget* widget, const Accepted& accepted);
[[nodiscard]] Problem closeWindow(QWidget* window, const Accepted& accepted);
[[nodiscard]] Problem choose(QWidget* widget, std::string_view entry, const Accepted& accepted);
[[nodiscard]] Problem typeInto(QWidget* widget, std::string_view text, const Accepted& accepted);
[[nodiscard]] Problem tick(QWidget* widget, bool on, const Accepted& accepted);
[[nodiscard]] Problem chooseTab(QWidget* widget, std::string_view label, const Accepted& accepted);

/// The window that a screenshot without a name shows: an open box, else the active window, else
/// the largest; never the bench as long as there is another.
[[nodiscard]] QWidget* windowInFront();

}  // namespace vantor::player
