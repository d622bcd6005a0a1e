#include "nri/NriCoinData.h"

namespace vantor {

namespace {

constexpr std::string_view kNextCoin = "T";
constexpr int kPlainLines = 4;
constexpr int kHandshakeLines = 1;
constexpr int kAfterPlainMs = 150;
constexpr int kRejectSound = 1;

}  // namespace

void NriCoinData::getNriReadings(int channel) {
    const GatherState& gather = state_.gather;
    bool exchanged = true;
    while (gather.coinsRemaining >= 1 && exchanged && !comms_.givenUp()) {
        bool taken = false;
        exchanged = errors_.attempt(315, [&] { taken = takeCoin(channel); }) && taken;
    }
    prompts_.beep();
    errors_.attempt(315, [this] { check_.leaveSerialMode(); });
}

bool NriCoinData::takeCoin(int channel) {
    GatherState& gather = state_.gather;
    const NriShape shape = nriShape(state_.mech.mechType);
    link_.sendString(kNextCoin);
    if (!comms_.nriCommand("", -(shape.model.handshake ? kHandshakeLines : kPlainLines))) {
        return false;
    }
    const bool mapped = shape.model.mappedReadings && channel >= 1 && channel <= shape.channels;
    const auto readings = nriReading(shape, state_.box.replyText,
                                     mapped ? &state_.nri.next.parameterMap[channel] : nullptr);
    if (!shape.model.handshake) {
        link_.waitFor(kAfterPlainMs, gather.abortFlag);
        if (shape.model.beepsPerCoin) prompts_.beep();
    }
    if (gather.abortFlag) return false;
    if (!readings) {
        // A reading cut short is nobody's coin: the technician hears it and drops another.
        if (sinks_.makeSound) sinks_.makeSound(kRejectSound);
        return true;
    }
    for (int p = 0; p < shape.parameters; ++p) {
        gather.latestReading[p] = readings->at(static_cast<std::size_t>(p));
    }
    if (gather.logEnabled && sinks_.logReading) sinks_.logReading();
    --gather.coinsRemaining;
    if (sinks_.reading) sinks_.reading();
    return true;
}

}  // namespace vantor
