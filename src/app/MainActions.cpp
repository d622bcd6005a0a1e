#include "app/MainActions.h"

namespace vantor {

namespace {

constexpr int kMainError = 815;

}  // namespace

const std::array<MainActions::Action, 9>& MainActions::table() {
    static constexpr std::array<Action, 9> kTable = {{
        {"cmdMars", "cmbMarsMech", kMars, 805, true, Work::programMech},
        {"cmdValtest", "cmbMarsMech", kMars, 808, false, Work::validatorTest},
        {"cmdPROMutilities", "cmbMarsMech", kMars, 807, false, Work::memoryUtilities},
        {"cmdCCprog", "cmbCCmech", kCoinControls, 800, false, Work::programMech},
        {"cmdCCValTest", "cmbCCmech", kCoinControls, 804, false, Work::validatorTest},
        {"cmdCCprom", "cmbCCmech", kCoinControls, 803, false, Work::memoryUtilities},
        {"cmdNRIprog", "cmbNRImech", kNri, 801, false, Work::programMech},
        {"cmdNRIvaltest", "cmbNRImech", kNri, 806, false, Work::validatorTest},
        {"cmdNRIprom", "cmbNRImech", kNri, 802, false, Work::memoryUtilities},
    }};
    return kTable;
}

MainActions::MainActions(const Parts& parts) : p_(parts) {
    for (const Action& action : table()) {
        p_.main.onClick(action.button, [this, &action] {
            p_.actions.run(action.errorMessage, [this, &action] { perform(action); });
        });
    }
    const auto run = [this](const char* button, auto&& what) {
        p_.main.onClick(button, [this, what] { p_.actions.run(kMainError, what); });
    };
    run("cmdSaveConfig", [this] { p_.config.save(); });
    run("cmdCancConfig", [this] { p_.config.cancel(); });
    run("cmdConfig", [this] { p_.config.change(); });

    const auto exit = [this] {
        p_.actions.runThrough(kMainError, [this] { p_.link.endProgramNow(); });
    };
    p_.main.onClick("cmdExit", exit);
    p_.main.onClose(exit);
    enableAll(false);
}

void MainActions::setupMainForm() {
    SessionState& state = p_.state;
    state.box.serialModeFlag = false;
    state.prom.promSizeCode = 0;
    state.gather.readingRange = GatherState{}.readingRange;
    enableAll(offering_);
}

void MainActions::startOffering() {
    offering_ = true;
    enableAll(true);
}

void MainActions::enableAll(bool enabled) {
    p_.main.enableModelLists(enabled);
    for (const Action& action : table()) p_.main.enableAction(action.button, enabled);
}

void MainActions::enableUtilities(bool enabled) {
    enableAllOf(Work::memoryUtilities, enabled);
}

void MainActions::enableValidatorTests(bool enabled) {
    enableAllOf(Work::validatorTest, enabled);
}

void MainActions::enableAllOf(Work work, bool enabled) {
    for (const Action& action : table()) {
        if (action.work == work) p_.main.enableAction(action.button, enabled);
    }
}

void MainActions::perform(const Action& action) {
    p_.state.mech.manufacturer = action.maker;
    p_.state.mech.mechType = p_.main.chosenModel(action.list);
    switch (action.work) {
        case Work::programMech:
            programMech(action);
            break;
        case Work::validatorTest:
            if (openValidatorTest) openValidatorTest(action.errorMessage);
            break;
        case Work::memoryUtilities:
            if (mechAnswers(action) && openMemoryUtilities) openMemoryUtilities();
            break;
    }
}

bool MainActions::mechAnswers(const Action& action) {
    const auto step = [&](auto&& what) { p_.errors.attempt(action.errorMessage, what); };
    // A test of a G10 that was left by an error must not change how the next mech is heard.
    p_.state.box.nriG10Mode = false;
    step([this] { p_.link.startupPort(); });
    bool goOn = false;
    step([&] { goOn = p_.check.checkMech(action.detect); });
    return goOn;
}

void MainActions::programMech(const Action& action) {
    if (!mechAnswers(action)) return;
    const auto step = [&](auto&& what) { p_.errors.attempt(action.errorMessage, what); };
    step([this] { enableAll(false); });
    step([this] { applyMechType(p_.state.mech, p_.state.messages); });
    step([this] {
        if (openMeasurement) openMeasurement();
    });
}

}  // namespace vantor
