#include "catalogue/LanguageFile.h"

#include <algorithm>

#include "catalogue/Text.h"
#include "platform/Files.h"

namespace vantor {

namespace {

constexpr std::string_view kLoadError = "Error Loading Language File routine : ";

void storeLine(MessageTable& messages, std::string_view line) {
    FieldReader reader(line);
    const int id = lenientInteger(reader.next());
    std::string text = reader.next();
    if (text.starts_with(' ')) text.erase(0, 1);
    messages.setLoaded(id, std::move(text));
}

}  // namespace

void loadLanguage(MessageTable& messages, const std::filesystem::path& folder, Prompts& prompts,
                  ErrorReporter& errors) {
    const auto row = std::find_if(kLanguages.begin(), kLanguages.end(),
                                  [&](const Language& l) { return l.name == messages.language; });
    if (row == kLanguages.end() || row->file.empty()) return;
    const auto bytes = readFile(folder / row->file);
    if (!bytes) {
        // Both texts are fixed: without the file there may be no table to take them from.
        prompts.ask(
            {.title = "Error", .text = "Invalid Language Filename", .icon = PromptIcon::critical});
        return;
    }
    // What is wrong with the file is told in the language that there was.
    MessageTable fresh;
    const std::string text = fromFileBytes(*bytes);
    for (const std::string_view line : splitLines(text)) {
        if (line.empty()) continue;
        try {
            storeLine(fresh, line);
        } catch (const std::exception& error) {
            errors.reportText(kLoadError, error);
        }
    }
    fresh.language = messages.language;
    fresh.languageTableLoaded = true;
    messages = std::move(fresh);
}

}  // namespace vantor
