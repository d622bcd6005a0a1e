#include "mars/PromUtilities.h"

#include <string>
#include <vector>

#include "mars/MarsProm.h"

namespace vantor {

namespace {

constexpr int kOpenFromMainError = 807;
constexpr int kOpenFromLimitsError = 1202;
constexpr int kCloseError = 1302;
constexpr int kReadError = 1303;

}  // namespace

const MarsLayout& PromUtilities::layout() const {
    return marsModel(state_.mech.mechType).layout;
}

// --- opening and closing -------------------------------------------------------------------

void PromUtilities::openFromMain() {
    MarsBracket bracket(link_);
    const auto step = [this](auto&& what) { errors_.attempt(kOpenFromMainError, what); };
    step([&] { bracket.sendJ(); });
    step([this] {
        state_.prom.promSizeCode = 0;
        clearImages(state_.images);
    });
    step([this] { families_.selected().readMemory(); });
    state_.limits.utilitiesFromLimits = false;
    step([this] { open(); });
}

void PromUtilities::openFromLimits() {
    const auto step = [this](auto&& what) { errors_.attempt(kOpenFromLimitsError, what); };
    step([this] { link_.sendJ(); });
    state_.limits.utilitiesFromLimits = true;
    step([this] { link_.sendJ(); });
    step([this] { open(); });
}

void PromUtilities::open() {
    const bool fromLimits = state_.limits.utilitiesFromLimits;
    errors_.attempt(1305, [this] { display_.loadPromWindow(); });
    setup(fromLimits);
    displayPROM();
    display_.showPromWindow();
    if (leave) leave(fromLimits);
}

void PromUtilities::closeWindow() {
    const auto step = [this](auto&& what) { errors_.attempt(kCloseError, what); };
    step([this] { display_.closePromWindow(); });
    step([this] {
        if (goBack) goBack(state_.limits.utilitiesFromLimits);
    });
    step([this] { link_.sendW(); });
}

void PromUtilities::setup(bool fromLimits) {
    errors_.attempt(1314, [&] {
        display_.showPromMechType(state_.mech.mechType);
        // What the limits window is about to program keeps its size and its segments.
        display_.showPromSize(fromLimits ? state_.prom.promSizeCode : 0, !fromLimits);
        if (!fromLimits) state_.prom.segmentSelected.fill(true);
    });
    setupLists();
}

void PromUtilities::setupLists() {
    errors_.attempt(1313, [this] {
        std::vector<std::string> entries;
        for (const PromView& view : promViews(layout(), display_.shownPromSize())) {
            entries.push_back(state_.msgText(view.caption));
        }
        display_.listViews(entries);
    });
}

// --- working -------------------------------------------------------------------------------

void PromUtilities::chooseSize() {
    errors_.attempt(1301, [this] { state_.prom.promSizeCode = display_.shownPromSize(); });
    setupLists();
    displayPROM();
}

void PromUtilities::readPROM() {
    MarsBracket bracket(link_);
    errors_.attempt(kReadError, [&] { bracket.sendJ(); });
    errors_.attempt(kReadError, [this] { families_.selected().readMemory(); });
    displayPROM();
}

void PromUtilities::displayPROM() {
    errors_.attempt(114, [this] {
        const auto views = promViews(layout(), display_.shownPromSize());
        const int chosen = display_.chosenView();
        if (chosen >= 0 && static_cast<std::size_t>(chosen) < views.size()) {
            showView(views[static_cast<std::size_t>(chosen)]);
        }
    });
}

void PromUtilities::showView(const PromView& view) {
    const ImagesState& images = state_.images;
    if (!view.decoded) {
        display_.showPanes(promRawText(images.old, view.half), promRawText(images.next, view.half));
        return;
    }
    const auto text = [this](int id) { return state_.msgText(id); };
    const PromHeadings readHeadings{text(108), text(110), text(112)};
    const PromHeadings newHeadings{text(109), text(111), text(113)};
    std::string read =
        promLimitsText(readHeadings, decodePromLimits(images.old, layout(), view.half), view.half);
    std::string next = promLimitsText(newHeadings, state_.limits.channelLimits, view.half);
    if (layout().coinValues) {
        state_.prom.oldChannelValue = marsCoinValues(images.old);
        CoinValues newValues;
        for (int channel = 1; channel <= kMarsValueChannels; ++channel) {
            newValues[channel] = state_.nriNew.newCoinValue[channel];
        }
        read += promValuesText(readHeadings, state_.prom.oldChannelValue);
        next += promValuesText(newHeadings, newValues);
    }
    display_.showPanes(read, next);
}

}  // namespace vantor
