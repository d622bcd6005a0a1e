#pragma once

#include "measure/MeasureFlows.h"

namespace vantor {

/// Turns the coin table into limits per channel and hands them to the limits window.
class Transfer {
  public:
    explicit Transfer(const MeasureFlows::Parts& parts) : parts_(parts) {}

    void PROMxfr();

  private:
    void clearTargets();
    void openLimitsWindow();
    void parseRecords();
    void takeSlug(int row);
    void takeCoin(int row);
    void linkReferences();
    void takeOldMemory();
    [[nodiscard]] int displayedSegment();

    MeasureFlows::Parts parts_;
};

/// The limits of a channel take in a coin's row: the first coin's are copied, later ones widen.
void widenChannel(Ranged<int, 1, kLimitColumns>& limits, const Ranged<int, 0, 25>& row,
                  int paramCount, bool first);

/// A limit that follows a reference coin: floor(mean + 0.5 + offset), within 0..capacity.
[[nodiscard]] int referenceLimit(float mean, int offset, int capacity);

}  // namespace vantor
