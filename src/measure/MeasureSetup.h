#pragma once

#include <array>

#include "measure/Readings.h"

namespace vantor {

/// Sets the measurement window up and keeps the PROM choices.
class MeasureSetup {
  public:
    MeasureSetup(const MeasureFlows::Parts& parts, Readings& readings)
        : parts_(parts), readings_(readings) {}

    /// Mode 0 is a fresh start, any other value keeps the run controls as they are.
    void CoinInitialise(int mode);
    void choosePromSize(int promSizeCode);                    ///< 0 = 1K, 1 = 2K
    void chooseSegments(const std::array<bool, 4>& checked);  ///< 0-based segments

  private:
    void freshStart();
    void showCleared();
    void startBox();

    MeasureFlows::Parts parts_;
    Readings& readings_;
};

}  // namespace vantor
