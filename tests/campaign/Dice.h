#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>

namespace vantor::campaign {

/// Draws that depend on the seed alone, the same on every platform.
class Dice {
  public:
    explicit Dice(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        state_ += 0x9E37'79B9'7F4A'7C15;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30U)) * 0xBF58'476D'1CE4'E5B9;
        z = (z ^ (z >> 27U)) * 0x94D0'49BB'1331'11EB;
        return z ^ (z >> 31U);
    }
    /// low..high, ends included.
    int between(int low, int high) {
        const auto span = static_cast<std::uint64_t>(high - low) + 1;
        return low + static_cast<int>(next() % span);
    }
    bool chance(int percent) { return between(1, 100) <= percent; }
    /// 0..most; every order of magnitude is as likely as the next.
    int spread(int most) {
        const double share = static_cast<double>(next() >> 11U) * 0x1.0p-53;
        const double drawn = std::exp(share * std::log(static_cast<double>(most) + 1.0));
        return std::clamp(static_cast<int>(drawn) - 1, 0, most);
    }
    template <class T>
    const T& pick(std::span<const T> from) {
        return from[static_cast<std::size_t>(between(0, static_cast<int>(from.size()) - 1))];
    }

  private:
    std::uint64_t state_;
};

}  // namespace vantor::campaign
