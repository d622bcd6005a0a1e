#include <malloc.h>

#include <QAbstractButton>
#include <QPixmapCache>
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "RoadFixture.h"

// A workshop's program stays open for months. One program here does shift after shift with the
// mechs of all makers: every drop must be counted once, and the memory in use must not grow.
// VANTOR_ENDURANCE_DROPS says how many drops (./endurance asks for 100 000); the clock is virtual.

namespace vantor::test {
namespace {

struct Bench {
    std::string_view maker;
    std::string model;
    std::string list, program;  ///< controls of the main window
    std::string verdict;
    std::string accepted;  ///< a coin that the freshly programmed mech of the bench knows
};

const std::vector<Bench> kBenches = {
    {kMars, "ME111", "cmbMarsMech", "cmdMars", "Verify PROM OK", "10 Pell"},
    {kCoinControls, "435", "cmbCCmech", "cmdCCprog", "EEPROM Verified OK", "10 Pell"},
    {kNri, "G13-6000", "cmbNRImech", "cmdNRIprog", "Programmed OK", "10 Pell"},
};

std::vector<std::string> split(const std::string& text, char at) {
    std::vector<std::string> parts;
    std::size_t from = 0;
    for (std::size_t to; (to = text.find(at, from)) != std::string::npos; from = to + 1)
        parts.push_back(text.substr(from, to - from));
    parts.push_back(text.substr(from));
    return parts;
}

constexpr std::size_t kKeptByDialogs = 32 * 1024;  ///< bytes, of one round of all benches

int wantedDrops() {
    const char* wanted = std::getenv("VANTOR_ENDURANCE_DROPS");
    return wanted == nullptr ? 900 : std::atoi(wanted);
}

/// Bytes that the program holds from the heap; 0 under a sanitizer, which keeps its own books.
std::size_t heapInUse() {
    // Pictures that Qt keeps for a while, and objects that wait for the idle event loop to go.
    QPixmapCache::clear();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
#ifdef __GLIBC__
    return mallinfo2().uordblks;
#else
    return 0;
#endif
}

class Endurance : public Road {
  protected:
    /// The bench's sample coinset with `drops` of every coin and slug. Returns the sum.
    int writeCoinset(const Bench& bench, int drops) {
        const auto sample = std::filesystem::path(VANTOR_SOURCE_DIR) / "data" / "CoinSets" /
                            (bench.model + "-Dorin.cst");
        std::string changed;
        int sum = 0;
        for (std::string line : split(readFile(sample).value_or(""), '\n')) {
            if (!line.empty() && line.back() == '\r') line.pop_back();
            auto fields = split(line, ',');
            const std::map<std::string, std::size_t> countAt{{"CD", 3}, {"R", 3}, {"S", 2}};
            if (const auto at = countAt.find(fields.front()); at != countAt.end()) {
                fields.at(at->second) = std::to_string(drops);
                sum += drops;
            }
            std::string joined;
            for (const std::string& field : fields) joined += (joined.empty() ? "" : ",") + field;
            if (!line.empty()) changed += joined + "\r\n";
        }
        write("shift.cst", changed);
        return sum;
    }

    /// Reading lines of the results log: an empty text and then a number.
    [[nodiscard]] long loggedReadings() const {
        const auto lines = split(readFile(folder() / "shift.csv").value_or(""), '\n');
        return std::count_if(lines.begin(), lines.end(), [](const std::string& line) {
            return line.starts_with("\"\",") && line.size() > 3 &&
                   std::isdigit(static_cast<unsigned char>(line[3])) != 0;
        });
    }

    /// Measures, programs, goes back to the main window and tests; returns how many were dropped.
    int shift(const Bench& bench, int drops) {
        box.plugValidator(bench.maker, bench.model);
        choose("frmMain." + bench.list, bench.model);
        click("frmMain." + bench.program);
        EXPECT_TRUE(visible("frmCoinMeasure1")) << bench.model;
        if (!visible("frmCoinMeasure1")) return 0;
        widget<QAbstractButton>("frmCoinMeasure1.chkLog")->setChecked(true);
        int dropped = writeCoinset(bench, drops);
        technician.coinset = folder() / "shift.cst";
        technician.log = folder() / "shift.csv";
        click("frmCoinMeasure1.cmdRunCoinset");
        EXPECT_TRUE(visible("frmPROM")) << technician.seen.back();
        if (!visible("frmPROM")) return 0;
        EXPECT_EQ(loggedReadings(), dropped) << bench.model;
        click("frmPROM.cmdProgPROM");
        EXPECT_TRUE(technician.saw(bench.verdict)) << technician.seen.back();
        click("frmPROM.cmdBack1");
        click("frmCoinMeasure1.cmdBack");
        dropped += testShift(bench, drops);
        technician.seen.clear();
        sounds.played.clear();
        box.clearTranscript();
        return dropped;
    }

    int testShift(const Bench& bench, int drops) {
        box.plugValidator(bench.maker, bench.model);
        click("frmMain.cmdValtest");
        EXPECT_TRUE(visible("frmValtest")) << bench.model;
        // What the program has just sent is still on its way.
        loop.advance(std::chrono::milliseconds(50));
        for (int i = 0; i < drops; ++i) {
            EXPECT_TRUE(box.drop(bench.accepted));
            loop.advance(std::chrono::milliseconds(300));
        }
        loop.advance(std::chrono::seconds(1));
        int counted = 0;
        for (int at = 0;
             auto* count =
                 windowNamed("frmValtest")->findChild<QLabel*>(QString("lblCount_%1").arg(at));
             ++at)
            counted += count->text().toInt();
        EXPECT_EQ(counted, drops) << bench.model;
        click("frmValtest.cmdBack");
        return drops;
    }
};

TEST_F(Endurance, EveryDropCountsOnceAndTheMemoryStaysFlat) {
    const int wanted = wantedDrops();
    const int perItem = wanted < 10'000 ? 15 : 300;
    technician.promWords = 256;
    technician.oldProm.assign(256, 3);
    openMain("ME111");
    std::vector<std::size_t> heap;
    int dropped = 0;
    do {
        for (const Bench& bench : kBenches) {
            const int now = shift(bench, perItem);
            ASSERT_GT(now, 0);
            dropped += now;
        }
        heap.push_back(heapInUse());
        std::printf("%7d drops, %5.2f h, %8zu bytes in use\n", dropped,
                    std::chrono::duration<double, std::ratio<3600>>(loop.now()).count(),
                    heap.back());
    } while (!HasFailure() && (dropped < wanted || heap.size() < 3));
    ASSERT_FALSE(HasFailure());
    // The first round fills what lasts as long as the program. Of later ones Qt keeps a few kB for
    // every file dialog; a few bytes a drop would be more than that.
    EXPECT_LT(heap.back(), heap[1] + (heap.size() - 2) * kKeptByDialogs);
}

}  // namespace
}  // namespace vantor::test
