#include "boxsim/MarsMech.h"

#include <algorithm>
#include <cmath>

#include "boxsim/Wire.h"

namespace vantor::boxsim {

namespace {

struct MarsRow {
    std::string_view model;
    MarsMech::Sensors sensors;  ///< thickness per mm, diameter per mm, material per unit
};

/// The last row stands for every model that is not listed.
constexpr std::array kRows = {
    MarsRow{"MS1000", {{{512, 620, 2.0}, {348, 78, 2.0}, {806, 34, 2.5}}}},
    MarsRow{"MS1400", {{{548, 655, 2.2}, {372, 82, 2.0}, {842, 36, 2.6}}}},
    MarsRow{"ME181", {{{318, 405, 1.5}, {226, 57, 1.5}, {520, 23, 2.0}}}},
    MarsRow{"MS130B1", {{{290, 440, 1.8}, {198, 52, 1.6}, {476, 20, 2.2}}}},
    MarsRow{"MS111", {{{334, 398, 1.8}, {240, 50, 1.6}, {455, 21, 2.2}}}},
    MarsRow{"ME111", {{{304, 420, 1.5}, {212, 55, 1.5}, {498, 22, 2.0}}}},
};

const MarsMech::Sensors& sensorsOf(std::string_view model) {
    const auto found = std::find_if(kRows.begin(), kRows.end(),
                                    [&](const MarsRow& row) { return row.model == model; });
    return found == kRows.end() ? kRows.back().sensors : found->sensors;
}

}  // namespace

MarsMech::MarsMech(std::string_view model) : sensors_(sensorsOf(model)) {}

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
