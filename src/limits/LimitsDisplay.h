#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace vantor {

/// How the limits window is laid out for a mech. Rows are the channels of one segment.
struct LimitsLayout {
    bool promSocket = false;  ///< PROM size and PROM type are shown
    int displayCaption = 0;   ///< message numbers
    int programCaption = 0;
    int utilitiesCaption = 0;
    std::string mechType;
    std::string promSize;                 ///< "1K" or "2K"; shown with promSocket
    std::vector<std::string> paramNames;  ///< one column head per parameter
    std::vector<std::string> rowHeads;    ///< one row per channel of a segment (6 or 8)
    std::array<bool, 4> segmentEnabled{};
    int chosenSegment = 0;  ///< 0-based
};

inline constexpr std::uint32_t kWhite = 0xFFFFFF;
inline constexpr std::uint32_t kYellow = 0xFFFF00;
inline constexpr std::uint32_t kCyan = 0x00FFFF;

/// The limits window as limits/ sees it. `row` is 0-based within the displayed segment, `column`
/// 1-based (1..2n), `slug` 1-based (1..6).
class LimitsDisplay {
  public:
    virtual ~LimitsDisplay() = default;

    /// Empties everything and shows rows, columns, captions and options; Validator Test disabled.
    virtual void layOut(const LimitsLayout& layout) = 0;
    virtual void showLimitsWindow() = 0;
    virtual void hideLimitsWindow() = 0;

    virtual void chooseSegment(int segment) = 0;  ///< 0-based; the option only shows
    virtual void setRowHead(int row, const std::string& text) = 0;
    /// Does not count as the technician's edit.
    virtual void setLimit(int row, int column, const std::string& text) = 0;
    [[nodiscard]] virtual std::string limitText(int row, int column) const = 0;
    virtual void setSlugLimit(int slug, int column, const std::string& text) = 0;

    /// All limit boxes white, all slug labels in the toolkit's button face.
    virtual void clearColours() = 0;
    virtual void colourRow(int row, std::uint32_t rgb) = 0;
    virtual void colourSlug(int slug, std::uint32_t rgb) = 0;

    virtual void setAcceptance(int row, const std::string& text) = 0;
    virtual void setRejection(int slug, const std::string& text) = 0;
    virtual void enableValidatorTest(bool enabled) = 0;
};

}  // namespace vantor
