#include <gtest/gtest.h>

#include <QLineEdit>
#include <ostream>

#include "OldProm.h"
#include "RoadFixture.h"

namespace vantor::test {
namespace {

using std::chrono::milliseconds;

/// The coin wizards through the windows, on the simulated box.
class WizardRoad : public Road {
  protected:
    void openPanel(const std::string& model, bool twoK) {
        openMain(model);
        openMeasurement();
        me181_ = model == "ME181";
        click(twoK ? "frmCoinMeasure1.opt2K" : "frmCoinMeasure1.opt1K");
        segments_ = twoK && !me181_ ? 4 : 2;
        for (int segment = 1; segment < segments_; ++segment) {
            click("frmCoinMeasure1.chkSegment_" + std::to_string(segment));
        }
        technician.promWords = twoK ? 512 : 256;
        technician.oldProm = oldProm(me181_, technician.promWords);
        click("frmCoinMeasure1.cmdSpecialUtilities");
        ASSERT_TRUE(visible("frmCoinMeasure1.frmWizard"));
    }
    /// `code` as the lists name it: "C2".
    void chooseCoin(const std::string& code) {
        choose("frmCoinMeasure1.cmbSegment", code.substr(1));
        choose("frmCoinMeasure1.cmbCoin", code);
    }
    /// At the box that asks for it, 20 pieces begin to drop.
    void dropsAt(const std::string& prompt, const std::string& coin) {
        technician.instead(prompt, QMessageBox::Ok, [this, coin] {
            loop.callAfter(milliseconds(100),
                           [this, coin] { EXPECT_TRUE(box.drop(coin, 20, 300)); });
        });
    }
    /// What the program sent from the press of the button on.
    std::string press(const char* button) {
        letTheLineClear();
        box.clearTranscript();
        click(std::string("frmCoinMeasure1.") + button);
        letTheLineClear();
        return box.sentByPc();
    }
    void letTheLineClear() { loop.advance(milliseconds(50)); }

    /// Walks the segments of the limits window: every channel but `measured` shows the old PROM.
    void expectOldLimitsBut(int measured) {
        for (int segment = 0; segment < segments_; ++segment) {
            click("frmPROM.optSeg_" + std::to_string(segment));
            for (int coin = 0; coin < 6; ++coin) {
                const int channel = 6 * segment + coin + 1;
                bool old = true;
                for (int column = 1; column <= 6; ++column) {
                    const int at = 6 * coin + column - 1;
                    old = old && shownLimit(at) == oldLimit(channel, column);
                }
                EXPECT_EQ(old, channel != measured) << channel;
            }
        }
    }
    void expectReadyWindow() {
        EXPECT_TRUE(program->idle());
        EXPECT_TRUE(visible("frmCoinMeasure1.frmMeasurements"));
        EXPECT_FALSE(visible("frmCoinMeasure1.frmWizard") || visible("frmPROM"));
        for (const char* name : {"cmdRunCoinset", "cmdSpecialUtilities", "cmdBack", "opt1K",
                                 "opt2K", "chkSegment_0", "chkLog"}) {
            EXPECT_TRUE(enabled(std::string("frmCoinMeasure1.") + name)) << name;
        }
        EXPECT_EQ(label("frmCoinMeasure1.lblRefCode") + label("frmCoinMeasure1.lblCoinCode"), "");
        EXPECT_EQ(widget<QAbstractButton>("frmCoinMeasure1.cmdBack")->text().toStdString(),
                  "Back to Main Window");
        EXPECT_FALSE(box.coinDataOn());
    }

