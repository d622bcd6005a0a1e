#include "mars/PromUtilities.h"

#include "mars/MarsProm.h"

namespace vantor {

namespace {

constexpr UtilitiesErrors kErrors = {.openFromMain = 807,
                                     .load = 1305,
                                     .setup = 1314,
                                     .lists = 1313,
                                     .changeView = 1304,
                                     .display = 114,
                                     .read = 1303,
                                     .close = 1302};

}  // namespace

PromUtilities::PromUtilities(SessionState& state, ProgrammerLink& link, const Families& families,
                             ErrorReporter& errors, MemoryDisplay& display, PromDisplay& panes)
    : MemoryUtilities(state, link, errors, display, kErrors), families_(families), panes_(panes) {}

const MarsLayout& PromUtilities::layout() const {
    return marsModel(state_.mech.mechType).layout;
}

// --- opening -------------------------------------------------------------------

void PromUtilities::openFromMain() {
    MarsBracket bracket(link_);
    const auto step = [this](auto&& what) { errors_.attempt(kErrors.openFromMain, what); };
    step([&] { bracket.sendJ(); });
    step([this] {
        state_.prom.promSizeCode = 0;
        clearImages(state_.images);
    });
    step([this] { families_.selected().readMemory(); });
    open(false);
}

void PromUtilities::openFromLimits() {
    const auto step = [this](auto&& what) { errors_.attempt(kOpenFromLimitsError, what); };
    step([this] { link_.sendJ(); });
    step([this] { link_.sendJ(); });
    open(true);
}

void PromUtilities::prepare(bool fromLimits) {
    // What the limits window is about to program keeps its size and its segments.
    panes_.showPromSize(fromLimits ? state_.prom.promSizeCode : 0, !fromLimits);
    if (!fromLimits) state_.prom.segmentSelected.fill(true);
}

// --- working -------------------------------------------------------------------------------

void PromUtilities::chooseSize() {
    errors_.attempt(kSizeError, [this] { state_.prom.promSizeCode = panes_.shownPromSize(); });
    listViews();
    displayMemory();
}

void PromUtilities::readMemory() {
    MarsBracket bracket(link_);
    errors_.attempt(kErrors.read, [&] { bracket.sendJ(); });
    errors_.attempt(kErrors.read, [this] { families_.selected().readMemory(); });
    displayMemory();
}

std::vector<int> PromUtilities::viewCaptions() const {
    std::vector<int> captions;
    for (const PromView& view : promViews(layout(), panes_.shownPromSize())) {
        captions.push_back(view.caption);
    }
    return captions;
}

void PromUtilities::showView(std::size_t index) {
    const PromView view = promViews(layout(), panes_.shownPromSize())[index];
    const ImagesState& images = state_.images;
    if (!view.decoded) {
        panes_.showPanes(promRawText(images.old, view.half), promRawText(images.next, view.half));
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
    panes_.showPanes(read, next);
}

}  // namespace vantor
