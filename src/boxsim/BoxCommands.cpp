#include "boxsim/BoxCommands.h"

#include <algorithm>
#include <utility>

#include "boxsim/MarsMech.h"
#include "boxsim/Wire.h"

namespace vantor::boxsim {

namespace {

constexpr int kWordsPerLine = 16;
constexpr std::size_t kVersionLength = 5;
constexpr std::array<std::string_view, 5> kSerialModes = {"$01", "$05", "$06", "$23", "$25"};

Outcome answer(std::string line) {
    return {.lines = {std::move(line)}, .ownTime = kCommandTime};
}

const Outcome kSilence{};
const Outcome kUnknown{.known = false};

std::string dataLine(const PromSocket& socket, int start) {
    // R aaa d d d d d d d d d d d d d d d d : a separator after the address and every digit
    std::string line = {'R', hexDigit(start >> 8), hexDigit(start >> 4), hexDigit(start), ' '};
    for (int i = 0; i < kWordsPerLine; ++i) {
        line += hexDigit(socket.read(start + i));
        line += ' ';
    }
    return line;
}

}  // namespace

void BoxCommands::setVersion(std::string_view version) {
    version_ = version.substr(0, kVersionLength);
    version_.resize(kVersionLength, ' ');
}

std::string BoxCommands::statusLine(const SimulatedMech* mech) const {
    // C ttttt ttttt ttttt ttttt hh vvvvv : timings at 2, 8, 14 and 20, the version at 29
    std::string line(1, mech != nullptr && mech->seen() ? 'C' : 'N');
    for (const int timing : timings_) line += decimalField(timing, 5) + ' ';
    return line + "00 " + version_;
}

Outcome BoxCommands::run(std::string_view command, const SimulatedMech* mech) {
    const char first = command.front();
    if (first == 'A' || first == 'K') {
        if (!std::exchange(readArmed_, false)) return kUnknown;
        return readProm(first == 'A' ? PromSocket::kSmall : PromSocket::kLarge);
    }
    switch (first) {
        case 'C':
            codedOutputs_ = binaryOffered_ && command == "C00";
            return kSilence;
        case '#':
            return kSilence;
        case '$': {
            const bool known =
                std::find(kSerialModes.begin(), kSerialModes.end(), command) != kSerialModes.end();
            if (!known) return kUnknown;
            Outcome outcome = answer("*S");
            outcome.entersSerialMode = true;
            return outcome;
        }
        case 'Z':
            return storeTimings(command);
        case 'P':
            return programLine(command);
        default:
            return runLetter(first, mech);
    }
}

Outcome BoxCommands::runLetter(char letter, const SimulatedMech* mech) {
    switch (letter) {
        case '_':
        case 'J':
        case 'W':
        case 'B':
            return kSilence;
        case 'M':
        case 'O':
        case 'V':
            testing_ = letter != 'M';
            binaryOffered_ = false;
            codedOutputs_ = false;
            return kSilence;
        case 'N':
        case 'I':
            coinDataOn_ = letter == 'N';
            return kSilence;
        case 'E':
            readArmed_ = true;
            return kSilence;
        case 'S':
            return answer(statusLine(mech));
        case 'Y': {
            const auto idle = mech != nullptr ? mech->idleValues() : std::array<int, 3>{};
            return answer(threeFields('Y', idle));
        }
        case '*': {
            const bool mechOffers = mech != nullptr && mech->offersBinaryOutput();
            binaryOffered_ = binaryOutput_.value_or(mechOffers);
            return binaryOffered_ ? answer("D") : kSilence;
        }
        default:
            return kUnknown;
    }
}

Outcome BoxCommands::readProm(int words) {
    Outcome outcome;
    if (socket_.empty()) return outcome;
    outcome.ownTime = kCommandTime;
    for (int start = 0; start < words; start += kWordsPerLine) {
        outcome.lines.push_back(dataLine(socket_, start));
    }
    socket_.noteRead(0, words);
    return outcome;
}

Outcome BoxCommands::programLine(std::string_view command) {
    // P aaa d... : what cannot be understood is neither stored nor acknowledged
    constexpr std::size_t kAddressEnd = 4;
    if (command.size() <= kAddressEnd || command.size() > kAddressEnd + kWordsPerLine) {
        return kUnknown;
    }
    const auto start = hexValue(command.substr(1, 3));
    const std::string_view digits = command.substr(kAddressEnd);
    std::vector<int> nibbles;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        const auto nibble = hexValue(digits.substr(i, 1));
        if (!nibble) return kUnknown;
        nibbles.push_back(*nibble);
    }
    if (!start) return kUnknown;
    if (socket_.empty() || faults_.refuses()) return kSilence;
    const bool lies = faults_.liesAboutWrite();
    const bool dies = faults_.losesPower().has_value();
    if (dies) nibbles.resize(nibbles.size() / 2);
    Outcome outcome{.ownTime = kCommandTime};
    int address = *start;
    for (const int nibble : nibbles) {
        if (!lies && !faults_.cellSticks(address)) socket_.program(address, nibble);
        outcome.ownTime += socket_.cellTime();
        ++address;
    }
    if (!dies && !faults_.losesAck()) outcome.lines.emplace_back("Z");
    return outcome;
}

Outcome BoxCommands::storeTimings(std::string_view command) {
    // Z ttt ttt ttt ttt
    if (command.size() != 1 + 3 * timings_.size()) return kUnknown;
    std::array<int, 4> timings{};
    for (std::size_t i = 0; i < timings.size(); ++i) {
        const auto timing = decimalValue(command.substr(1 + 3 * i, 3));
        if (!timing) return kUnknown;
        timings[i] = *timing;
    }
    timings_ = timings;
    return kSilence;
}

}  // namespace vantor::boxsim
