#include "mars/MarsFamily.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "catalogue/Text.h"
#include "mars/MarsModels.h"

namespace vantor {

namespace {

constexpr int kHighestLimit = 4095;
constexpr int kHighestCoinValue = 255;
constexpr std::uint32_t kBlue = 0x0000FF;
constexpr int kTimingAttempts = 6;
constexpr int kReplyMs = 800;
constexpr int kStatusMs = 500;
constexpr int kBeforeStatusMs = 500;
constexpr int kSecondStatusMs = 1000;

}  // namespace

MarsFamily::MarsFamily(SessionState& state, ProgrammerLink& link, Prompts& prompts,
                       ErrorReporter& errors, ProgressDisplay& progress)
    : state_(state),
      link_(link),
      prompts_(prompts),
      errors_(errors),
      prom_(state, link, prompts, errors, progress) {}

const MarsModel& MarsFamily::model() const {
    return marsModel(state_.mech.mechType);
}

FamilyLook MarsFamily::look() const {
    return {.name = "Mars",
            .colour = kBlue,
            .duplicateCaption = 548,
            .displayCaption = 1226,
            .programCaption = 1227,
            .utilitiesCaption = 1228,
            .promSocket = true};
}

LimitRules MarsFamily::limitRules() const {
    return {.capacity = kHighestLimit, .displayedSegmentOnly = true};
}

CoinsetRules MarsFamily::coinsetRules() const {
    return {.promLine = true, .idleWaitMs = model().idleWaitMs, .alwaysReadsOldMemory = false};
}

bool MarsFamily::hasCoinValue() const {
    return model().layout.coinValues;
}

bool MarsFamily::twoSegmentProm() const {
    return model().alwaysTwoK;
}

// --- connection check ----------------------------------------------------------------------

void MarsFamily::bracketCfd() {
    if (!model().cfdBracketed) return;
    link_.sendW();
    link_.sendString("CFD");
    link_.sendJ();
}

void MarsFamily::beforeStatus() {
    bracketCfd();
    link_.waitOut(kBeforeStatusMs);
}

void MarsFamily::afterStatus(bool detect) {
    const BoxReplies& box = state_.box;
    if (!box.statusReceived || (detect && !box.mechPresent)) {
        link_.waitOut(kSecondStatusMs);
        link_.sendAndWait("S");
        link_.waitFor(kStatusMs, box.statusReceived);
    }
    link_.sendW();
}

bool MarsFamily::prepareValidatorTest() {
    setupMarsTimings(state_.mech.mechType);
    return true;
}

// --- measuring -----------------------------------------------------------------------------

void MarsFamily::enableCoinData(int) {
    errors_.attempt(312, [this] { link_.sendString("N"); });
}

void MarsFamily::disableCoinData() {
    errors_.attempt(313, [this] { link_.sendString("I"); });
}

bool MarsFamily::readingValid() const {
    int parameter = 0;
    return std::ranges::all_of(state_.gather.readingRange, [&](const ReadingRange& range) {
        const int value = state_.gather.latestReading[parameter++];
        return value >= range.low && value <= range.high;
    });
}

void MarsFamily::startMeasuring() {
    // The box is silent after it. A technician who has just cancelled does not wait for that.
    if (state_.gather.abortFlag) {
        link_.sendString("M");
    } else {
        link_.sendAndWait("M");
    }
}

void MarsFamily::startRun() {
    const bool& cancelled = state_.gather.abortFlag;
    setupMarsTimings(state_.mech.mechType);
    link_.sendAndWait("M", cancelled);
    if (cancelled) return;
    link_.sendString("I");
    bracketCfd();
}

void MarsFamily::setupMarsTimings(std::string_view mechType) {
    const MarsModel& wanted = marsModel(mechType);
    const bool& cancelled = state_.gather.abortFlag;
    bool taken = false;
    for (int attempt = 0; attempt < kTimingAttempts && !taken && !cancelled; ++attempt) {
        errors_.attempt(220, [&] { taken = timingsAttempt(wanted); });
    }
    if (taken || cancelled) return;
    prompts_.ask({.title = state_.msgText(219),
                  .text = state_.msgText(218),
                  .icon = PromptIcon::information});
}

bool MarsFamily::timingsAttempt(const MarsModel& wanted) {
    const BoxReplies& box = state_.box;
    if (!wanted.commandBeforeTimings.empty()) link_.sendString(wanted.commandBeforeTimings);
    const bool& cancelled = state_.gather.abortFlag;
    link_.sendAndWait(std::string(wanted.timingCommand) + '\r', cancelled);
    if (cancelled) return false;
    // Not sendAndWait: a stray line must not pass for the status, nor old timings for new ones.
    state_.box.statusReceived = false;
    link_.sendString("S");
    link_.waitFor(kReplyMs, [&] { return box.statusReceived || cancelled; });
    if (!box.statusReceived) return false;
    const std::string readBack = "Z" + padded(box.timing1, 3) + padded(box.timing2, 3) +
                                 padded(box.timing3, 3) + padded(box.timing4, 3);
    return readBack == wanted.timingCommand;
}

// --- wizards ------------------------------------------------------------------------------

WizardPanel MarsFamily::wizardPanel() const {
    return {.coinCaption = 426, .coinValue = model().layout.coinValues};
}

bool MarsFamily::keepsChannel(int channel) const {
    const int size = model().alwaysTwoK ? 1 : state_.prom.promSizeCode;
    return marsPromHasChannel(model().layout, size, channel);
}

bool MarsFamily::startWizard(const WizardInputs& inputs) {
    if (!model().layout.coinValues || inputs.mode != WizardMode::addReplace) return true;
    if (inputs.coinValue < 0 || inputs.coinValue > kHighestCoinValue) {
        const std::string line(kCrLf);
        prompts_.ask(
            {.title = state_.msgText(478),
             .text = state_.msgText(476) + line + line + "0 - " + std::to_string(kHighestCoinValue),
             .icon = PromptIcon::critical});
        return false;
    }
    state_.nriNew.newCoinValue[inputs.channel] = inputs.coinValue;
    return true;
}

// --- memory --------------------------------------------------------------------------------

void MarsFamily::readOldMemory() {
    if (!readOldMarsProm()) return;
    prompts_.ask({.title = {}, .text = state_.msgText(423), .buttons = PromptButtons::okCancel});
}

bool MarsFamily::readOldMarsProm() {
    MarsBracket bracket(link_);
    if (model().alwaysTwoK) state_.prom.promSizeCode = 1;
    const std::string line(kCrLf);
    const Answer answer =
        prompts_.ask({.title = state_.msgText(422),
                      .text = state_.msgText(420) + line + line + state_.msgText(421),
                      .buttons = PromptButtons::okCancel});
    if (answer == Answer::cancel) return false;
    bracket.sendJ();
    // Half a PROM would pass for limits of 0: what was not read is not taken over.
    if (prom_.readMemory()) {
        for (int cell = 0; cell < kMarsPromCells; ++cell) {
            state_.images.carryOver[cell] = state_.images.old[cell];
        }
        copyOldMemoryData();
        state_.images.oldMemoryRead = true;
    }
    return true;
}

void MarsFamily::copyOldMemoryData() {
    for (int channel = 1; channel <= kChannels; ++channel) {
        const int source = std::abs(state_.coinset.oldChannelSource[channel]);
        if (source != 0) errors_.attempt(118, [&] { copyChannel(channel, source); });
    }
    if (model().layout.coinValues) errors_.attempt(118, [this] { copyCoinValues(); });
}

void MarsFamily::copyChannel(int channel, int source) {
    const MarsLayout& layout = model().layout;
    if (layout.coinValues && source > kMarsValueChannels) {
        prompts_.ask({.title = state_.msgText(102),
                      .text = state_.msgText(117),
                      .icon = PromptIcon::critical});
        return;
    }
    if (!marsPromHasChannel(layout, state_.prom.promSizeCode, source)) {
        throw std::out_of_range("The old PROM has no channel " + std::to_string(source));
    }
    copyMarsChannel(state_.images.carryOver, layout, source, state_.limits.channelLimits, channel);
}

void MarsFamily::copyCoinValues() {
    const CoinValues old = marsCoinValues(state_.images.carryOver);
    state_.prom.oldChannelValue = old;
    for (int channel = 1; channel <= kMarsValueChannels; ++channel) {
        const int source = std::abs(state_.coinset.oldChannelSource[channel]);
        if (source >= 1 && source <= kMarsValueChannels) {
            state_.nriNew.newCoinValue[channel] = old[source];
        }
    }
}

void MarsFamily::rebuildImage() {
    MechImage& image = state_.images.next;
    const MarsLayout& layout = model().layout;
    const SegmentFlags& selected = state_.prom.segmentSelected;
    // What is looked at afterwards is the PROM that will be programmed, whatever a coinset said.
    if (model().alwaysTwoK) state_.prom.promSizeCode = 1;
    if (layout.coinValues) image.fill(0);
    errors_.attempt(115, [&] {
        for (int segment = 0; segment < kMarsSegments; ++segment) {
            if (selected[segment]) mapMarsSegment(image, state_.limits.channelLimits, segment);
        }
    });
    if (layout.coinValues) {
        errors_.attempt(205, [&] {
            CoinValues values;
            for (int channel = 1; channel <= kMarsValueChannels; ++channel) {
                values[channel] = state_.nriNew.newCoinValue[channel];
            }
            remapME181(image, values);
        });
    }
    errors_.attempt(200, [&] {
        addCoinsetReference(image, layout, selected, state_.coinset.referenceCode,
                            state_.coinset.version);
    });
    errors_.attempt(100, [&] { setChangeFlag(image, layout, selected, state_.limits.changeFlag); });
}

bool MarsFamily::takesChannelsOver() const {
    return std::ranges::any_of(state_.coinset.oldChannelSource,
                               [](int source) { return source != 0; });
}

bool MarsFamily::programAndVerify() {
    // Without its old limits a kept coin would be programmed away.
    if (takesChannelsOver() && !state_.images.oldMemoryRead) {
        prom_.tellReadFailure();
        return false;
    }
    return prom_.programAndVerify();
}

}  // namespace vantor
