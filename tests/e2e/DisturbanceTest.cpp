#include <gtest/gtest.h>

#include <QComboBox>
#include <QPushButton>
#include <set>

#include "RoadFixture.h"

// A whole job is disturbed at moments spread over its length: wherever it happens, the program
// must come back usable, with the box in command mode and one message at the most about it.

namespace vantor::test {
namespace {

constexpr const char* kCoinset = "MS1000-Dorin.cst";
constexpr const char* kModel = "MS1000";

class Disturbed : public Road, public ::testing::WithParamInterface<int> {
  protected:
    /// What happens at the test's moment of the job, unless the job is over by then.
    void meanwhile(std::function<void()> disturb) {
        moment_ = loop.callAfter(std::chrono::milliseconds(GetParam()), std::move(disturb));
    }
    void jobOver() { loop.cancel(moment_); }
    void runAndProgram() {
        runCoinset(kCoinset);
        if (endings == 0 && visible("frmPROM")) click("frmPROM.cmdProgPROM");
    }
    void expectCommandMode() {
        loop.advance(std::chrono::milliseconds(50));
        EXPECT_FALSE(box.inSerialMode());
        EXPECT_FALSE(program->actions().busy());
    }
    void expectACleanRunWorks() {
        if (visible("frmPROM")) click("frmPROM.cmdBack1");
        ASSERT_TRUE(visible("frmCoinMeasure1"));
        EXPECT_EQ(widget<QPushButton>("frmCoinMeasure1.cmdBack")->text().toStdString(),
                  "Back to Main Window");
        technician.seen.clear();
        runAndProgram();
        EXPECT_TRUE(technician.saw("Verify PROM OK")) << technician.seen.back();
    }

    EventLoop::TimerId moment_ = 0;
};

TEST_P(Disturbed, CancelOperationEndsTheRunAtOnce) {
    openMain(kModel);
    openMeasurement();
    Micros cancelled{-1};
    Micros back{-1};
    meanwhile([&] {
        if (!program->state().gather.runActive) return;
        cancelled = loop.now();
        click("frmCoinMeasure1.cmdBack");
    });
    runCoinset(kCoinset);
    jobOver();
    back = loop.now();
    expectCommandMode();
    if (cancelled >= Micros{0}) {
        EXPECT_FALSE(visible("frmPROM"));
        EXPECT_FALSE(technician.saw("Data Gathering Complete"));
        // The set-up of a fresh window asks the box once, which takes its 800 ms.
        EXPECT_LT(back - cancelled, std::chrono::milliseconds(1250));
    }
    expectACleanRunWorks();
}

TEST_P(Disturbed, ExitUnwindsFromAnywhere) {
    openMain(kModel);
    openMeasurement();
    meanwhile([&] { widget<QAbstractButton>("frmMain.cmdExit")->click(); });
    runAndProgram();
    EXPECT_TRUE(loop.runUntil([&] { return endings > 0; }, std::chrono::minutes(3)));
    EXPECT_EQ(endings, 1);
    EXPECT_TRUE(program->ended());
    EXPECT_FALSE(port.isOpen());
    loop.advance(std::chrono::milliseconds(50));
    EXPECT_FALSE(box.coinDataOn());
    for (const char* window : {"frmMain", "frmCoinMeasure1", "frmPROM", "frmProgramming"}) {
        EXPECT_FALSE(visible(window)) << window;
    }
}

TEST_P(Disturbed, APulledAdapterIsToldOnceAndTheNextJobWorks) {
    openMain(kModel);
    openMeasurement();
    meanwhile([&] { box.unplug(); });
    const Micros start = loop.now();
    runAndProgram();
    jobOver();
    EXPECT_LT(loop.now() - start, std::chrono::minutes(4));
    EXPECT_FALSE(program->actions().busy());
    box.replug();
    if (visible("frmPROM")) click("frmPROM.cmdBack1");
    if (visible("frmCoinMeasure1")) click("frmCoinMeasure1.cmdBack");
    ASSERT_TRUE(visible("frmMain"));
    openMeasurement();
    expectACleanRunWorks();
}

TEST_P(Disturbed, ABoxThatFallsSilentNeverPassesForSuccess) {
    openMain(kModel);
    openMeasurement();
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
    if (technician.saw("Verify PROM OK")) {
        const auto& next = program->state().images.next;
        const auto cells = box.promCells();
        for (int at = 0; at < 128; ++at)
            EXPECT_EQ(cells[static_cast<std::size_t>(at)], next[at]) << at;
    }
    loop.advance(std::chrono::seconds(100));
    expectCommandMode();
    if (visible("frmPROM")) click("frmPROM.cmdBack1");
    expectACleanRunWorks();
}

INSTANTIATE_TEST_SUITE_P(Moments, Disturbed,
                         ::testing::Values(0, 150, 1700, 3600, 7'000, 14'000, 31'000, 32'000,
                                           33'300));

}  // namespace
}  // namespace vantor::test
