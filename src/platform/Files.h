#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vantor {

/// The whole file as bytes; nothing when it cannot be read.
[[nodiscard]] std::optional<std::string> readFile(const std::filesystem::path& path);

/// Writes beside the file and renames, so that the old content stays whole until the new one is.
/// Throws std::system_error when that fails; nothing is left behind then.
void writeFileWhole(const std::filesystem::path& path, std::string_view bytes);

}  // namespace vantor
