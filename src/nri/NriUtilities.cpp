#include "nri/NriUtilities.h"

#include "nri/NriDataFile.h"

namespace vantor {

namespace {

constexpr MemoryFileTexts kFileTexts = {
    .saveTitle = 917, .overwrite = 918, .warning = 919, .noSuchFile = 904, .error = 905};

}  // namespace

NriUtilities::NriUtilities(SessionState& state, ProgrammerLink& link, Prompts& prompts,
                           ErrorReporter& errors, NriMemory& memory)
    : state_(state),
      link_(link),
      prompts_(prompts),
      errors_(errors),
      memory_(memory),
      files_(state, prompts, kFileTexts) {}

bool NriUtilities::readMemory() {
    const NriFlow flow(state_, link_);
    return memory_.readNriMemory();
}

void NriUtilities::saveToFile() {
    errors_.attempt(920,
                    [this] { files_.save([this] { return nriFileText(state_.nri.blocks); }); });
}

bool NriUtilities::NRIprogramme() {
    bool good = false;
    errors_.attempt(914, [&] { good = programFile(); });
    return good;
}

bool NriUtilities::programFile() {
    const auto opened = files_.open(state_.msgText(903));
    if (!opened) return false;
    const NriDataFile file = parseNriFile(opened->text);
    files_.tellSkipped(opened->path, file.skipped, "blocks of a memory");
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
