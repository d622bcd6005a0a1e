#include <cstdint>
#include <filesystem>

#include "Quiet.h"
#include "catalogue/LanguageFile.h"
#include "platform/Files.h"

// A language file of any content.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    static const std::filesystem::path folder = [] {
        const auto path = std::filesystem::temp_directory_path() / "vantor-fuzz-language";
        std::filesystem::create_directories(path);
        return path;
    }();
    writeFileWhole(folder / "Deutsch.txt", {reinterpret_cast<const char*>(data), size});
    fuzz::QuietPrompts prompts;
    MessageTable messages;
    ErrorReporter errors(messages, prompts);
    messages.language = "Deutsch";
    loadLanguage(messages, folder, prompts, errors);
    for (int id = -1; id <= MessageTable::kHighestNumber + 1; id += 7) (void)messages.msgText(id);
    return 0;
}
