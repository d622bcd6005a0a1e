#pragma once

#include <filesystem>
#include <string>

namespace vantor {

// Only the last component of a name is edited, so that a folder with a full stop stays as it is.
// Both kinds of slash end a folder on every system: names come from technicians' notes as well.

/// From the last full stop on replaced by `extension` (with its full stop); a name without one
/// stays as it is.
[[nodiscard]] std::filesystem::path withNewExtension(const std::filesystem::path& chosen,
                                                     const char* extension);
/// The same; a name without a full stop gets the extension added.
[[nodiscard]] std::filesystem::path withExtension(const std::filesystem::path& chosen,
                                                  const char* extension);

/// From the last full stop on replaced by ".cst"; a name without one stays as it is.
[[nodiscard]] std::filesystem::path coinsetFileName(const std::filesystem::path& chosen);

/// Everything from the first full stop on replaced by ".csv", which is appended otherwise.
[[nodiscard]] std::filesystem::path logFileName(const std::filesystem::path& chosen);

/// The last component, as text (Windows-1252).
[[nodiscard]] std::string shownFileName(const std::filesystem::path& path);
/// The whole path, as text (Windows-1252).
[[nodiscard]] std::string shownPath(const std::filesystem::path& path);

}  // namespace vantor
