#include <QLineEdit>
#include <QPlainTextEdit>
#include <algorithm>
#include <map>
#include <ostream>

#include "RoadFixture.h"
#include "boxsim/SimulatedMech.h"
#include "catalogue/Text.h"

// Coin Controls mechs through the windows. What the mechs must hold afterwards is worked out here
// once more, from the numbers that the limits window shows.

namespace vantor::test {
namespace {

using boxsim::Fault;
using Words = std::vector<int>;

/// A model's memory as its makers describe it.
struct Case {
    std::string model;
    int parameters = 3, channels = 8, rowsOfSegment = 8;
    int base = 0, stride = 0, mirror = 0;
    int words = 128;
    std::map<int, int> fromCoinset{};  ///< words that the coinset gives as they stand
    int kept = 0, source = 0;          ///< a channel that takes over the limits of another
    int binaryPositions = 0;           ///< of the validator test with binary output
};

void PrintTo(const Case& road, std::ostream* out) {
    *out << road.model;
}

class CcRoad : public Road {
  protected:
    void openCc(const std::string& model) { openMain(model, kCoinControls); }
    void programFromCoinset(const std::string& model) {
        openCc(model);
        openMeasurement();
        runCoinset(model + "-Dorin.cst");
        ASSERT_TRUE(visible("frmPROM")) << last();
    }
    [[nodiscard]] std::string last() const {
        return technician.seen.empty() ? "" : technician.seen.back();
    }
    [[nodiscard]] Words words() {
        Words all;
        for (const boxsim::MemoryCell& cell : box.mech()->memory()) {
            all.push_back(std::stoi(cell.content, nullptr, 16));
        }
        return all;
    }
    void expectCommandMode() {
        loop.advance(std::chrono::milliseconds(10));
        EXPECT_TRUE(program->idle());
        EXPECT_FALSE(box.inSerialMode());
        EXPECT_EQ(box.sentByPc().back(), 'W') << "the validator is switched back";
    }
    static std::string fileText(const Words& words) {
        std::string text;
        for (std::size_t i = 0; i < words.size(); ++i) {
            text += std::to_string(i) + "," + std::to_string(words[i]) + "\r\n";
        }
        return text;
    }
};

int byteSum(const Words& words, std::size_t first, std::size_t end) {
    int sum = 0;
    for (std::size_t i = first; i < end; ++i) sum += words[i] / 256 + words[i] % 256;
    return sum % 256;
}

/// The limits of the whole memory as the limits window shows them: channel, then column.
std::vector<std::vector<int>> shownLimits(const Case& road) {
    std::vector<std::vector<int>> all;
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

/// What the mech must hold: its old memory with the limits and the coinset's words.
Words expectedWords(const Case& road, const Words& before,
                    const std::vector<std::vector<int>>& limits) {
    Words all = before;
    for (std::size_t channel = 0; channel < limits.size(); ++channel) {
        for (int p = 0; p < road.parameters; ++p) {
            const auto& columns = limits[channel];
            const auto low = static_cast<std::size_t>(2 * p);
            const auto at = static_cast<std::size_t>(road.base + p * road.stride) + channel;
            all.at(at) = columns[low + 1] * 256 + columns[low];
            all.at(at + static_cast<std::size_t>(road.mirror)) = all.at(at);
        }
    }
    for (const auto& [word, value] : road.fromCoinset)
        all.at(static_cast<std::size_t>(word)) = value;
    if (road.words == 64) {
        all[56] = 0;
        all[56] = (256 - byteSum(all, 53, 59)) % 256 * 256;
        all[63] = 256 - byteSum(all, 0, 63);
    } else {
        all[127] = (256 - byteSum(all, 0, 127)) % 256 * 256 + before[127] % 256;
    }
    return all;
}

/// The conversation that writes `after` over `before`, from the opening to the closing.
std::string writingConversation(const Words& before, const Words& after) {
    const bool sentinel = before.size() == 64;
    std::string text = sentinel ? "TKI" : "xx";
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (after[i] == before[i]) continue;
        const auto at = static_cast<unsigned>(i);
        const auto high = static_cast<unsigned>(after[i] / 256);
        const auto low = static_cast<unsigned>(after[i] % 256);
        if (sentinel) {
            text += "W0030\rW00" + hex(0xC0 + at, 2) + "\rW00" + hex(0x40 + at, 2) + hex(low, 2) +
                    hex(high, 2) + "\rW0000\r";
            continue;
        }
        for (const unsigned byte : {0x7AU, at, high, low, 0x7AU + at + high + low}) {
            text += static_cast<char>(static_cast<unsigned char>(byte % 256));
        }
    }
    return text + (sentinel ? "\r#" : "yy");
}

class EveryCcModel : public CcRoad, public ::testing::WithParamInterface<Case> {
  protected:
    void drop(const std::string& coin, int count) {
        for (int i = 0; i < count; ++i) {
            loop.advance(std::chrono::milliseconds(10));
            ASSERT_TRUE(box.drop(coin));
            loop.advance(std::chrono::milliseconds(200));
        }
    }
};

TEST_P(EveryCcModel, IsProgrammedFromItsCoinset) {
    const Case& road = GetParam();
    openCc(road.model);
    openMeasurement();
    EXPECT_EQ(widget<QAbstractButton>("frmCoinMeasure1.chkduplicate")->text().toStdString(),
              "Clone Coin Mech");
    widget<QAbstractButton>("frmCoinMeasure1.chkLog")->setChecked(true);
    technician.log = folder() / "results.csv";
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

    const std::string log = readFile(folder() / "results.csv").value_or("");
    EXPECT_TRUE(log.starts_with("\"Dorin, ")) << log.substr(0, 60);
    EXPECT_NE(log.find("\"SD Upper\","), std::string::npos);

    ASSERT_TRUE(enabled("frmPROM.cmdValtest"));
    click("frmPROM.cmdValtest");
    ASSERT_TRUE(visible("frmValtest"));
    drop("20 Pell", 20);
    EXPECT_GE(std::stoi(label("frmValtest.lblCount_2")), 15);
    EXPECT_EQ(visible("frmValtest.optBinary"), road.binaryPositions > 0);
    if (road.binaryPositions > 0) {
        click("frmValtest.optBinary");
        const std::string last = std::to_string(road.binaryPositions - 1);
        loop.advance(std::chrono::milliseconds(10));
        ASSERT_TRUE(
            box.reportTestEvent("X0" + hex(static_cast<unsigned>(road.binaryPositions) - 1, 1)));
        loop.advance(std::chrono::milliseconds(100));
        EXPECT_EQ(label("frmValtest.lblCount_" + last), " 1");
    }
    click("frmValtest.cmdBack");
    ASSERT_TRUE(visible("frmPROM"));
    click("frmPROM.cmdBack1");
    ASSERT_TRUE(visible("frmCoinMeasure1"));
    click("frmCoinMeasure1.cmdBack");
    EXPECT_TRUE(visible("frmMain"));
    EXPECT_TRUE(enabled("frmMain.cmdCCprog"));
}

const std::vector<Case> kCases = {
    {.model = "C120",
     .channels = 12,
     .rowsOfSegment = 6,
     .base = 10,
     .stride = 12,
     .fromCoinset =
         {{109, 0x0201}, {110, 0x0804}, {111, 0x2010}, {112, 0x3003}, {113, 0}, {114, 0}}},
    {.model = "220B", .base = 9, .stride = 16, .mirror = 8, .binaryPositions = 8},
    {.model = "335", .channels = 16, .base = 9, .stride = 16, .binaryPositions = 16},
    {.model = "435",
     .parameters = 5,
     .channels = 16,
     .base = 16,
     .stride = 16,
     .words = 256,
     .fromCoinset = {{11, 0x014A},
                     {110, 12816},
                     {111, 30292},
                     {112, 47768},
                     {113, 65244},
                     {128, 291},
                     {129, 291},
                     {130, 291},
                     {131, 291},
                     {132, 17767},
                     {133, 30292},
                     {134, 4130},
                     {135, 8961},
                     {136, 0},
                     {143, 0},
                     {204, 0x0311},
                     {228, 0x0242}},
     .kept = 10,
     .source = 5,
     .binaryPositions = 16},
    {.model = "450",
     .parameters = 4,
     .channels = 12,
     .rowsOfSegment = 6,
     .base = 16,
     .stride = 12,
     .fromCoinset = {{121, 12816}, {122, 68}, {123, 0}}},
    {.model = "Sentinel",
     .stride = 8,
     .words = 64,
     .fromCoinset = {{53, 0x017F}, {54, 35243}, {55, 52480}, {58, 0xD2D0}},
     .kept = 8,
     .source = 5},
};

INSTANTIATE_TEST_SUITE_P(CoinControls, EveryCcModel, ::testing::ValuesIn(kCases),
                         [](const auto& row) { return "Model" + row.param.model; });

// --- what goes wrong -------------------------------------------------------------------------

struct FaultCase {
    const char* name;
    const char* model;
    Fault fault;
    const char* message;  ///< that the technician reads
};

class CcFaults : public CcRoad {};

TEST_F(CcFaults, AnIncompleteReadIsToldAndNothingIsBuiltOnIt) {
    for (const FaultCase& c : {
             FaultCase{"no session",
                       "335",
                       {.kind = Fault::Kind::noSession, .times = -1},
                       "Timeout reading Coin Mech EEPROM"},
             FaultCase{"wrong sum",
                       "450",
                       {.kind = Fault::Kind::wrongSum, .after = 40},
                       "Checksum Error reading Coin Mech EEPROM Address: 40"},
             FaultCase{"silence",
                       "C120",
                       {.kind = Fault::Kind::mechSilent, .after = 60, .times = -1},
                       "Timeout reading Coin Mech EEPROM"},
             FaultCase{"no session",
                       "Sentinel",
                       {.kind = Fault::Kind::noSession, .times = -1},
                       "Incompatible CC Interface Board"},
             FaultCase{"refusal",
                       "Sentinel",
                       {.kind = Fault::Kind::mechRefuses, .after = 20},
                       "No ACK reading Coin Mech EEPROM"},
         }) {
        SCOPED_TRACE(std::string(c.model) + " " + c.name);
        programFromCoinset(c.model);
        const Words before = words();
        click("frmPROM.optSeg_0");
        box.addFault(c.fault);
        click("frmPROM.cmdPROMutilities");
        ASSERT_TRUE(visible("frmEEPROMdata")) << last();
        EXPECT_TRUE(technician.saw(c.message)) << last();
        click("frmEEPROMdata.cmdBye");
        ASSERT_TRUE(visible("frmPROM"));
        expectCommandMode();
        box.clearFaults();
        box.clearTranscript();
        technician.seen.clear();
        click("frmPROM.cmdProgPROM");
        loop.advance(std::chrono::milliseconds(10));
        EXPECT_EQ(box.sentByPc(), "") << "refused before anything is sent";
        EXPECT_EQ(technician.seen.size(), 1U) << last();
        EXPECT_FALSE(technician.saw("Verified OK"));
        EXPECT_FALSE(enabled("frmPROM.cmdValtest"));
        EXPECT_EQ(words(), before);
        // Restore Limits reads the mech again, and then it can be programmed.
        click("frmPROM.cmdRestore");
        click("frmPROM.cmdProgPROM");
        EXPECT_TRUE(technician.saw("EEPROM Verified OK")) << last();
        program.reset();
        technician.seen.clear();
    }
}

TEST_F(CcFaults, AFailedProgrammingIsNeverCalledGood) {
    for (const FaultCase& c : {
             FaultCase{"stuck cell",
                       "435",
                       {.kind = Fault::Kind::stuckCell, .times = -1, .value = 20},
                       "EEPROM Verify FAIL"},
             FaultCase{"refusal",
                       "220B",
                       {.kind = Fault::Kind::mechRefuses, .after = 3},
                       "error writing EEPROM address : 12"},
             FaultCase{
                 "no session", "C120", {.kind = Fault::Kind::noSession}, "EEPROM Verify FAIL"},
             FaultCase{"stuck cell",
                       "Sentinel",
                       {.kind = Fault::Kind::stuckCell, .times = -1, .value = 2},
                       "EEPROM Verify FAIL"},
             FaultCase{"wrong sum in the verification",
                       "450",
                       {.kind = Fault::Kind::wrongSum, .after = 99},
                       "Checksum Error reading Coin Mech EEPROM Address: 99"},
         }) {
        SCOPED_TRACE(std::string(c.model) + " " + c.name);
        programFromCoinset(c.model);
        box.addFault(c.fault);
        click("frmPROM.cmdProgPROM");
        EXPECT_TRUE(technician.saw(c.message)) << last();
        EXPECT_TRUE(technician.saw("EEPROM Verify FAIL")) << last();
        EXPECT_FALSE(technician.saw("Verified OK"));
        EXPECT_FALSE(enabled("frmPROM.cmdValtest"));
        expectCommandMode();
        program.reset();
        technician.seen.clear();
        box.clearFaults();
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

    // Declined, the run is over before it has begun.
    click("frmPROM.cmdBack1");
    widget<QAbstractButton>("frmCoinMeasure1.chkduplicate")->setChecked(true);
    technician.seen.clear();
    technician.instead("Confirm overwrite EEPROM", QMessageBox::Cancel);
    runCoinset("435-Dorin.cst");
    EXPECT_TRUE(technician.allExceptionsUsed());
    EXPECT_FALSE(visible("frmPROM"));
    EXPECT_FALSE(technician.saw("Press YES"));
    expectCommandMode();
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
    EXPECT_FALSE(visible("frmMain"));
    for (const char* button : {"frmMain.cmdCCprom", "frmMain.cmdPROMutilities"}) {
        EXPECT_FALSE(enabled(button)) << button;
    }
    EXPECT_TRUE(pane().starts_with("  00 ")) << pane();
    EXPECT_EQ(pane().substr(5 + 9 * 5, 5), "1234 ");
    choose("frmEEPROMdata.cmbDisplay", "Other Information");
    EXPECT_NE(pane().find("Coin 05          Route : AB"), std::string::npos) << pane();

    // Saved under a name with another ending; the second time the technician must agree.
    technician.memoryFile = folder() / "coins.dat";
    click("frmEEPROMdata.cmdSave");
    const std::string saved = readFile(folder() / "coins.txt").value_or("");
    EXPECT_EQ(saved, fileText(words()));
    EXPECT_EQ(std::ranges::count(saved, '\n'), 64);
    box.mech()->setMemory(9, "FFFF");
    technician.instead("Overwrite Existing File", QMessageBox::Cancel);
    click("frmEEPROMdata.cmdReadPROM");
    click("frmEEPROMdata.cmdSave");
    EXPECT_TRUE(technician.allExceptionsUsed());
    EXPECT_EQ(readFile(folder() / "coins.txt"), saved);

    choose("frmEEPROMdata.cmbDisplay", "Hex Data ");
    EXPECT_EQ(pane().substr(5 + 9 * 5, 5), "FFFF ");
    click("frmEEPROMdata.cmdProgramme");
    EXPECT_TRUE(technician.saw("EEPROM Verified OK")) << last();
    EXPECT_EQ(words(), good);
    EXPECT_EQ(pane().substr(5 + 9 * 5, 5), "1234 ");

    technician.memoryFile = folder() / "nothing.txt";
    click("frmEEPROMdata.cmdProgramme");
    EXPECT_EQ(last(), "Error|Invalid Filename");
    click("frmEEPROMdata.cmdBye");
    EXPECT_FALSE(visible("frmEEPROMdata"));
    EXPECT_TRUE(visible("frmMain"));
    EXPECT_TRUE(enabled("frmMain.cmdCCprom"));
    expectCommandMode();
}

TEST_F(EepromWindowRoad, EditsTheRoutingOfA435) {
    openCc("435");
    const Words before = words();
    click("frmMain.cmdCCprom");
    choose("frmEEPROMdata.cmbDisplay", "Other Information");
    ASSERT_TRUE(visible("frmEEPROMdata.frm435"));
    EXPECT_FALSE(enabled("frmEEPROMdata.cmdProgramme"));
    EXPECT_EQ(widget<QLineEdit>("frmEEPROMdata.txtPlugDefault")->text(), QStringLiteral("A"));
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
    loop.advance(std::chrono::milliseconds(10));
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
    windowNamed("frmEEPROMdata")->close();
    EXPECT_TRUE(visible("frmMain"));
    expectCommandMode();
}

TEST_F(EepromWindowRoad, FromTheLimitsWindowAndBack) {
    programFromCoinset("450");
    loop.advance(std::chrono::milliseconds(10));
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
