#include "boxsim/NriPlainMech.h"

#include <algorithm>

#include "boxsim/FaultInjector.h"
#include "boxsim/Wire.h"

namespace vantor::boxsim {

namespace {

constexpr std::size_t kWidth = 3;
constexpr char kEnd = static_cast<char>(kCarriageReturn);
constexpr std::string_view kRefusal = "?";
constexpr std::string_view kListEnd = "::\r";
/// The date stands at 29 of the line that "Z" gives.
constexpr std::string_view kBeforeDate = "SERIES 05 NO 0042719 ADJUST ";
constexpr std::string_view kAfterDate = " OK";
static_assert(kBeforeDate.size() == 28);
/// Behind header and lowest value: the values of left, middle and right tube, then the channels'.
constexpr std::size_t kTubes = 15;
constexpr std::size_t kChannelValues = 27;
constexpr std::size_t kValueWidth = 4;

bool areDigits(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

int numberAt(std::string_view text, std::size_t at) {
    return at + kWidth <= text.size() ? decimalValue(text.substr(at, kWidth)).value_or(0) : 0;
}

bool isDate(std::string_view text) {
    return text.size() == 8 && text[2] == '/' && text[5] == '/' && areDigits(text.substr(0, 2)) &&
           areDigits(text.substr(3, 2)) && areDigits(text.substr(6));
}

}  // namespace

NriPlainMech::NriPlainMech(const MechModel& model, MechLine& line) : NriMech(model, line) {
    for (int channel = 1; channel <= variant().channels; ++channel) {
        std::string highs, lows;
        for (const ByteWindow& window : factoryWindows(channel)) {
            highs += decimalField(window.high, kWidth);
            lows += decimalField(window.low, kWidth);
        }
        setBlock(channel, highs + lows);
    }
}

void NriPlainMech::forget() {
    command_ = 0;
    data_.clear();
}

void NriPlainMech::heard(std::uint8_t byte) {
    if (byte == kEscape) return;
    const char c = static_cast<char>(byte);
    if (command_ == 0) {
        begin(c);
    } else if (command_ == 'V') {
        giveWindows(c);
    } else {
        data_ += c;
        if (complete()) store();
    }
}

void NriPlainMech::begin(char letter) {
    switch (letter) {
        case 'I':
            disarmCoin();
            identify();
            return;
        case 'T':
            armCoin();
            return;
        case 'V':
        case 'D':
        case 'B':
        case 'E':
        case 'F':
            disarmCoin();
            command_ = letter;
            return;
        case 'X':
        case 'Y':
        case 'Z':
            disarmCoin();
            give(letter);
            return;
        default:
            return;
    }
}

void NriPlainMech::give(char letter) {
    if (faults().refuses() || (letter != 'Z' && letter != valuesCommand())) {
        sayLine(kRefusal);
    } else if (letter == 'Z') {
        sayLine(std::string(kBeforeDate) + block(dateBlock()) + std::string(kAfterDate));
    } else if (letter == 'X') {
        sayLine(block(valuesBlock()));
    } else {
        sayLines(block(valuesBlock()), kWidth);
    }
}

void NriPlainMech::giveWindows(char channel) {
    forget();
    const int number = channel - '0';
    if (number < 1 || number > variant().channels || faults().refuses()) {
        sayLine(kRefusal);
    } else {
        sayLines(block(number), kWidth);
    }
}

bool NriPlainMech::complete() const {
    switch (command_) {
        case 'D':
            return std::count(data_.begin(), data_.end(), kEnd) == 2;
        case 'F':
            return data_.ends_with(kListEnd);
        default:
            return data_.ends_with(kEnd);
    }
}

void NriPlainMech::store() {
    const char command = command_;
    std::string data = data_;
    forget();
    if (command == 'D') {
        storeWindows(data);
        return;
    }
    data.resize(data.size() - (command == 'F' ? kListEnd.size() : 1));
    if (command == 'E') {
        put(dateBlock(), data, isDate(data));
    } else {
        const bool list = command == 'F';
        // The header is any text, as long as it comes back at its length.
        const bool own = list == (valuesCommand() == 'X');
        put(valuesBlock(), data, own && (list || areDigits(data)));
    }
}

void NriPlainMech::storeWindows(std::string_view data) {
    // c highs CR lows CR
    const std::size_t half = kWidth * static_cast<std::size_t>(variant().parameters);
    if (data.size() != 1 + 2 * (half + 1) || data[1 + half] != kEnd) return;
    const std::string limits =
        std::string(data.substr(1, half)) + std::string(data.substr(2 + half, half));
    const int channel = data[0] - '0';
    put(channel, limits, channel >= 1 && channel <= variant().channels && areDigits(limits));
}

void NriPlainMech::put(int number, std::string_view text, bool wellFormed) {
    if (!wellFormed || text.size() != block(number).size()) return;
    if (faults().refuses() || faults().cellSticks(number) || faults().liesAboutWrite()) return;
    const auto dead = faults().losesPower();
    // Stored from the front.
    const std::size_t stored = dead ? text.size() / 2 : text.size();
    setBlock(number, std::string(text.substr(0, stored)) + block(number).substr(stored));
    if (dead) losePower(*dead);
}

std::string NriPlainMech::readingText(const CoinReading& reading) const {
    std::string text;
    for (std::size_t i = 0; i < sensors().size(); ++i) {
        text += decimalField(byteOf(reading, i), kWidth) + kEnd;
    }
    return text;
}

std::vector<ByteWindow> NriPlainMech::windows(int channel) const {
    const std::string& text = block(channel);
    const auto parameters = static_cast<std::size_t>(variant().parameters);
    std::vector<ByteWindow> result;
    for (std::size_t p = 0; p < parameters; ++p) {
        result.push_back(
            {.low = numberAt(text, kWidth * (parameters + p)), .high = numberAt(text, kWidth * p)});
    }
    return result;
}

int NriPlainMech::route(int channel) const {
    const std::string_view values = block(valuesBlock());
    const auto place = static_cast<std::size_t>(channel - 1);
    const auto value = values.substr(kChannelValues + kValueWidth * place, kValueWidth);
    int bit = 4;
    for (std::size_t tube = 0; tube < 3; ++tube, bit /= 2) {
        if (values.substr(kTubes + kValueWidth * tube, kValueWidth) == value) return bit;
    }
    return 0;
}

}  // namespace vantor::boxsim
