#include "limits/NormalTable.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vantor {

namespace {

constexpr std::array<float, 30> kProbability = {
    0.5000F, 0.5398F, 0.5793F, 0.6179F, 0.6554F, 0.6915F, 0.7257F, 0.7580F, 0.7881F, 0.8159F,
    0.8413F, 0.8643F, 0.8849F, 0.9032F, 0.9192F, 0.9332F, 0.9452F, 0.9554F, 0.9641F, 0.9713F,
    0.9772F, 0.9821F, 0.9861F, 0.9893F, 0.9918F, 0.9938F, 0.9953F, 0.9965F, 0.9974F, 0.9981F};
constexpr int kLastIndex = static_cast<int>(kProbability.size()) - 1;
constexpr float kLastTabled = 2.9F;
constexpr float kCertain = 3.0F;

}  // namespace

float normalTable(int& index) {
    index = std::clamp(index, 0, kLastIndex);
    return kProbability[static_cast<std::size_t>(index)];
}

float normalCdf(float z) {
    if (std::isnan(z)) return 0.0F;
    const bool negative = z < 0;
    z = std::abs(z);
    if (z > kCertain) return negative ? 0.0F : 1.0F;
    const float tenths = std::min(z, kLastTabled) * 10.0F;
    int index = static_cast<int>(std::floor(tenths));
    const float fraction = tenths - static_cast<float>(index);
    int next = index + 1;
    const float here = normalTable(index);
    const float result = here + (normalTable(next) - here) * fraction;
    return negative ? 1.0F - result : result;
}

}  // namespace vantor
