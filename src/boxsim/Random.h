#pragma once

#include <cstdint>
#include <random>

namespace vantor::boxsim {

/// Seeded draws that are the same on every platform, which the standard's own distributions are
/// not.
class Random {
  public:
    explicit Random(std::uint64_t seed) : engine_(seed) {}

    /// A number in [0, 1).
    [[nodiscard]] double uniform();
    /// A normal draw.
    [[nodiscard]] double normal(double mean, double spread);
    [[nodiscard]] std::uint8_t byte() { return static_cast<std::uint8_t>(engine_() >> 56U); }

  private:
    std::mt19937_64 engine_;
};

}  // namespace vantor::boxsim
