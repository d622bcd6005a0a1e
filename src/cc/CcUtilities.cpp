#include "cc/CcUtilities.h"

#include "catalogue/FileNames.h"
#include "catalogue/Text.h"
#include "cc/EepromFile.h"
#include "platform/Files.h"

namespace vantor {

namespace {

namespace fs = std::filesystem;

constexpr const char* kExtension = ".txt";
constexpr const char* kPattern = "*.txt";
constexpr const char* kFolder = "CoinSets";
constexpr const char* kOpenTitle = "Open File";

}  // namespace

bool CcUtilities::readEeprom() {
    CcFlow flow(state_, link_, memory_);
    const bool whole = memory_.readMemory();
    flow.finish();
    return whole;
}

void CcUtilities::tell(int title, int text) {
    prompts_.ask({.title = state_.msgText(title),
                  .text = state_.msgText(text),
                  .icon = PromptIcon::critical});
}

void CcUtilities::saveToFile() {
    errors_.attempt(720, [this] {
        const auto chosen = prompts_.askFile({.title = state_.msgText(717),
                                              .pattern = kPattern,
                                              .startFolder = state_.app.folder / kFolder,
                                              .saving = true});
        if (!chosen || chosen->empty()) return;
        const fs::path file = withExtension(*chosen, kExtension);
        if (fs::exists(file) && prompts_.ask({.title = state_.msgText(719),
                                              .text = state_.msgText(718),
                                              .icon = PromptIcon::exclamation,
                                              .buttons = PromptButtons::okCancel}) != Answer::ok) {
            return;
        }
        writeFileWhole(file,
                       eepromFileText(state_.images.old, ccShape(state_.mech.mechType).words));
    });
}

bool CcUtilities::confirm(int title, int text, int words) {
    const int all = ccShape(state_.mech.mechType).words;
    const std::string count =
        words == all ? std::to_string(all) : std::to_string(words) + " of " + std::to_string(all);
    return prompts_.ask({.title = state_.msgText(title),
                         .text = state_.msgText(text) + std::string(kCrLf) + std::string(kCrLf) +
                                 state_.mech.mechType + ": " + count + " words",
                         .icon = PromptIcon::question,
                         .buttons = PromptButtons::okCancel}) == Answer::ok;
}

// --- programming from a file -----------------------------------------------------------------

bool CcUtilities::eeProgramme() {
    bool good = false;
    errors_.attempt(705, [&] { good = programFile(); });
    return good;
}

bool CcUtilities::programFile() {
    const auto chosen = prompts_.askFile(
        {.title = kOpenTitle, .pattern = kPattern, .startFolder = state_.app.folder / kFolder});
    if (!chosen || chosen->empty()) return false;
    const fs::path path = withNewExtension(*chosen, kExtension);
    const auto bytes = readFile(path);
    if (!bytes) {
        tell(702, 701);
        return false;
    }
    const EepromFile file =
        parseEepromFile(fromFileBytes(*bytes), ccShape(state_.mech.mechType).words);
    state_.images.next = file.image;
    if (file.skipped > 0) {
        prompts_.notice({.title = state_.msgText(719),
                         .text = shownFileName(path) + ": " + std::to_string(file.skipped) +
                                 " lines are no words of an EEPROM and were skipped",
                         .icon = PromptIcon::exclamation});
    }
    return confirm(704, 703, file.given) && memory_.programme();
}

bool CcUtilities::cloneFromFile() {
    return readEeprom() && eeProgramme();
}

// --- routing of a 435 --------------------------------------------------------------------------

bool CcUtilities::prepareRouting(const C435Settings& settings) {
    bool good = false;
    errors_.attempt(716, [&] { good = buildRouting(settings); });
    return good;
}

bool CcUtilities::programmeRouting(const C435Settings& settings) {
    return prepareRouting(settings) && memory_.programme();
}

bool CcUtilities::buildRouting(const C435Settings& settings) {
    // Everything that the settings do not say is carried over from the old image.
    if (!state_.oldImageWhole()) {
        memory_.tellIncomplete();
        return false;
    }
    const CcShape shape = ccShape(state_.mech.mechType);
    switch (writeC435Settings(shape, settings, state_.images.old, state_.images.next)) {
        case C435Fault::path:
            tell(713, 712);
            return false;
        case C435Fault::binaryCode:
            tell(715, 714);
            return false;
        case C435Fault::none:
            break;
    }
    return confirm(709, 708, shape.words);
}

}  // namespace vantor
