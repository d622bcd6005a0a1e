#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

namespace vantor {

/// One built-in English text.
struct EnglishText {
    int id;
    std::string_view text;
};

/// All built-in texts, ascending by number (src/resources/EnglishMessages.cpp).
[[nodiscard]] std::span<const EnglishText> englishMessages();

/// The user's languages, in the order of the language list, by the names that the configuration
/// file keeps (Windows-1252). English has no file.
struct Language {
    std::string_view name;
    std::string_view file;  ///< in the program's folder; empty for English
};
inline constexpr std::array<Language, 4> kLanguages = {{
    {"English", ""},
    {"Deutsch", "Deutsch.txt"},
    {"Francais", "Francais.txt"},
    {"Espa\xF1ol", "Espanol.txt"},
}};

/// Texts by number: the built-in English ones, or those of a loaded language file.
class MessageTable {
  public:
    static constexpr int kHighestNumber = 2000;

    /// The text for a number. With a language file loaded and a language other than English
    /// chosen, a number that the file does not supply is empty. Unknown numbers are empty.
    [[nodiscard]] std::string msgText(int id) const;

    /// One of the names of kLanguages.
    std::string language = "English";
    bool languageTableLoaded = false;

    /// Loaded texts, 0..2000. Throws std::out_of_range on another number.
    void setLoaded(int id, std::string text);
    void clearLoaded();

  private:
    std::array<std::string, kHighestNumber + 1> loaded_;
};

}  // namespace vantor
