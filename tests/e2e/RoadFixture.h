#pragma once

#include <QAbstractButton>
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
        ASSERT_TRUE(visible("frmCoinMeasure1"))
            << (technician.seen.empty() ? "" : technician.seen.back());
    }
    void runCoinset(const std::string& file) {
        technician.coinset = std::filesystem::path(VANTOR_SOURCE_DIR) / "data" / "CoinSets" / file;
        click("frmCoinMeasure1.cmdRunCoinset");
    }
    [[nodiscard]] std::vector<std::uint8_t> cells() const {
        const auto cells = box.promCells();
        return {cells.begin(), cells.end()};
    }

    Technician technician{loop, box};

  private:
    std::string programButton_;
};

}  // namespace vantor::test
