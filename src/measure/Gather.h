#pragma once

#include <string>

#include "measure/Readings.h"

namespace vantor {

/// Gathers one item: drops, fliers, redrops, and its row of the coin table.
class Gather {
  public:
    Gather(const MeasureFlows::Parts& parts, RunLog& log, Readings& readings)
        : parts_(parts), log_(log), readings_(readings) {}

    /// One coinset item of `kind` 1 coin, 2 slug, 3 reference coin, with `coinsRemaining` drops to
    /// come. True when it was measured and stored; "No" sets `keepExisting`.
    bool gatherCoin(const std::string& code, const std::string& description, int kind);

    /// The drops for `channel` (1..24, or 0), fliers thrown out and dropped again, until there are
    /// enough. Ends at once on `abortFlag`, which a lost port sets as well.
    void gatherDrops(int channel);

    /// Stores the item in row `nextItem` and moves that on; `limits` false stores statistics only.
    void storeItem(int kind, int channel, bool limits = true);

    void writeItemHeader();

  private:
    bool askForDrops(const std::string& description);
    void waitForDrops(int channel);
    bool eliminateFliers();
    bool acceptElimination(int fliers);

    MeasureFlows::Parts parts_;
    RunLog& log_;
    Readings& readings_;
};

/// How many rows of the table, from 0, hold items of this run. The last usable row (99) is taken
/// again and again, and counts once it is filled.
[[nodiscard]] int filledRows(const CoinTable& table, int nextItem);

}  // namespace vantor
