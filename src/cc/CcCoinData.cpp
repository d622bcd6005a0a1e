#include "cc/CcCoinData.h"

#include <charconv>

#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr std::string_view kSentinelRequest = "M02070306\r";
constexpr int kSentinelLines = 2;
constexpr int kSentinelCoinMs = 15000;
constexpr int kKeepAliveSeconds = 10;
constexpr int kJudgedReadings = 3;
constexpr int kNoReading = 255;
constexpr int kRejectSound = 1;

/// A pair of hexadecimal digits; 0, which no coin measures, where there is none.
int pairValue(std::string_view pair) {
    int value = 0;
    const char* end = pair.data() + pair.size();
    const auto [stop, error] = std::from_chars(pair.data(), end, value, 16);
    return pair.size() == 2 && error == std::errc{} && stop == end && value >= 0 ? value : 0;
}

}  // namespace

void CcCoinData::enable() {
    errors_.attempt(312, [this] {
        CcMemory::SessionGuard session(memory_);
        const bool open = memory_.openEepromSession();
        if (sessionOpened && !state_.gather.abortFlag) sessionOpened(open);
        // A mech that says nothing yet may all the same; a box in command mode passes nothing on.
        const bool i2c = memory_.model().session == CcSession::i2c;
        if (open || (i2c && state_.box.serialModeFlag)) requestCcCoinData();
        session.dismiss();
    });
}

void CcCoinData::disable() {
    errors_.attempt(313, [this] { memory_.closeEepromSession(); });
}

void CcCoinData::requestCcCoinData() {
    errors_.attempt(314, [this] {
        const CcModel& model = memory_.model();
        if (model.session == CcSession::sentinel) {
            gatherFromSentinel();
            return;
        }
        link_.sendString(model.coinRequest);
        const MechModel* numbers = state_.mech.model();
        if (numbers == nullptr || !numbers->keepAlive) return;
        state_.link.keepAliveCounter = kKeepAliveSeconds;
        link_.setKeepAlive(true);
    });
}

void CcCoinData::gatherFromSentinel() {
    const GatherState& gather = state_.gather;
    while (gather.coinsRemaining > 0 && !gather.abortFlag && state_.link.portOpen) {
        // No coin within the time is no end: the technician may be looking for the next one.
        if (memory_.sentinel().sentinelCommand(kSentinelRequest, kSentinelLines, kSentinelCoinMs)) {
            errors_.attempt(314, [this] { takeSentinelReply(); });
        }
    }
}

void CcCoinData::takeSentinelReply() {
    GatherState& gather = state_.gather;
    for (int p = 0; p < state_.n(); ++p) {
        gather.latestReading[p] = pairValue(field(state_.box.replyText, 2 * p + 1, 2));
    }
    bool valid = true;
    for (int p = 0; p < kJudgedReadings; ++p) {
        valid = valid && gather.latestReading[p] != 0 && gather.latestReading[p] != kNoReading;
    }
    if (!valid) {
        if (gather.latestReading[0] != 0 && sinks_.makeSound) sinks_.makeSound(kRejectSound);
        return;
    }
    if (sinks_.logReading) sinks_.logReading();
    --gather.coinsRemaining;
    if (sinks_.reading) sinks_.reading();
}

}  // namespace vantor
