#pragma once

#include <functional>
#include <span>
#include <string>

#include "cc/CcLayout.h"

namespace vantor {

// What the EEPROM utilities show of an image, as text for a pane of fixed pitch. Lines are
// separated by CR LF; every text begins with two blanks.

/// The text of a message by its number.
using MessageTexts = std::function<std::string(int number)>;

/// One way to look at an EEPROM.
enum class EepromView { words, limits, other };

struct EepromViewEntry {
    EepromView view;
    int caption;  ///< message number of its entry in the list
};

/// The views in the order of the list.
[[nodiscard]] std::span<const EepromViewEntry> eepromViews();

/// Sixteen words a line in hexadecimal, behind the address of the first one.
[[nodiscard]] std::string eepromWordsText(const CcShape& shape, const MechImage& image);

/// The windows of all coin channels, a line each, under the names of the parameters.
[[nodiscard]] std::string eepromLimitsText(const CcShape& shape, const MechImage& image,
                                           std::span<const std::string> parameterNames,
                                           const MessageTexts& text);

/// Output map or routing, for the models that have one; else a line that says so. A 435 shows its
/// settings in boxes instead (`c435Settings`), its text is empty.
[[nodiscard]] std::string eepromOtherText(const CcShape& shape, const MechImage& image,
                                          const MessageTexts& text);

}  // namespace vantor
