#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "catalogue/ErrorReporter.h"
#include "catalogue/SessionState.h"
#include "limits/LimitsDisplay.h"

class QGridLayout;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace Ui {
class frmPROM;
}

namespace vantor {

class ActionFrame;
class LimitsReview;

/// The limits window: limits of one segment, overlap colours, estimates, edits, programming.
class FrmPROM final : public QWidget, public LimitsDisplay {
  public:
    FrmPROM(SessionState& state, ActionFrame& actions, ErrorReporter& errors);
    ~FrmPROM() override;

    /// What the buttons call; must be set before the window is used.
    void setReview(LimitsReview& review) { review_ = &review; }

    // Other windows.
    std::function<void()> validatorTest;
    std::function<void()> utilities;
    std::function<void()> back;  ///< sets the measurement window up again and shows it

    void applyCaptions();
    void openWindow();
    /// Hides the window and resets it to the design state.
    void closeWindow();

    void layOut(const LimitsLayout& layout) override;
    void showLimitsWindow() override { openWindow(); }
    void hideLimitsWindow() override { hide(); }
    void chooseSegment(int segment) override;
    void setRowHead(int row, const std::string& text) override;
    void setLimit(int row, int column, const std::string& text) override;
    [[nodiscard]] std::string limitText(int row, int column) const override;
    void setSlugLimit(int slug, int column, const std::string& text) override;
    void clearColours() override;
    void colourRow(int row, std::uint32_t rgb) override;
    void colourSlug(int slug, std::uint32_t rgb) override;
    void setAcceptance(int row, const std::string& text) override;
    void setRejection(int slug, const std::string& text) override;
    void enableValidatorTest(bool enabled) override;
    /// The memory utilities are off while their window is open.
    void enableUtilities(bool enabled);

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void makeControls();
    void connectButtons();
    void setTabs();
    void emptyGrid();
    void layGrid(const LimitsLayout& layout);
    void layHeads(QGridLayout& grid, const LimitsLayout& layout);
    void layRows(QGridLayout& grid, int rows);
    void laySlugs(QGridLayout& grid, int firstGridRow);
    void showOptions(const LimitsLayout& layout);
    void applyLayoutCaptions();
    void showTarget();
    void goBack();
    [[nodiscard]] int boxIndex(int row, int column) const;

    SessionState& state_;
    ActionFrame& actions_;
    ErrorReporter& errors_;
    LimitsReview* review_ = nullptr;
    std::unique_ptr<Ui::frmPROM> ui_;
    LimitsLayout layout_;
    int columns_ = 0;  ///< 2n of the layout shown

    std::vector<QRadioButton*> optSeg_;
    std::vector<QLabel*> lblPtitle_, lblPlow_, lblPhigh_, lblCoin_, lblAcceptance_, label10_,
        lblSlugLimits_, lblRejection_;
    std::vector<QLineEdit*> txtProm_;
    QLabel* lblAcc_ = nullptr;
    QLabel* lblRej_ = nullptr;
};

}  // namespace vantor
