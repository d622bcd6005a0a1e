#include "boxsim/Random.h"

#include <cmath>
#include <numbers>

namespace vantor::boxsim {

double Random::uniform() {
    return static_cast<double>(engine_() >> 11U) * 0x1.0p-53;
}

double Random::normal(double mean, double spread) {
    // Box-Muller, one draw per pair: the second is thrown away so that a draw leaves no state.
    const double radius = std::sqrt(-2.0 * std::log(1.0 - uniform()));
    const double angle = 2.0 * std::numbers::pi * uniform();
    return mean + spread * radius * std::cos(angle);
}

}  // namespace vantor::boxsim
