#include "cc/CcUtilities.h"

#include "catalogue/Text.h"
#include "cc/EepromFile.h"

namespace vantor {

namespace {

constexpr const char* kOpenTitle = "Open File";
constexpr MemoryFileTexts kFileTexts = {
    .saveTitle = 717, .overwrite = 718, .warning = 719, .noSuchFile = 701, .error = 702};

}  // namespace

CcUtilities::CcUtilities(SessionState& state, ProgrammerLink& link, Prompts& prompts,
                         ErrorReporter& errors, CcMemory& memory)
    : state_(state),
      link_(link),
      prompts_(prompts),
      errors_(errors),
      memory_(memory),
      files_(state, prompts, kFileTexts) {}

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
        files_.save([this] {
            return eepromFileText(state_.images.old, ccShape(state_.mech.mechType).words);
        });
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
    const auto opened = files_.open(kOpenTitle);
    if (!opened) return false;
    const EepromFile file = parseEepromFile(opened->text, ccShape(state_.mech.mechType).words);
    state_.images.next = file.image;
    files_.tellSkipped(opened->path, file.skipped, "words of an EEPROM");
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
            ccChecksum(shape, memory_.soundImage(), state_.images.next);
            break;
    }
    return confirm(709, 708, shape.words);
}

}  // namespace vantor
