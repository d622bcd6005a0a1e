#pragma once

#include <array>
#include <span>
#include <string_view>

namespace vantor::boxsim {

/// Mean and spread of one physical quantity over the pieces of a coin.
struct Quantity {
    double mean = 0;
    double spread = 0;
};

/// A coin, token or slug as it lies on the bench, whatever mech it is dropped into. The coins are
/// of no country: 100 Pell are 1 Dorin.
struct CoinPiece {
    std::string_view name;
    Quantity thickness;  ///< mm
    Quantity diameter;   ///< mm
    Quantity material;   ///< how strongly it damps a coil, 0..100
};

/// Everything on the bench, coins first.
[[nodiscard]] std::span<const CoinPiece> coinBag();
/// By name, letter case ignored; nullptr for an unknown name.
[[nodiscard]] const CoinPiece* findCoin(std::string_view name);

}  // namespace vantor::boxsim
