#pragma once

#include <string_view>

#include "measure/RunLog.h"

namespace vantor {

/// Takes the readings of the item being measured and shows what they amount to.
class Readings {
  public:
    Readings(const MeasureFlows::Parts& parts, RunLog& log) : parts_(parts), log_(log) {}

    /// A Mars "M" line: its reading is taken and, when accepted, logged.
    void loadMeasurement(std::string_view line);
    /// 1 resets the item, any other value takes `latestReading`.
    void updateStats(int mode);
    void logReading();
    /// Statistics in the layout of item kind 1, 2 or 3, and the number of coins.
    void updateDisplay(int kind);
    void calculate();

  private:
    void reset();
    bool takeReading();
    bool store();
    [[nodiscard]] bool counting() const;
    void tellOutOfRange();

    MeasureFlows::Parts parts_;
    RunLog& log_;
};

}  // namespace vantor
