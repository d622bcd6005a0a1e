#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "boxsim/Coins.h"
#include "boxsim/Random.h"
#include "boxsim/SimulatedMech.h"

namespace vantor::boxsim {

/// A sensor with one byte of range: what it says of a coin is a sum of what it sees.
struct Sensor {
    double lowest = 0;        ///< reading of a coin of 1.45 mm, 17.5 mm and material 8
    double perThickness = 0;  ///< per mm
    double perDiameter = 0;   ///< per mm
    double perMaterial = 0;   ///< per unit of damping
    double noise = 0.6;
};

/// Mean and spread of a coin's readings, one per sensor.
[[nodiscard]] std::vector<Quantity> byteReadings(std::span<const Sensor> sensors,
                                                 const CoinPiece& piece);
/// One piece of a coin, 1..254 per sensor; nothing for an unknown name.
[[nodiscard]] std::optional<CoinReading> drawBytes(std::span<const Sensor> sensors,
                                                   std::string_view coin, Random& random);

/// The window that a maker would give a reading: four spreads and a bit on either side, 0..255.
[[nodiscard]] ByteWindow windowAround(const Quantity& reading);
/// Whether a channel takes a coin; both lists parameter by parameter. A window of 0..0 lets
/// everything through, and a channel that has no other is empty and takes nothing.
[[nodiscard]] bool takesCoin(std::span<const ByteWindow> windows, std::span<const int> values);

/// What the channels of a new mech are set to, channel 1 first; the rest are empty.
[[nodiscard]] std::span<const std::string_view> factoryCoins();

}  // namespace vantor::boxsim
