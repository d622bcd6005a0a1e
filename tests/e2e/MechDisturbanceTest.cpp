#include <QPushButton>
#include <ostream>

#include "RoadFixture.h"

// A job on a mech with sessions of its own is disturbed at moments spread over its length: while
// the mech is measured, read, written and verified.

namespace vantor::test {
namespace {

struct Job {
    const char* model;
    std::string_view maker;
    int lengthMs;  ///< undisturbed
    const char* good;
};

constexpr Job kC435 = {"435", kCoinControls, 54'000, "EEPROM Verified OK"};
constexpr Job kSentinel = {"Sentinel", kCoinControls, 44'000, "EEPROM Verified OK"};
constexpr Job kG13 = {"G13-6000", kNri, 54'600, "NRI Memory Programmed OK"};
constexpr Job kG10 = {"G10-4000", kNri, 68'000, "NRI Memory Programmed OK"};

struct Moment {
    Job job;
    int percent;  ///< of the whole job
};

void PrintTo(const Moment& moment, std::ostream* out) {
    *out << moment.job.model << " at " << moment.percent << " %";
}

class MechDisturbed : public Road, public ::testing::WithParamInterface<Moment> {
  protected:
    static const Job& job() { return GetParam().job; }
    void open() {
        openMain(job().model, job().maker);
        openMeasurement();
    }
    void meanwhile(std::function<void()> disturb) {
        moment_ =
            loop.callAfter(std::chrono::milliseconds(job().lengthMs * GetParam().percent / 100),
                           std::move(disturb));
    }
    void jobOver() { loop.cancel(moment_); }
    void runAndProgram() {
        runCoinset(job().model + std::string("-Dorin.cst"));
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
        EXPECT_TRUE(technician.saw(job().good)) << technician.seen.back();
        EXPECT_FALSE(box.inSerialMode());
    }

    EventLoop::TimerId moment_ = 0;
};

TEST_P(MechDisturbed, CancelOperationEndsTheRun) {
    open();
    bool cancelled = false;
    meanwhile([&] {
        cancelled = program->state().gather.runActive;
        if (cancelled) click("frmCoinMeasure1.cmdBack");
    });
    runCoinset(job().model + std::string("-Dorin.cst"));
    jobOver();
    if (cancelled) {
        EXPECT_FALSE(technician.saw("Timeout reading"));
        EXPECT_FALSE(technician.saw("Error"));
        EXPECT_FALSE(technician.saw("No ACK"));
    }
    expectACleanRunWorks();
}

TEST_P(MechDisturbed, ExitUnwindsFromAnywhere) {
    open();
    meanwhile([&] { click("frmMain.cmdExit"); });
    runAndProgram();
    EXPECT_TRUE(loop.runUntil([&] { return endings > 0; }, std::chrono::minutes(3)));
    EXPECT_EQ(endings, 1);
    EXPECT_FALSE(port.isOpen());
    loop.advance(std::chrono::milliseconds(50));
    EXPECT_FALSE(box.inSerialMode()) << "the next program finds a box that listens";
}

TEST_P(MechDisturbed, APulledAdapterNeverPassesForSuccess) {
    open();
    meanwhile([&] { box.unplug(); });
    const Micros start = loop.now();
    runAndProgram();
    EXPECT_LT(loop.now() - start, std::chrono::minutes(4));
    EXPECT_FALSE(box.pluggedIn()) << "the job was over before";
    EXPECT_FALSE(technician.saw(job().good));
    EXPECT_FALSE(technician.saw("Stuck in Serial")) << "the port was told already";
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
INSTANTIATE_TEST_SUITE_P(Moments, MechDisturbed,
                         ::testing::Values(Moment{kC435, 1}, Moment{kC435, 2}, Moment{kC435, 30},
                                           Moment{kC435, 89}, Moment{kC435, 93}, Moment{kC435, 97},
                                           Moment{kSentinel, 1}, Moment{kSentinel, 3},
                                           Moment{kSentinel, 40}, Moment{kSentinel, 82},
                                           Moment{kSentinel, 87}, Moment{kSentinel, 96},
                                           Moment{kG13, 1}, Moment{kG13, 2}, Moment{kG13, 50},
                                           Moment{kG13, 92}, Moment{kG13, 96}, Moment{kG10, 1},
                                           Moment{kG10, 40}, Moment{kG10, 67}, Moment{kG10, 80}));

}  // namespace
}  // namespace vantor::test
