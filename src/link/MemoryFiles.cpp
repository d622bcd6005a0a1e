#include "link/MemoryFiles.h"

#include "catalogue/FileNames.h"
#include "catalogue/Text.h"
#include "platform/Files.h"

namespace vantor {

namespace {

namespace fs = std::filesystem;

constexpr const char* kExtension = ".txt";
constexpr const char* kPattern = "*.txt";
constexpr const char* kFolder = "CoinSets";

}  // namespace

fs::path MemoryFiles::folder() const {
    return state_.app.folder / kFolder;
}

void MemoryFiles::save(const std::function<std::string()>& text) const {
    const auto chosen = prompts_.askFile({.title = state_.msgText(texts_.saveTitle),
                                          .pattern = kPattern,
                                          .startFolder = folder(),
                                          .saving = true});
    if (!chosen || chosen->empty()) return;
    const fs::path file = withExtension(*chosen, kExtension);
    if (fs::exists(file) && prompts_.ask({.title = state_.msgText(texts_.warning),
                                          .text = state_.msgText(texts_.overwrite),
                                          .icon = PromptIcon::exclamation,
                                          .buttons = PromptButtons::okCancel}) != Answer::ok) {
        return;
    }
    writeFileWhole(file, text());
}

std::optional<MemoryFiles::Opened> MemoryFiles::open(const std::string& title) const {
    const auto chosen =
        prompts_.askFile({.title = title, .pattern = kPattern, .startFolder = folder()});
    if (!chosen || chosen->empty()) return std::nullopt;
    const fs::path path = withNewExtension(*chosen, kExtension);
    const auto bytes = readFile(path);
    if (!bytes) {
        prompts_.ask({.title = state_.msgText(texts_.error),
                      .text = state_.msgText(texts_.noSuchFile),
                      .icon = PromptIcon::critical});
        return std::nullopt;
    }
    return Opened{path, fromFileBytes(*bytes)};
}

void MemoryFiles::tellSkipped(const fs::path& path, int lines, std::string_view what) const {
    if (lines == 0) return;
    prompts_.notice({.title = state_.msgText(texts_.warning),
                     .text = shownFileName(path) + ": " + std::to_string(lines) + " lines are no " +
                             std::string(what) + " and were skipped",
                     .icon = PromptIcon::exclamation});
}

}  // namespace vantor
