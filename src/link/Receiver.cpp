#include "link/Receiver.h"

#include <numeric>

#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr std::uint8_t kCarriageReturn = 13;
constexpr std::uint8_t kAck = 0x05;
constexpr std::uint8_t kNak = 0x06;
constexpr std::uint8_t kNriAck = 0x06;
constexpr std::uint8_t kG10RecordStart = 128;
constexpr std::uint8_t kWordFrame = ';';
constexpr std::uint8_t kCoinFrame = '?';
constexpr int kWordFrameBytes = 4;
constexpr int kCoinHoldTicks = 4;
constexpr int kCoinPauseMs = 50;
constexpr int kBinaryPositions = 16;
constexpr int kBinaryIndicators = 5;
constexpr int kOutputLines = 6;

/// The sum that closes a CC frame: all bytes before it, the opening one included.
int frameSum(std::span<const std::uint8_t> bytes) {
    return std::accumulate(bytes.begin(), bytes.end(), 0) % 256;
}

char character(std::uint8_t byte) {
    return static_cast<char>(byte);
}

}  // namespace

Receiver::Receiver(SessionState& state, ProgrammerLink& link, Prompts& prompts,
                   ErrorReporter& errors)
    : state_(state), link_(link), prompts_(prompts), errors_(errors) {}

// --- bytes ---------------------------------------------------------------------------------

void Receiver::handleByte(std::uint8_t byte) {
    if (!state_.box.serialModeFlag) {
        textByte(byte);
        return;
    }
    const MechModel* model = state_.mech.model();
    switch (model == nullptr ? SerialForm::none : model->serialForm) {
        case SerialForm::none:
            return;
        case SerialForm::nriText:
            nriByte(byte);
            return;
        case SerialForm::sentinel:
            sentinelByte(byte);
            return;
        case SerialForm::ccShort:
        case SerialForm::ccMedium:
        case SerialForm::ccLong:
            ccByte(byte, *model);
            return;
    }
}

void Receiver::textByte(std::uint8_t byte) {
    std::string& buffer = state_.link.lineBuffer;
    if (byte != kCarriageReturn) {
        if (byte >= 32) buffer.push_back(character(byte));
        return;
    }
    if (buffer.empty()) return;
    // Moved out first: a decoder that waits may already receive the next line.
    const std::string line = std::exchange(buffer, {});
    if (sinks.lastLine) sinks.lastLine(line);
    state_.link.replyFlag = true;
    dispatchLine(line);
}

void Receiver::nriByte(std::uint8_t byte) {
    BoxReplies& box = state_.box;
    if (box.nriG10Mode) {
        if (byte == kCarriageReturn) {
            parseG10CoinAccepted(std::string(box.replyText));
        } else if (byte == kG10RecordStart) {
            box.replyText.clear();
        } else {
            box.replyText.push_back(character(byte));
        }
        return;
    }
    if (byte == kNriAck) {
        box.nriAckFlag = true;
    } else if (byte == kCarriageReturn) {
        if (--box.linesExpected < 1) box.linesComplete = true;
    } else {
        box.replyText.push_back(character(byte));
        if (byte == '?') box.nriQueryFlag = true;
    }
}

void Receiver::sentinelByte(std::uint8_t byte) {
    BoxReplies& box = state_.box;
    if (byte == '%') box.sentinelOpen = false;
    box.sentinelBuffer.push_back(character(byte));
    if (byte == kCarriageReturn && --box.linesExpected <= 0) box.linesComplete = true;
}

void Receiver::ccByte(std::uint8_t byte, const MechModel& model) {
    LinkState& link = state_.link;
    if (link.frameCount == 0) {
        if (byte == kAck) {
            state_.box.i2cAckFlag = true;
        } else if (byte == kNak) {
            if (!state_.gather.gatherActive) {
                state_.box.i2cNakFlag = true;
            } else if (sinks.requestCoinData) {
                sinks.requestCoinData();
            }
        } else if (byte == kWordFrame || byte == kCoinFrame) {
            link.frameBuffer[0] = byte;
            link.frameCount = 1;
        }
        return;
    }
    link.frameBuffer.at(static_cast<std::size_t>(link.frameCount)) = byte;
    ++link.frameCount;
    if (link.frameBuffer[0] == kWordFrame) {
        if (link.frameCount < kWordFrameBytes) return;
        const auto frame = link.frameBuffer;
        link.frameCount = 0;
        decodeWordReply(std::span(frame).first(kWordFrameBytes));
        return;
    }
    const int count = link.frameCount;
    switch (model.serialForm) {
        case SerialForm::ccShort:
            if (count == 5) closeCoinFrame(4);
            break;
        case SerialForm::ccLong:
            if (count == 10) closeCoinFrame(9);
            break;
        default:
            // Two lengths exist; the sum in the seventh byte tells the shorter one.
            if (count == 7 && frameSum(std::span(link.frameBuffer).first(6)) == byte) {
                closeCoinFrame(6);
            } else if (count == 8) {
                closeCoinFrame(7);
            }
            break;
    }
}

