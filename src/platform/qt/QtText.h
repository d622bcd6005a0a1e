#pragma once

#include <QString>
#include <filesystem>
#include <string>
#include <string_view>

namespace vantor {

/// Core's Windows-1252 text as the toolkit's, and back: the only two places where it changes.
[[nodiscard]] QString toQt(std::string_view windows1252);
[[nodiscard]] std::string fromQt(const QString& text);

/// The same for a button or label caption: "&" is shown, not taken as a shortcut.
[[nodiscard]] QString toCaption(std::string_view windows1252);

/// The same for the text of a box: lines end as the toolkit wants.
[[nodiscard]] QString toBoxText(std::string_view windows1252);

/// File names, which are in the system's own encoding and never become Windows-1252.
[[nodiscard]] QString pathToQt(const std::filesystem::path& path);
[[nodiscard]] std::filesystem::path pathFromQt(const QString& path);

}  // namespace vantor
