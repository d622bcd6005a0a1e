#include "nri/NriMemoryUtilities.h"

#include <string>
#include <vector>

namespace vantor {

namespace {

constexpr int kOpenFromMainError = 802;
constexpr int kOpenFromLimitsError = 1202;
constexpr int kCloseError = 900;

}  // namespace

// --- opening and closing -------------------------------------------------------------------

void NriMemoryUtilities::openFromMain() {
    const auto step = [this](auto&& what) { errors_.attempt(kOpenFromMainError, what); };
    step([this] { applyMechType(state_.mech, state_.messages); });
    step([this] { family_.readMemory(); });
    state_.limits.utilitiesFromLimits = false;
    step([this] { open(); });
}

void NriMemoryUtilities::openFromLimits() {
    const auto step = [this](auto&& what) { errors_.attempt(kOpenFromLimitsError, what); };
    step([this] { link_.sendJ(); });
    state_.limits.utilitiesFromLimits = true;
    step([this] { link_.sendJ(); });
    step([this] { family_.readMemory(); });
    step([this] { open(); });
}

void NriMemoryUtilities::open() {
    errors_.attempt(921, [this] { display_.loadNriWindow(); });
    setup();
    displayEEPROM();
    display_.showNriWindow();
    if (leave) leave(state_.limits.utilitiesFromLimits);
}

void NriMemoryUtilities::setup() {
    errors_.attempt(926, [this] {
        display_.showNriMechType(state_.mech.mechType);
        std::vector<std::string> entries;
        for (const NriView& view : family_.utilities().views()) {
            entries.push_back(state_.msgText(view.caption));
        }
        display_.listNriViews(entries);
    });
}

void NriMemoryUtilities::closeWindow() {
    const auto step = [this](auto&& what) { errors_.attempt(kCloseError, what); };
    step([this] { display_.closeNriWindow(); });
    step([this] {
        if (goBack) goBack(state_.limits.utilitiesFromLimits);
    });
    step([this] { link_.sendW(); });
}

// --- showing -------------------------------------------------------------------------------

void NriMemoryUtilities::changeView() {
    errors_.attempt(916, [this] { displayEEPROM(); });
}

void NriMemoryUtilities::displayEEPROM() {
    errors_.attempt(959, [this] {
        const int chosen = display_.chosenNriView();
        const auto views = family_.utilities().views();
        if (chosen < 0 || static_cast<std::size_t>(chosen) >= views.size()) return;
        const NriPage page = views[static_cast<std::size_t>(chosen)].page;
        display_.showNriText(family_.utilities().text(page));
    });
}

// --- buttons -------------------------------------------------------------------------------

void NriMemoryUtilities::readMemory() {
    errors_.attempt(915, [this] { family_.utilities().readMemory(); });
    displayEEPROM();
}

void NriMemoryUtilities::saveToFile() {
    family_.utilities().saveToFile();
}

void NriMemoryUtilities::programmeFromFile() {
    errors_.attempt(914, [this] {
        if (family_.utilities().NRIprogramme()) family_.readMemory();
    });
    displayEEPROM();
}

}  // namespace vantor