void Receiver::closeCoinFrame(int n) {
    const auto frame = state_.link.frameBuffer;
    state_.link.frameCount = 0;
    decodeCoinFrame(std::span(frame).first(static_cast<std::size_t>(n) + 1), n);
}

// --- lines ---------------------------------------------------------------------------------

void Receiver::dispatchLine(std::string_view line) {
    errors_.attempt(818, [&] {
        switch (line.front()) {
            case '*':
                if (field(line, 2, 2) == "EV") parseCoinAccepted(line);
                if (field(line, 2, 1) == "S") {
                    state_.box.serialModeFlag = true;
                    state_.link.frameCount = 0;
                    state_.link.lineBuffer.clear();
                }
                if (field(line, 2, 1) == "R") state_.box.commandModeFlag = true;
                break;
            case 'M':
                if (state_.gather.gatherActive && sinks.marsMeasurement)
                    sinks.marsMeasurement(line);
                break;
            case 'V':
                parseCoinAccepted(line);
                break;
            case 'Y':
                parseIdles(line);
                break;
            case 'R':
                if (sinks.promLine) sinks.promLine(line);
                break;
            case 'Z':
                state_.box.promLineAck = true;
                break;
            case 'C':
            case 'N':
                state_.box.mechPresent = line.front() == 'C';
                parsetimings(line);
                state_.box.statusReceived = true;
                break;
            case 'B':
                prompts_.notice({.title = state_.msgText(817),
                                 .text = state_.msgText(816),
                                 .icon = PromptIcon::exclamation});
                break;
            default:
                break;
        }
    });
}

void Receiver::parsetimings(std::string_view line) {
    errors_.attempt(830, [&] {
        BoxReplies& box = state_.box;
        box.timing1 = lenientInteger(field(line, 2, 5));
        box.timing2 = lenientInteger(field(line, 8, 5));
        box.timing3 = lenientInteger(field(line, 14, 5));
        box.timing4 = lenientInteger(field(line, 20, 5));
        box.boxVersion = std::string(field(line, 29, 5));
        if (sinks.boxVersion) sinks.boxVersion(box.boxVersion);
    });
}

void Receiver::parseIdles(std::string_view line) {
    errors_.attempt(820, [&] {
        auto& idle = state_.gather.idleReading;
        idle[0] = lenientInteger(field(line, 3, 5));
        idle[1] = lenientInteger(field(line, 9, 5));
        idle[2] = lenientInteger(field(line, 15, 5));
    });
}

// --- coin events of the validator test -------------------------------------------------------

void Receiver::resetValtestDisplay() {
    if (sinks.valtest != nullptr) sinks.valtest->resetValtestDisplay();
}

void Receiver::playSound(int kind) {
    if (sinks.makeSound) sinks.makeSound(kind);
}

void Receiver::showCoin() {
    state_.link.coinDisplayHold = kCoinHoldTicks;
    playSound(0);
}

void Receiver::parseCoinAccepted(std::string_view line) {
    errors_.attempt(819, [&] {
        resetValtestDisplay();
        if (line.starts_with("*EV")) {
            playSound(0);
            return;
        }
        const std::string_view code = field(line, 3, 1);
        if (code.empty()) return;
        const char event = code.front();
        if (event >= 'A' && event <= 'I') {
            acceptedLetter(event);
        } else if (event == 'R') {
            rejected();
        } else if (event == 'X') {
            binaryPattern(lenientInteger("&h" + std::string(field(line, 4, 2))) & 63);
        }
    });
}

