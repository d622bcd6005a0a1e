#include <QLineEdit>
#include <QPlainTextEdit>

#include "CcRoad.h"

namespace vantor::test {
namespace {

using boxsim::Fault;

class EveryCcModel : public CcRoad, public ::testing::WithParamInterface<CcCase> {};

TEST_P(EveryCcModel, IsProgrammedFromItsCoinset) {
    const CcCase& road = GetParam();
    openCc(road.model);
    openLoggedMeasurement();
    const Words before = words();
    ASSERT_EQ(before.size(), static_cast<std::size_t>(road.words));
    runCoinset(road.model + "-Dorin.cst");
    ASSERT_TRUE(visible("frmPROM")) << last();
    EXPECT_TRUE(technician.saw("Data Gathering Complete"));
    EXPECT_FALSE(technician.saw("Error")) << last();
    EXPECT_EQ(words(), before) << "nothing is written before the technician says so";
    EXPECT_EQ(readFile(folder() / (road.model + "temp.txt")), fileText(before));

    const auto limits = shownLimits(road);
    if (road.kept != 0) {
        EXPECT_EQ(limits.at(static_cast<std::size_t>(road.kept - 1))[0],
                  before.at(static_cast<std::size_t>(road.base + road.source - 1)) % 256);
    }
    const Words expected = expectedWords(road, before, limits);
    ASSERT_NE(expected, before);
    box.clearTranscript();
    click("frmPROM.cmdProgPROM");
    EXPECT_TRUE(technician.saw("EEPROM VERIFY|   EEPROM Verified OK   ")) << last();
    EXPECT_EQ(words(), expected);
    EXPECT_NE(box.sentByPc().find(writingConversation(before, expected)), std::string::npos)
        << "only what changed is written";
    EXPECT_EQ(readFile(folder() / (road.model + "temp.txt")), fileText(expected));
    expectCommandMode();
    expectLog();

    ASSERT_TRUE(enabled("frmPROM.cmdValtest"));
    click("frmPROM.cmdValtest");
    ASSERT_TRUE(visible("frmValtest"));
    drop("20 Pell", 20);
    EXPECT_GE(count(2), 15);
    EXPECT_EQ(visible("frmValtest.optBinary"), road.binaryPositions > 0);
    if (road.binaryPositions > 0) {
        click("frmValtest.optBinary");
        letTheLineClear();
        ASSERT_TRUE(
            box.reportTestEvent("X0" + hex(static_cast<unsigned>(road.binaryPositions) - 1, 1)));
        loop.advance(std::chrono::milliseconds(100));
        EXPECT_EQ(count(road.binaryPositions - 1), 1);
    }
    click("frmValtest.cmdBack");
    ASSERT_TRUE(visible("frmPROM"));
    click("frmPROM.cmdBack1");
    ASSERT_TRUE(visible("frmCoinMeasure1"));
    click("frmCoinMeasure1.cmdBack");
    EXPECT_TRUE(visible("frmMain"));
    EXPECT_TRUE(enabled("frmMain.cmdCCprog"));
}

INSTANTIATE_TEST_SUITE_P(CoinControls, EveryCcModel, ::testing::ValuesIn(kCcCases),
                         [](const auto& row) { return "Model" + row.param.model; });

// --- what goes wrong -------------------------------------------------------------------------

class CcFaults : public CcRoad {};

TEST_F(CcFaults, AfterAProgrammingThatFailedTheCheckByteIsRightAgain) {
    struct Case {
        const char* model;
        Fault fault;
        bool anew;  ///< the coins are measured again, not only programmed
    };
    for (const Case& c :
         {Case{"335", {.kind = Fault::Kind::lyingWrite, .after = 4}, false},
          Case{"335", {.kind = Fault::Kind::lyingWrite, .after = 4}, true},
          Case{"435", {.kind = Fault::Kind::powerLoss, .after = 9, .value = 500}, true},
          Case{"C120", {.kind = Fault::Kind::mechRefuses, .after = 6}, false}}) {
        SCOPED_TRACE(c.model);
        programFromCoinset(c.model);
        box.addFault(c.fault);
        click("frmPROM.cmdProgPROM");
        EXPECT_TRUE(technician.saw("EEPROM Verify FAIL")) << last();
        EXPECT_NE((byteSum(words(), 0, 127) + words()[127] / 256) % 256, 0) << "nothing to mend";
        box.clearFaults();
        loop.advance(std::chrono::seconds(1));
        if (c.anew) {
            click("frmPROM.cmdBack1");
            runCoinset(std::string(c.model) + "-Dorin.cst");
        } else if (!visible("frmPROM")) {
            ADD_FAILURE() << last();
        }
        technician.seen.clear();
        click("frmPROM.cmdProgPROM");
        EXPECT_TRUE(technician.saw("EEPROM Verified OK")) << last();
        EXPECT_EQ((byteSum(words(), 0, 127) + words()[127] / 256) % 256, 0);
        program.reset();
        technician.seen.clear();
    }
}

TEST_F(CcFaults, WithoutASessionTheGatherWaitsForCancelAndSaysSo) {
    for (const char* model : {"435", "Sentinel"}) {
        SCOPED_TRACE(model);
        openCc(model);
        openMeasurement();
        box.addFault({.kind = Fault::Kind::noSession, .times = -1});
        std::string shown;
        loop.callAfter(std::chrono::minutes(1), [&] {
            shown = label("frmCoinMeasure1.lblDescription");
            click("frmCoinMeasure1.cmdBack");
        });
        runCoinset(std::string(model) + "-Dorin.cst");
        EXPECT_EQ(shown, "5 Pell - the mech does not answer: press Cancel Operation");
        EXPECT_FALSE(visible("frmPROM"));
        expectCommandMode();
        EXPECT_TRUE(enabled("frmCoinMeasure1.cmdRunCoinset"));
        program.reset();
        technician.seen.clear();
        box.clearFaults();
    }
}

// --- the clone box and the utilities window --------------------------------------------------

// What is declined or cannot be read is the unit test's.
TEST_F(CcRoad, CloneCoinMechProgramsASavedMemoryFirst) {
    technician.memoryFile =
        std::filesystem::path(VANTOR_SOURCE_DIR) / "data" / "MemoryFiles" / "435-Dorin.txt";
    openCc("435");
    openMeasurement();
    widget<QAbstractButton>("frmCoinMeasure1.chkduplicate")->setChecked(true);
    runCoinset("435-Dorin.cst");
    ASSERT_TRUE(visible("frmPROM")) << last();
    EXPECT_TRUE(technician.saw("Write EEPROM|Confirm overwrite EEPROM")) << last();
    EXPECT_TRUE(technician.saw("EEPROM Verified OK"));
    EXPECT_EQ(fileText(words()), readFile(technician.memoryFile));
}

class EepromWindowRoad : public CcRoad {
  protected:
    static std::string pane() {
        return widget<QPlainTextEdit>("frmEEPROMdata.lblPROM")->toPlainText().toStdString();
    }
    static void type(const std::string& box, const char* text) {
        widget<QLineEdit>("frmEEPROMdata." + box)->setText(QLatin1String(text));
    }
};

TEST_F(EepromWindowRoad, ReadsShowsSavesAndProgrammesAMech) {
    openCc("Sentinel");
    box.mech()->setMemory(9, "1234");
    // Programming makes the check word right, whatever the file says.
    Words good = words();
    good[63] = 256 - byteSum(good, 0, 63);
    click("frmMain.cmdCCprom");
    ASSERT_TRUE(visible("frmEEPROMdata")) << last();
    EXPECT_TRUE(pane().starts_with("  00 ")) << pane();
    EXPECT_EQ(pane().substr(5 + 9 * 5, 5), "1234 ");

    // Saved under a name with another ending; the second time the technician must agree.
    technician.memoryFile = folder() / "coins.dat";
    click("frmEEPROMdata.cmdSave");
    const std::string saved = readFile(folder() / "coins.txt").value_or("");
    EXPECT_EQ(saved, fileText(words()));
    box.mech()->setMemory(9, "FFFF");
    technician.instead("Overwrite Existing File", QMessageBox::Cancel);
    click("frmEEPROMdata.cmdReadPROM");
    click("frmEEPROMdata.cmdSave");
    EXPECT_TRUE(technician.allExceptionsUsed());
    EXPECT_EQ(readFile(folder() / "coins.txt"), saved);

    EXPECT_EQ(pane().substr(5 + 9 * 5, 5), "FFFF ");
    click("frmEEPROMdata.cmdProgramme");
    EXPECT_TRUE(technician.saw("EEPROM Verified OK")) << last();
    EXPECT_EQ(words(), good);
    EXPECT_EQ(pane().substr(5 + 9 * 5, 5), "1234 ");

    click("frmEEPROMdata.cmdBye");
    EXPECT_TRUE(visible("frmMain") && enabled("frmMain.cmdCCprom"));
    expectCommandMode();
}

TEST_F(EepromWindowRoad, EditsTheRoutingOfA435) {
    openCc("435");
    const Words before = words();
    click("frmMain.cmdCCprom");
    choose("frmEEPROMdata.cmbDisplay", "Other Information");
    ASSERT_TRUE(visible("frmEEPROMdata.frm435"));
    type("txtSort_0", "d");
    type("txtCode_15", "000");
    box.clearTranscript();
    click("frmEEPROMdata.cmdRouting");
    EXPECT_EQ(last(), "Error|Invalid Binary Code entered");
    type("txtSort_63", "e");
    click("frmEEPROMdata.cmdRouting");
    EXPECT_EQ(last(), "Error|Invalid Routing Path entered") << "a path counts first";
    type("txtSort_63", "A");
    type("txtCode_15", "0001");
    type("txtPlugDefault", "b");
    click("frmEEPROMdata.optPlug");
    technician.instead("Confirm overwrite EEPROM", QMessageBox::Cancel);
    click("frmEEPROMdata.cmdRouting");
    letTheLineClear();
    EXPECT_EQ(box.sentByPc(), "");
    EXPECT_EQ(words(), before);

    click("frmEEPROMdata.cmdRouting");
    EXPECT_TRUE(technician.saw("EEPROM Verified OK")) << last();
    Words expected = before;
    expected[128] = before[128] / 16 * 16 + 7;
    expected[143] = before[143] % 0x1000 + 0x3000;
    expected[113] = before[113] % 0x1000 + 0x1000;
    expected[11] = 0x004A;
    expected[204] = 0x0511;
    expected[228] = 0x0842;
    expected[127] = (256 - byteSum(expected, 0, 127)) % 256 * 256 + before[127] % 256;
    EXPECT_EQ(words(), expected);
    EXPECT_TRUE(visible("frmEEPROMdata.frm435"));

    // Nothing is built on a memory that was not read whole.
    box.addFault({.kind = Fault::Kind::wrongSum, .after = 40});
    click("frmEEPROMdata.cmdReadPROM");
    letTheLineClear();
    box.clearTranscript();
    click("frmEEPROMdata.cmdRouting");
    letTheLineClear();
    EXPECT_EQ(last(), "Error|" + program->state().msgText(146));
    EXPECT_EQ(box.sentByPc(), "");
    EXPECT_EQ(words(), expected);
    windowNamed("frmEEPROMdata")->close();
    EXPECT_TRUE(visible("frmMain"));
    expectCommandMode();
}

TEST_F(EepromWindowRoad, FromTheLimitsWindowAndBack) {
    programFromCoinset("450");
    letTheLineClear();
    box.clearTranscript();
    click("frmPROM.cmdPROMutilities");
    ASSERT_TRUE(visible("frmEEPROMdata"));
    EXPECT_FALSE(visible("frmPROM") || visible("frmMain"));
    EXPECT_TRUE(box.sentByPc().starts_with("JJ#80C08"));
    // Another file in the new image must not be what Program EEPROM writes afterwards.
    technician.memoryFile = folder() / "zeros.txt";
    write("zeros.txt", "0,1\r\n");
    technician.instead("Confirm overwrite EEPROM", QMessageBox::Cancel);
    click("frmEEPROMdata.cmdProgramme");
    EXPECT_TRUE(technician.allExceptionsUsed());
    click("frmEEPROMdata.cmdBye");
    ASSERT_TRUE(visible("frmPROM"));
    EXPECT_FALSE(visible("frmMain"));
    EXPECT_TRUE(enabled("frmPROM.cmdPROMutilities"));
    const int word0 = words()[0];
    click("frmPROM.cmdProgPROM");
    EXPECT_TRUE(technician.saw("EEPROM Verified OK")) << last();
    EXPECT_EQ(words()[0], word0);
    expectCommandMode();
}

}  // namespace
}  // namespace vantor::test
