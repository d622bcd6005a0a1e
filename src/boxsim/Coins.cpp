#include "boxsim/Coins.h"

#include <algorithm>

namespace vantor::boxsim {

namespace {

constexpr Quantity mm(double mean, double spread) {
    return {mean, spread};
}
constexpr Quantity damping(double mean, double spread) {
    return {mean, spread};
}

constexpr std::array kBag = {
    CoinPiece{"5 Pell", mm(1.45, 0.010), mm(17.5, 0.03), damping(28.0, 0.30)},
    CoinPiece{"10 Pell", mm(1.60, 0.010), mm(19.6, 0.03), damping(30.0, 0.30)},
    CoinPiece{"20 Pell", mm(1.75, 0.011), mm(21.4, 0.03), damping(30.0, 0.30)},
    CoinPiece{"50 Pell", mm(1.95, 0.011), mm(23.2, 0.03), damping(30.0, 0.32)},
    CoinPiece{"1 Dorin", mm(2.10, 0.012), mm(24.6, 0.04), damping(58.0, 0.35)},
    CoinPiece{"Old 1 Dorin", mm(2.12, 0.016), mm(24.7, 0.05), damping(57.0, 0.45)},
    CoinPiece{"2 Dorin", mm(2.30, 0.012), mm(26.4, 0.04), damping(61.0, 0.35)},
    CoinPiece{"5 Dorin", mm(2.55, 0.013), mm(28.8, 0.04), damping(45.0, 0.40)},
    CoinPiece{"Wash Token", mm(2.00, 0.014), mm(25.4, 0.05), damping(75.0, 0.45)},
    CoinPiece{"Park Token", mm(1.70, 0.014), mm(22.3, 0.05), damping(70.0, 0.45)},
    CoinPiece{"Steel Washer", mm(2.05, 0.030), mm(24.4, 0.08), damping(8.0, 0.50)},
    CoinPiece{"Lead Blank", mm(2.20, 0.040), mm(26.6, 0.10), damping(20.0, 0.60)},
    CoinPiece{"Brass Disc", mm(1.93, 0.025), mm(23.6, 0.08), damping(66.0, 0.60)},
    // So near the 50 Pell that a mech can hardly tell them apart.
    CoinPiece{"Plated Disc", mm(1.97, 0.020), mm(23.3, 0.06), damping(31.0, 0.45)},
};

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

std::span<const CoinPiece> coinBag() {
    return kBag;
}

const CoinPiece* findCoin(std::string_view name) {
    const auto found = std::find_if(kBag.begin(), kBag.end(), [&](const CoinPiece& piece) {
        return std::equal(piece.name.begin(), piece.name.end(), name.begin(), name.end(),
                          [](char a, char b) { return lower(a) == lower(b); });
    });
    return found == kBag.end() ? nullptr : &*found;
}

}  // namespace vantor::boxsim
