#include "boxsim/MarsMech.h"

#include <algorithm>
#include <cmath>

#include "boxsim/Wire.h"

namespace vantor::boxsim {

namespace {

constexpr std::array kFourSegments = {0, 128, 256, 384};
/// The cells below each segment hold coin values.
constexpr std::array kTwoSegments = {128, 384};

struct MarsRow {
    std::string_view model;
    MarsMech::Sensors sensors;  ///< thickness per mm, diameter per mm, material per unit
    std::span<const int> segments = kFourSegments;
};

/// The last row stands for every model that is not listed.
constexpr std::array kRows = {
    MarsRow{"MS1000", {{{512, 620, 2.0}, {348, 78, 2.0}, {806, 34, 2.5}}}},
    MarsRow{"MS1400", {{{548, 655, 2.2}, {372, 82, 2.0}, {842, 36, 2.6}}}},
    MarsRow{"ME181", {{{318, 405, 1.5}, {226, 57, 1.5}, {520, 23, 2.0}}}, kTwoSegments},
    MarsRow{"MS130B1", {{{290, 440, 1.8}, {198, 52, 1.6}, {476, 20, 2.2}}}},
    MarsRow{"MS111", {{{334, 398, 1.8}, {240, 50, 1.6}, {455, 21, 2.2}}}},
    MarsRow{"ME111", {{{304, 420, 1.5}, {212, 55, 1.5}, {498, 22, 2.0}}}},
};

const MarsRow& rowOf(std::string_view model) {
    const auto found = std::find_if(kRows.begin(), kRows.end(),
                                    [&](const MarsRow& row) { return row.model == model; });
    return found == kRows.end() ? kRows.back() : *found;
}

// A segment of the PROM: a marker, then for each sensor the windows of six coins, each a low and a
// high limit of three cells, least significant first.
constexpr int kSegmentMarker = 15;
constexpr int kChannels = 6;
constexpr int kCellsPerLimit = 3;
constexpr int kCellsPerWindow = 2 * kCellsPerLimit;
constexpr int kCellsPerSensor = kChannels * kCellsPerWindow;
constexpr int kCellsOfLimits = 1 + 3 * kCellsPerSensor;

/// What a mech accepts before anybody has programmed it, channel by channel.
constexpr std::array<std::string_view, kChannels> kOwnCoins = {"5 Pell",  "10 Pell", "20 Pell",
                                                               "50 Pell", "1 Dorin", "2 Dorin"};
constexpr double kOwnWindow = 4.5;  // spreads to each side

int limitAt(std::span<const std::uint8_t> cells, int address) {
    int value = 0;
    for (int i = kCellsPerLimit - 1; i >= 0; --i) {
        value = value * 16 + cells[static_cast<std::size_t>(address) + static_cast<std::size_t>(i)];
    }
    return value;
}

/// `segment`: the cells from its marker on.
std::optional<int> programmedChannel(const CoinReading& reading,
                                     std::span<const std::uint8_t> segment) {
    for (int channel = 0; channel < kChannels; ++channel) {
        bool inside = true;
        for (int sensor = 0; sensor < 3; ++sensor) {
            const int window = 1 + sensor * kCellsPerSensor + channel * kCellsPerWindow;
            const int value = reading.at(static_cast<std::size_t>(sensor));
            const int high = limitAt(segment, window + kCellsPerLimit);
            // A channel that nobody has programmed has windows of 0 to 0.
            inside = inside && high > 0 && value >= limitAt(segment, window) && value <= high;
        }
        if (inside) return channel;
    }
    return std::nullopt;
}

}  // namespace

MarsMech::MarsMech(std::string_view model)
    : sensors_(rowOf(model).sensors), segments_(rowOf(model).segments) {}

std::optional<int> MarsMech::channelFor(const CoinReading& reading,
                                        std::span<const std::uint8_t> prom) const {
    if (reading.size() < sensors_.size()) return std::nullopt;
    for (const int start : segments_) {
        const auto from = static_cast<std::size_t>(start);
        if (prom.size() < from + kCellsOfLimits || prom[from] != kSegmentMarker) continue;
        return programmedChannel(reading, prom.subspan(from, kCellsOfLimits));
    }
    for (int channel = 0; channel < kChannels; ++channel) {
        const CoinPiece* piece = findCoin(kOwnCoins.at(static_cast<std::size_t>(channel)));
        if (piece == nullptr) continue;
        const MarsPopulation means = population(*piece);
        bool inside = true;
        for (std::size_t p = 0; p < means.size(); ++p) {
            inside = inside && std::abs(reading[p] - means[p].mean) <= kOwnWindow * means[p].spread;
        }
        if (inside) return channel;
    }
    return std::nullopt;
}

std::array<int, 3> MarsMech::idleValues() const {
    return {sensors_[0].idle, sensors_[1].idle, sensors_[2].idle};
}

std::vector<std::string> MarsMech::coinLines(const CoinReading& reading) const {
    return {threeFields('M', reading)};
}

std::vector<std::string> MarsMech::coins() const {
    std::vector<std::string> names;
    for (const CoinPiece& piece : coinBag()) names.emplace_back(piece.name);
    return names;
}

MarsPopulation MarsMech::population(const CoinPiece& piece) const {
    const std::array quantities = {piece.thickness, piece.diameter, piece.material};
    MarsPopulation population;
    for (std::size_t p = 0; p < population.size(); ++p) {
        const Sensor& sensor = sensors_[p];
        population[p] = {sensor.idle + sensor.perUnit * quantities[p].mean,
                         std::hypot(sensor.perUnit * quantities[p].spread, sensor.noise)};
    }
    return population;
}

std::optional<CoinReading> MarsMech::draw(std::string_view coin, Random& random) const {
    const CoinPiece* piece = findCoin(coin);
    if (piece == nullptr) return std::nullopt;
    CoinReading reading;
    for (const Quantity& parameter : population(*piece)) {
        const double value = random.normal(parameter.mean, parameter.spread);
        reading.push_back(static_cast<int>(std::lround(value)));
    }
    return reading;
}

std::string threeFields(char letter, std::span<const int> values) {
    std::string line(1, letter);
    for (std::size_t i = 0; i < 3; ++i) {
        line += ' ' + decimalField(i < values.size() ? values[i] : 0, 5);
    }
    return line;
}

}  // namespace vantor::boxsim
