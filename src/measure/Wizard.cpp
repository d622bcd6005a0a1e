#include "measure/Wizard.h"

#include "catalogue/Text.h"
#include "measure/CoinNumber.h"

namespace vantor {

namespace {

constexpr int kPanelError = 429;
constexpr int kCancelPanelError = 404;
constexpr int kBackMessage = 445;
constexpr int kReadyCaptionMessage = 444;
constexpr int kCaptionMessage = 471;
constexpr int kCancelMessage = 472;

constexpr const char* kReferenceCode = "WIZ";

constexpr int kDrops = 20;
constexpr int kTolerancePercent = 20;
constexpr int kSlugSeparation = 2;
constexpr int kLimitMargin = 2;
/// Beside the extreme reading of a parameter that is judged upwards only.
constexpr int kUpwardsMargin = 10;

constexpr int kCoinKind = 1;

}  // namespace

// --- the panel -----------------------------------------------------------------------------

void Wizard::open() {
    const auto step = [this](auto&& work) { parts_.errors.attempt(kPanelError, work); };
    MeasureDisplay& display = parts_.display;
    step([&] { display.showWizardChoices(parts_.families.selected().wizardPanel()); });
    step([&] { display.showWizardPanel(true); });
    step([&] {
        display.enableRunButtons(false);
        display.setBackButton(kBackMessage, false);
        display.enablePromChoices(false);
    });
    step([&] { display.showTargetLists(); });
}

void Wizard::cancel() {
    const auto step = [this](auto&& work) { parts_.errors.attempt(kCancelPanelError, work); };
    MeasureDisplay& display = parts_.display;
    step([&] { display.showWizardPanel(false); });
    step([&] {
        display.enableRunButtons(true);
        display.setBackButton(kBackMessage, true);
        display.enablePromChoices(true);
    });
}

// --- the run -------------------------------------------------------------------------------

void Wizard::run(WizardMode mode) {
    const RunFrame::Guard guard(frame_);
    parts_.errors.attempt(kPanelError, [&] { steps(mode); });
    frame_.endRun();
}

void Wizard::steps(WizardMode mode) {
    SessionState& state = parts_.state;
    MeasureDisplay& display = parts_.display;
    MechFamily& family = parts_.families.selected();
    bool& abort = state.gather.abortFlag;
    frame_.beginRun(true);
    frame_.takeWindow(state.msgText(kCaptionMessage), kCancelMessage);
    showReference(mode);
    code_ = display.chosenCoin();
    const WizardInputs inputs{.mode = mode,
                              .channel = coinnumber(code_),
                              .coinValue = lenientInteger(display.coinValueText()),
                              .outputLine = display.chosenOutputLine(),
                              .inhibitLine = display.chosenInhibitLine()};
    display.showItem(code_, "");
    display.showWizardPanel(false);
    display.showStatistics(true);
    family.startRun();
    if (abort) return;
    if (!frame_.openLog()) return showNothing();
    parts_.link.sendJ();
    keepOtherChannels(inputs);
    log_.write({"Wizard", static_cast<int>(mode)});
    if (!family.startWizard(inputs)) abort = true;
    logIdles();
    gatherItems(inputs);
    frame_.itemsDone();
    if (abort) return;
    family.finishWizard();
    transfer_.PROMxfr();
}

void Wizard::showReference(WizardMode mode) {
    CoinsetData& coinset = parts_.state.coinset;
    coinset.title.clear();
    coinset.referenceCode = kReferenceCode;
    coinset.version = std::to_string(static_cast<int>(mode));
    parts_.display.showCoinset();
}

void Wizard::showNothing() {
    CoinsetData& coinset = parts_.state.coinset;
    coinset.referenceCode.clear();
    coinset.version.clear();
    parts_.display.showCoinset();
    parts_.display.setCaption(parts_.state.msgText(kReadyCaptionMessage));
    frame_.itemsDone();
}

void Wizard::keepOtherChannels(const WizardInputs& inputs) {
    CoinsetData& coinset = parts_.state.coinset;
    const MechFamily& family = parts_.families.selected();
    for (int channel = 1; channel <= kChannels; ++channel) {
        coinset.oldChannelSource[channel] = family.keepsChannel(channel) ? channel : 0;
    }
    // A channel whose coin is measured for a slug's sake keeps its limits, but has an estimate of
    // its own: the sign tells.
    if (inputs.mode == WizardMode::addReplace) coinset.oldChannelSource[inputs.channel] = 0;
    if (inputs.mode == WizardMode::slugFix) {
        coinset.oldChannelSource[inputs.channel] = -inputs.channel;
    }
    coinset.usesOldChannels = true;
}

void Wizard::logIdles() {
    const GatherState& gather = parts_.state.gather;
    if (!parts_.families.selected().coinsetRules().promLine) return;
    if (!gather.logEnabled || gather.abortFlag) return;
    frame_.askIdles();
    if (!gather.abortFlag) log_.write(idlesLine(gather.idleReading));
}

// --- gathering -----------------------------------------------------------------------------

void Wizard::gatherItems(const WizardInputs& inputs) {
    if (inputs.mode == WizardMode::editLimits) return;
    const bool slug = inputs.mode == WizardMode::slugFix;
    const Pass coinPass{
        .kind = kCoinKind, .description = slug ? 485 : 484, .prompt = 486, .done = 487};
    constexpr Pass kSlugPass{.kind = 2, .description = 488, .prompt = 489, .done = 490};
    if (gatherItem(coinPass, inputs) && slug) gatherItem(kSlugPass, inputs);
}

bool Wizard::gatherItem(const Pass& pass, const WizardInputs& inputs) {
    SessionState& state = parts_.state;
    GatherState& gather = state.gather;
    if (gather.abortFlag) return false;
    gather.gatherActive = false;
    state.item.measureKind = pass.kind;
    readings_.updateStats(1);
    gather.coinsRemaining = kDrops;
    setGatherRules(pass.kind);
    state.item.itemCode = code_;
    state.item.itemDescription = state.msgText(pass.description);
    parts_.display.showLimitSources();
    parts_.display.showItem(code_, state.item.itemDescription);
    readings_.updateDisplay(pass.kind);

    parts_.prompts.ask({.title = "", .text = state.msgText(pass.prompt)});
    gather_.writeItemHeader();
    gather_.gatherDrops(inputs.channel);
    if (gather.abortFlag || state.item.readingCount == 0) return false;
    // The coin that a slug is held against is there for its statistics alone.
    const bool withLimits = pass.kind != kCoinKind || inputs.mode != WizardMode::slugFix;
    gather_.storeItem(pass.kind, inputs.channel, withLimits);
    parts_.prompts.ask({.title = "", .text = state.msgText(pass.done)});
    return true;
}

void Wizard::setGatherRules(int kind) {
    SessionState& state = parts_.state;
    MeasurementSession& item = state.item;
    for (int p = 1; p <= state.n(); ++p) {
        item.flierTolerance[p] = kTolerancePercent;
        item.slugSeparation[p] = kSlugSeparation;
        item.limitOrigins[2 * p - 1] = {LimitSource::twoSd, 0, {}};
        item.limitAdjust[2 * p - 1] = -kLimitMargin;
        item.limitOrigins[2 * p] = {LimitSource::twoSd, 0, {}};
        item.limitAdjust[2 * p] = kLimitMargin;
    }
    const MechModel* model = state.mech.model();
    if (model == nullptr || model->upwardsOnlyParameter == 0) return;
    const int low = 2 * model->upwardsOnlyParameter - 1;
    const int high = low + 1;
    if (kind == kCoinKind) {
        item.limitOrigins[low] = {LimitSource::low, 0, {}};
        item.limitAdjust[low] = -kUpwardsMargin;
        item.limitOrigins[high] = {LimitSource::fixed, 0, {}};
        item.limitAdjust[high] = parts_.families.selected().limitRules().capacity;
    } else {
        item.limitOrigins[low] = {LimitSource::fixed, 0, {}};
        item.limitAdjust[low] = 0;
        item.limitOrigins[high] = {LimitSource::high, 0, {}};
        item.limitAdjust[high] = kUpwardsMargin;
    }
}

}  // namespace vantor
