#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vantor {

/// What the program remembers between runs. The file is one line of five quoted fields:
/// port, language, two reserved ones, and the mech's last reply (never read back).
struct Configuration {
    static constexpr std::string_view kFileName = "config0000.txt";

    int portNumber = 1;                ///< 1..30
    std::string language = "English";  ///< one of kLanguages
    std::string reserved1 = " 0";      ///< text, written back as it was read
    std::string reserved2 = " 0";
};

/// A port outside 1..30 becomes 1, an unknown language English; missing fields keep their default.
[[nodiscard]] Configuration parseConfiguration(std::string_view bytes);
/// Nothing when there is no such file.
[[nodiscard]] std::optional<Configuration> readConfiguration(const std::filesystem::path& folder);

/// The whole file. Control characters and quotes of `replyText` are left out.
[[nodiscard]] std::string configurationLine(const Configuration& configuration,
                                            std::string_view replyText);
/// Throws std::system_error when the file cannot be written; the old one stays then.
void writeConfiguration(const std::filesystem::path& folder, const Configuration& configuration,
                        std::string_view replyText);

}  // namespace vantor
