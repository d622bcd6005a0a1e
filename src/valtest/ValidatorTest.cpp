#include "valtest/ValidatorTest.h"

#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr int kMsgSetupError = 121, kMsgAbsent = 124, kMsgAbsentTitle = 125, kMsgResetError = 210,
              kMsgBackError = 1400, kMsgLoadError = 1401, kMsgDisplayError = 1405, kMsgLoom = 1406;
constexpr int kStatusMs = 500;
constexpr int kCoinPauseMs = 50;
/// Entry of the variant list shown first: what a new mech is, and what was just programmed.
constexpr int kVariantFromMain = 0;
constexpr int kVariantFromLimits = 2;

}  // namespace

ValidatorTest::~ValidatorTest() {
    if (p_.receiver.sinks.valtest == this) p_.receiver.sinks.valtest = nullptr;
}

const TestLayout& ValidatorTest::layout() const {
    return testLayout(p_.state.mech.manufacturer, p_.state.mech.mechType);
}

// --- opening and closing ---------------------------------------------------------------------

void ValidatorTest::openFromMain(int errorMessage) {
    const auto step = [&](auto&& what) { p_.errors.attempt(errorMessage, what); };
    load(errorMessage, false);
    step([this] { valtestSetup(false); });
    bool found = false;
    step([&] { found = mechFound(); });
    if (!found) {
        giveUp();
        return;
    }
    step([this] { p_.callers.hideMainWindow(); });
    const MechModel* model = p_.state.mech.model();
    if (model == nullptr || !model->coinPause) return;
    step([this] { p_.link.sendString("C01"); });
    step([this] { p_.link.waitTicks(kCoinPauseMs); });
    step([this] { p_.link.sendString("C00"); });
}

void ValidatorTest::openFromLimits(int errorMessage) {
    const auto step = [&](auto&& what) { p_.errors.attempt(errorMessage, what); };
    step([this] { p_.callers.enableValidatorTestButtons(false); });
    load(errorMessage, true);
    step([this] { valtestSetup(true); });
    // Its buttons would talk to a box that is in its test mode.
    step([this] { p_.callers.hideLimitsWindow(); });
}

void ValidatorTest::load(int errorMessage, bool fromLimits) {
    binaryChosen_ = false;
    p_.errors.attempt(kMsgLoadError, [this] { p_.window.loadWindow(p_.state.mech.mechType); });
    p_.receiver.sinks.valtest = this;
    p_.errors.attempt(errorMessage, [&] {
        std::vector<std::string> codes;
        if (layout().variants) {
            for (const G40Variant& variant : kG40Variants) codes.emplace_back(variant.code);
        }
        const int chosen = fromLimits ? kVariantFromLimits : kVariantFromMain;
        p_.state.valtest.g40Variant =
            codes.empty() ? std::string() : codes.at(static_cast<std::size_t>(chosen));
        p_.window.fillVariants(codes, chosen);
        p_.window.showVariants(layout().variants);
    });
}

/// The box does not say by itself that a validator was put in: before giving up on a mech that
/// nothing else has asked, the box is asked.
bool ValidatorTest::mechFound() {
    BoxReplies& box = p_.state.box;
    if (box.mechPresent || layout().familyPrepares) return box.mechPresent;
    box.statusReceived = false;
    p_.link.sendString("S");
    p_.link.waitFor(kStatusMs, box.statusReceived);
    return box.mechPresent;
}

void ValidatorTest::giveUp() {
    const auto step = [this](auto&& what) { p_.errors.attempt(kMsgSetupError, what); };
    step([this] { leaveCoinRecords(); });
    step([this] {
        p_.prompts.ask({.title = p_.state.msgText(kMsgAbsentTitle),
                        .text = p_.state.msgText(kMsgAbsent),
                        .icon = PromptIcon::critical});
    });
    step([this] { p_.window.hideWindow(); });
    step([this] { p_.callers.enableValidatorTestButtons(true); });
    step([this] { p_.link.sendW(); });
    step([this] { closeTest(); });
}

void ValidatorTest::back() {
    const auto step = [this](auto&& what) { p_.errors.attempt(kMsgBackError, what); };
    step([this] { leaveCoinRecords(); });
    step([this] { p_.window.hideWindow(); });
    step([this] {
        if (p_.state.valtest.validatorTestFromMain) {
            p_.callers.returnToMainWindow();
        } else {
            p_.callers.returnToLimitsWindow();
        }
    });
    step([this] { p_.callers.enableValidatorTestButtons(true); });
    step([this] { p_.link.sendW(); });
    step([this] { closeTest(); });
}

void ValidatorTest::leaveCoinRecords() {
    if (!p_.state.box.nriG10Mode) return;
    // Cleared in any case: the next mech's bytes must not be read as coin records.
    p_.errors.attempt(kMsgBackError, [this] { p_.check.leaveSerialMode(); });
    p_.state.box.nriG10Mode = false;
}

void ValidatorTest::closeTest() {
    p_.receiver.sinks.valtest = nullptr;
    p_.state.valtest.tubeCount = 0;
    p_.state.link.coinDisplayHold = 0;
    binaryChosen_ = false;
    p_.window.unloadWindow();
}

// --- set-up ----------------------------------------------------------------------------------

void ValidatorTest::valtestSetup(bool fromLimits) {
    const auto step = [this](auto&& what) { p_.errors.attempt(kMsgSetupError, what); };
    SessionState& state = p_.state;
    step([this] { p_.link.startupPort(); });
    state.valtest.validatorTestFromMain = !fromLimits;
    state.box.nriG10Mode = false;
    step([this] { p_.link.sendAndWait("O"); });
    step([this] { p_.link.sendJ(); });
    resetValtestDisplay();
    step([this] { clearValtestCounts(); });
    bool prepared = true;
    step([&] { prepared = startTestMode(); });
    setupDisplay();
    if (!prepared) {
        step([this] { p_.prompts.beep(); });
    } else if (!state.box.nriG10Mode) {
        step([this] { p_.link.sendJ(); });
        step([this] { p_.link.sendString("N"); });
    }
}