void Receiver::acceptedLetter(char letter) {
    const MechModel* model = state_.mech.model();
    int position = letter - 'A';
    if (model != nullptr && model->tubeOrder &&
        !(model->g40Variants && keepsLetterOrder(state_.valtest.g40Variant))) {
        constexpr std::array<int, 4> kTubePosition = {0, 2, 3, 1};
        if (position <= 3) position = kTubePosition[static_cast<std::size_t>(position)];
    }
    if (sinks.valtest != nullptr) sinks.valtest->markAccepted(position);
    showCoin();
    if (model != nullptr && model->coinPause) {
        link_.sendString("C01");
        link_.waitTicksHoldingInput(kCoinPauseMs);
        link_.sendString("C00");
    }
}

void Receiver::rejected() {
    if (state_.valtest.tubeCount < 1) return;
    if (sinks.valtest != nullptr) sinks.valtest->markRejected(state_.valtest.tubeCount - 1);
    state_.link.coinDisplayHold = kCoinHoldTicks;
    playSound(1);
}

void Receiver::binaryPattern(int pattern) {
    const MechModel* model = state_.mech.model();
    ValtestDisplay* display = sinks.valtest;
    if (display != nullptr && model != nullptr && model->binaryOutput) {
        if (pattern < kBinaryPositions) display->markPosition(pattern);
        // Indicator 1 is the strobe, lit with every code; the others carry the code's bits.
        display->markBinary(1);
        constexpr std::array<std::pair<int, int>, 4> kBitIndicators = {
            {{8, 0}, {4, 2}, {2, 3}, {1, 4}}};
        for (const auto& [bit, indicator] : kBitIndicators) {
            if ((pattern & bit) != 0) display->markBinary(indicator);
        }
        if (pattern < kBinaryPositions) display->countPosition(pattern);
    } else if (display != nullptr) {
        for (int k = 0; k < kOutputLines; ++k) {
            if ((pattern & (1 << k)) == 0) continue;
            display->markPosition(k);
            if (k < kBinaryIndicators) display->markBinary(k);
        }
    }
    showCoin();
}

void Receiver::parseG10CoinAccepted(std::string_view record) {
    if (record.empty()) return;
    errors_.attempt(821, [&] {
        resetValtestDisplay();
        playSound(0);
        const int code = static_cast<unsigned char>(record.front());
        if (ValtestDisplay* display = sinks.valtest) {
            const int channel = (code & 120) / 8;
            if (channel > 0) display->markAccepted(channel - 1);
            constexpr int kCashbox = 11;
            int route = kCashbox;
            if ((code & 1) != 0) {
                route = 10;
            } else if ((code & 2) != 0) {
                route = 9;
            } else if ((code & 4) != 0) {
                route = 8;
            }
            display->markAccepted(route);
        }
        state_.link.coinDisplayHold = kCoinHoldTicks;
    });
}

// --- CC frames -------------------------------------------------------------------------------

void Receiver::decodeWordReply(std::span<const std::uint8_t> frame) {
    BoxReplies& box = state_.box;
    errors_.attempt(303, [&] {
        const bool good = frameSum(frame.first(3)) == frame[3];
        box.wordValue = good ? frame[1] * 256 + frame[2] : -1;
        box.wordChecksumError = !good;
    });
    box.wordReadyFlag = true;
}

void Receiver::decodeCoinFrame(std::span<const std::uint8_t> frame, int n) {
    errors_.attempt(304, [&] {
        const auto data = static_cast<std::size_t>(n);
        // A coin that nobody gathers (a late frame of a run that is over) is nobody's reading.
        const bool gathering = state_.gather.gatherActive;
        if (frameSum(frame.first(data)) != frame[data]) {
            if (gathering && sinks.requestCoinData) sinks.requestCoinData();
            return;
        }
        state_.box.wordChecksumError = false;
        for (int i = 1; i < n; ++i) {
            state_.gather.latestReading[i - 1] = frame[static_cast<std::size_t>(i)];
        }
        if (!gathering) return;
        if (sinks.logReading) sinks.logReading();
        if (sinks.reading) sinks.reading();
        if (state_.gather.coinsRemaining > 0 && sinks.requestCoinData) sinks.requestCoinData();
    });
    state_.box.wordReadyFlag = true;
}

}  // namespace vantor
