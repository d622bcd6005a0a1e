#pragma once

#include <functional>
#include <string_view>

namespace vantor {

/// The memory utilities window of one maker as its callers see it: opened from the main window or
/// from the limits window, it goes back to where it came from.
class MemoryUtilities {
  public:
    virtual ~MemoryUtilities() = default;

    [[nodiscard]] virtual std::string_view maker() const = 0;  ///< kMars, kCoinControls or kNri

    /// From the main window, the box checked and maker and model chosen.
    virtual void openFromMain() = 0;
    virtual void openFromLimits() = 0;

    // The other windows. `fromLimits` says which of the two opened this one.
    std::function<void(bool fromLimits)> leave;   ///< hides it and disables the utilities buttons
    std::function<void(bool fromLimits)> goBack;  ///< enables the buttons and shows it again
};

}  // namespace vantor