  private:
    int segments_ = 2;
    bool me181_ = false;
};

struct Case {
    std::string model;
    bool twoK;
    std::string coin;
    int channel;
    bool log;
    std::string sent;
};

void PrintTo(const Case& road, std::ostream* out) {
    *out << road.model << road.coin;
}

class EveryWizardModel : public WizardRoad, public ::testing::WithParamInterface<Case> {};

TEST_P(EveryWizardModel, AddsACoinAndKeepsTheRest) {
    const Case& road = GetParam();
    const bool me181 = road.model == "ME181";
    openPanel(road.model, road.twoK);
    chooseCoin(road.coin);
    EXPECT_EQ(visible("frmCoinMeasure1.txtCoinValue"), me181);
    if (me181) widget<QLineEdit>("frmCoinMeasure1.txtCoinValue")->setText("45");
    widget<QAbstractButton>("frmCoinMeasure1.chkLog")->setChecked(road.log);
    technician.log = folder() / "results.csv";
    dropsAt("Start Coin Drop", "20 Pell");
    EXPECT_EQ(press("cmdAddReplace"), road.sent);
    ASSERT_TRUE(visible("frmPROM"));
    expectOldLimitsBut(road.channel);

    click("frmPROM.cmdProgPROM");
    EXPECT_TRUE(technician.saw("Verify PROM OK"));
    const auto cells = box.promCells();
    ASSERT_EQ(cells.size(), technician.oldProm.size());
    for (int channel = 1; channel <= (road.twoK && !me181 ? 24 : 12); ++channel) {
        const std::size_t at = limitCell(me181, channel, 1);
        EXPECT_EQ(cells[at] + 16 * cells[at + 1] + 256 * cells[at + 2] == oldLimit(channel, 1),
                  channel != road.channel)
            << channel;
        if (!me181) continue;
        const auto value = static_cast<std::size_t>(kValueCells[channel - 1]);
        EXPECT_EQ(cells[value] + 16 * cells[value + 1],
                  channel == road.channel ? 45 : oldCoinValue(channel));
    }
    // The wizard's name and mode stand where a coinset's would.
    std::string reference;
    for (const std::size_t at : {496U, 498U, 500U, 506U}) {
        if (me181) reference += static_cast<char>(16 * cells[at] + cells[at + 1]);
    }
    EXPECT_EQ(reference, me181 ? "WIZ2" : "");
    click("frmPROM.cmdBack1");
    expectReadyWindow();
    const std::string log = readFile(technician.log).value_or("");
    EXPECT_EQ(log.starts_with("\"Wizard\",2\r\n\"Idles\","), road.log) << log;
}

INSTANTIATE_TEST_SUITE_P(
    Mars, EveryWizardModel,
    ::testing::Values(Case{"ME111", false, "E1", 5, false, "Z030020150100\rSMIJNIJEAWW"},
                      Case{"ME111", true, "F4", 24, false, "Z030020150100\rSMIJNIJEKWW"},
                      Case{"ME181", true, "C2", 9, false, "Z030020150100\rSMIWCFDJJNIJEKWW"},
                      Case{"MS1000", true, "A3", 13, true, "Z150150150425\rSMIJYNIJEKWW"},
                      Case{"MS111", false, "B2", 8, false, "Z030020150100\rSMIJNIJEAWW"},
                      Case{"MS130B1", false, "D1", 4, false, "Z030020150100\rSMIJNIJEAWW"},
                      Case{"MS1400", true, "A2", 7, false, "C02Z150150150425\rSMIJNIJEKWW"}),
    [](const auto& row) { return row.param.model + row.param.coin; });

TEST_F(WizardRoad, SlugFixShowsTheSlugBesideTheOldLimits) {
    openPanel("ME111", true);
    chooseCoin("D1");
    dropsAt("Start Coin Drop", "50 Pell");
    dropsAt("Start Slug Drop", "Plated Disc");
    EXPECT_EQ(press("cmdSlugFix"), "Z030020150100\rSMIJNINIJEKWW");
    EXPECT_NE(label("frmPROM.lblSlugLimits_0"), "");
    EXPECT_EQ(label("frmPROM.lblSlugLimits_6"), "");
    EXPECT_EQ(label("frmPROM.lblAcceptance_0"), "???");
    EXPECT_NE(label("frmPROM.lblAcceptance_3"), "???");
    expectOldLimitsBut(0);
    click("frmPROM.cmdBack1");
    expectReadyWindow();
}

TEST_F(WizardRoad, EditLimitsAsksForNothingButTheOldProm) {
    openPanel("MS1000", false);
    EXPECT_EQ(press("cmdEditLimits"), "Z150150150425\rSMIJJEAWW");
    EXPECT_EQ(technician.seen.size(), 2U);
    EXPECT_EQ(label("frmPROM.lblAcceptance_5"), "???");
    expectOldLimitsBut(0);
    click("frmPROM.cmdBack1");
    expectReadyWindow();
}

class EveryMoment : public WizardRoad, public ::testing::WithParamInterface<int> {};

TEST_P(EveryMoment, CancelOperationEndsTheWizard) {
    const milliseconds after{GetParam()};
    openPanel("ME111", false);
    dropsAt("Start Coin Drop", "50 Pell");
    dropsAt("Start Slug Drop", "Plated Disc");
    const Micros asked = loop.now() + milliseconds(50) + after;
    loop.callAfter(milliseconds(50) + after, [&] {
        EXPECT_TRUE(enabled("frmCoinMeasure1.cmdBack"));
        click("frmCoinMeasure1.cmdBack");
        EXPECT_FALSE(enabled("frmCoinMeasure1.cmdBack")) << "once is enough";
    });
    // A wizard that is deaf to it would wait for ever.
    loop.callAfter(std::chrono::minutes(1), [this] { program->link().endProgram(); });
    const std::string sent = press("cmdSlugFix");
    EXPECT_LE(loop.now() - milliseconds(50), asked + milliseconds(250));
    EXPECT_TRUE(sent.ends_with("WM")) << sent;
    EXPECT_EQ(technician.saw("Start Slug Drop"), after > std::chrono::seconds(8));
    EXPECT_FALSE(technician.saw("Copy PROM"));
    expectReadyWindow();
}

// Sensor timings, mode, drops of the coin, drops of the slug.
INSTANTIATE_TEST_SUITE_P(Mars, EveryMoment,
                         ::testing::Values(100, 700, 900, 1500, 1900, 4000, 7000, 9000, 12000));

TEST_F(WizardRoad, ARefusedLogAndTheCancelOfThePanel) {
    openPanel("ME111", false);
    EXPECT_EQ(press("cmdCancelWizards"), "");
    expectReadyWindow();
    click("frmCoinMeasure1.cmdSpecialUtilities");
    EXPECT_FALSE(enabled("frmCoinMeasure1.cmdBack"));
    widget<QAbstractButton>("frmCoinMeasure1.chkLog")->setChecked(true);
    EXPECT_EQ(press("cmdAddReplace"), "Z030020150100\rSMIW");
    EXPECT_TRUE(technician.saw("Open Log File|"));
    expectReadyWindow();
}

}  // namespace
}  // namespace vantor::test
