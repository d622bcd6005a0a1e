#include "nri/NriMemoryUtilities.h"

namespace vantor {

namespace {

constexpr UtilitiesErrors kErrors = {.openFromMain = 802,
                                     .load = 921,
                                     .setup = 926,
                                     .lists = 926,
                                     .changeView = 916,
                                     .display = 959,
                                     .read = 915,
                                     .save = 920,
                                     .programme = 914,
                                     .close = 900};

}  // namespace

NriMemoryUtilities::NriMemoryUtilities(SessionState& state, ProgrammerLink& link,
                                       ErrorReporter& errors, NriFamily& family,
                                       MemoryDisplay& display)
    : MemoryUtilities(state, link, errors, display, kErrors), family_(family) {}

// --- opening -------------------------------------------------------------------------------

void NriMemoryUtilities::openFromMain() {
    const auto step = [this](auto&& what) { errors_.attempt(kErrors.openFromMain, what); };
    step([this] { applyMechType(state_.mech, state_.messages); });
    step([this] { family_.readMemory(); });
    open(false);
}

void NriMemoryUtilities::openFromLimits() {
    const auto step = [this](auto&& what) { errors_.attempt(kOpenFromLimitsError, what); };
    step([this] { link_.sendJ(); });
    step([this] { link_.sendJ(); });
    step([this] { family_.readMemory(); });
    open(true);
}

// --- showing -------------------------------------------------------------------------------

std::vector<int> NriMemoryUtilities::viewCaptions() const {
    std::vector<int> captions;
    for (const NriView& view : family_.utilities().views()) captions.push_back(view.caption);
    return captions;
}

void NriMemoryUtilities::showView(std::size_t view) {
    display_.showText(family_.utilities().text(family_.utilities().views().at(view).page));
}

// --- buttons -------------------------------------------------------------------------------

void NriMemoryUtilities::readMemory() {
    errors_.attempt(kErrors.read, [this] { family_.utilities().readMemory(); });
    displayMemory();
}

void NriMemoryUtilities::saveToFile() {
    family_.utilities().saveToFile();
}

void NriMemoryUtilities::programmeFromFile() {
    errors_.attempt(kErrors.programme, [this] {
        if (family_.utilities().NRIprogramme()) family_.readMemory();
    });
    displayMemory();
}

}  // namespace vantor
