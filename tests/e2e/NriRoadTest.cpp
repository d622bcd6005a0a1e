#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <algorithm>
#include <map>
#include <ostream>

#include "RoadFixture.h"
#include "boxsim/SimulatedMech.h"
#include "catalogue/Text.h"

// NRI mechs through the windows. What the mechs must hold afterwards is worked out here once more,
// from the numbers that the limits window shows.

namespace vantor::test {
namespace {

using boxsim::Fault;
using Blocks = std::map<int, std::string>;
using Limits = std::vector<std::vector<int>>;  ///< by channel: low and high per parameter

struct Case {
    std::string model;
    bool plain = false;
    int parameters = 6, channels = 12, rowsOfSegment = 6;
    Blocks fromCoinset{};      ///< as makers describe the blocks, worked out by hand
    int kept = 0, source = 0;  ///< a channel that takes over the limits of another
};

void PrintTo(const Case& road, std::ostream* out) {
    *out << road.model;
}

class NriRoad : public Road {
  protected:
    static std::string fileStem(std::string model) {
        std::ranges::replace(model, '/', '-');
        return model;
    }
    void openNri(const std::string& model) { openMain(model, kNri); }
    void gather(const std::string& model) {
        openNri(model);
        openMeasurement();
        runCoinset(fileStem(model) + "-Dorin.cst");
    }
    [[nodiscard]] std::string last() const {
        return technician.seen.empty() ? "" : technician.seen.back();
    }
    [[nodiscard]] Blocks blocks() {
        Blocks all;
        for (const boxsim::MemoryCell& cell : box.mech()->memory()) all[cell.number] = cell.content;
        return all;
    }
    static std::string fileText(const Blocks& blocks) {
        std::string text;
        for (int i = 1; i <= 28; ++i) {
            const auto block = blocks.find(i);
            text += std::to_string(i) + ",\"" +
                    (block == blocks.end() ? std::string() : block->second) + "\"\r\n";
        }
        return text;
    }
    [[nodiscard]] std::string dump(const std::string& model) const {
        return readFile(folder() / (fileStem(model) + "temp.txt")).value_or("(none)");
    }
    /// "J" and "W" as they were sent.
    [[nodiscard]] std::string switches() {
        letTheLineClear();
        std::string sent = box.sentByPc();
        std::erase_if(sent, [](char c) { return c != 'J' && c != 'W'; });
        return sent;
    }
    void letTheLineClear() { loop.advance(std::chrono::milliseconds(10)); }
    void expectCommandMode() {
        letTheLineClear();
        EXPECT_TRUE(program->idle());
        EXPECT_FALSE(box.inSerialMode());
        EXPECT_FALSE(visible("frmProgramming"));
        EXPECT_EQ(box.unknownBytes(), 0);
    }
    static std::string pane() {
        return widget<QPlainTextEdit>("frmNRIdata.lblPROM")->toPlainText().toStdString();
    }
};

/// The limits of the whole memory as the limits window shows them.
Limits shownLimits(const Case& road) {
    Limits all;
    for (int segment = 0; segment * road.rowsOfSegment < road.channels; ++segment) {
        click("frmPROM.optSeg_" + std::to_string(segment));
        for (int row = 0; row < road.rowsOfSegment; ++row) {
            std::vector<int> limits;
            for (int i = 0; i < 2 * road.parameters; ++i) {
                const int box = row * 2 * road.parameters + i;
                limits.push_back(
                    widget<QLineEdit>("frmPROM.txtProm_" + std::to_string(box))->text().toInt());
            }
            all.push_back(limits);
        }
    }
    return all;
}

/// A channel's block: pairs of high and low, or the highs and then the lows in decimal.
std::string channelText(const Case& road, const std::vector<int>& limits) {
    std::string pairs, highs, lows;
    for (std::size_t p = 0; p < limits.size() / 2; ++p) {
        const int low = limits[2 * p];
        const int high = limits[2 * p + 1];
        pairs += hex(static_cast<unsigned>(high), 2) + hex(static_cast<unsigned>(low), 2);
        highs += padded(high, 3);
        lows += padded(low, 3);
    }
    return road.plain ? highs + lows : pairs;
}

Blocks expectedBlocks(const Case& road, const Blocks& before, const Limits& limits) {
    Blocks all = before;
    for (int channel = 1; channel <= road.channels; ++channel) {
        all[(road.plain ? 0 : 3) + channel] =
            channelText(road, limits.at(static_cast<std::size_t>(channel - 1)));
    }
    for (const auto& [number, text] : road.fromCoinset) all[number] = text;
    // The bench's calendar stands still on the 9th of March 2026.
    all[road.plain ? road.channels + 2 : 3] = road.plain ? "09/03/26" : "09031A";
    return all;
}

class EveryNriModel : public NriRoad, public ::testing::WithParamInterface<Case> {};

TEST_P(EveryNriModel, IsProgrammedFromItsCoinset) {
    const Case& road = GetParam();
    openNri(road.model);
    openMeasurement();
    EXPECT_EQ(widget<QAbstractButton>("frmCoinMeasure1.chkduplicate")->text().toStdString(),
              "Clone Coin Mech");
    widget<QAbstractButton>("frmCoinMeasure1.chkLog")->setChecked(true);
    technician.log = folder() / "results.csv";
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
    const std::string log = readFile(folder() / "results.csv").value_or("");
    EXPECT_TRUE(log.starts_with("\"Dorin, ")) << log.substr(0, 60);
    EXPECT_NE(log.find("\"SD Upper\","), std::string::npos);

    // Opened from here, the utilities show what the mech holds now.
    box.clearTranscript();
    click("frmPROM.cmdPROMutilities");
    ASSERT_TRUE(visible("frmNRIdata")) << last();
    EXPECT_FALSE(visible("frmPROM") || visible("frmMain"));
    EXPECT_TRUE(box.sentByPc().starts_with("JJ")) << box.sentByPc().substr(0, 20);
    EXPECT_EQ(switches(), "JJ") << "the window's own W comes when it closes";
    EXPECT_EQ(dump(road.model), fileText(expected));
    EXPECT_EQ(label("frmNRIdata.lblmechType"), road.model);
    const std::string first = padded(limits[0][0], 3) + " " + padded(limits[0][1], 3);
    EXPECT_NE(pane().find("Coin 01      " + first), std::string::npos) << pane();
    choose("frmNRIdata.cmbDisplay", "Other Information");
    EXPECT_NE(pane().find("Last Adjustment:  09/03/26"), std::string::npos) << pane();
    click("frmNRIdata.cmdBye");
    ASSERT_TRUE(visible("frmPROM"));
    EXPECT_FALSE(visible("frmNRIdata") || visible("frmMain"));
    EXPECT_TRUE(enabled("frmPROM.cmdPROMutilities"));
    expectCommandMode();
    click("frmPROM.cmdBack1");
    ASSERT_TRUE(visible("frmCoinMeasure1"));
    click("frmCoinMeasure1.cmdBack");
    EXPECT_TRUE(visible("frmMain"));
    EXPECT_TRUE(enabled("frmMain.cmdNRIprog") && enabled("frmMain.cmdNRIprom"));
}

/// A text for each of several channels.
std::string times(int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

const std::string kCodes = "010204081020010204081020";
const std::string kValuesOfEight = "050102040A1428641400000000";

const std::vector<Case> kCases = {
    {.model = "G13-6000",
     .fromCoinset = {{16, kCodes},
                     {17, kValuesOfEight},
                     {19, "010244081020010200000000"},
                     {20, times(7, "412056") + "412057" + times(4, "412056")},
                     {26, "807F8180"}}},
    {.model = "G40-0000",
     .fromCoinset = {{16, kCodes},
                     {17, kValuesOfEight},
                     {18, "010204080102"},
                     {19, "010204481020010200000000"},
                     {20, times(7, "01368A") + "01368B" + times(4, "01368A")},
                     {26, "7F808280"}}},
    {.model = "G18-3000",
     .fromCoinset = {{16, kCodes},
                     {17, kValuesOfEight},
                     {18, "010202010200"},
                     {19, "010204081020010200000000"},
                     {20, times(5, "000000") + "111000" + times(6, "000000")},
                     {26, "807F8180827E"}}},
    {.model = "G10-4000/5",
     .fromCoinset = {{16,
                      "104000050005001000200050"
                      "00050010002000500100020005000100"},
                     {17, "000402010000"},
                     {18, "01020304"}}},
    {.model = "G13-0000",
     .plain = true,
     .parameters = 4,
     .channels = 6,
     .fromCoinset = {{7, "005040020010004002001"}}},
    {.model = "G18-0000",
     .plain = true,
     .parameters = 4,
     .channels = 6,
     .fromCoinset = {{7, "005040020010004002001"}}},
    {.model = "G10-4000",
     .plain = true,
     .parameters = 4,
     .channels = 8,
     .rowsOfSegment = 8,
     .fromCoinset = {{9,
                      "G10-4000 R20005001000200050"
                      "00050010002000500100020005000100"}},
     .kept = 8,
     .source = 5},
};

INSTANTIATE_TEST_SUITE_P(Nri, EveryNriModel, ::testing::ValuesIn(kCases), [](const auto& row) {
    std::string name = "Model" + row.param.model;
    std::erase_if(name, [](char c) { return c == '-' || c == '/'; });
    return name;
});

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

    technician.seen.clear();
    openMeasurement();
    runCoinset(fileStem(model) + "-Dorin.cst");
    EXPECT_TRUE(technician.saw(told)) << last();
    EXPECT_FALSE(technician.saw("Data Gathering Complete"));
    EXPECT_FALSE(visible("frmPROM"));
    expectCommandMode();

    box.clearFaults();
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

    // A mech that keeps a block: the window shows what the mech says.
    box.addFault({.kind = Fault::Kind::stuckCell, .times = -1, .value = 26});
    click("frmNRIdata.cmdProgramme");
    EXPECT_NE(pane().find("CP1H = 001"), std::string::npos) << pane();
    box.clearFaults();
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

    technician.memoryFile = folder() / "nothing.txt";
    click("frmNRIdata.cmdProgramme");
    EXPECT_EQ(last(), "Error|Invalid Filename");
    windowNamed("frmNRIdata")->close();
    EXPECT_FALSE(visible("frmNRIdata"));
    EXPECT_TRUE(visible("frmMain"));
    EXPECT_TRUE(enabled("frmMain.cmdNRIprom"));
    expectCommandMode();
}

TEST_F(NriRoad, CloneCoinMechProgramsASavedMemoryFirst) {
    technician.memoryFile =
        std::filesystem::path(VANTOR_SOURCE_DIR) / "data" / "MemoryFiles" / "G13-6000-Dorin.txt";
    openNri("G13-6000");
    openMeasurement();
    widget<QAbstractButton>("frmCoinMeasure1.chkduplicate")->setChecked(true);
    runCoinset("G13-6000-Dorin.cst");
    ASSERT_TRUE(visible("frmPROM")) << last();
    EXPECT_TRUE(technician.saw("Write EEPROM|Confirm overwrite Memory")) << last();
    EXPECT_TRUE(technician.saw("OK|Data Written OK"));
    EXPECT_EQ(fileText(blocks()), readFile(technician.memoryFile));
    expectCommandMode();
}

// --- the validator test ----------------------------------------------------------------------

class NriTestRoad : public NriRoad {
  protected:
    void drop(const std::string& coin, int count) {
        for (int i = 0; i < count; ++i) {
            letTheLineClear();
            ASSERT_TRUE(box.drop(coin));
            loop.advance(std::chrono::milliseconds(200));
        }
    }
    [[nodiscard]] static int count(int position) {
        return std::stoi(label("frmValtest.lblCount_" + std::to_string(position)));
    }
    void leave() {
        click("frmValtest.cmdBack");
        EXPECT_FALSE(visible("frmValtest"));
        EXPECT_TRUE(visible("frmMain"));
        EXPECT_TRUE(enabled("frmMain.cmdNRIvaltest"));
        EXPECT_FALSE(program->state().box.nriG10Mode);
        expectCommandMode();
        EXPECT_EQ(box.sentByPc().back(), 'W');
    }
};

TEST_F(NriTestRoad, AG10SendsItsCoinsInSerialMode) {
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
        leave();
        program.reset();
        technician.seen.clear();
    }
}

TEST_F(NriTestRoad, AG10ThatDoesNotAnswerIsLeftAgain) {
    openNri("G10-4000");
    box.addFault({.kind = Fault::Kind::mechSilent, .times = -1});
    click("frmMain.cmdNRIvaltest");
    ASSERT_TRUE(visible("frmValtest"));
    drop("10 Pell", 1);
    EXPECT_EQ(count(1), 0);
    leave();
}

TEST_F(NriTestRoad, TheVariantsOfAG40) {
    openNri("G40-0000");
    click("frmMain.cmdNRIvaltest");
    ASSERT_TRUE(visible("frmValtest")) << last();
    auto* list = widget<QComboBox>("frmValtest.cmbG40");
    EXPECT_TRUE(list->isVisible());
    EXPECT_EQ(list->count(), 5);
    EXPECT_TRUE(visible("frmValtest.lblCoin_5"));
    drop("10 Pell", 10);
    int all = 0;
    for (int position = 0; position < 6; ++position) all += count(position);
    EXPECT_GE(all, 8);
    letTheLineClear();
    box.clearTranscript();
    choose("frmValtest.cmbG40", "G40-x3xx");
    letTheLineClear();
    EXPECT_FALSE(visible("frmValtest.lblCoin_5"));
    EXPECT_TRUE(box.sentByPc().find("C01") != std::string::npos) << box.sentByPc();
    leave();
}

}  // namespace
}  // namespace vantor::test
