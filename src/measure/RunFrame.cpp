#include "measure/RunFrame.h"

namespace vantor {

namespace {

constexpr int kIdleAnswerMs = 800;
constexpr int kBackMessage = 445;
constexpr int kIdles = 3;

}  // namespace

void RunFrame::clearForRun() {
    SessionState& state = parts_.state;
    state.gather.abortFlag = false;
    state.gather.gatherActive = false;
    state.gather.wizardRun = false;
    state.coinset.compensationPresent = false;
    state.coinset.routingPresent = false;
    state.coinset.c120MapPresent = false;
    state.images = ImagesState{};
}

void RunFrame::beginRun(bool wizard) {
    SessionState& state = parts_.state;
    parts_.errors.attempt(450, [&] {
        clearForRun();
        state.gather.wizardRun = wizard;
        state.gather.keepExisting = false;
        state.gather.coinsRemaining = 0;
        state.item.nextItem = 0;
        state.coinTable = CoinTable{};
        CoinsetData fresh;
        fresh.title = state.coinset.title;
        fresh.referenceCode = state.coinset.referenceCode;
        fresh.version = state.coinset.version;
        state.coinset = fresh;
        state.nriNew = NriNewData{};
        state.limits.channelLimits = {};
        state.limits.channelCoins = {};
        state.limits.slugCount = 0;
        state.limits.limitsEdited = false;
        state.limits.changeFlag = false;
    });
}

void RunFrame::takeWindow(const std::string& caption, int cancelMessage) {
    parts_.display.setCaption(caption);
    parts_.state.gather.runActive = true;
    parts_.display.enableRunButtons(false);
    parts_.display.setBackButton(cancelMessage, true);
}

bool RunFrame::openLog() {
    bool& enabled = parts_.state.gather.logEnabled;
    enabled = parts_.display.logResultsTicked();
    if (!enabled) return true;
    enabled = log_.openLog();
    return enabled;
}

void RunFrame::askIdles() {
    SessionState& state = parts_.state;
    const bool& abort = state.gather.abortFlag;
    if (parts_.link.waitFor(parts_.families.selected().coinsetRules().idleWaitMs, abort)) return;
    state.gather.idleReading.fill(0);
    parts_.link.sendString("Y");
    // A stray line is no answer: only the values themselves end the wait.
    parts_.link.waitFor(kIdleAnswerMs, [&] {
        for (int i = 0; i < kIdles; ++i) {
            if (state.gather.idleReading[i] != 0) return true;
        }
        return abort;
    });
}

void RunFrame::itemsDone() {
    log_.close();
    readings_.updateStats(1);
    parts_.state.item.itemCode.clear();
    parts_.state.item.itemDescription.clear();
    parts_.display.showItem("", "");
    parts_.display.showNumber("");
}

void RunFrame::endRun() {
    SessionState& state = parts_.state;
    const bool ran = state.gather.runActive;
    const bool aborted = state.gather.abortFlag;
    log_.close();
    if (!ran) return;
    leaveSerialMode();
    parts_.link.sendW();
    parts_.errors.attempt(447, [this] {
        parts_.display.enableRunButtons(true);
        parts_.display.enablePromChoices(true);
        parts_.display.setBackButton(kBackMessage, true);
    });
    state.gather.gatherActive = false;
    state.gather.runActive = false;
    state.gather.coinsRemaining = 0;
    state.item.isCoin = true;
    readings_.updateDisplay(1);
    if (aborted) setup_.CoinInitialise(0);
    clearFlags();
}

RunFrame::Guard::~Guard() {
    try {
        frame_.clearFlags();
        frame_.log_.close();
    } catch (...) {  // NOLINT(bugprone-empty-catch): already unwinding to the program's end
    }
}

void RunFrame::leaveSerialMode() {
    if (!parts_.state.box.serialModeFlag) return;
    parts_.errors.attempt(313, [this] {
        MechCheck(parts_.state, parts_.link, parts_.families, parts_.prompts, parts_.errors)
            .leaveSerialMode();
    });
}

void RunFrame::clearFlags() {
    GatherState& gather = parts_.state.gather;
    gather.gatherActive = false;
    gather.runActive = false;
    gather.keepExisting = false;
    gather.coinsRemaining = 0;
    parts_.state.item.isCoin = true;
    gather.abortFlag = false;
}

}  // namespace vantor
