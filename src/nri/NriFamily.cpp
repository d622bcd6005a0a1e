#include "nri/NriFamily.h"

#include <cstdlib>

#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr int kHighestLimit = 255;
constexpr std::uint32_t kRed = 0xFF0000;
constexpr int kOutputLines = 6;
constexpr int kReadingSetupFailure = 133;

}  // namespace

NriFamily::NriFamily(SessionState& state, ProgrammerLink& link, MechCheck& check, Prompts& prompts,
                     ErrorReporter& errors, ProgressDisplay& progress, const Calendar& calendar,
                     const MessageSinks& sinks, InterfaceProbe probe)
    : state_(state),
      link_(link),
      check_(check),
      prompts_(prompts),
      errors_(errors),
      comms_(state, link, check, prompts, errors, std::move(probe)),
      memory_(state, link, prompts, errors, progress, calendar, comms_),
      utilities_(state, link, prompts, errors, memory_),
      coinData_(state, link, check, prompts, errors, comms_, sinks) {}

FamilyLook NriFamily::look() const {
    return {.name = "NRI", .colour = kRed};
}

LimitRules NriFamily::limitRules() const {
    return {.capacity = kHighestLimit, .reversedIsEmpty = true};
}

CoinsetRules NriFamily::coinsetRules() const {
    return {.slugCode = comms_.model().slugCode};
}

// --- connection check ----------------------------------------------------------------------

void NriFamily::probeMech() {
    bool present = false;
    errors_.attempt(126, [&] { present = comms_.setupNriComms(); });
    errors_.attempt(126, [this] { comms_.settle(); });
    // Last: leaving serial mode may have asked the box, whose status line knows no NRI mech.
    state_.box.mechPresent = present;
}

bool NriFamily::prepareValidatorTest() {
    return comms_.setupNriComms();
}

// --- measuring -----------------------------------------------------------------------------

void NriFamily::enableCoinData(int channel) {
    bool answered = false;
    errors_.attempt(312, [&] {
        if (!mapsReady(channel)) return;
        answered = comms_.setupNriComms();
        if (answered) {
            coinData_.getNriReadings(channel);
            return;
        }
        comms_.settle();
        if (!state_.gather.abortFlag) memory_.tellSetupFailure(kReadingSetupFailure);
    });
    // Without the mech no coin will ever come.
    if (!answered) state_.gather.abortFlag = true;
}

void NriFamily::disableCoinData() {
    errors_.attempt(313, [this] { check_.leaveSerialMode(); });
}

/// The coin's parameter map stands in the new fields; false ends the run.
bool NriFamily::mapsReady(int channel) {
    const NriShape of = shape();
    if (!of.model.mappedReadings || state_.gather.wizardRun) return true;
    if (channel < 1 || channel > of.channels) return true;
    if (state_.nriNew.parameterString.empty() && !state_.images.oldMemoryRead) {
        if (!memory_.readNriMemory()) return false;
        keepOldMemory();
    }
    seedFields();
    return true;
}

// --- wizards -------------------------------------------------------------------------------

WizardPanel NriFamily::wizardPanel() const {
    return {.coinValue = true, .lines = comms_.model().blocks == NriBlocks::outputs};
}

bool NriFamily::startWizard(const WizardInputs& inputs) {
    if (!memory_.readNriMemory()) return false;
    keepOldMemory();
    NriFields& next = state_.nri.next;
    next = state_.nri.old;
    takeFieldsOver();
    const NriShape of = shape();
    if (of.model.mappedReadings && inputs.channel <= of.channels) {
        for (int p = 1; p <= of.parameters; ++p) {
            next.parameterMap[inputs.channel][p] =
                of.model.wizardMap.at(static_cast<std::size_t>(p - 1));
        }
    }
    if (next.valueMultiplier <= 0) next.valueMultiplier = 1;
    if (!takeCoinValue(inputs)) return false;
    takeOutputs(inputs);
    return true;
}

bool NriFamily::takeCoinValue(const WizardInputs& inputs) {
    NriFields& next = state_.nri.next;
    if (inputs.mode == WizardMode::addReplace) {
        const int step = nriValueStep(next.valueMultiplier);
        const int highest = highestNriValue(shape(), next.valueMultiplier);
        const bool multiple = inputs.coinValue % step == 0;
        if (!multiple || inputs.coinValue < 0 || inputs.coinValue > highest) {
            const std::string line(kCrLf);
            prompts_.ask({.title = state_.msgText(478),
                          .text = state_.msgText(476) + line + line +
                                  (multiple ? "0 - " + std::to_string(highest)
                                            : state_.msgText(477) + spacedNumber(step)),
                          .icon = PromptIcon::critical});
            return false;
        }
    }
    next.coinValues[inputs.channel] = inputs.coinValue;
    return true;
}

void NriFamily::takeOutputs(const WizardInputs& inputs) {
    if (inputs.mode != WizardMode::addReplace) return;
    if (comms_.model().blocks != NriBlocks::outputs) return;
    const int line = inputs.outputLine;
    NriFields& next = state_.nri.next;
    next.outputCodes[inputs.channel] = line >= 1 && line <= kOutputLines ? 1 << (line - 1) : 1;
    next.outputs[inputs.channel] = inputs.inhibitLine;
}

// --- memory --------------------------------------------------------------------------------

void NriFamily::keepOldMemory() {
    state_.nri.carryOver = state_.nri.old;
    state_.images.oldMemoryRead = true;
}

void NriFamily::seedFields() {
    state_.nri.next = newNriFields(shape(), state_.nriNew, state_.coinset, state_.nri.carryOver);
}

void NriFamily::takeLimitsOver() {
    for (int channel = 1; channel <= shape().channels; ++channel) {
        const int source = std::abs(state_.coinset.oldChannelSource[channel]);
        if (source == 0) continue;
        errors_.attempt(118, [&] {
            copyNriLimits(shape(), state_.nri.carryOver, source, state_.limits.channelLimits,
                          channel);
        });
    }
}

void NriFamily::takeFieldsOver() {
    for (int channel = 1; channel <= shape().channels; ++channel) {
        const int source = std::abs(state_.coinset.oldChannelSource[channel]);
        if (source == 0) continue;
        errors_.attempt(324, [&] {
            takeOverNriChannel(shape(), state_.nri.carryOver, source, state_.nri.next, channel);
        });
    }
}

void NriFamily::readOldMemory() {
    const NriFlow flow(state_, link_);
    // Half a memory would pass for limits of 0: what was not read is not taken over.
    if (!memory_.readNriMemory()) return;
    keepOldMemory();
    copyOldMemoryData();
}

void NriFamily::copyOldMemoryData() {
    if (!state_.oldImageWhole()) utilities_.readMemory();
    // From the carry-over fields: they are the mech as it was before anything was programmed.
    if (!state_.gather.wizardRun) {
        errors_.attempt(323, [this] { seedFields(); });
        takeFieldsOver();
    }
    takeLimitsOver();
}

bool NriFamily::programAndVerify() {
    if (!memory_.oldMemoryTaken()) {
        memory_.tellNotProgrammed();
        return false;
    }
    const NriFlow flow(state_, link_);
    return memory_.programNriMemory();
}

}  // namespace vantor
