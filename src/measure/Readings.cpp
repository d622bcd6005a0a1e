#include "measure/Readings.h"

#include <array>

#include "catalogue/Text.h"
#include "measure/Statistics.h"

namespace vantor {

namespace {

constexpr int kMarsValues = 3;
constexpr std::array<int, kMarsValues> kMarsPositions = {3, 9, 15};
constexpr int kMarsWidth = 5;
constexpr int kErrorSubscript = 9;
constexpr int kResetMode = 1;
constexpr int kSlugKind = 2;

}  // namespace

void Readings::loadMeasurement(std::string_view line) {
    auto& latest = parts_.state.gather.latestReading;
    for (int i = 0; i < kMarsValues; ++i) {
        const int position = kMarsPositions.at(static_cast<std::size_t>(i));
        latest[i] = lenientInteger(field(line, position, kMarsWidth));
    }
    if (takeReading()) log_.write(readingLine(latest, parts_.state.n()));
}

void Readings::updateStats(int mode) {
    if (mode == kResetMode) {
        reset();
    } else {
        takeReading();
    }
}

void Readings::logReading() {
    const SessionState& state = parts_.state;
    if (counting() && state.gather.coinsRemaining <= 0) return;
    if (state.item.readingCount >= kMostReadings) return;
    log_.write(readingLine(state.gather.latestReading, state.n()));
}

bool Readings::counting() const {
    return parts_.state.gather.runActive && parts_.state.gather.gatherActive;
}

bool Readings::takeReading() {
    GatherState& gather = parts_.state.gather;
    if (counting() && gather.coinsRemaining <= 0) return false;
    bool valid = false;
    parts_.errors.attempt(402, [&] { valid = parts_.families.selected().readingValid(); });
    if (!valid) {
        tellOutOfRange();
        return false;
    }
    const bool stored = store();
    if (stored) calculate();
    if (counting()) --gather.coinsRemaining;
    parts_.errors.attempt(402, [&] {
        for (int p = 1; p <= parts_.state.n(); ++p) {
            parts_.display.showReading(p, spacedNumber(gather.latestReading[p - 1]));
        }
    });
    updateDisplay(parts_.state.item.measureKind);
    return stored;
}

bool Readings::store() {
    MeasurementSession& item = parts_.state.item;
    if (item.readingCount >= kMostReadings) {
        parts_.errors.report(402, "Subscript out of range", kErrorSubscript);
        return false;
    }
    ++item.readingCount;
    for (int p = 1; p <= parts_.state.n(); ++p) {
        item.readings[item.readingCount][p] = parts_.state.gather.latestReading[p - 1];
    }
    return true;
}

void Readings::calculate() {
    parts_.errors.attempt(403, [this] {
        const MechModel* model = parts_.state.mech.model();
        calcStats(parts_.state.item,
                  {.paramCount = parts_.state.n(),
                   .capacity = parts_.families.selected().limitRules().capacity,
                   .upwardsOnlyParameter = model == nullptr ? 0 : model->upwardsOnlyParameter});
    });
}

void Readings::tellOutOfRange() {
    const auto& latest = parts_.state.gather.latestReading;
    std::string values;
    for (int i = 0; i < kMarsValues; ++i) values += spacedNumber(latest[i]);
    const std::string end(kCrLf);
    parts_.prompts.beep();
    parts_.prompts.beep();
    // A notice: this runs in the receive path, where nothing may wait for an answer.
    parts_.prompts.notice(
        {.title = "Error",
         .text = "Out Of Range Value " + end + values + end + "Measurement Ignored",
         .icon = PromptIcon::exclamation});
}

void Readings::reset() {
    MeasurementSession& item = parts_.state.item;
    item.readingCount = 0;
    item.mean.fill(0);
    item.sdLower.fill(0);
    item.sdUpper.fill(0);
    item.lowest.fill(0);
    item.highest.fill(0);
    item.limitAdjust.fill(0);
    item.limits.fill(0);
    parts_.errors.attempt(402, [this] {
        for (int p = 1; p <= parts_.state.n(); ++p) parts_.display.showReading(p, "0");
    });
    updateDisplay(item.measureKind);
}

void Readings::updateDisplay(int kind) {
    const SessionState& state = parts_.state;
    parts_.errors.attempt(431, [&] { parts_.display.showStatistics(kind != kSlugKind); });
    parts_.errors.attempt(431, [&] {
        const int number =
            state.gather.runActive ? state.gather.coinsRemaining : state.item.readingCount;
        parts_.display.showNumber(spacedNumber(number));
    });
}

}  // namespace vantor
