#pragma once

#include <QWidget>
#include <memory>
#include <vector>

#include "catalogue/SessionState.h"
#include "valtest/ValtestWindow.h"

class QFrame;
class QGridLayout;
class QLabel;

namespace Ui {
class frmValtest;
}

namespace vantor {

class ActionFrame;
class ValidatorTest;

/// The validator test window: one row per position, which a coin lights and counts.
class FrmValtest final : public QWidget, public ValtestWindow {
  public:
    FrmValtest(const SessionState& state, ActionFrame& actions);
    ~FrmValtest() override;

    /// What the buttons call; must be set before the window is used.
    void setTest(ValidatorTest& test) { test_ = &test; }
    /// The window in whose middle this one opens.
    void setMiddle(const QWidget& main) { main_ = &main; }

    void loadWindow(const std::string& mechType) override;
    void fillVariants(const std::vector<std::string>& codes, int chosen) override;
    void showVariants(bool shown) override;
    void chooseOutput(bool binary) override;
    void offerOutput(bool offered) override;
    void showOutputBits(bool shown) override;
    void showPositions(const std::vector<std::string>& captions) override;
    void setCount(int position, const std::string& text) override;
    void colourPosition(int position, std::uint32_t rgb) override;
    void colourBit(int bit, std::uint32_t rgb) override;
    void showWindow() override;
    void hideWindow() override { hide(); }
    void unloadWindow() override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void makePositions();
    void makeBits();
    void connectButtons();
    void layPosition(QGridLayout& grid, int position, int block, int gridRow);

    const SessionState& state_;
    ActionFrame& actions_;
    ValidatorTest* test_ = nullptr;
    const QWidget* main_ = nullptr;
    std::unique_ptr<Ui::frmValtest> ui_;
    std::vector<QLabel*> lblCoin_, lblCount_, lblCountText_, lblBinCode_;
    std::vector<QFrame*> shpCoin_, shpBinary_;
};

}  // namespace vantor
