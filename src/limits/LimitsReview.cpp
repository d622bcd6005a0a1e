#include "limits/LimitsReview.h"

#include <algorithm>
#include <stdexcept>

#include "catalogue/Text.h"
#include "limits/Overlap.h"

namespace vantor {

namespace {

constexpr int kOptions = 4;  ///< segment options of the window
/// A two-segment PROM offers the first two.
constexpr int kOptionsOfTwo = 2;
/// What Restore Limits empties before the transfer fills it again.
constexpr int kRestoredColumns = 6;
constexpr std::string_view kUnknownShare = "???";
constexpr float kPercent = 100.0F;

}  // namespace

LimitsReview::LimitsReview(SessionState& state, ProgrammerLink&, const Families& families,
                           Prompts& prompts, ErrorReporter& errors, LimitsDisplay& display)
    : state_(state), families_(families), prompts_(prompts), errors_(errors), display_(display) {}

int LimitsReview::firstChannel() const {
    return state_.limits.selectedSegment * state_.mech.info.channelsPerSegment + 1;
}

SegmentView LimitsReview::viewFrom(int first) const {
    const MechTypeInfo& info = state_.mech.info;
    return {.paramCount = info.paramCount,
            .channelCount = info.channelCount,
            .channelsPerSegment = info.channelsPerSegment,
            .firstChannel = first,
            .rules = families_.selected().limitRules()};
}

// --- laying out and showing ----------------------------------------------------------------

void LimitsReview::setupfrmPROM() {
    errors_.attempt(1234, [this] {
        const LimitsLayout layout = layoutOf(families_.selected());
        state_.limits.selectedSegment = layout.chosenSegment;
        display_.layOut(layout);
        // Emptying the boxes is nobody's edit.
        state_.limits.limitsEdited = false;
    });
}

LimitsLayout LimitsReview::layoutOf(const MechFamily& family) const {
    const FamilyLook look = family.look();
    const MechTypeInfo& info = state_.mech.info;
    LimitsLayout layout;
    layout.promSocket = look.promSocket;
    layout.displayCaption = look.displayCaption;
    layout.programCaption = look.programCaption;
    layout.utilitiesCaption = look.utilitiesCaption;
    layout.mechType = state_.mech.mechType;
    for (int p = 0; p < info.paramCount; ++p) {
        layout.paramNames.push_back(info.paramNames.at(static_cast<std::size_t>(p)));
    }
    const int caption = look.promSocket ? 1229 : 1233;
    for (int row = 0; row < info.channelsPerSegment; ++row) {
        layout.rowHeads.push_back(rowHead(caption, 0, row));
    }
    for (int i = 0; i < kOptions; ++i) {
        layout.segmentEnabled.at(static_cast<std::size_t>(i)) = i < info.segmentCount;
    }
    if (look.promSocket) {
        const bool twoK = state_.prom.promSizeCode == 1 || family.twoSegmentProm();
        layout.promSize = twoK ? "2K" : "1K";
        chooseSelectedSegments(family, layout);
    }
    return layout;
}

void LimitsReview::chooseSelectedSegments(const MechFamily& family, LimitsLayout& layout) const {
    const PromState& prom = state_.prom;
    const bool two = prom.promSizeCode != 1 || family.twoSegmentProm();
    for (int i = kOptions - 1; i >= 0; --i) {
        const bool offered = prom.segmentSelected[i] && (i < kOptionsOfTwo || !two);
        layout.segmentEnabled.at(static_cast<std::size_t>(i)) = offered;
        if (offered) layout.chosenSegment = i;
    }
}

std::string LimitsReview::rowHead(int captionMessage, int segment, int row) const {
    const std::string caption = state_.msgText(captionMessage);
    if (families_.selected().look().promSocket) {
        return caption + static_cast<char>('A' + row) + std::to_string(segment + 1);
    }
    return caption + padded(segment * state_.mech.info.channelsPerSegment + row + 1, 2);
}

void LimitsReview::selectSegment(int index) {
    errors_.attempt(1239, [&] {
        if (state_.limits.limitsEdited) {
            prompts_.ask({.title = state_.msgText(1236),
                          .text = state_.msgText(1235),
                          .icon = PromptIcon::information});
            // The boxes still show the segment that was edited; taking them over redisplays it.
            changeLimits();
        }
        showSegment(index);
    });
}

void LimitsReview::showSegment(int segment) {
    const int perSegment = state_.mech.info.channelsPerSegment;
    if (segment < 0 || segment >= kOptions || (segment + 1) * perSegment > kChannels) {
        throw std::out_of_range("No segment " + std::to_string(segment + 1));
    }
    state_.limits.limitsEdited = false;
    state_.limits.selectedSegment = segment;
    display_.chooseSegment(segment);
    const int caption = families_.selected().look().promSocket ? 1237 : 1238;
    for (int row = 0; row < perSegment; ++row) {
        display_.setRowHead(row, rowHead(caption, segment, row));
    }
    fillBoxes();
    rejudge();
    state_.limits.limitsEdited = false;
}

void LimitsReview::fillBoxes() {
    for (int row = 0; row < state_.mech.info.channelsPerSegment; ++row) {
        const auto& columns = state_.limits.channelLimits[firstChannel() + row];
        for (int column = 1; column <= 2 * state_.n(); ++column) {
            display_.setLimit(row, column, std::to_string(columns[column]));
        }
    }
}

void LimitsReview::showSlugLimits() {
    const LimitsState& limits = state_.limits;
    for (int slug = 1; slug <= limits.slugCount; ++slug) {
        const auto& columns = state_.coinTable.itemLimits[limits.slugList[slug]];
        for (int column = 1; column <= 2 * state_.n(); ++column) {
            display_.setSlugLimit(slug, column, spacedNumber(columns[column + 1]));
        }
    }
}

// --- judging -------------------------------------------------------------------------------

void LimitsReview::rejudge() {
    clearColors();
    checkOverlaps(firstChannel());
    calcAcceptance(firstChannel());
}

void LimitsReview::clearColors() {
    errors_.attempt(1222, [this] { display_.clearColours(); });
}

void LimitsReview::checkOverlaps(int first) {
    errors_.attempt(1223, [&] {
        const SegmentView view = viewFrom(first);
        const OverlapMarks marks = findOverlaps(state_.limits, state_.coinTable, view);
        for (int row = 0; row < view.channelsPerSegment; ++row) {
            if (marks.coinOverlap[first + row]) display_.colourRow(row, kYellow);
            if (marks.slugOverlap[first + row]) display_.colourRow(row, kCyan);
        }
        for (int slug = 1; slug <= kMostSlugs; ++slug) {
            if (marks.slug[slug]) display_.colourSlug(slug, kCyan);
        }
    });
}

void LimitsReview::calcAcceptance(int first) {
    errors_.attempt(1224, [&] {
        LimitsState& limits = state_.limits;
        const SegmentView view = viewFrom(first);
        for (int channel = 1; channel <= kChannels; ++channel) {
            limits.acceptanceEstimate[channel] =
                acceptanceOf(channel, limits, state_.coinTable, view);
        }
        for (int slug = 1; slug <= limits.slugCount; ++slug) {
            limits.rejectionEstimate[slug] =
                rejectionOf(limits.slugList[slug], limits, state_.coinTable, view);
        }
    });
    displayAcceptance(first);
}

void LimitsReview::displayAcceptance(int first) {
    errors_.attempt(1225, [&] {
        const LimitsState& limits = state_.limits;
        for (int row = 0; row < state_.mech.info.channelsPerSegment; ++row) {
            const int channel = first + row;
            const bool fromMemory = state_.coinset.oldChannelSource[channel] >= 1;
            display_.setAcceptance(
                row, fromMemory ? std::string(kUnknownShare)
                                : oneDecimal(limits.acceptanceEstimate[channel] * kPercent));
        }
        for (int slug = 1; slug <= kMostSlugs; ++slug) {
            display_.setRejection(slug, oneDecimal(limits.rejectionEstimate[slug] * kPercent));
        }
    });
}

// --- editing -------------------------------------------------------------------------------

void LimitsReview::changeLimits() {
    errors_.attempt(1201, [this] { storeBoxes(); });
    // Taken over, whatever follows: else the redisplay below would take them over again.
    state_.limits.limitsEdited = false;
    errors_.attempt(1201, [this] {
        state_.limits.changeFlag = true;
        families_.selected().rebuildImage();
    });
    selectSegment(state_.limits.selectedSegment);
}

void LimitsReview::storeBoxes() {
    const int capacity = families_.selected().limitRules().capacity;
    for (int row = 0; row < state_.mech.info.channelsPerSegment; ++row) {
        auto& columns = state_.limits.channelLimits[firstChannel() + row];
        for (int column = 1; column <= 2 * state_.n(); ++column) {
            const int typed = lenientInteger(display_.limitText(row, column));
            columns[column] = std::clamp(typed, 0, capacity);
        }
    }
}

void LimitsReview::restoreLimits() {
    errors_.attempt(1220, [this] {
        for (auto& columns : state_.limits.channelLimits) {
            for (int column = 1; column <= kRestoredColumns; ++column) columns[column] = 0;
        }
        state_.limits.limitsEdited = false;
        if (transfer_) transfer_();
    });
}

// --- programming ---------------------------------------------------------------------------

bool LimitsReview::takesPendingEdits() {
    if (!state_.limits.limitsEdited) return true;
    const Answer answer =
        prompts_.ask({.title = state_.msgText(1205),
                      .text = state_.msgText(1203) + std::string(kCrLf) + state_.msgText(1204),
                      .icon = PromptIcon::question,
                      .buttons = PromptButtons::okCancel});
    if (answer == Answer::cancel) return false;
    changeLimits();
    return true;
}

void LimitsReview::programNew() {
    errors_.attempt(1219, [this] {
        if (!takesPendingEdits()) return;
        const bool programmed = families_.selected().programAndVerify();
        // A duplicated segment has new limits; what is displayed must be what was programmed.
        if (!state_.limits.limitsEdited) showSegment(state_.limits.selectedSegment);
        if (programmed) display_.enableValidatorTest(true);
    });
}

}  // namespace vantor
