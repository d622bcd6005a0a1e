#include <QComboBox>
#include <QLineEdit>
#include <algorithm>

#include "CcRoad.h"
#include "NriRoad.h"

// The coin wizards on mechs that hold their own memory. The pieces that drop have readings chosen
// so that every limit can be told beforehand.

namespace vantor::test {
namespace {

using std::chrono::milliseconds;

constexpr int kSensors = 16;
constexpr int kCoinBase = 60, kSlugBase = 75, kSensorStep = 7;
/// Every other piece reads this much more.
constexpr int kSpread = 4;

/// Half of the pieces read `x`, half `x` + 4: the mean is `x` + 2, either spread 2, and two spreads
/// and a margin of 2 lie on either side.
int lowLimit(int x) {
    return x - 4;
}
int highLimit(int x) {
    return x + 8;
}

/// The wizard panel of a mech, and somebody who drops a piece whenever one is asked for.
template <class MechRoad>
class Wizards : public MechRoad {
  protected:
    void openWizard(const std::string& model, std::string_view maker, const std::string& coin) {
        this->openMain(model, maker);
        this->openMeasurement();
        openPanel(coin);
        dropper_.start(milliseconds(350), [this] { dropWhileAsked(); });
    }
    void openPanel(const std::string& coin) {
        click("frmCoinMeasure1.cmdSpecialUtilities");
        ASSERT_TRUE(visible("frmCoinMeasure1.frmWizard"));
        EXPECT_FALSE(visible("frmCoinMeasure1.cmbSegment"));
        EXPECT_FALSE(enabled("frmCoinMeasure1.cmdBack"));
        choose("frmCoinMeasure1.cmbCoin", coin);
    }
    static std::string coinName(int channel) { return "Coin " + padded(channel, 2); }
    /// With an empty transcript, so that nothing that came before counts.
    void press(const char* button) {
        this->loop.advance(milliseconds(50));
        this->box.clearTranscript();
        click(std::string("frmCoinMeasure1.") + button);
    }
    void expectBoxes(const std::vector<std::string>& texts) {
        std::vector<std::string> wanted;
        for (const std::string& text : texts) wanted.push_back("|" + text);
        EXPECT_EQ(this->technician.seen, wanted);
        this->technician.seen.clear();
    }
    /// Types the high limit of a channel's first parameter.
    template <class Case>
    void typeHighLimit(const Case& road, int channel, int limit) {
        click("frmPROM.optSeg_" + std::to_string((channel - 1) / road.rowsOfSegment));
        const int at = (channel - 1) % road.rowsOfSegment * 2 * road.parameters + 1;
        auto* field = widget<QLineEdit>("frmPROM.txtProm_" + std::to_string(at));
        field->selectAll();
        field->insert(QString::number(limit));
    }
    void backToThePanel(const std::string& coin) {
        click("frmPROM.cmdBack1");
        expectReadyWindow();
        openPanel(coin);
    }
    void expectReadyWindow() {
        this->expectCommandMode();
        ASSERT_TRUE(visible("frmCoinMeasure1.frmMeasurements"));
        EXPECT_FALSE(visible("frmCoinMeasure1.frmWizard") || visible("frmPROM"));
        for (const char* name : {"cmdRunCoinset", "cmdSpecialUtilities", "cmdBack", "chkLog"}) {
            EXPECT_TRUE(enabled(std::string("frmCoinMeasure1.") + name)) << name;
        }
        EXPECT_EQ(widget<QAbstractButton>("frmCoinMeasure1.cmdBack")->text().toStdString(),
                  "Back to Main Window");
        EXPECT_EQ(label("frmCoinMeasure1.lblRefCode") + label("frmCoinMeasure1.lblCoinCode"), "");
    }
    static int remaining() { return std::atoi(label("frmCoinMeasure1.lblNumber").c_str()); }

    int spread = kSpread;

  private:
    void dropWhileAsked() {
        if (!this->box.inSerialMode() || !this->program->state().gather.runActive) return;
        if (remaining() < 1) return;
        const bool slug = label("frmCoinMeasure1.lblDescription") == "Slug to Fix";
        std::vector<int> readings;
        for (int sensor = 0; sensor < kSensors; ++sensor) {
            readings.push_back((slug ? kSlugBase : kCoinBase) + kSensorStep * sensor +
                               remaining() % 2 * spread);
        }
        this->box.dropRaw(readings);
    }

