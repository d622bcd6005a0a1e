#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vantor {

inline constexpr std::uint32_t kIndicatorOff = 0xE0E0E0;  ///< 0xRRGGBB, light grey
inline constexpr std::uint32_t kIndicatorAccepted = 0x00FF00;
inline constexpr std::uint32_t kIndicatorRejected = 0xFF0000;

/// The validator test window as the test sees it. Positions are 0..15 and output bits 0..4; what
/// the technician chooses comes back as calls of ValidatorTest.
class ValtestWindow {
  public:
    virtual ~ValtestWindow() = default;

    /// All captions and the mech type.
    virtual void loadWindow(const std::string& mechType) = 0;
    /// Entries of the variant list, and the one shown.
    virtual void fillVariants(const std::vector<std::string>& codes, int chosen) = 0;
    /// The variant list takes the place of the mech type, or leaves it again.
    virtual void showVariants(bool shown) = 0;
    /// The options show this output mode; the test is not told.
    virtual void chooseOutput(bool binary) = 0;
    virtual void offerOutput(bool offered) = 0;  ///< the frame with the options
    virtual void showOutputBits(bool shown) = 0;
    /// Shows as many positions as there are captions and hides the others.
    virtual void showPositions(const std::vector<std::string>& captions) = 0;
    virtual void setCount(int position, const std::string& text) = 0;
    virtual void colourPosition(int position, std::uint32_t rgb) = 0;
    virtual void colourBit(int bit, std::uint32_t rgb) = 0;
    /// Shows the window in the middle of the main window.
    virtual void showWindow() = 0;
    virtual void hideWindow() = 0;
    /// Hides the window and resets it to the design state: Single output, no positions.
    virtual void unloadWindow() = 0;
};

/// The windows that the test is opened from.
class ValtestCallers {
  public:
    virtual ~ValtestCallers() = default;
    virtual void hideMainWindow() = 0;
    virtual void hideLimitsWindow() = 0;
    virtual void returnToMainWindow() = 0;  ///< ready for the next action
    virtual void returnToLimitsWindow() = 0;
    /// The validator test buttons of the main window and of the limits window.
    virtual void enableValidatorTestButtons(bool enabled) = 0;
};

}  // namespace vantor
