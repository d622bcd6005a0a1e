#pragma once

#include <functional>
#include <string>

#include "limits/Estimate.h"
#include "limits/LimitsDisplay.h"
#include "link/MechFamily.h"
#include "link/ProgrammerLink.h"

namespace vantor {

/// The work of the limits window: showing a segment, judging and editing limits, programming.
class LimitsReview {
  public:
    LimitsReview(SessionState& state, ProgrammerLink& link, const Families& families,
                 Prompts& prompts, ErrorReporter& errors, LimitsDisplay& display);

    /// Runs the transfer from the measurement window again; set by the wiring.
    void setTransfer(std::function<void()> transfer) { transfer_ = std::move(transfer); }

    /// Lays the window out for the selected mech and chooses the lowest selected segment.
    void setupfrmPROM();
    /// Takes pending edits over, then shows segment `index` (0..3) and judges it.
    void selectSegment(int index);
    /// Stores the texts of the displayed segment as limits, clamped, and rebuilds the image.
    void changeLimits();
    void restoreLimits();
    /// Program New PROM / Program EEPROM with all its questions.
    void programNew();
    /// Shows each slug's own limits; called by the transfer.
    void showSlugLimits();

    void clearColors();
    void checkOverlaps(int firstChannel);  ///< channel 1..24
    void calcAcceptance(int firstChannel);
    void displayAcceptance(int firstChannel);

    /// First channel (1..24) of the displayed segment.
    [[nodiscard]] int firstChannel() const;

  private:
    [[nodiscard]] SegmentView viewFrom(int firstChannel) const;
    [[nodiscard]] LimitsLayout layoutOf(const MechFamily& family) const;
    void chooseSelectedSegments(const MechFamily& family, LimitsLayout& layout) const;
    [[nodiscard]] std::string rowHead(int captionMessage, int segment, int row) const;
    void showSegment(int segment);
    void fillBoxes();
    void storeBoxes();
    void rejudge();
    bool takesPendingEdits();

    SessionState& state_;
    const Families& families_;
    Prompts& prompts_;
    ErrorReporter& errors_;
    LimitsDisplay& display_;
    std::function<void()> transfer_;
};

}  // namespace vantor
