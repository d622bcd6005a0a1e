#pragma once

#include "cc/CcLayout.h"

namespace vantor {

/// The boxes with a 435's settings in the EEPROM utilities window.
class RoutingDisplay {
  public:
    virtual ~RoutingDisplay() = default;

    /// Shows the settings in boxes in place of the text; they can be programmed, a file cannot.
    virtual void showC435Settings(const C435Settings& settings) = 0;
    /// What the boxes say now.
    [[nodiscard]] virtual C435Settings enteredC435Settings() const = 0;
};

}  // namespace vantor
