#include "cc/EepromUtilities.h"

#include <string>
#include <vector>

namespace vantor {

namespace {

constexpr int kOpenFromMainError = 803;
constexpr int kOpenFromLimitsError = 1202;
constexpr int kCloseError = 700;

}  // namespace

// --- opening and closing -------------------------------------------------------------------

void EepromUtilities::openFromMain() {
    const auto step = [this](auto&& what) { errors_.attempt(kOpenFromMainError, what); };
    step([this] { applyMechType(state_.mech, state_.messages); });
    step([this] {
        family_.readMemory();
        family_.memory().settle();
    });
    state_.limits.utilitiesFromLimits = false;
    step([this] { open(); });
}

void EepromUtilities::openFromLimits() {
    const auto step = [this](auto&& what) { errors_.attempt(kOpenFromLimitsError, what); };
    step([this] { link_.sendJ(); });
    state_.limits.utilitiesFromLimits = true;
    step([this] { link_.sendJ(); });
    step([this] {
        family_.memory().readCcEeprom();
        family_.memory().settle();
    });
    step([this] { open(); });
}

void EepromUtilities::open() {
    errors_.attempt(721, [this] { display_.loadEepromWindow(); });
    setup();
    displayEEPROM();
    display_.showEepromWindow();
    if (leave) leave(state_.limits.utilitiesFromLimits);
}

void EepromUtilities::setup() {
    errors_.attempt(725, [this] {
        display_.showEepromMechType(state_.mech.mechType);
        std::vector<std::string> entries;
        for (const EepromViewEntry& entry : eepromViews()) {
            entries.push_back(state_.msgText(entry.caption));
        }
        display_.listEepromViews(entries);
    });
}

void EepromUtilities::closeWindow() {
    const auto step = [this](auto&& what) { errors_.attempt(kCloseError, what); };
    step([this] { display_.closeEepromWindow(); });
    step([this] {
        if (goBack) goBack(state_.limits.utilitiesFromLimits);
    });
    step([this] { link_.sendW(); });
}

// --- showing -------------------------------------------------------------------------------

void EepromUtilities::changeView() {
    errors_.attempt(707, [this] { displayEEPROM(); });
}

void EepromUtilities::displayEEPROM() {
    errors_.attempt(736, [this] {
        const int chosen = display_.chosenEepromView();
        const auto views = eepromViews();
        if (chosen < 0 || static_cast<std::size_t>(chosen) >= views.size()) return;
        showView(views[static_cast<std::size_t>(chosen)].view);
    });
}

void EepromUtilities::showView(EepromView view) {
    const CcShape shape = ccShape(state_.mech.mechType);
    const MechImage& image = state_.images.old;
    const auto text = [this](int number) { return state_.msgText(number); };
    switch (view) {
        case EepromView::words:
            display_.showEepromText(eepromWordsText(shape, image));
            break;
        case EepromView::limits: {
            const auto& names = state_.mech.info.paramNames;
            const auto shown = std::min(names.size(), static_cast<std::size_t>(shape.parameters));
            display_.showEepromText(
                eepromLimitsText(shape, image, std::span(names).first(shown), text));
            break;
        }
        case EepromView::other:
            if (shape.model.routing == CcRouting::c435) {
                display_.showC435Settings(c435Settings(image));
            } else {
                display_.showEepromText(eepromOtherText(shape, image, text));
            }
            break;
    }
}

// --- buttons -------------------------------------------------------------------------------

void EepromUtilities::readEeprom() {
    errors_.attempt(706, [this] { family_.utilities().readEeprom(); });
    displayEEPROM();
}

void EepromUtilities::saveToFile() {
    family_.utilities().saveToFile();
}

void EepromUtilities::programmeFromFile() {
    family_.utilities().eeProgramme();
    displayEEPROM();
}

void EepromUtilities::programmeRouting() {
    errors_.attempt(716, [this] {
        if (!family_.utilities().prepareRouting(display_.enteredC435Settings())) return;
        family_.memory().programme();
        displayEEPROM();
    });
}

}  // namespace vantor
