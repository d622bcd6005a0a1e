#include <QPushButton>
#include <ostream>

#include "RoadFixture.h"

// A job on a mech with sessions of its own is disturbed at moments spread over its length: while
// the mech is measured, read, written and verified.

namespace vantor::test {
namespace {

struct Moment {
    const char* model;
    int percent;  ///< of the whole job
};

void PrintTo(const Moment& moment, std::ostream* out) {
    *out << moment.model << " at " << moment.percent << " %";
}

class CcDisturbed : public Road, public ::testing::WithParamInterface<Moment> {
  protected:
    void open() {
        openMain(GetParam().model, kCoinControls);
        openMeasurement();
    }
    void meanwhile(std::function<void()> disturb) {
        const bool sentinel = std::string(GetParam().model) == "Sentinel";
        const int lengthMs = sentinel ? kSentinelMs : kI2cMs;
        moment_ = loop.callAfter(std::chrono::milliseconds(lengthMs * GetParam().percent / 100),
                                 std::move(disturb));
    }
    void jobOver() { loop.cancel(moment_); }
    void runAndProgram() {
        runCoinset(std::string(GetParam().model) + "-Dorin.cst");
        if (endings == 0 && visible("frmPROM")) click("frmPROM.cmdProgPROM");
    }
    void expectACleanRunWorks() {
        loop.advance(std::chrono::milliseconds(50));
        EXPECT_FALSE(box.inSerialMode());
        EXPECT_FALSE(program->actions().busy());
        if (visible("frmPROM")) click("frmPROM.cmdBack1");
        ASSERT_TRUE(visible("frmCoinMeasure1"));
        technician.seen.clear();
        runAndProgram();
        EXPECT_TRUE(technician.saw("EEPROM Verified OK")) << technician.seen.back();
        EXPECT_FALSE(box.inSerialMode());
    }

    static constexpr int kI2cMs = 54'000, kSentinelMs = 44'000;  ///< of an undisturbed job
    EventLoop::TimerId moment_ = 0;
};

TEST_P(CcDisturbed, CancelOperationEndsTheRun) {
    open();
    bool cancelled = false;
    meanwhile([&] {
        cancelled = program->state().gather.runActive;
        if (cancelled) click("frmCoinMeasure1.cmdBack");
    });
    runCoinset(std::string(GetParam().model) + "-Dorin.cst");
    jobOver();
    if (cancelled) {
        EXPECT_FALSE(technician.saw("Timeout reading"));
        EXPECT_FALSE(technician.saw("No ACK"));
    }
    expectACleanRunWorks();
}

TEST_P(CcDisturbed, ExitUnwindsFromAnywhere) {
    open();
    meanwhile([&] { click("frmMain.cmdExit"); });
    runAndProgram();
    EXPECT_TRUE(loop.runUntil([&] { return endings > 0; }, std::chrono::minutes(3)));
    EXPECT_EQ(endings, 1);
    EXPECT_FALSE(port.isOpen());
}

TEST_P(CcDisturbed, APulledAdapterNeverPassesForSuccess) {
    open();
    meanwhile([&] { box.unplug(); });
    const Micros start = loop.now();
    runAndProgram();
    EXPECT_LT(loop.now() - start, std::chrono::minutes(4));
    EXPECT_FALSE(box.pluggedIn()) << "the job was over before";
    EXPECT_FALSE(technician.saw("EEPROM Verified OK"));
    EXPECT_FALSE(program->actions().busy());
    jobOver();
    box.replug();
    if (visible("frmPROM")) click("frmPROM.cmdBack1");
    if (visible("frmCoinMeasure1")) click("frmCoinMeasure1.cmdBack");
    ASSERT_TRUE(visible("frmMain"));
    openMeasurement();
    expectACleanRunWorks();
}

// Setting up, the first gather, amid the gathers, reading, writing, verifying.
INSTANTIATE_TEST_SUITE_P(Moments, CcDisturbed,
                         ::testing::Values(Moment{"435", 1}, Moment{"435", 2}, Moment{"435", 30},
                                           Moment{"435", 89}, Moment{"435", 93}, Moment{"435", 97},
                                           Moment{"Sentinel", 1}, Moment{"Sentinel", 3},
                                           Moment{"Sentinel", 40}, Moment{"Sentinel", 82},
                                           Moment{"Sentinel", 87}, Moment{"Sentinel", 96}));

}  // namespace
}  // namespace vantor::test
