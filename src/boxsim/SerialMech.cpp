#include "boxsim/SerialMech.h"

#include <algorithm>

namespace vantor::boxsim {

std::vector<std::string> SerialMech::coins() const {
    std::vector<std::string> names;
    for (const CoinPiece& piece : coinBag()) names.emplace_back(piece.name);
    return names;
}

std::optional<CoinReading> SerialMech::draw(std::string_view coin, Random& random) const {
    return drawBytes(sensors_, coin, random);
}

void SerialMech::commandSeen(std::string_view command) {
    if (command.starts_with('C')) select_ = command;
}

char SerialMech::coinLetter(int channel) const {
    constexpr std::string_view kTubeLetters = "ADBC";
    const auto index = static_cast<std::size_t>(channel);
    if (tubeOrder_ && index < kTubeLetters.size()) return kTubeLetters[index];
    return SimulatedMech::coinLetter(channel);
}

void SerialMech::serialOpened(std::string_view modeCommand) {
    mode_ = modeCommand;
}

void SerialMech::serialClosed() {
    mode_.clear();
    voice_.hush();
}

std::uint8_t byteOf(const CoinReading& reading, std::size_t sensor) {
    if (sensor >= reading.size()) return 0;
    return static_cast<std::uint8_t>(std::clamp(reading[sensor], 0, 255));
}

}  // namespace vantor::boxsim
