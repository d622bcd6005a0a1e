#include <QComboBox>
#include <QPlainTextEdit>

#include "NriRoad.h"

namespace vantor::test {
namespace {

using boxsim::Fault;

class EveryNriModel : public NriRoad, public ::testing::WithParamInterface<NriCase> {};

TEST_P(EveryNriModel, IsProgrammedFromItsCoinset) {
    const NriCase& road = GetParam();
    openNri(road.model);
    openLoggedMeasurement();
    const Blocks before = blocks();
    runCoinset(fileStem(road.model) + "-Dorin.cst");
    ASSERT_TRUE(visible("frmPROM")) << last();
    EXPECT_TRUE(technician.saw("Data Gathering Complete"));
    EXPECT_FALSE(technician.saw("Error")) << last();
    EXPECT_EQ(blocks(), before) << "nothing is written before the technician says so";
    EXPECT_EQ(dump(road.model), fileText(before)) << "the old memory is read first";
    EXPECT_FALSE(enabled("frmPROM.cmdValtest"));

    const Limits limits = shownLimits(road);
    for (int p = 0; p < road.parameters; ++p) {
        const auto low = static_cast<std::size_t>(2 * p);
        EXPECT_LT(limits[0][low], limits[0][low + 1]) << "channel 1 was measured";
    }
    if (road.kept != 0) {
        const int shift = road.plain ? 0 : 3;
        EXPECT_EQ(channelText(road, limits.at(static_cast<std::size_t>(road.kept - 1))),
                  before.at(shift + road.source));
    }
    const Blocks expected = expectedBlocks(road, before, limits);
    ASSERT_NE(expected, before);
    click("frmPROM.cmdProgPROM");
    EXPECT_TRUE(technician.saw("OK|NRI Memory Programmed OK")) << last();
    EXPECT_EQ(blocks(), expected);
    expectCommandMode();
    EXPECT_EQ(box.sentByPc().back(), 'W') << "the validator is switched back";
    EXPECT_TRUE(enabled("frmPROM.cmdValtest"));

    // It can be tested at once; a G10 in its own serial mode, a G40 as the commonest variant.
    click("frmPROM.cmdValtest");
    ASSERT_TRUE(visible("frmValtest")) << last();
    letTheLineClear();
    EXPECT_EQ(box.inSerialMode(), road.model.starts_with("G10"));
    const bool g40 = road.model == "G40-0000";
    EXPECT_EQ(visible("frmValtest.cmbG40"), g40);
    if (g40) {
        EXPECT_EQ(widget<QComboBox>("frmValtest.cmbG40")->currentText(), "G40-x4xx");
    }
    click("frmValtest.cmdBack");
    ASSERT_TRUE(visible("frmPROM"));
    expectCommandMode();
    expectLog();

    click("frmPROM.cmdBack1");
    ASSERT_TRUE(visible("frmCoinMeasure1"));
    click("frmCoinMeasure1.cmdBack");
    EXPECT_TRUE(visible("frmMain"));
    EXPECT_TRUE(enabled("frmMain.cmdNRIprog") && enabled("frmMain.cmdNRIprom"));
}

INSTANTIATE_TEST_SUITE_P(Nri, EveryNriModel, ::testing::ValuesIn(kNriCases),
                         [](const auto& row) { return testName(row.param.model); });

// --- what goes wrong -------------------------------------------------------------------------

class NriFaults : public NriRoad, public ::testing::WithParamInterface<const char*> {};

TEST_P(NriFaults, ASilentMechIsToldWhereverItIsNeeded) {
    const std::string model = GetParam();
    const Fault silence{.kind = Fault::Kind::mechSilent, .times = -1};
    const char* told = "Error|No Communication with the NRI Coin Mech";
    openNri(model);
    box.addFault(silence);
    click("frmMain.cmdNRIprom");
    ASSERT_TRUE(visible("frmNRIdata")) << "the mech may still be rescued from a file";
    EXPECT_TRUE(technician.saw(told)) << last();
    EXPECT_EQ(dump(model), "(none)");
    click("frmNRIdata.cmdBye");
    expectCommandMode();

    box.clearFaults();
    openMeasurement();
    runCoinset(fileStem(model) + "-Dorin.cst");
    ASSERT_TRUE(visible("frmPROM")) << last();
    const Blocks before = blocks();
    technician.seen.clear();
    box.addFault(silence);
    click("frmPROM.cmdProgPROM");
    EXPECT_TRUE(technician.saw(told)) << last();
    EXPECT_FALSE(technician.saw("Programmed OK"));
    EXPECT_FALSE(enabled("frmPROM.cmdValtest"));
    EXPECT_EQ(blocks(), before);
    expectCommandMode();

    box.clearFaults();
    click("frmPROM.cmdProgPROM");
    EXPECT_TRUE(technician.saw("Programmed OK")) << last();
}

INSTANTIATE_TEST_SUITE_P(Nri, NriFaults, ::testing::Values("G13-6000", "G10-4000"),
                         [](const auto& row) {
                             return row.param == std::string("G13-6000") ? "Handshake" : "Plain";
                         });

// --- the utilities window --------------------------------------------------------------------

class NriWindowRoad : public NriRoad {};

TEST_F(NriWindowRoad, ReadsShowsSavesAndProgrammesAMech) {
    openNri("G18-3000");
    const Blocks good = blocks();
    box.clearTranscript();
    click("frmMain.cmdNRIprom");
    ASSERT_TRUE(visible("frmNRIdata")) << last();
    EXPECT_EQ(switches(), "J") << "of the check of the box";
    EXPECT_FALSE(visible("frmMain"));
    EXPECT_FALSE(enabled("frmMain.cmdNRIprom"));
    choose("frmNRIdata.cmbDisplay", "Compensation Map");
    EXPECT_NE(pane().find("CP1H = 128   CP1L = 127"), std::string::npos) << pane();

    // Saved under a name with another ending; the second time the technician must agree.
    technician.memoryFile = folder() / "nri.dat";
    click("frmNRIdata.cmdSave");
    EXPECT_EQ(readFile(folder() / "nri.txt"), fileText(good));
    ASSERT_TRUE(box.mech()->setMemory(26, "0102030405FF"));
    box.clearTranscript();
    click("frmNRIdata.cmdReadPROM");
    EXPECT_EQ(switches(), "JW");
    EXPECT_NE(pane().find("CP1H = 001   CP1L = 002"), std::string::npos) << pane();
    technician.instead("Overwrite Existing File", QMessageBox::Cancel);
    click("frmNRIdata.cmdSave");
    EXPECT_TRUE(technician.allExceptionsUsed());
    EXPECT_EQ(readFile(folder() / "nri.txt"), fileText(good));

    technician.seen.clear();
    technician.instead("Confirm overwrite Memory", QMessageBox::Cancel);
    letTheLineClear();
    box.clearTranscript();
    click("frmNRIdata.cmdProgramme");
    letTheLineClear();
    EXPECT_TRUE(technician.allExceptionsUsed());
    EXPECT_EQ(box.sentByPc(), "");
    click("frmNRIdata.cmdProgramme");
    EXPECT_EQ(switches(), "JW") << "around the writing";
    EXPECT_TRUE(technician.saw("OK|Data Written OK")) << last();
    EXPECT_EQ(blocks(), good);
    EXPECT_NE(pane().find("CP1H = 128"), std::string::npos) << pane();

    windowNamed("frmNRIdata")->close();
    EXPECT_TRUE(visible("frmMain") && enabled("frmMain.cmdNRIprom"));
    expectCommandMode();
}

TEST_F(NriWindowRoad, FromTheLimitsWindowAndBack) {
    openNri("G40-0000");
    openMeasurement();
    runCoinset("G40-0000-Dorin.cst");
    ASSERT_TRUE(visible("frmPROM")) << last();
    click("frmPROM.cmdProgPROM");
    const Blocks programmed = blocks();
    letTheLineClear();
    box.clearTranscript();
    click("frmPROM.cmdPROMutilities");
    ASSERT_TRUE(visible("frmNRIdata")) << last();
    EXPECT_FALSE(visible("frmPROM") || visible("frmMain"));
    EXPECT_EQ(switches(), "JJ") << "the window's own W comes when it closes";
    EXPECT_EQ(dump("G40-0000"), fileText(programmed)) << "what the mech holds now";
    choose("frmNRIdata.cmbDisplay", "Other Information");
    EXPECT_NE(pane().find("Last Adjustment:  09/03/26"), std::string::npos) << pane();
    click("frmNRIdata.cmdBye");
    EXPECT_TRUE(visible("frmPROM") && enabled("frmPROM.cmdPROMutilities"));
    EXPECT_FALSE(visible("frmNRIdata") || visible("frmMain"));
    expectCommandMode();
}

TEST_F(NriRoad, CloneCoinMechProgramsASavedMemoryFirst) {
    for (const char* model : {"G13-6000", "G10-4000/5", "G18-0000", "G10-4000"}) {
        SCOPED_TRACE(model);
        openNri(model);
        // The saved mech differs in the windows of its first coin.
        const Blocks mine = blocks();
        const int block = mine.size() > 10 ? 4 : 1;
        ASSERT_TRUE(box.mech()->setMemory(block, "12" + mine.at(block).substr(2)));
        const Blocks other = blocks();
        ASSERT_NE(other, mine);
        technician.memoryFile = folder() / "other.txt";
        write("other.txt", fileText(other));
        ASSERT_TRUE(box.mech()->setMemory(block, mine.at(block)));

        openMeasurement();
        widget<QAbstractButton>("frmCoinMeasure1.chkduplicate")->setChecked(true);
        technician.instead("Write EEPROM|Confirm overwrite Memory", QMessageBox::Cancel);
        runCoinset(fileStem(model) + "-Dorin.cst");
        EXPECT_TRUE(technician.allExceptionsUsed());
        EXPECT_FALSE(visible("frmPROM") || technician.saw("Press YES"));
        EXPECT_EQ(blocks(), mine) << "declined, the run is over before it has begun";
        expectCommandMode();

        runCoinset(fileStem(model) + "-Dorin.cst");
        ASSERT_TRUE(visible("frmPROM")) << last();
        EXPECT_TRUE(technician.saw("OK|Data Written OK"));
        EXPECT_EQ(blocks(), other);
        expectCommandMode();
        program.reset();
        technician.seen.clear();
    }
}

// --- the validator test ----------------------------------------------------------------------

TEST_F(NriRoad, AG10SendsItsCoinsInSerialMode) {
    for (const char* model : {"G10-4000", "G10-4000/5"}) {
        SCOPED_TRACE(model);
        openNri(model);
        click("frmMain.cmdNRIvaltest");
        ASSERT_TRUE(visible("frmValtest")) << last();
        EXPECT_FALSE(visible("frmMain"));
        EXPECT_TRUE(box.inSerialMode());
        EXPECT_EQ(label("frmValtest.lblCoin_11"), "Cashbox");
        drop("10 Pell", 10);
        EXPECT_GE(count(1), 8) << "channel 2";
        EXPECT_EQ(count(8) + count(9) + count(10) + count(11), count(1)) << "where they went";
        click("frmValtest.cmdBack");
        EXPECT_TRUE(visible("frmMain") && enabled("frmMain.cmdNRIvaltest"));
        EXPECT_FALSE(program->state().box.nriG10Mode);
        expectCommandMode();
        EXPECT_EQ(box.sentByPc().back(), 'W');
        program.reset();
        technician.seen.clear();
    }
}

}  // namespace
}  // namespace vantor::test
