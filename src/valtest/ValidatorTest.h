#pragma once

#include <array>
#include <string>
#include <string_view>

#include "link/MechCheck.h"
#include "link/Receiver.h"
#include "valtest/TestLayouts.h"
#include "valtest/ValtestWindow.h"

namespace vantor {

/// The validator test: puts the box into its test mode, lays the positions out for the mech, and
/// counts the coins that the box reports. Each button of the window is one call here.
class ValidatorTest final : public ValtestDisplay {
  public:
    struct Parts {
        SessionState& state;
        ProgrammerLink& link;
        MechCheck& check;
        const Families& families;
        Receiver& receiver;
        Prompts& prompts;
        ErrorReporter& errors;
        ValtestWindow& window;
        ValtestCallers& callers;
    };

    explicit ValidatorTest(const Parts& parts) : p_(parts) {}
    ~ValidatorTest() override;
    ValidatorTest(const ValidatorTest&) = delete;
    ValidatorTest& operator=(const ValidatorTest&) = delete;

    /// The main window's buttons, maker and model being stored: the test opens over the hidden
    /// main window, or the technician is told that there is no validator. Failed steps are
    /// reported under `errorMessage`.
    void openFromMain(int errorMessage);
    /// The limits window's button, after programming.
    void openFromLimits(int errorMessage);

    // --- what the technician chooses in the window
    void chooseBinary();
    void chooseSingle();
    void chooseVariant(std::string_view code);
    void clearValtestCounts();
    void back();

    // --- what the received coins show
    void resetValtestDisplay() override;
    void markAccepted(int position) override;
    void markRejected(int position) override;
    void markPosition(int position) override;
    void countPosition(int position) override;
    void markBinary(int bit) override;

  private:
    [[nodiscard]] const TestLayout& layout() const;
    void load(int errorMessage, bool fromLimits);
    void valtestSetup(bool fromLimits);
    [[nodiscard]] bool startTestMode();
    void setupDisplay();
    void decidePositions(bool binaryAnswered);
    void askForBinary();
    void driveBinary();
    [[nodiscard]] bool mechFound();
    void giveUp();
    void leaveCoinRecords();
    void closeTest();

    Parts p_;
    bool binaryChosen_ = false;
    TestPositions shown_;
    std::array<int, kTestPositions> counts_{};
};

}  // namespace vantor
