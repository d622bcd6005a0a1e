#include <QPushButton>
#include <algorithm>
#include <cstdlib>
#include <ostream>

#include "RoadFixture.h"
#include "boxsim/SimulatedMech.h"
#include "catalogue/Text.h"

// One whole session of a family, from the measurement window to the verdict, is disturbed at every
// single byte on the wire, and at every box that asks something. With VANTOR_EVERY_MOMENT set
// none is left out; without it the moments are spread evenly.

namespace vantor::test {
namespace {

struct Family {
    std::string name;
    std::string_view maker;
    std::string model, coinset, verdict;
};

const std::vector<Family> kFamilies = {
    {"Mars", kMars, "ME111", "ME111-Dorin.cst", "Verify PROM OK"},
    {"CcI2c", kCoinControls, "335", "335-Dorin.cst", "EEPROM Verified OK"},
    {"CcSentinel", kCoinControls, "Sentinel", "Sentinel-Dorin.cst", "EEPROM Verified OK"},
    {"NriHandshake", kNri, "G13-6000", "G13-6000-Dorin.cst", "Programmed OK"},
    {"NriPlain", kNri, "G13-0000", "G13-0000-Dorin.cst", "Programmed OK"},
};

/// One program with its bench, as often as a test wants.
class Session : public Road {
  public:
    explicit Session(const Family& family) : family_(family) {
        technician.promWords = 256;
        technician.oldProm.assign(256, 3);
        writeShortCoinset();
        openMain(family.model, family.maker);
        openMeasurement();
        loop.advance(std::chrono::milliseconds(50));
        box.clearTranscript();
    }

    /// `act` runs once, as soon as `bytes` have passed on the wire.
    void atByte(std::size_t bytes, std::function<void()> act) {
        loop.setCompanion([this, bytes, act = std::move(act), done = false]() mutable {
            if (!done && box.transcript().size() >= bytes) {
                done = true;
                act();
            }
            QCoreApplication::processEvents();
        });
    }
    void measure() {
        technician.coinset = folder() / "short.cst";
        click("frmCoinMeasure1.cmdRunCoinset");
    }
    void programMech() {
        if (endings == 0 && visible("frmPROM")) click("frmPROM.cmdProgPROM");
        loop.setCompanion([] { QCoreApplication::processEvents(); });
    }
    void job() {
        measure();
        programMech();
    }
    /// What is on its way arrives.
    void rest() { loop.advance(std::chrono::milliseconds(50)); }
    /// The program hangs up, which takes a break's time; the port lets all that was written leave.
    void end() {
        (void)loop.runUntil([this] { return endings > 0; }, std::chrono::seconds(1));
        loop.advance(std::chrono::milliseconds(150));
    }
    void expectUsable(const std::string& moment) {
        rest();
        EXPECT_FALSE(program->actions().busy()) << moment;
        EXPECT_FALSE(box.inSerialMode()) << moment;
        EXPECT_FALSE(visible("frmProgramming")) << moment;
        EXPECT_EQ(::vantor::test::box(""), nullptr) << moment;
        for (const std::string& text : technician.seen)
            EXPECT_EQ(text.find("out of range"), std::string::npos) << moment << ": " << text;
    }
    void expectACleanJob(const std::string& moment) {
        technician.seen.clear();
        if (visible("frmPROM")) click("frmPROM.cmdBack1");
        if (!visible("frmCoinMeasure1") && visible("frmMain")) openMeasurement();
        EXPECT_TRUE(visible("frmCoinMeasure1")) << moment;
        if (!visible("frmCoinMeasure1")) return;
        job();
        EXPECT_TRUE(technician.saw(family_.verdict))
            << moment << ": " << (technician.seen.empty() ? "nothing" : technician.seen.back());
        expectUsable(moment);
    }
    /// Where an OK speaks of memory that was read back, the memory is what was intended.
    void expectNoFalseOk(const std::string& moment) {
        if (!technician.saw(family_.verdict) || family_.maker == kNri) return;
        const auto& next = program->state().images.next;
        int wrong = 0;
        if (family_.maker == kMars) {
            for (int at = 0; at < 128; ++at)
                wrong += box.promCells()[static_cast<std::size_t>(at)] != next[at];
        } else {
            for (const boxsim::MemoryCell& cell : box.mech()->memory())
                wrong += std::stoi(cell.content, nullptr, 16) != next[cell.number];
        }
        EXPECT_EQ(wrong, 0) << moment << ": " << family_.verdict;
    }