    RepeatingTimer dropper_{this->loop};
};

const std::vector<std::string> kOneGather = {"Start Coin Drop", "Gathered Coin Data"};
const std::vector<std::string> kTwoGathers = {"Start Coin Drop", "Gathered Coin Data",
                                              "Start Slug Drop", "Gathered Slug Data"};

// --- Coin Controls ---------------------------------------------------------------------------

class EveryCcWizard : public Wizards<CcRoad>, public ::testing::WithParamInterface<CcCase> {
  protected:
    static Limits held(const CcCase& road, const Words& words) {
        Limits all;
        for (int channel = 0; channel < road.channels; ++channel) {
            std::vector<int> limits;
            for (int p = 0; p < road.parameters; ++p) {
                const int word =
                    words.at(static_cast<std::size_t>(road.base + p * road.stride + channel));
                limits.insert(limits.end(), {word % 256, word / 256});
            }
            all.push_back(limits);
        }
        return all;
    }
    /// The 435 judges its fifth parameter upwards only, from the highest reading.
    static std::vector<int> measured(const CcCase& road, int base) {
        std::vector<int> limits;
        for (int p = 0; p < road.parameters; ++p) {
            const int reading = base + kSensorStep * p;
            const bool upwards = road.model == "435" && p == 4;
            limits.insert(limits.end(), {upwards ? 0 : lowLimit(reading),
                                         upwards ? reading + kSpread + 10 : highLimit(reading)});
        }
        return limits;
    }
    /// Programs and compares: the memory, and that nothing but what changed was sent.
    void expectProgrammed(const CcCase& road, const Words& before, const Limits& limits) {
        const Words expected = expectedWords(road, before, limits);
        box.clearTranscript();
        click("frmPROM.cmdProgPROM");
        EXPECT_EQ(last(), "EEPROM VERIFY|   EEPROM Verified OK   ");
        technician.seen.clear();
        EXPECT_EQ(words(), expected);
        EXPECT_NE(box.sentByPc().find(writingConversation(before, expected)), std::string::npos);
        EXPECT_TRUE(enabled("frmPROM.cmdValtest"));
        expectCommandMode();
    }
};

TEST_P(EveryCcWizard, ChangesOneChannelAndKeepsTheRest) {
    CcCase road = GetParam();
    road.fromCoinset.clear();
    const int channel = road.channels - 1;
    const auto row = static_cast<std::size_t>(channel - 1);
    openWizard(road.model, kCoinControls, coinName(channel));
    if (road.words == 64) box.mech()->setMemory(63, "0001");
    for (const char* name : {"txtCoinValue", "cmbOutput", "cmbInhibit"}) {
        EXPECT_FALSE(visible(std::string("frmCoinMeasure1.") + name)) << name;
    }

    Words before = words();
    Limits limits = held(road, before);
    press("cmdAddReplace");
    ASSERT_TRUE(visible("frmPROM")) << last();
    expectBoxes(kOneGather);
    EXPECT_EQ(words(), before) << "nothing is written before the technician says so";
    limits.at(row) = measured(road, kCoinBase);
    EXPECT_EQ(shownLimits(road), limits);
    expectProgrammed(road, before, limits);

    // The slug stands beside the limits that the mech has; the coin gives no more than its
    // estimate.
    backToThePanel(coinName(channel));
    before = words();
    press("cmdSlugFix");
    ASSERT_TRUE(visible("frmPROM")) << last();
    expectBoxes(kTwoGathers);
    const auto slug = measured(road, kSlugBase);
    for (std::size_t i = 0; i < slug.size(); ++i) {
        EXPECT_EQ(std::stoi(label("frmPROM.lblSlugLimits_" + std::to_string(i))), slug[i]) << i;
    }
    EXPECT_EQ(label("frmPROM.lblAcceptance_0"), "???");
    click("frmPROM.optSeg_" + std::to_string((channel - 1) / road.rowsOfSegment));
    EXPECT_NE(label("frmPROM.lblAcceptance_" + std::to_string((channel - 1) % road.rowsOfSegment)),
              "???");
    EXPECT_EQ(shownLimits(road), limits);
    expectProgrammed(road, before, limits);

    backToThePanel(coinName(1));
    press("cmdEditLimits");
    ASSERT_TRUE(visible("frmPROM")) << last();
    expectBoxes({});
    EXPECT_EQ(shownLimits(road), limits);
    typeHighLimit(road, channel, 300);
    limits.at(row)[1] = 255;
    expectProgrammed(road, before, limits);
}

INSTANTIATE_TEST_SUITE_P(CoinControls, EveryCcWizard, ::testing::ValuesIn(kCcCases),
                         [](const auto& row) { return "Model" + row.param.model; });

// --- NRI -------------------------------------------------------------------------------------

struct NriWizardCase {
    std::string model;
    const char* map = "";  ///< which sensors a wizard's coin is measured by; "" = in their order
    int values = 0;        ///< block that holds the coin values
    std::size_t first = 0, width = 0;  ///< of the first channel's value
    bool downwards = false;            ///< the first channel's value stands last
};

void PrintTo(const NriWizardCase& c, std::ostream* out) {
    *out << c.model;
}

enum class Mode { add, slug, edit };

class EveryNriWizard : public Wizards<NriRoad>,
                       public ::testing::WithParamInterface<NriWizardCase> {
  protected:
    static NriCase roadOf(const std::string& model) {
        NriCase road = *std::ranges::find(kNriCases, model, &NriCase::model);
        road.fromCoinset.clear();
        return road;
    }
    static bool hasOutputs(const NriCase& road) { return road.model[4] != '4' && !road.plain; }
    static int numberAt(const std::string& text, std::size_t at, bool plain) {
        return std::stoi(text.substr(at, plain ? 3 : 2), nullptr, plain ? 10 : 16);
    }
    static Limits held(const NriCase& road, const Blocks& blocks) {
        Limits all;
        for (int channel = 1; channel <= road.channels; ++channel) {
            const std::string& text = blocks.at((road.plain ? 0 : 3) + channel);
            std::vector<int> limits;
            for (std::size_t p = 0; p < static_cast<std::size_t>(road.parameters); ++p) {
                const std::size_t high = road.plain ? 3 * p : 4 * p;
                const std::size_t low = road.plain ? 12 + 3 * p : 4 * p + 2;
                limits.insert(limits.end(),
                              {numberAt(text, low, road.plain), numberAt(text, high, road.plain)});
            }
            all.push_back(limits);
        }
        return all;
    }
    static std::vector<int> measured(const NriCase& road, const std::string& map, int base) {
        std::vector<int> limits;
        for (std::size_t p = 0; p < static_cast<std::size_t>(road.parameters); ++p) {
            const int sensor =
                map.empty() ? static_cast<int>(p) : std::stoi(map.substr(p, 1), nullptr, 16);
            const int reading = base + kSensorStep * sensor;
            limits.insert(limits.end(), {lowLimit(reading), highLimit(reading)});
        }
        return limits;
    }
    /// The blocks beside the limits: the coin's value and map always, its lines for a new coin.
    static Blocks changed(const NriWizardCase& c, const NriCase& road, const Blocks& before,
                          int channel, int value, Mode mode) {
        Blocks all;
        const auto at = static_cast<std::size_t>(channel - 1);
        const auto put = [&](int block, std::size_t position, const std::string& text) {
            if (!all.contains(block)) all[block] = before.at(block);
            all[block].replace(position, text.size(), text);
        };
        const std::string number = c.width == 2 ? hex(static_cast<unsigned>(value / 5), 2)
                                                : padded(value, static_cast<int>(c.width));
        put(c.values, c.downwards ? c.first - c.width * at : c.first + c.width * at, number);
        if (*c.map != '\0') put(20, 6 * at, c.map);
        if (mode == Mode::add && hasOutputs(road)) {
            put(16, 2 * at, "02");  // the second output line
            put(19, 2 * at, "10");  // the fifth inhibit line
        }
        return all;
    }
    void expectProgrammed(const NriCase& road, const Blocks& before, const Limits& limits) {
        EXPECT_EQ(shownLimits(road), limits);
        click("frmPROM.cmdProgPROM");
        EXPECT_EQ(last(), "OK|NRI Memory Programmed OK");
        technician.seen.clear();
        EXPECT_EQ(blocks(), expectedBlocks(road, before, limits));
        EXPECT_TRUE(enabled("frmPROM.cmdValtest"));
        expectCommandMode();
    }
    static void typeValue(int value) {
        EXPECT_EQ(widget<QLineEdit>("frmCoinMeasure1.txtCoinValue")->text(), QStringLiteral("10"));
        widget<QLineEdit>("frmCoinMeasure1.txtCoinValue")->setText(QString::number(value));
    }
};

TEST_P(EveryNriWizard, ChangesOneChannelAndKeepsTheRest) {
    const NriWizardCase& c = GetParam();
    NriCase road = roadOf(c.model);
    // Of twelve channels the eighth, whose line is the second.
    const int channel = road.channels == 6 ? 2 : 8;
    const auto row = static_cast<std::size_t>(channel - 1);
    openWizard(road.model, kNri, coinName(channel));
    ASSERT_EQ(visible("frmCoinMeasure1.cmbOutput"), hasOutputs(road));
    if (hasOutputs(road)) {
        EXPECT_EQ(widget<QComboBox>("frmCoinMeasure1.cmbInhibit")->currentText().trimmed(), "2");
        choose("frmCoinMeasure1.cmbInhibit", "         5");
    }

    Blocks before = blocks();
    Limits limits = held(road, before);
    typeValue(35);
    press("cmdAddReplace");
    ASSERT_TRUE(visible("frmPROM")) << last();
    expectBoxes(kOneGather);
    EXPECT_EQ(blocks(), before) << "nothing is written before the technician says so";
    limits.at(row) = measured(road, c.map, kCoinBase);
    road.fromCoinset = changed(c, road, before, channel, 35, Mode::add);
    expectProgrammed(road, before, limits);

    backToThePanel(coinName(channel));
    before = blocks();
    typeValue(20);
    press("cmdSlugFix");
    ASSERT_TRUE(visible("frmPROM")) << last();
    expectBoxes(kTwoGathers);
    const auto slug = measured(road, c.map, kSlugBase);
    for (std::size_t i = 0; i < slug.size(); ++i) {
        EXPECT_EQ(std::stoi(label("frmPROM.lblSlugLimits_" + std::to_string(i))), slug[i]) << i;
    }
    road.fromCoinset = changed(c, road, before, channel, 20, Mode::slug);
    expectProgrammed(road, before, limits);

    backToThePanel(coinName(1));
    before = blocks();
    typeValue(50);
    press("cmdEditLimits");
    ASSERT_TRUE(visible("frmPROM")) << last();
    expectBoxes({});
    road.fromCoinset = changed(c, road, before, 1, 50, Mode::edit);
    typeHighLimit(road, channel, 300);
    click("frmPROM.cmdChangeLimits");
    limits.at(row)[1] = 255;
    expectProgrammed(road, before, limits);
}

INSTANTIATE_TEST_SUITE_P(
    Nri, EveryNriWizard,
    ::testing::Values(
        NriWizardCase{.model = "G13-6000", .map = "412056", .values = 17, .first = 2, .width = 2},
        NriWizardCase{.model = "G40-0000", .map = "01368A", .values = 17, .first = 2, .width = 2},
        NriWizardCase{.model = "G18-3000", .values = 17, .first = 2, .width = 2},
        NriWizardCase{.model = "G10-4000/5", .values = 16, .first = 24, .width = 4},
        NriWizardCase{.model = "G10-4000", .values = 9, .first = 27, .width = 4},
        NriWizardCase{.model = "G13-0000", .values = 7, .first = 18, .width = 3, .downwards = true},
        NriWizardCase{
            .model = "G18-0000", .values = 7, .first = 18, .width = 3, .downwards = true}),
    [](const auto& row) { return testName(row.param.model); });

// --- Cancel Operation ------------------------------------------------------------------------

/// Where the technician changes his mind: at a box, or with so many pieces still to come.
struct Moment {
    std::string box{};
    int piecesLeft = 0;
};

struct CancelledMech {
    std::string_view maker;
    const char *model, *name;
};

class CancelledWizards : public Wizards<Road>,
                         public ::testing::WithParamInterface<CancelledMech> {};

TEST_P(CancelledWizards, LeaveTheWindowUsable) {
    for (const Moment& moment : {Moment{"Start Coin Drop"}, Moment{"", 7},
                                 Moment{"Gathered Coin Data"}, Moment{"Start Slug Drop"},
                                 Moment{"Gathered Slug Data"}, Moment{"Coin Fliers detected"}}) {
        SCOPED_TRACE(moment.box);
        // Far enough apart, all pieces are fliers.
        spread = moment.box == "Coin Fliers detected" ? 120 : kSpread;
        openWizard(GetParam().model, GetParam().maker, "Coin 04");
        const auto cancel = [] {
            EXPECT_TRUE(enabled("frmCoinMeasure1.cmdBack"));
            click("frmCoinMeasure1.cmdBack");
        };
        RepeatingTimer watch(loop);
        if (!moment.box.empty()) {
            technician.instead(moment.box, QMessageBox::Ok, cancel);
        } else {
            watch.start(milliseconds(50), [this, &watch, &moment, cancel] {
                if (!box.inSerialMode() || remaining() != moment.piecesLeft) return;
                watch.stop();
                cancel();
            });
        }
        const auto before = box.mech()->savedMemory();
        press("cmdSlugFix");
        EXPECT_TRUE(technician.allExceptionsUsed());
        EXPECT_EQ(technician.saw("Gathered Slug Data"), moment.box == "Gathered Slug Data");
        expectReadyWindow();
        EXPECT_EQ(box.mech()->savedMemory(), before);

        // And the window works: the next wizard reaches the limits.
        openPanel("Coin 04");
        press("cmdEditLimits");
        EXPECT_TRUE(visible("frmPROM")) << last();
        program.reset();
        technician.seen.clear();
    }
}

INSTANTIATE_TEST_SUITE_P(MechsWithMemory, CancelledWizards,
                         ::testing::Values(CancelledMech{kCoinControls, "335", "CcI2c"},
                                           CancelledMech{kCoinControls, "Sentinel", "CcSentinel"},
                                           CancelledMech{kNri, "G13-6000", "NriHandshake"},
                                           CancelledMech{kNri, "G18-0000", "NriPlain"}),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace vantor::test
