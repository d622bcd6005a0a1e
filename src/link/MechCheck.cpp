#include "link/MechCheck.h"

#include <exception>

namespace vantor {

namespace {

constexpr int kEscapes = 25;
constexpr int kStatusMs = 500;
constexpr int kSerialModeAttempts = 5;
constexpr int kModeMs = 500;

enum class ModeChange { entering, leaving };

/// A program that ends before the box has said which mode it is in takes it to be in serial mode,
/// which the program's end then leaves.
class ModeInDoubt {
  public:
    ModeInDoubt(BoxReplies& box, ModeChange change) : box_(box), change_(change) {}
    ~ModeInDoubt() {
        // On entering, the box's ready line answers the ESC characters before the mode command.
        const bool left = change_ == ModeChange::leaving && box_.commandModeFlag;
        if (std::uncaught_exceptions() > before_ && !left) box_.serialModeFlag = true;
    }
    ModeInDoubt(const ModeInDoubt&) = delete;
    ModeInDoubt& operator=(const ModeInDoubt&) = delete;

  private:
    BoxReplies& box_;
    ModeChange change_;
    int before_ = std::uncaught_exceptions();
};

}  // namespace

bool MechCheck::checkMech(bool detect) {
    bool goOn = false;
    errors_.attempt(126, [&] { goOn = runCheck(detect); });
    return goOn;
}

bool MechCheck::runCheck(bool detect) {
    MechFamily* family = families_.current();
    link_.sendEscapes(kEscapes);
    link_.sendAndWait("M");
    link_.sendJ();
    if (family != nullptr) family->beforeStatus();
    state_.box.statusReceived = false;
    link_.sendAndWait("S");
    link_.waitFor(kStatusMs, state_.box.statusReceived);
    if (family != nullptr) family->afterStatus(detect);

    if (!state_.box.statusReceived) {
        const Answer answer = prompts_.ask({.title = state_.msgText(123),
                                            .text = state_.msgText(122),
                                            .icon = PromptIcon::critical,
                                            .buttons = PromptButtons::okCancel});
        if (answer == Answer::cancel) link_.endProgramNow();
        return false;
    }
    if (!detect) return true;
    if (family != nullptr) family->probeMech();
    if (!state_.box.mechPresent) {
        prompts_.ask({.title = state_.msgText(125),
                      .text = state_.msgText(124),
                      .icon = PromptIcon::critical});
        return false;
    }
    return true;
}

bool MechCheck::probeBox() {
    // Each step on its own: a failure is told and the probe goes on.
    const auto step = [this](auto&& action) { errors_.attempt(126, action); };
    step([this] { link_.sendEscapes(kEscapes); });
    step([this] { link_.sendAndWait("_"); });
    step([this] { link_.sendJ(); });
    step([this] { link_.sendAndWait("M"); });
    step([this] { link_.sendJ(); });
    state_.box.statusReceived = false;
    step([this] { link_.sendAndWait(""); });
    step([this] { link_.sendAndWait("S"); });
    step([this] { link_.waitFor(kStatusMs, state_.box.statusReceived); });
    state_.link.boxFound = state_.box.statusReceived;
    return state_.link.boxFound;
}

bool MechCheck::enterSerialMode(std::string_view modeCommand) {
    const bool& on = state_.box.serialModeFlag;
    const bool& cancelled = state_.gather.abortFlag;
    state_.box.commandModeFlag = false;
    const ModeInDoubt doubt(state_.box, ModeChange::entering);
    for (int attempt = 0; attempt < kSerialModeAttempts; ++attempt) {
        link_.sendEscapes(kEscapes);
        link_.sendString(modeCommand);
        link_.waitFor(kModeMs, [&] { return on || cancelled; });
        if (on) return true;
        if (cancelled) break;
    }
    // It may have been entered and only the box's answer was lost: whoever goes on takes the box to
    // be in command mode.
    if (state_.link.portOpen) callBack([] { return true; });
    if (cancelled) return false;
    prompts_.ask(
        {.title = state_.msgText(301), .text = state_.msgText(300), .icon = PromptIcon::critical});
    return false;
}

/// A break and ESC; in between the box has time until `over`.
void MechCheck::callBack(const std::function<bool()>& over) {
    link_.sendBreak(kLeaveBreakMs);
    // What the mech still had to say must not stand before the box's line.
    state_.link.lineBuffer.clear();
    link_.waitFor(kModeMs, over);
    // Whoever gave up entering serial mode may have been told only now that it was entered.
    state_.box.serialModeFlag = false;
    link_.sendEscapes(kLeaveEscapes);
}

bool MechCheck::leaveSerialMode() {
    state_.box.commandModeFlag = false;
    state_.box.serialModeFlag = false;
    state_.link.frameCount = 0;
    state_.link.lineBuffer.clear();
    // A port that is gone was told; nobody could answer whether the box is stuck.
    const auto over = [this] { return state_.box.commandModeFlag || !state_.link.portOpen; };
    if (over()) return false;
    const ModeInDoubt doubt(state_.box, ModeChange::leaving);
    link_.flushInput();
    callBack(over);
    // The box answers the ESC characters, not the break, so it is given time to.
    if (link_.waitFor(kModeMs, over)) return state_.box.commandModeFlag;
    if (checkMech(false)) return true;
    prompts_.ask(
        {.title = state_.msgText(301), .text = state_.msgText(302), .icon = PromptIcon::critical});
    return false;
}

}  // namespace vantor
