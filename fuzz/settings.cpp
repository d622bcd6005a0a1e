#include "FuzzTarget.h"
#include "app/Configuration.h"
#include "catalogue/LanguageFile.h"
#include "catalogue/Text.h"
#include "platform/Files.h"
#include "platform/PortMap.h"

// The small files in the program's folder, of any content: the configuration and a language file.

namespace {

using namespace vantor;
using fuzz::require;

class NoPrompts final : public Prompts {
  public:
    Answer ask(const Prompt&) override { return Answer::ok; }
    void notice(const Prompt&) override {}
    std::optional<std::filesystem::path> askFile(const FileQuestion&) override { return {}; }
    void beep() override {}
};

bool sameConfiguration(const Configuration& a, const Configuration& b) {
    return a.portNumber == b.portNumber && a.language == b.language && a.reserved1 == b.reserved1 &&
           a.reserved2 == b.reserved2;
}

void configuration(std::string_view bytes) {
    const Configuration read = parseConfiguration(bytes);
    require(read.portNumber >= 1 && read.portNumber <= kPorts, "the port is one of the list");
    const std::string written = configurationLine(read, bytes);
    // Windows-1252 that happens to be UTF-8 is taken for that.
    if (fromFileBytes(written) == written) {
        require(sameConfiguration(parseConfiguration(written), read), "what was read is kept");
    }
    require(splitLines(written).size() == 1, "the configuration is one line");
}

void languageFile(std::string_view bytes) {
    writeFileWhole(fuzz::scratchFolder() / "Deutsch.txt", bytes);
    NoPrompts prompts;
    MessageTable messages;
    ErrorReporter errors(messages, prompts);
    messages.language = "Deutsch";
    loadLanguage(messages, fuzz::scratchFolder(), prompts, errors);
    require(messages.languageTableLoaded, "a file that is there is loaded");
    for (int id = -1; id <= MessageTable::kHighestNumber + 1; ++id) {
        const std::string text = messages.msgText(id);
        require(text.find_first_of("\",\n") == std::string::npos, "a text is one plain field");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = fuzz::textOf(data, size);
    configuration(bytes);
    languageFile(bytes);
    return 0;
}