    using ProgramTest::box;
    using ProgramTest::endings;
    using ProgramTest::loop;
    using ProgramTest::port;
    using ProgramTest::program;
    using Road::technician;

    void TestBody() override {}

  private:
    /// The model's own coinset with its first coin alone, two drops of it.
    void writeShortCoinset() {
        const auto sample =
            std::filesystem::path(VANTOR_SOURCE_DIR) / "data" / "CoinSets" / family_.coinset;
        const std::string bytes = readFile(sample).value_or("");
        std::string kept;
        int lines = 0;
        bool coin = false;
        for (const std::string_view line : splitLines(bytes)) {
            const bool first = line.starts_with("CD,") && !coin;
            coin = coin || first;
            if (++lines > 2 && !first && !line.starts_with("V,") && !line.starts_with("D,"))
                continue;
            std::string text(line);
            if (first) {
                const auto count = text.find(',', text.find(',', 3) + 1) + 1;
                text.replace(count, text.find(',', count) - count, "2");
            }
            kept += text + "\r\n";
        }
        write("short.cst", kept);
    }

    const Family& family_;
};

/// Of `count` moments those that this run takes.
std::vector<std::size_t> moments(std::size_t count, std::size_t few) {
    const std::size_t step =
        std::getenv("VANTOR_EVERY_MOMENT") != nullptr ? 1 : std::max<std::size_t>(1, count / few);
    std::vector<std::size_t> chosen;
    for (std::size_t at = 1; at <= count; at += step) chosen.push_back(at);
    return chosen;
}

std::size_t bytesOfAJob(const Family& family) {
    Session undisturbed(family);
    undisturbed.job();
    EXPECT_TRUE(undisturbed.technician.saw(family.verdict)) << undisturbed.technician.seen.back();
    return undisturbed.box.transcript().size();
}

/// At the most so many bytes lead the box back after the verdict is decided.
constexpr std::size_t kBytesBehindTheVerdict = 60;
constexpr std::size_t kFewMoments = 6;

class AtEveryByte : public ::testing::TestWithParam<std::size_t> {
  protected:
    [[nodiscard]] const Family& family() const { return kFamilies.at(GetParam()); }
};

TEST_P(AtEveryByte, APulledAdapterLeavesNoFalseOkAndTheNextJobWorks) {
    const std::size_t bytes = bytesOfAJob(family());
    for (const std::size_t at : moments(bytes, kFewMoments)) {
        const std::string moment = family().name + " unplugged at byte " + std::to_string(at);
        Session session(family());
        session.atByte(at, [&] { session.box.unplug(); });
        session.job();
        session.expectNoFalseOk(moment);
        EXPECT_FALSE(at + kBytesBehindTheVerdict < bytes &&
                     session.technician.saw(family().verdict))
            << moment;
        EXPECT_FALSE(session.technician.saw("Stuck in Serial")) << moment << ": told already";
        EXPECT_FALSE(session.program->actions().busy()) << moment;
        session.box.replug();
        if (visible("frmPROM")) click("frmPROM.cmdBack1");
        if (visible("frmCoinMeasure1")) click("frmCoinMeasure1.cmdBack");
        session.expectACleanJob(moment);
        if (HasFailure()) return;
    }
}

TEST_P(AtEveryByte, CancelOperationEndsTheRunAndTheNextJobWorks) {
    for (const std::size_t at : moments(bytesOfAJob(family()), kFewMoments)) {
        const std::string moment = family().name + " cancelled at byte " + std::to_string(at);
        Session session(family());
        Micros cancelled{-1};
        session.atByte(at, [&] {
            if (!session.program->state().gather.runActive || !visible("frmCoinMeasure1")) return;
            cancelled = session.loop.now();
            click("frmCoinMeasure1.cmdBack");
        });
        session.measure();
        if (cancelled >= Micros{0}) {
            for (const char* told : {"Timeout reading", "Error", "No ACK"})
                EXPECT_FALSE(session.technician.saw(told)) << moment << ": " << told;
            // The set-up of a fresh window asks the box once, which takes its 800 ms.
            if (family().maker == kMars) {
                EXPECT_LT(session.loop.now() - cancelled, std::chrono::milliseconds(1250))
                    << moment;
            }
        }
        session.programMech();
        session.expectNoFalseOk(moment);
        session.expectUsable(moment);
        session.expectACleanJob(moment);
        if (HasFailure()) return;
    }
}

TEST_P(AtEveryByte, ExitEndsTheProgramAndFreesTheMech) {
    for (const std::size_t at : moments(bytesOfAJob(family()), kFewMoments)) {
        const std::string moment = family().name + " left at byte " + std::to_string(at);
        Session session(family());
        session.atByte(at, [&] { click("frmMain.cmdExit"); });
        session.job();
        session.end();
        EXPECT_EQ(session.endings, 1) << moment;
        EXPECT_FALSE(session.port.isOpen()) << moment;
        EXPECT_FALSE(session.box.inSerialMode()) << moment;
        EXPECT_FALSE(session.box.coinDataOn()) << moment;
        for (const char* window : {"frmMain", "frmCoinMeasure1", "frmPROM", "frmProgramming"})
            EXPECT_FALSE(visible(window)) << moment << ": " << window;
        if (HasFailure()) return;
    }
}

// A box whose batteries ran out, and which comes back a minute and a half later.
TEST(SilentBox, NeverPassesForSuccess) {
    const Family& family = kFamilies.front();
    for (const std::size_t at : moments(bytesOfAJob(family), kFewMoments)) {
        const std::string moment = family.name + " silent at byte " + std::to_string(at);
        Session session(family);
        session.atByte(at, [&] {
            session.box.setSilent(true);
            // A technician whose drops no longer count gives up after a while.
            session.loop.callAfter(std::chrono::seconds(30), [&] {
                if (session.program->state().gather.gatherActive) click("frmCoinMeasure1.cmdBack");
            });
            session.loop.callAfter(std::chrono::seconds(90), [&] { session.box.setSilent(false); });
        });
        session.job();
        session.expectNoFalseOk(moment);
        session.loop.advance(std::chrono::seconds(100));
        session.expectACleanJob(moment);
        if (::testing::Test::HasFailure()) return;
    }
}

TEST_P(AtEveryByte, EveryBoxMayBeDeclined) {
    std::size_t asked = 0;
    {
        Session undisturbed(family());
        undisturbed.job();
        asked = undisturbed.technician.seen.size();
    }
    for (std::size_t at = 1; at <= asked; ++at) {
        const std::string moment = family().name + ", box " + std::to_string(at) + " declined";
        Session session(family());
        session.technician.declineBox(at);
        session.job();
        session.expectNoFalseOk(moment);
        session.expectUsable(moment);
        session.expectACleanJob(moment);
        if (HasFailure()) return;
    }
}

INSTANTIATE_TEST_SUITE_P(Families, AtEveryByte, ::testing::Range<std::size_t>(0, kFamilies.size()),
                         [](const auto& row) { return kFamilies.at(row.param).name; });

}  // namespace
}  // namespace vantor::test