bool ValidatorTest::startTestMode() {
    const TestLayout& row = layout();
    if (row.startWaits) {
        p_.link.sendAndWait(row.startCommand);
    } else if (!row.startCommand.empty()) {
        p_.link.sendString(row.startCommand);
    }
    if (!row.familyPrepares) return true;
    bool prepared = false;
    p_.errors.attempt(kMsgSetupError,
                      [&] { prepared = p_.families.selected().prepareValidatorTest(); });
    if (!row.coinRecords) return true;
    // A mech that has just answered is there, whatever the box's last status line said.
    if (prepared) p_.state.box.mechPresent = true;
    p_.state.box.nriG10Mode = true;
    p_.state.box.replyText.clear();
    return prepared;
}

void ValidatorTest::setupDisplay() {
    const auto step = [this](auto&& what) { p_.errors.attempt(kMsgDisplayError, what); };
    const TestLayout& row = layout();
    step([&] {
        p_.window.showVariants(row.variants);
        p_.window.showOutputBits(false);
    });
    step([this] { decidePositions(true); });
    step([this] { p_.window.showPositions({}); });
    step([this] { askForBinary(); });
    step([&] {
        if (!row.layoutCommand.empty()) p_.link.sendAndWait(row.layoutCommand);
    });
    step([this] {
        if (!shown_.variantCommand.empty()) p_.link.sendString(shown_.variantCommand);
    });
    step([this] { p_.window.offerOutput(shown_.binaryOffered); });
    step([&] {
        std::vector<std::string> captions;
        for (int position = 0; position < shown_.count; ++position) {
            captions.push_back(positionCaption(row, shown_, position, p_.state.messages));
        }
        p_.window.showPositions(captions);
    });
    step([this] { clearValtestCounts(); });
    step([this] { p_.window.showWindow(); });
}

void ValidatorTest::decidePositions(bool binaryAnswered) {
    shown_ = testPositions(layout(), {.boxVersion = p_.state.box.boxVersion,
                                      .variant = p_.state.valtest.g40Variant,
                                      .binaryChosen = binaryChosen_,
                                      .binaryAnswered = binaryAnswered});
    p_.state.valtest.tubeCount = shown_.reject ? shown_.count : 0;
    if (!binaryChosen_ || shown_.binaryOffered) return;
    binaryChosen_ = false;
    p_.window.chooseOutput(false);
}

void ValidatorTest::askForBinary() {
    if (!shown_.binaryOffered) return;
    p_.link.sendAndWait("*");
    if (!p_.state.link.replyFlag) decidePositions(false);
}

// --- choices ---------------------------------------------------------------------------------

void ValidatorTest::chooseBinary() {
    if (binaryChosen_) return;
    binaryChosen_ = true;
    p_.window.chooseOutput(true);
    setupDisplay();
    driveBinary();
}

/// The rest of choosing Binary, unless the box has refused it meanwhile.
void ValidatorTest::driveBinary() {
    if (!binaryChosen_) return;
    const auto step = [this](auto&& what) { p_.errors.attempt(kMsgDisplayError, what); };
    step([this] { p_.link.sendAndWait("*"); });
    if (layout().programmingLoom) {
        step([this] { p_.prompts.ask({.title = {}, .text = p_.state.msgText(kMsgLoom)}); });
    }
    step([this] { p_.link.sendString("C00"); });
    step([this] { p_.window.showOutputBits(true); });
}

void ValidatorTest::chooseSingle() {
    if (!binaryChosen_) return;
    const auto step = [this](auto&& what) { p_.errors.attempt(kMsgDisplayError, what); };
    binaryChosen_ = false;
    p_.window.chooseOutput(false);
    setupDisplay();
    step([this] { p_.link.sendAndWait("O"); });
    step([this] { p_.link.sendString("C01"); });
}

void ValidatorTest::chooseVariant(std::string_view code) {
    p_.state.valtest.g40Variant = code;
    p_.errors.attempt(kMsgDisplayError, [this] { p_.window.hideWindow(); });
    setupDisplay();
    driveBinary();
}

void ValidatorTest::clearValtestCounts() {
    counts_.fill(0);
    for (int position = 0; position < kTestPositions; ++position) {
        p_.window.setCount(position, spacedNumber(0));
    }
}

// --- display ---------------------------------------------------------------------------------

void ValidatorTest::resetValtestDisplay() {
    p_.errors.attempt(kMsgResetError, [this] {
        for (int position = 0; position < kTestPositions; ++position) {
            p_.window.colourPosition(position, kIndicatorOff);
        }
        for (int bit = 0; bit < kOutputBits; ++bit) p_.window.colourBit(bit, kIndicatorOff);
    });
}

void ValidatorTest::markAccepted(int position) {
    markPosition(position);
    countPosition(position);
}

void ValidatorTest::markRejected(int position) {
    p_.window.colourPosition(position, kIndicatorRejected);
    countPosition(position);
}

void ValidatorTest::markPosition(int position) {
    p_.window.colourPosition(position, kIndicatorAccepted);
}

void ValidatorTest::countPosition(int position) {
    int& count = counts_.at(static_cast<std::size_t>(position));
    p_.window.setCount(position, spacedNumber(++count));
}

void ValidatorTest::markBinary(int bit) {
    p_.window.colourBit(bit, kIndicatorAccepted);
}

}  // namespace vantor
