#include "boxsim/NriHandshakeMech.h"

#include "boxsim/FaultInjector.h"
#include "boxsim/Wire.h"

namespace vantor::boxsim {

namespace {

constexpr int kFirstChannelBlock = 4;
constexpr int kRouteBlock = 17;
constexpr char kAcknowledge = 0x06;
constexpr std::string_view kRefusal = "?";
constexpr Micros kAcknowledgeTime{1000};

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
}

int pairAt(std::string_view text, std::size_t at) {
    return at + 2 <= text.size() ? hexValue(text.substr(at, 2)).value_or(0) : 0;
}

}  // namespace

NriHandshakeMech::NriHandshakeMech(const MechModel& model, MechLine& line) : NriMech(model, line) {
    for (int channel = 1; channel <= variant().channels; ++channel) {
        std::string text;
        for (const ByteWindow& window : factoryWindows(channel)) {
            text += hexPair(window.high) + hexPair(window.low);
        }
        setBlock(kFirstChannelBlock + channel - 1, text);
    }
}

void NriHandshakeMech::forget() {
    command_ = 0;
    target_ = 0;
    digits_.clear();
}

void NriHandshakeMech::acknowledge() {
    voice().answer(std::string_view(&kAcknowledge, 1), kAcknowledgeTime);
}

void NriHandshakeMech::heard(std::uint8_t byte) {
    const char c = static_cast<char>(byte);
    if (c >= 'G' && c <= 'Z') {
        begin(c);
        return;
    }
    if (command_ == 0 || !isHexDigit(c)) return;
    digits_ += c;
    if (digits_.size() < 2) return;
    const int value = pairAt(digits_, 0);
    digits_.clear();
    act(value);
}

void NriHandshakeMech::begin(char letter) {
    forget();
    disarmCoin();
    switch (letter) {
        case 'I':
            identify();
            return;
        case 'T':
            armCoin();
            return;
        case 'X':
        case 'Z':
            command_ = letter;
            acknowledge();
            return;
        default:
            return;
    }
}

void NriHandshakeMech::act(int value) {
    if (command_ == 'X') {
        const int number = value + 1;
        forget();
        const bool given = hasBlock(number) && !faults().refuses();
        sayLine(given ? std::string_view(block(number)) : kRefusal);
    } else if (target_ == 0) {
        target_ = value + 1;
        at_ = 0;
        sticks_ = hasBlock(target_) && faults().cellSticks(target_);
    } else {
        store(value);
    }
}

void NriHandshakeMech::store(int value) {
    if (!hasBlock(target_) || faults().refuses()) {
        forget();
        voice().answer(kRefusal, kAcknowledgeTime);
        return;
    }
    if (const auto dead = faults().losesPower()) {
        forget();
        losePower(*dead);
        return;
    }
    if (!sticks_ && !faults().liesAboutWrite()) {
        std::string text = block(target_);
        text.replace(at_, 2, hexPair(value));
        setBlock(target_, text);
    }
    at_ += 2;
    acknowledge();
    // A full block ends the command: what follows belongs to none.
    if (at_ >= block(target_).size()) forget();
}

std::string NriHandshakeMech::readingText(const CoinReading& reading) const {
    std::string text;
    for (std::size_t i = 0; i < sensors().size(); ++i) text += hexPair(byteOf(reading, i));
    return text + static_cast<char>(kCarriageReturn);
}

std::vector<ByteWindow> NriHandshakeMech::windows(int channel) const {
    const std::string& text = block(kFirstChannelBlock + channel - 1);
    std::vector<ByteWindow> result;
    for (int p = 0; p < variant().parameters; ++p) {
        const std::size_t at = 4 * static_cast<std::size_t>(p);
        result.push_back({.low = pairAt(text, at + 2), .high = pairAt(text, at)});
    }
    return result;
}

int NriHandshakeMech::route(int channel) const {
    // Channels 7 to 12 at 1, 3, 5, ..., channels 1 to 6 between them.
    const int at = channel <= 6 ? 2 * channel - 1 : 2 * (channel - 7);
    const std::string_view routes = block(kRouteBlock);
    const int bits = hexValue(routes.substr(static_cast<std::size_t>(at), 1)).value_or(0);
    for (const int tube : {4, 2, 1}) {
        if ((bits & tube) != 0) return tube;
    }
    return 0;
}

}  // namespace vantor::boxsim
