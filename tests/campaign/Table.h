#pragma once

#include <array>
#include <string>
#include <vector>

#include "Plan.h"

namespace vantor::campaign {

/// Sessions by fault and job, as the campaign prints them.
class Table {
  public:
    Table();

    void add(const Plan& plan, bool struck, bool disturbed, bool done, bool violated);
    /// Markdown: a row per fault, a column per job, and the sums.
    [[nodiscard]] std::string text() const;
    /// Faults that were drawn often and found no moment: the campaign says nothing about them.
    [[nodiscard]] std::vector<std::string> neverStruck() const;

  private:
    struct Cell {
        int sessions = 0, refusals = 0, recoveries = 0, violations = 0, struck = 0;

        void add(const Cell& other);
        [[nodiscard]] std::string text() const;
        /// Faults that were drawn often and found no moment: the campaign says nothing about them.
        [[nodiscard]] std::vector<std::string> neverStruck() const;
    };

    std::vector<std::array<Cell, kJobs>> cells_;
};

}  // namespace vantor::campaign
