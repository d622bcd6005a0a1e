#include "measure/Statistics.h"

#include <algorithm>
#include <cmath>

#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr float kLeastSpread = 0.1F;
constexpr int kUpwardsMargin = 10;
constexpr double kSlugSpreads = 3;
constexpr double kSlugMargin = 0.5;

class Accumulator {
  public:
    void add(double x) {
        sum_ += x;
        squares_ += x * x;
        ++count_;
    }
    [[nodiscard]] float spread() const {
        if (count_ == 0) return kLeastSpread;
        // Equal readings may leave a rounding error below zero.
        const double variance = std::max((squares_ - sum_ * sum_ / count_) / count_, 0.0);
        return std::max(static_cast<float>(std::sqrt(variance)), kLeastSpread);
    }

  private:
    double sum_ = 0;
    double squares_ = 0;
    int count_ = 0;
};

void meanAndExtremes(MeasurementSession& item, int p) {
    double sum = 0;
    int lowest = item.readings[1][p];
    int highest = lowest;
    for (int r = 1; r <= item.readingCount; ++r) {
        const int x = item.readings[r][p];
        sum += x;
        lowest = std::min(lowest, x);
        highest = std::max(highest, x);
    }
    item.mean[p] = static_cast<float>(sum / item.readingCount);
    item.lowest[p] = lowest;
    item.highest[p] = highest;
}

double slugLimit(const MeasurementSession& item, int p, bool low) {
    const double mean = item.mean[p];
    const double margin = kSlugMargin + item.slugSeparation[p];
    return low ? mean - kSlugSpreads * item.sdLower[p] - margin
               : mean + kSlugSpreads * item.sdUpper[p] + margin;
}

/// `before` is the value of the limit before this one, which an unknown source leaves standing.
double coinLimit(const MeasurementSession& item, int i, double before) {
    const int p = (i + 1) / 2;
    const double adjust = item.limitAdjust[i];
    const double spread = i % 2 != 0 ? -double{item.sdLower[p]} : double{item.sdUpper[p]};
    switch (item.limitOrigins[i].source) {
        case LimitSource::threeSd:
            return item.mean[p] + 3 * spread + adjust;
        case LimitSource::twoSd:
            return item.mean[p] + 2 * spread + adjust;
        case LimitSource::mean:
            return item.mean[p] + adjust;
        case LimitSource::low:
            return item.lowest[p] + adjust;
        case LimitSource::high:
            return item.highest[p] + adjust;
        case LimitSource::fixed:
            return adjust;
        case LimitSource::reference:
        case LimitSource::unknown:
            break;
    }
    return before;
}

}  // namespace

Spreads foldedSpreads(const MeasurementSession& item, int parameter) {
    const double mean = item.mean[parameter];
    const int middle = roundHalfEven(mean);
    Accumulator lower;
    Accumulator upper;
    for (int r = 1; r <= item.readingCount; ++r) {
        const int x = item.readings[r][parameter];
        if (x == middle) {
            lower.add(x);
            upper.add(x);
            continue;
        }
        Accumulator& side = x > middle ? upper : lower;
        side.add(x);
        side.add(2 * mean - x);
    }
    return {lower.spread(), upper.spread()};
}

void calcStats(MeasurementSession& item, const StatisticsRules& rules) {
    for (int p = 1; p <= rules.paramCount; ++p) {
        meanAndExtremes(item, p);
        const Spreads spreads = foldedSpreads(item, p);
        item.sdLower[p] = spreads.lower;
        item.sdUpper[p] = spreads.upper;
    }
    double value = 0;
    for (int i = 1; i <= 2 * rules.paramCount; ++i) {
        const int p = (i + 1) / 2;
        const bool low = i % 2 != 0;
        value = item.isCoin ? coinLimit(item, i, value) : slugLimit(item, p, low);
        if (p == rules.upwardsOnlyParameter) value = low ? 0 : item.highest[p] + kUpwardsMargin;
        value = std::max(value, 0.0);
        item.limits[i] = std::min(roundHalfEven(value), rules.capacity);
    }
}

}  // namespace vantor
