#pragma once

#include "boxsim/Coins.h"
#include "boxsim/SimulatedMech.h"

namespace vantor::boxsim {

/// Readings of one coin in one mech, per parameter (thickness, diameter, material).
using MarsPopulation = std::array<Quantity, 3>;

/// A Mars validator: three sensors read by the box itself; no serial mode of its own.
class MarsMech final : public SimulatedMech {
  public:
    explicit MarsMech(std::string_view model);

    [[nodiscard]] std::array<int, 3> idleValues() const override;
    [[nodiscard]] std::vector<std::string> coinLines(const CoinReading& reading) const override;
    /// By the limits of the first programmed segment of the PROM, as if that had been moved over
    /// to the mech; with none, by the limits that the mech came with.
    [[nodiscard]] std::optional<int> channelFor(const CoinReading& reading,
                                                std::span<const std::uint8_t> prom) const override;
    [[nodiscard]] std::vector<std::string> coins() const override;
    [[nodiscard]] std::optional<CoinReading> draw(std::string_view coin,
                                                  Random& random) const override;

    [[nodiscard]] MarsPopulation population(const CoinPiece& piece) const;

    /// A sensor's answer: idle + perUnit x quantity, with noise of its own.
    struct Sensor {
        int idle = 0;
        double perUnit = 0;
        double noise = 0;
    };
    using Sensors = std::array<Sensor, 3>;

  private:
    Sensors sensors_;
    std::span<const int> segments_;  ///< addresses at which the PROM's segments begin
};

/// Three five-digit fields after a letter: "M 01203 01498 02210", fields at positions 3, 9, 15.
[[nodiscard]] std::string threeFields(char letter, std::span<const int> values);

}  // namespace vantor::boxsim
