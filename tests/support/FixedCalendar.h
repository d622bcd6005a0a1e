#pragma once

#include "platform/Services.h"

namespace vantor::test {

/// A calendar that stands still.
class FixedCalendar final : public Calendar {
  public:
    explicit FixedCalendar(Date date = {.year = 2026, .month = 3, .day = 9}) : date_(date) {}
    [[nodiscard]] Date today() const override { return date_; }

  private:
    Date date_;
};

}  // namespace vantor::test
