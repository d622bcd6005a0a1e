#include "app/StartUp.h"

#include "app/MainActions.h"
#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr int kLoadError = 815;
constexpr int kProbeError = 126;
constexpr int kStatusMs = 800;

std::string versionText() {
    return "V" + std::to_string(VANTOR_VERSION_MAJOR) + "." + padded(VANTOR_VERSION_MINOR, 2);
}

// What the start-up window says about port and box is the same in every language.
constexpr std::string_view kPortNotOpen = "COM port NOT OPEN :\r\nSelect another Port";
constexpr std::string_view kBoxSilent = "COM port OPEN :\r\nNo Response from Programmer Box";
constexpr std::string_view kBoxOk = "COM port OPEN :\r\nProgrammer Box OK";

}  // namespace

StartUp::StartUp(const Parts& parts) : p_(parts) {
    p_.opening.retry = [this] { p_.actions.run(kProbeError, [this] { retry(); }); };
    p_.opening.choosePort = [this] { p_.actions.run(kLoadError, [this] { choosePort(); }); };
    const auto end = [this] {
        p_.actions.runThrough(kLoadError, [this] { p_.link.endProgramNow(); });
    };
    p_.opening.cancel = end;
    p_.opening.frameClosed = end;
}

void StartUp::load() {
    // Not as the one busy action: the first run's Save Config and the start-up window's Retry are
    // actions of their own while this waits for them.
    p_.actions.runThrough(kLoadError, [this] { loadSteps(); });
}

void StartUp::loadSteps() {
    const auto step = [this](auto&& action) { p_.errors.attempt(kLoadError, action); };
    SessionState& state = p_.state;
    step([&] { state.app.softwareVersion = versionText(); });
    step([&] { refuseSecondCopy(); });
    step([&] { fillWindow(); });
    step([&] { p_.config.readAtStart(); });
    step([&] { p_.main.showPort(state.link.portNumber); });
    step([&] { p_.main.showLanguage(state.messages.language); });
    step([&] { p_.main.showSoftwareVersion(state.app.softwareVersion); });
    step([&] { p_.link.startTicks(); });
    step([&] { waitForFirstConfig(); });
    step([&] { p_.mainActions.setupMainForm(); });
    step([&] { findBox(); });
    p_.actions.run(kLoadError, [this] { lastCheck(); });
    if (state.link.ending) p_.link.endProgramNow();
    over_ = true;
    step([&] { p_.mainActions.startOffering(); });
    step([&] { p_.main.show(); });
}

void StartUp::refuseSecondCopy() {
    if (p_.guard.acquire()) return;
    p_.prompts.ask({.title = p_.state.msgText(811),
                    .text = p_.state.msgText(810),
                    .icon = PromptIcon::critical});
    p_.link.endProgramNow();
}

void StartUp::fillWindow() {
    SessionState& state = p_.state;
    p_.main.fillPorts(p_.ports);
    p_.main.fillModels();
    state.messages.languageTableLoaded = false;
    p_.main.setMainCaptions();
    p_.main.fillLanguages();
    state.messages.language = kLanguages[0].name;
    state.link.portNumber = 1;
    state.nriNew.valueMultiplier = 1;
    state.link.portOpen = false;
}

void StartUp::waitForFirstConfig() {
    if (!p_.state.app.configLoaded) {
        p_.main.show();
        p_.link.waitUntil([this] { return p_.state.app.configLoaded; });
    }
    p_.config.offerChange(true);
}

void StartUp::findBox() {
    p_.main.hide();
    p_.state.link.boxFound = false;
    loadOpening();
    p_.link.waitUntil([this] { return p_.state.link.boxFound; });
    p_.opening.hide();
}

void StartUp::lastCheck() {
    const auto step = [this](auto&& action) { p_.errors.attempt(kLoadError, action); };
    step([this] { p_.check.checkMech(false); });
    // A line that comes in between is not the answer, so the flag of the answer ends the wait.
    p_.state.box.statusReceived = false;
    step([this] { p_.link.sendString("S"); });
    step([this] { p_.link.waitFor(kStatusMs, p_.state.box.statusReceived); });
}

void StartUp::loadOpening() {
    SessionState& state = p_.state;
    p_.opening.fillPorts(p_.ports);
    p_.opening.showPort(state.link.portNumber);
    state.link.portNumber = p_.opening.chosenPort();
    std::string status = state.msgText(1000);
    if (status.empty()) status = p_.opening.status();
    p_.opening.setStatus(status + "\r\n\r\n" + state.msgText(875) + " : " +
                         state.app.softwareVersion);
    p_.opening.show();
    state.link.boxFound = false;
    state.link.portOpen = false;
    p_.actions.run(kProbeError, [this] { boxCheck(); });
}

void StartUp::boxCheck() {
    SessionState& state = p_.state;
    p_.opening.showRetryAndCancel(false);
    if (!state.link.portOpen && !p_.link.openPort(p_.opening.chosenPort())) {
        p_.opening.setStatus(std::string(kPortNotOpen));
        p_.opening.showRetryAndCancel(true);
        return;
    }
    p_.opening.setStatus(std::string(kBoxSilent));
    p_.errors.attempt(kProbeError, [this] { p_.link.resetBox(); });
    if (p_.check.probeBox()) {
        p_.opening.setStatus(std::string(kBoxOk));
    } else {
        p_.opening.showRetryAndCancel(true);
    }
}

void StartUp::retry() {
    SessionState& state = p_.state;
    p_.opening.setStatus({});
    state.link.boxFound = false;
    state.link.portOpen = false;
    boxCheck();
    if (state.link.portOpen && state.link.boxFound) {
        p_.main.show();
        p_.opening.hide();
    }
}

void StartUp::choosePort() {
    p_.link.closePort();
    p_.state.link.portNumber = p_.opening.chosenPort();
    p_.main.showPort(p_.state.link.portNumber);
    p_.config.writeConfig();
}

}  // namespace vantor
