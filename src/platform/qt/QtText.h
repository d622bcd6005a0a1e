#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace vantor {

/// Core's Windows-1252 text as the toolkit's, and back: the only two places where it changes.
[[nodiscard]] QString toQt(std::string_view windows1252);
[[nodiscard]] std::string fromQt(const QString& text);

/// The same for a button or label caption: "&" is shown, not taken as a shortcut.
[[nodiscard]] QString toCaption(std::string_view windows1252);

}  // namespace vantor
