#include "measure/Fliers.h"

#include <algorithm>
#include <cstdint>
#include <numeric>

#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr int kEnoughReadings = 10;  ///< with so many left nothing is dropped again
constexpr int kTooFewReadings = 5;   ///< with fewer left everything is dropped again
/// Keeps the products below within 64 bits; a wider band lets every reading through anyway.
constexpr int kWidestTolerance = 1'000'000;

/// The readings under examination and their sums.
class WorkingList {
  public:
    WorkingList(const MeasurementSession& item) : item_(item) {
        rows_.resize(static_cast<std::size_t>(item.readingCount));
        std::iota(rows_.begin(), rows_.end(), 1);
        for (const int row : rows_) {
            for (int p = 1; p <= kFlierParameters; ++p) sums_[p] += item.readings[row][p];
        }
    }

    [[nodiscard]] int size() const { return static_cast<int>(rows_.size()); }
    [[nodiscard]] int value(int index, int p) const { return item_.readings[row(index)][p]; }
    [[nodiscard]] std::vector<int> rows() const { return rows_; }

    void remove(int index) {
        for (int p = 1; p <= kFlierParameters; ++p) sums_[p] -= value(index, p);
        rows_.erase(rows_.begin() + (index - 1));
    }

    /// Whether entry `index` lies within m x (1 -+ halfPercents x tolerance / 200), ends included,
    /// where m is the mean of the others. Both sides are multiplied out, so that no rounding can
    /// decide about a reading that lies on the end of the band.
    [[nodiscard]] bool withinBand(int index, int p, int halfPercents) const {
        const std::int64_t x = value(index, p);
        const std::int64_t others = size() > 1 ? size() - 1 : 1;
        const std::int64_t sum = size() > 1 ? sums_[p] - x : sums_[p];
        const std::int64_t width =
            std::int64_t{halfPercents} *
            std::clamp(item_.flierTolerance[p], -kWidestTolerance, kWidestTolerance);
        const std::int64_t scaled = x * others * 200;
        return scaled >= sum * (200 - width) && scaled <= sum * (200 + width);
    }

    [[nodiscard]] FlierNote note(int pass, int index, int p) const {
        FlierNote note{.pass = pass, .index = index, .parameter = p, .reading = {}, .means = {}};
        for (int q = 1; q <= kFlierParameters; ++q) {
            const auto at = static_cast<std::size_t>(q - 1);
            note.reading[at] = value(index, q);
            note.means[at] = static_cast<float>(static_cast<double>(sums_[q]) / size());
        }
        return note;
    }

  private:
    [[nodiscard]] int row(int index) const { return rows_.at(static_cast<std::size_t>(index - 1)); }

    const MeasurementSession& item_;
    std::vector<int> rows_;
    Ranged<std::int64_t, 1, kFlierParameters> sums_;
};

void runPass(int pass, int halfPercents, WorkingList& list, FlierResult& result) {
    int index = 1;
    while (index <= list.size()) {
        bool flier = false;
        for (int p = 1; p <= kFlierParameters; ++p) {
            if (list.withinBand(index, p, halfPercents)) continue;
            flier = true;
            result.notes.push_back(list.note(pass, index, p));
        }
        if (flier) {
            list.remove(index);
            ++result.fliers;
        } else {
            ++index;
        }
    }
}

}  // namespace

FlierResult findFliers(const MeasurementSession& item) {
    FlierResult result;
    WorkingList list(item);
    runPass(1, 3, list, result);  // one and a half times the tolerance
    runPass(2, 2, list, result);
    result.kept = list.rows();
    const int left = list.size();
    if (result.fliers == 0 || left >= kEnoughReadings) return result;
    result.gatherAgain = true;
    result.coinsToDrop = std::min(kEnoughReadings - left, result.fliers);
    if (left < kTooFewReadings) {
        result.coinsToDrop = item.readingCount;
        result.kept.clear();
    }
    return result;
}

void keepReadings(MeasurementSession& item, const std::vector<int>& rows, int paramCount) {
    int to = 0;
    for (const int from : rows) {
        ++to;
        for (int p = 1; p <= paramCount; ++p) item.readings[to][p] = item.readings[from][p];
    }
    item.readingCount = to;
}

std::string flierLine(const MessageTable& messages, const FlierNote& note, int paramCount) {
    const bool first = note.pass == 1;
    std::string line = messages.msgText(first ? 456 : 460) + spacedNumber(note.index) +
                       messages.msgText(first ? 457 : 461) + spacedNumber(note.parameter) +
                       messages.msgText(first ? 458 : 462);
    for (int p = 1; p <= paramCount; ++p) {
        const auto at = static_cast<std::size_t>(p - 1);
        line += spacedNumber(p <= kFlierParameters ? note.reading[at] : 0);
    }
    line += messages.msgText(first ? 459 : 463);
    for (int p = 1; p <= paramCount; ++p) {
        const auto at = static_cast<std::size_t>(p - 1);
        line += oneDecimal(p <= kFlierParameters ? note.means[at] : 0.0F) + " ";
    }
    return line;
}

}  // namespace vantor
