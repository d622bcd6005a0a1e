#include "link/MemoryUtilities.h"

namespace vantor {

void MemoryUtilities::open(bool fromLimits) {
    state_.limits.utilitiesFromLimits = fromLimits;
    errors_.attempt(fromLimits ? kOpenFromLimitsError : numbers_.openFromMain,
                    [this] { bringUp(); });
}

void MemoryUtilities::bringUp() {
    const bool fromLimits = state_.limits.utilitiesFromLimits;
    errors_.attempt(numbers_.load, [this] { display_.loadWindow(); });
    errors_.attempt(numbers_.setup, [&] {
        display_.showMechType(state_.mech.mechType);
        prepare(fromLimits);
    });
    listViews();
    displayMemory();
    display_.showWindow();
    if (leave) leave(fromLimits);
}

void MemoryUtilities::listViews() {
    errors_.attempt(numbers_.lists, [this] {
        std::vector<std::string> entries;
        for (const int caption : viewCaptions()) entries.push_back(state_.msgText(caption));
        display_.listViews(entries);
    });
}

void MemoryUtilities::changeView() {
    errors_.attempt(numbers_.changeView, [this] { displayMemory(); });
}

void MemoryUtilities::displayMemory() {
    errors_.attempt(numbers_.display, [this] {
        const int chosen = display_.chosenView();
        if (chosen < 0) return;
        const auto view = static_cast<std::size_t>(chosen);
        if (view < viewCaptions().size()) showView(view);
    });
}

void MemoryUtilities::closeWindow() {
    const auto step = [this](auto&& what) { errors_.attempt(numbers_.close, what); };
    step([this] { display_.closeWindow(); });
    step([this] {
        if (goBack) goBack(state_.limits.utilitiesFromLimits);
    });
    step([this] { link_.sendW(); });
}

}  // namespace vantor
