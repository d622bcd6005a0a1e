#include "boxsim/Sensors.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vantor::boxsim {

namespace {

// The smallest piece that a sensor is ever shown.
constexpr double kThinnest = 1.45;
constexpr double kNarrowest = 17.5;
constexpr double kWeakest = 8;

constexpr double kFactorySpreads = 4;
constexpr double kFactoryMargin = 1;

constexpr std::array<std::string_view, 5> kFactoryCoins = {"5 Pell", "10 Pell", "20 Pell",
                                                           "50 Pell", "Old 1 Dorin"};

Quantity readingOf(const Sensor& sensor, const CoinPiece& piece) {
    const double mean = sensor.lowest + sensor.perThickness * (piece.thickness.mean - kThinnest) +
                        sensor.perDiameter * (piece.diameter.mean - kNarrowest) +
                        sensor.perMaterial * (piece.material.mean - kWeakest);
    const double size = std::hypot(sensor.perThickness * piece.thickness.spread,
                                   sensor.perDiameter * piece.diameter.spread);
    return {mean, std::hypot(size, sensor.perMaterial * piece.material.spread, sensor.noise)};
}

int inByte(double value) {
    return static_cast<int>(std::clamp(value, 0.0, 255.0));
}

}  // namespace

std::vector<Quantity> byteReadings(std::span<const Sensor> sensors, const CoinPiece& piece) {
    std::vector<Quantity> readings;
    readings.reserve(sensors.size());
    for (const Sensor& sensor : sensors) readings.push_back(readingOf(sensor, piece));
    return readings;
}

std::optional<CoinReading> drawBytes(std::span<const Sensor> sensors, std::string_view coin,
                                     Random& random) {
    const CoinPiece* piece = findCoin(coin);
    if (piece == nullptr) return std::nullopt;
    CoinReading reading;
    for (const Quantity& parameter : byteReadings(sensors, *piece)) {
        const double value = std::round(random.normal(parameter.mean, parameter.spread));
        reading.push_back(static_cast<int>(std::clamp(value, 1.0, 254.0)));
    }
    return reading;
}

ByteWindow windowAround(const Quantity& reading) {
    const double reach = kFactorySpreads * reading.spread + kFactoryMargin;
    return {inByte(std::floor(reading.mean - reach)), inByte(std::ceil(reading.mean + reach))};
}

bool takesCoin(std::span<const ByteWindow> windows, std::span<const int> values) {
    bool empty = true;
    for (std::size_t p = 0; p < windows.size(); ++p) {
        const ByteWindow& window = windows[p];
        if (window.low == 0 && window.high == 0) continue;
        empty = false;
        const int value = p < values.size() ? values[p] : 0;
        if (value < window.low || value > window.high) return false;
    }
    return !empty;
}

std::span<const std::string_view> factoryCoins() {
    return kFactoryCoins;
}

}  // namespace vantor::boxsim
