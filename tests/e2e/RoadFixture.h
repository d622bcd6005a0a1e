#pragma once

#include <QAbstractButton>
#include <QLineEdit>
#include <filesystem>
#include <string>
#include <vector>

#include "ProgramFixture.h"
#include "Technician.h"

namespace vantor::test {

/// The program behind its main window, and a technician at the bench.
class Road : public ProgramTest {
  protected:
    void openMain(const std::string& model, std::string_view maker = kMars) {
        box.plugValidator(maker, model);
        writeConfig("\" 1\",\"English\",\" 0\",\" 0\",\"\"\r\n");
        run();
        ASSERT_TRUE(visible("frmMain"));
        choose(maker == kMars           ? "frmMain.cmbMarsMech"
               : maker == kCoinControls ? "frmMain.cmbCCmech"
                                        : "frmMain.cmbNRImech",
               model);
        programButton_ = maker == kMars           ? "frmMain.cmdMars"
                         : maker == kCoinControls ? "frmMain.cmdCCprog"
                                                  : "frmMain.cmdNRIprog";
    }
    void openMeasurement() {
        click(programButton_);
        ASSERT_TRUE(visible("frmCoinMeasure1")) << last();
    }
    /// The measurement window of a mech with a memory of its own, which logs what it measures.
    void openLoggedMeasurement() {
        openMeasurement();
        EXPECT_EQ(widget<QAbstractButton>("frmCoinMeasure1.chkduplicate")->text().toStdString(),
                  "Clone Coin Mech");
        widget<QAbstractButton>("frmCoinMeasure1.chkLog")->setChecked(true);
        technician.log = folder() / "results.csv";
    }
    void expectLog() const {
        const std::string log = readFile(technician.log).value_or("");
        EXPECT_TRUE(log.starts_with("\"Dorin, ")) << log.substr(0, 60);
        EXPECT_NE(log.find("\"SD Upper\","), std::string::npos);
    }
    void runCoinset(const std::string& file) {
        technician.coinset = std::filesystem::path(VANTOR_SOURCE_DIR) / "data" / "CoinSets" / file;
        click("frmCoinMeasure1.cmdRunCoinset");
    }
    [[nodiscard]] std::string last() const {
        return technician.seen.empty() ? "" : technician.seen.back();
    }
    /// What the program has just sent is still on its way.
    void letTheLineClear() { loop.advance(std::chrono::milliseconds(10)); }
    void expectCommandMode() {
        letTheLineClear();
        EXPECT_TRUE(program->idle());
        EXPECT_FALSE(box.inSerialMode());
        EXPECT_FALSE(visible("frmProgramming"));
    }
    /// Coins for the validator test.
    void drop(const std::string& coin, int count = 1) {
        for (int i = 0; i < count; ++i) {
            letTheLineClear();
            ASSERT_TRUE(box.drop(coin));
            loop.advance(std::chrono::milliseconds(200));
        }
    }
    [[nodiscard]] static int count(int position) {
        return std::stoi(label("frmValtest.lblCount_" + std::to_string(position)));
    }
    [[nodiscard]] std::vector<std::uint8_t> cells() const {
        const auto cells = box.promCells();
        return {cells.begin(), cells.end()};
    }

    Technician technician{loop, box};

  private:
    std::string programButton_;
};

inline int shownLimit(int box) {
    return widget<QLineEdit>("frmPROM.txtProm_" + std::to_string(box))->text().toInt();
}

using Limits = std::vector<std::vector<int>>;  ///< by channel: low and high per parameter

/// The limits of the whole memory as the limits window shows them.
template <class Case>
Limits shownLimits(const Case& road) {
    Limits all;
    for (int segment = 0; segment * road.rowsOfSegment < road.channels; ++segment) {
        click("frmPROM.optSeg_" + std::to_string(segment));
        for (int row = 0; row < road.rowsOfSegment; ++row) {
            std::vector<int> limits;
            for (int i = 0; i < 2 * road.parameters; ++i) {
                limits.push_back(shownLimit(row * 2 * road.parameters + i));
            }
            all.push_back(limits);
        }
    }
    return all;
}

}  // namespace vantor::test
