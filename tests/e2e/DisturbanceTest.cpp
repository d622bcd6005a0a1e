#include <gtest/gtest.h>

#include <QPushButton>
#include <ostream>

#include "RoadFixture.h"

// A whole job is disturbed at moments spread over its length: wherever it happens, the program
// must come back usable, with the box in command mode and one message at the most about it.

namespace vantor::test {
namespace {

using std::chrono::milliseconds;

struct Job {
    const char* model;
    std::string_view maker;
    const char* good;
};

constexpr Job kMs1000 = {"MS1000", kMars, "Verify PROM OK"};
constexpr Job k435 = {"435", kCoinControls, "EEPROM Verified OK"};
constexpr Job kSentinel = {"Sentinel", kCoinControls, "EEPROM Verified OK"};
constexpr Job kG13 = {"G13-6000", kNri, "NRI Memory Programmed OK"};
constexpr Job kG10 = {"G10-4000", kNri, "NRI Memory Programmed OK"};

struct Moment {
    Job job;
    int ms;
};

void PrintTo(const Moment& moment, std::ostream* out) {
    *out << moment.job.model << " after " << moment.ms << " ms";
}

std::vector<Moment> momentsOf(const Job& job, const std::vector<int>& all) {
    std::vector<Moment> moments;
    for (const int ms : all) moments.push_back({job, ms});
    return moments;
}

class Disturbed : public Road, public ::testing::WithParamInterface<Moment> {
  protected:
    static const Job& job() { return GetParam().job; }
    void open() {
        openMain(job().model, job().maker);
        openMeasurement();
    }
    /// What happens at the test's moment of the job, unless the job is over by then.
    void meanwhile(std::function<void()> disturb) {
        moment_ = loop.callAfter(milliseconds(GetParam().ms), std::move(disturb));
    }
    void jobOver() { loop.cancel(moment_); }
    void runJobsCoinset() { runCoinset(job().model + std::string("-Dorin.cst")); }
    void runAndProgram() {
        runJobsCoinset();
        if (endings == 0 && visible("frmPROM")) click("frmPROM.cmdProgPROM");
    }
    void expectACleanRunWorks() {
        loop.advance(milliseconds(50));
        EXPECT_FALSE(box.inSerialMode());
        EXPECT_FALSE(program->actions().busy());
        if (visible("frmPROM")) click("frmPROM.cmdBack1");
        ASSERT_TRUE(visible("frmCoinMeasure1"));
        EXPECT_EQ(widget<QPushButton>("frmCoinMeasure1.cmdBack")->text().toStdString(),
                  "Back to Main Window");
        technician.seen.clear();
        runAndProgram();
        EXPECT_TRUE(technician.saw(job().good)) << last();
        EXPECT_FALSE(box.inSerialMode());
    }

    EventLoop::TimerId moment_ = 0;
};

TEST_P(Disturbed, CancelOperationEndsTheRunAtOnce) {
    open();
    Micros cancelled{-1};
    meanwhile([&] {
        if (!program->state().gather.runActive) return;
        cancelled = loop.now();
        click("frmCoinMeasure1.cmdBack");
    });
    runJobsCoinset();
    jobOver();
    if (cancelled >= Micros{0}) {
        for (const char* told : {"Timeout reading", "Error", "No ACK"}) {
            EXPECT_FALSE(technician.saw(told)) << last();
        }
        if (job().maker == kMars) {
            EXPECT_FALSE(visible("frmPROM"));
            EXPECT_FALSE(technician.saw("Data Gathering Complete"));
            // The set-up of a fresh window asks the box once, which takes its 800 ms.
            EXPECT_LT(loop.now() - cancelled, milliseconds(1250));
        }
    }
    expectACleanRunWorks();
}

TEST_P(Disturbed, ExitUnwindsFromAnywhere) {
    open();
    meanwhile([&] { click("frmMain.cmdExit"); });
    runAndProgram();
    EXPECT_TRUE(loop.runUntil([&] { return endings > 0; }, std::chrono::minutes(3)));
    EXPECT_EQ(endings, 1);
    EXPECT_TRUE(program->ended());
    EXPECT_FALSE(port.isOpen());
    loop.advance(milliseconds(50));
    EXPECT_FALSE(box.coinDataOn());
    EXPECT_FALSE(box.inSerialMode()) << "the next program finds a box that listens";
    for (const char* window : {"frmMain", "frmCoinMeasure1", "frmPROM", "frmProgramming"}) {
        EXPECT_FALSE(visible(window)) << window;
    }
}

TEST_P(Disturbed, APulledAdapterNeverPassesForSuccess) {
    open();
    meanwhile([&] { box.unplug(); });
    const Micros start = loop.now();
    runAndProgram();
    jobOver();
    EXPECT_LT(loop.now() - start, std::chrono::minutes(4));
    EXPECT_FALSE(box.pluggedIn()) << "the job was over before";
    EXPECT_FALSE(technician.saw(job().good));
    EXPECT_FALSE(technician.saw("Stuck in Serial")) << "the port was told already";
    EXPECT_FALSE(program->actions().busy());
    box.replug();
    if (visible("frmPROM")) click("frmPROM.cmdBack1");
    if (visible("frmCoinMeasure1")) click("frmCoinMeasure1.cmdBack");
    ASSERT_TRUE(visible("frmMain"));
    openMeasurement();
    expectACleanRunWorks();
}

class SilentBox : public Disturbed {};

TEST_P(SilentBox, NeverPassesForSuccess) {
    open();
    meanwhile([&] {
        box.setSilent(true);
        // A technician whose drops no longer count gives up after a while.
        loop.callAfter(std::chrono::seconds(30), [&] {
            if (program->state().gather.gatherActive) click("frmCoinMeasure1.cmdBack");
        });
        loop.callAfter(std::chrono::seconds(90), [&] { box.setSilent(false); });
    });
    runAndProgram();
    jobOver();
    if (technician.saw(job().good)) {
        const auto& next = program->state().images.next;
        for (int at = 0; at < 128; ++at)
            EXPECT_EQ(box.promCells()[static_cast<std::size_t>(at)], next[at]) << at;
    }
    loop.advance(std::chrono::seconds(100));
    expectACleanRunWorks();
}

const auto kMarsMoments =
    momentsOf(kMs1000, {0, 150, 1700, 3600, 7'000, 14'000, 31'000, 32'000, 33'300});
INSTANTIATE_TEST_SUITE_P(Mars, SilentBox, ::testing::ValuesIn(kMarsMoments));
INSTANTIATE_TEST_SUITE_P(Mars, Disturbed, ::testing::ValuesIn(kMarsMoments));
// Setting up, the first gather, amid the gathers, reading, writing, verifying.
INSTANTIATE_TEST_SUITE_P(C435, Disturbed,
                         ::testing::ValuesIn(momentsOf(k435, {540, 1'080, 16'200, 48'060, 50'220,
                                                              52'380})));
INSTANTIATE_TEST_SUITE_P(Sentinel, Disturbed,
                         ::testing::ValuesIn(momentsOf(kSentinel, {440, 1'320, 17'600, 36'080,
                                                                   38'280, 42'240})));
INSTANTIATE_TEST_SUITE_P(G13, Disturbed,
                         ::testing::ValuesIn(momentsOf(kG13,
                                                       {546, 1'092, 27'300, 50'232, 52'416})));
INSTANTIATE_TEST_SUITE_P(G10, Disturbed,
                         ::testing::ValuesIn(momentsOf(kG10, {680, 27'200, 45'560, 54'400})));

}  // namespace
}  // namespace vantor::test
