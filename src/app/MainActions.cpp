#include "app/MainActions.h"

#include <algorithm>

namespace vantor {

namespace {

constexpr int kMainError = 815;
constexpr std::array<std::string_view, 3> kUtilities = {"cmdPROMutilities", "cmdCCprom",
                                                        "cmdNRIprom"};

}  // namespace

const std::array<MainActions::Action, 9>& MainActions::table() {
    static constexpr std::array<Action, 9> kTable = {{
        {"cmdMars", "cmbMarsMech", kMars, 805, true, &MainActions::programMech},
        {"cmdValtest", "cmbMarsMech", kMars, 808, false, &MainActions::validatorTest},
        {"cmdPROMutilities", "cmbMarsMech", kMars, 807, false, &MainActions::memoryUtilities},
        {"cmdCCprog", "cmbCCmech", kCoinControls, 800, false, &MainActions::programMech},
        {"cmdCCValTest", "cmbCCmech", kCoinControls, 804, false, &MainActions::validatorTest},
        {"cmdCCprom", "cmbCCmech", kCoinControls, 803, false, &MainActions::memoryUtilities},
        {"cmdNRIprog", "cmbNRImech", kNri, 801, false, &MainActions::programMech},
        {"cmdNRIvaltest", "cmbNRImech", kNri, 806, false, &MainActions::validatorTest},
        {"cmdNRIprom", "cmbNRImech", kNri, 802, false, &MainActions::memoryUtilities},
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
    for (const Action& action : table()) offer(action, enabled);
}

void MainActions::enableUtilities(bool enabled) {
    for (const Action& action : table()) {
        if (std::ranges::count(kUtilities, action.button) > 0) offer(action, enabled);
    }
}

void MainActions::enableValidatorTests(bool enabled) {
    for (const Action& action : table()) {
        if (action.perform == &MainActions::validatorTest) offer(action, enabled);
    }
}

void MainActions::offer(const Action& action, bool enabled) {
    const bool available = action.perform != nullptr && p_.families.find(action.maker) != nullptr;
    p_.main.offerAction(action.button, enabled, available);
}

void MainActions::perform(const Action& action) {
    p_.state.mech.manufacturer = action.maker;
    p_.state.mech.mechType = p_.main.chosenModel(action.list);
    if (action.perform != nullptr) (this->*action.perform)(action);
}

void MainActions::validatorTest(const Action& action) {
    if (openValidatorTest) openValidatorTest(action.errorMessage);
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

void MainActions::memoryUtilities(const Action& action) {
    if (mechAnswers(action) && openMemoryUtilities) openMemoryUtilities();
}

}  // namespace vantor
