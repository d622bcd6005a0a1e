#include "nri/NriUtilities.h"

#include "catalogue/FileNames.h"
#include "catalogue/Text.h"
#include "nri/NriDataFile.h"
#include "platform/Files.h"

namespace vantor {

namespace {

namespace fs = std::filesystem;

constexpr const char* kExtension = ".txt";
constexpr const char* kPattern = "*.txt";
constexpr const char* kFolder = "CoinSets";

}  // namespace

bool NriUtilities::readMemory() {
    const NriFlow flow(state_, link_);
    return memory_.readNriMemory();
}

void NriUtilities::saveToFile() {
    errors_.attempt(920, [this] {
        const auto chosen = prompts_.askFile({.title = state_.msgText(917),
                                              .pattern = kPattern,
                                              .startFolder = state_.app.folder / kFolder,
                                              .saving = true});
        if (!chosen || chosen->empty()) return;
        const fs::path file = withExtension(*chosen, kExtension);
        if (fs::exists(file) && prompts_.ask({.title = state_.msgText(919),
                                              .text = state_.msgText(918),
                                              .icon = PromptIcon::exclamation,
                                              .buttons = PromptButtons::okCancel}) != Answer::ok) {
            return;
        }
        writeFileWhole(file, nriFileText(state_.nri.blocks));
    });
}

bool NriUtilities::NRIprogramme() {
    bool good = false;
    errors_.attempt(914, [&] { good = programFile(); });
    return good;
}

bool NriUtilities::programFile() {
    const auto chosen = prompts_.askFile({.title = state_.msgText(903),
                                          .pattern = kPattern,
                                          .startFolder = state_.app.folder / kFolder});
    if (!chosen || chosen->empty()) return false;
    const fs::path path = withNewExtension(*chosen, kExtension);
    const auto bytes = readFile(path);
    if (!bytes) {
        prompts_.ask({.title = state_.msgText(905),
                      .text = state_.msgText(904),
                      .icon = PromptIcon::critical});
        return false;
    }
    const NriDataFile file = parseNriFile(fromFileBytes(*bytes));
    if (file.skipped > 0) {
        prompts_.notice({.title = state_.msgText(919),
                         .text = shownFileName(path) + ": " + std::to_string(file.skipped) +
                                 " lines are no blocks of a memory and were skipped",
                         .icon = PromptIcon::exclamation});
    }
    if (prompts_.ask({.title = state_.msgText(907),
                      .text = state_.msgText(906),
                      .icon = PromptIcon::question,
                      .buttons = PromptButtons::okCancel}) != Answer::ok) {
        return false;
    }
    const auto writes = nriFileWrites(memory_.shape(), file.blocks);
    if (!writes) {
        prompts_.ask({.title = state_.msgText(913),
                      .text = state_.msgText(912),
                      .icon = PromptIcon::critical});
        return false;
    }
    // From here on nothing may be built on what was read before.
    state_.nri.blocks = file.blocks;
    state_.noteOldImage(false);
    return memory_.programBlocks(*writes);
}

std::vector<NriView> NriUtilities::views() const {
    return nriViews(memory_.shape().model);
}

std::string NriUtilities::text(NriPage page) const {
    return nriText(page, memory_.shape(), state_.nri.old, state_.mech.info.paramNames,
                   state_.messages);
}

}  // namespace vantor
