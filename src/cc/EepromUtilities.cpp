#include "cc/EepromUtilities.h"

#include <algorithm>

namespace vantor {

namespace {

constexpr UtilitiesErrors kErrors = {.openFromMain = 803,
                                     .load = 721,
                                     .setup = 725,
                                     .lists = 725,
                                     .changeView = 707,
                                     .display = 736,
                                     .read = 706,
                                     .save = 720,
                                     .programme = 705,
                                     .close = 700};

}  // namespace

EepromUtilities::EepromUtilities(SessionState& state, ProgrammerLink& link, ErrorReporter& errors,
                                 CcFamily& family, MemoryDisplay& display, RoutingDisplay& boxes)
    : MemoryUtilities(state, link, errors, display, kErrors), family_(family), boxes_(boxes) {}

// --- opening -------------------------------------------------------------------------------

void EepromUtilities::openFromMain() {
    const auto step = [this](auto&& what) { errors_.attempt(kErrors.openFromMain, what); };
    step([this] { applyMechType(state_.mech, state_.messages); });
    step([this] {
        family_.readMemory();
        family_.memory().settle();
    });
    open(false);
}

void EepromUtilities::openFromLimits() {
    const auto step = [this](auto&& what) { errors_.attempt(kOpenFromLimitsError, what); };
    step([this] { link_.sendJ(); });
    step([this] { link_.sendJ(); });
    step([this] {
        family_.memory().readCcEeprom();
        family_.memory().settle();
    });
    open(true);
}

// --- showing -------------------------------------------------------------------------------

std::vector<int> EepromUtilities::viewCaptions() const {
    std::vector<int> captions;
    for (const EepromViewEntry& entry : eepromViews()) captions.push_back(entry.caption);
    return captions;
}

void EepromUtilities::showView(std::size_t view) {
    const CcShape shape = ccShape(state_.mech.mechType);
    const MechImage& image = state_.images.old;
    const auto text = [this](int number) { return state_.msgText(number); };
    switch (eepromViews()[view].view) {
        case EepromView::words:
            display_.showText(eepromWordsText(shape, image));
            break;
        case EepromView::limits: {
            const auto& names = state_.mech.info.paramNames;
            const auto shown = std::min(names.size(), static_cast<std::size_t>(shape.parameters));
            display_.showText(eepromLimitsText(shape, image, std::span(names).first(shown), text));
            break;
        }
        case EepromView::other:
            if (shape.model.routing == CcRouting::c435) {
                boxes_.showC435Settings(c435Settings(image));
            } else {
                display_.showText(eepromOtherText(shape, image, text));
            }
            break;
    }
}

// --- buttons -------------------------------------------------------------------------------

void EepromUtilities::readMemory() {
    errors_.attempt(kErrors.read, [this] { family_.utilities().readEeprom(); });
    displayMemory();
}

void EepromUtilities::saveToFile() {
    family_.utilities().saveToFile();
}

void EepromUtilities::programmeFromFile() {
    family_.utilities().eeProgramme();
    displayMemory();
}

void EepromUtilities::programmeRouting() {
    errors_.attempt(kRoutingError, [this] {
        if (!family_.utilities().prepareRouting(boxes_.enteredC435Settings())) return;
        family_.memory().programme();
        displayMemory();
    });
}

}  // namespace vantor
