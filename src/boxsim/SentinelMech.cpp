#include "boxsim/SentinelMech.h"

#include <array>

#include "boxsim/FaultInjector.h"
#include "boxsim/Wire.h"

namespace vantor::boxsim {

namespace {

constexpr int kWords = 64;
constexpr WindowPlan kWindows = {.base = 0, .stride = 8, .channels = 8};
constexpr std::array<Sensor, 3> kSensors = {{{42, 0, 0, 2.9}, {50, 0, 15, 0}, {44, 152, 0, 0.1}}};
constexpr int kCheckWord = 63;
constexpr int kRoutingStart = 53;
constexpr int kRoutingEnd = 59;
constexpr int kRoutingCheck = 56;

// Routes: A, C, B, D, AB, then no sort; the loader's mark; number and series at the end.
constexpr std::array kFactory = {FactoryWord{53, 0x007F}, FactoryWord{54, 0x89AB},
                                 FactoryWord{55, 0xC000}, FactoryWord{56, 0x0000},
                                 FactoryWord{57, 0x0000}, FactoryWord{58, 0xD2D0},
                                 FactoryWord{59, 0x5301}, FactoryWord{60, 0x28C4},
                                 FactoryWord{61, 0x0102}, FactoryWord{62, 0x0000}};

constexpr std::string_view kReadCommand = "M00";
constexpr std::string_view kReadTail = "0102";
constexpr std::string_view kWriteCommand = "W00";
constexpr std::string_view kCoinCommand = "M02070306";
constexpr std::string_view kRefusal = "ZZE";
constexpr std::string_view kWritten = "ZZW";

// Instructions of the EEPROM: two bits and an address.
constexpr int kOpcode = 0xC0;
constexpr int kAddress = 0x3F;
constexpr int kOpRead = 0x80;
constexpr int kOpWrite = 0x40;
constexpr int kOpErase = 0xC0;
constexpr int kWriteEnable = 0x30;
constexpr int kWriteDisable = 0x00;
constexpr int kErased = 0xFFFF;

constexpr Micros kReadTime{1500};
constexpr Micros kCellTime{8000};

std::string pair(int value) {
    return {hexDigit(value >> 4), hexDigit(value)};
}

/// Words 53 to 58 sum up to nothing.
int routingCheck(EepromWords words) {
    words.set(kRoutingCheck, 0);
    return (256 - words.byteSum(kRoutingStart, kRoutingEnd)) & 0xFF;
}

int checkWord(const EepromWords& words) {
    return 256 - words.byteSum(0, kCheckWord);
}

}  // namespace

SentinelMech::SentinelMech(const MechModel& model, MechLine& line)
    : SerialMech(model, line, kSensors), words_(kWords), terminal_(voice()) {
    words_.putWindows(kWindows, kSensors);
    words_.put(kFactory);
    words_.set(kRoutingCheck, static_cast<std::uint16_t>(routingCheck(words_) * 256));
    words_.set(kCheckWord, static_cast<std::uint16_t>(checkWord(words_)));
}

void SentinelMech::serialOpened(std::string_view modeCommand) {
    SerialMech::serialOpened(modeCommand);
    terminal_.reset();
}

void SentinelMech::serialClosed() {
    SerialMech::serialClosed();
    terminal_.reset();
    writeEnabled_ = false;
    coinAsked_ = false;
}

void SentinelMech::fromPc(std::uint8_t byte) {
    if (!openedBy("$06") || !selectedBy("C00")) return;
    coinAsked_ = false;
    const auto command = terminal_.take(byte, faults());
    if (command && terminal_.sessionOpen()) run(*command);
}

void SentinelMech::say(std::string_view line, Micros ownTime) {
    voice().answer(std::string(line) + static_cast<char>(kCarriageReturn), ownTime);
}

void SentinelMech::run(std::string_view command) {
    if (!powered()) return;
    constexpr std::size_t kOperand = 3;
    const bool reads = command.starts_with(kReadCommand) && command.ends_with(kReadTail) &&
                       command.size() == kOperand + 2 + kReadTail.size();
    const bool writes = command.starts_with(kWriteCommand);
    if (command == kCoinCommand) {
        coinAsked_ = true;
    } else if ((reads || writes) && faults().refuses()) {
        say(kRefusal, kReadTime);
    } else if (reads) {
        read(hexValue(command.substr(kOperand, 2)).value_or(0));
    } else if (writes) {
        write(command.substr(kOperand));
    }
}

void SentinelMech::read(int instruction) {
    if ((instruction & kOpcode) != kOpRead) {
        say(kRefusal, kReadTime);
        return;
    }
    const int word = words_.read(instruction & kAddress);
    say("ZZR" + pair(word & 0xFF) + "ZZ" + pair(word >> 8), kReadTime);
}

void SentinelMech::write(std::string_view digits) {
    const auto instruction = hexValue(digits.substr(0, 2));
    if (digits.size() < 2 || !instruction) {
        say(kRefusal, kReadTime);
        return;
    }
    if (*instruction == kWriteEnable || *instruction == kWriteDisable) {
        writeEnabled_ = *instruction == kWriteEnable;
    } else if (writeEnabled_) {
        const auto dead = faults().losesPower();
        // A cell that is being written has lost what it held.
        change(*instruction, dead ? std::string_view() : digits.substr(2));
        if (dead) {
            writeEnabled_ = false;
            losePower(*dead);
            return;
        }
    }
    say(kWritten, kCellTime);
}

void SentinelMech::change(int instruction, std::string_view data) {
    const int address = instruction & kAddress;
    if ((instruction & kOpcode) == kOpErase) {
        stuck_ = faults().cellSticks(address) ? address : -1;
        if (stuck_ < 0 && !faults().liesAboutWrite()) words_.write(address, kErased);
        return;
    }
    const auto value = hexValue(data);
    if ((instruction & kOpcode) != kOpWrite || data.size() != 4 || !value || address == stuck_) {
        return;
    }
    const int swapped = (*value & 0xFF) * 256 + (*value >> 8);
    // Writing only clears bits; without the erase before it a word is spoilt.
    if (!faults().liesAboutWrite()) {
        words_.write(address, static_cast<std::uint16_t>(words_.get(address) & swapped));
    }
}

void SentinelMech::coinInSerialMode(const CoinReading& reading) {
    if (!coinAsked_ || !powered()) return;
    coinAsked_ = false;
    std::string pairs;
    for (std::size_t i = 0; i < kSensors.size(); ++i) pairs += pair(byteOf(reading, i));
    say(pairs, kCoinTime);
}

std::optional<int> SentinelMech::channelFor(const CoinReading& reading,
                                            std::span<const std::uint8_t>) const {
    const bool inOrder = words_.get(kCheckWord) == checkWord(words_) &&
                         words_.get(kRoutingCheck) == routingCheck(words_) * 256;
    if (!inOrder) return std::nullopt;
    return words_.channelOf(kWindows, kSensors.size(), reading);
}

std::vector<ByteWindow> SentinelMech::windows(int channel) const {
    return words_.windows(kWindows, channel, kSensors.size());
}

bool SentinelMech::setMemory(int number, std::string_view content) {
    return words_.setHex(number, content);
}

bool SentinelMech::setOption(std::string_view name, std::string_view value) {
    if (name == "version" && !value.empty()) {
        terminal_.setVersion(value);
        return true;
    }
    if (name != "end-mark" || (value != "on" && value != "off")) return false;
    terminal_.setEndMark(value == "on");
    return true;
}

}  // namespace vantor::boxsim
