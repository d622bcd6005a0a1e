#include "mars/PromUtilities.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "MarsWorld.h"

namespace vantor {
namespace {

using test::MarsWorld;

/// The window as a record of what it shows.
class RecordedWindow final : public MemoryDisplay, public PromDisplay {
  public:
    bool shown = false;
    int size = 0;
    bool sizeChoosable = true;
    std::string mechType;
    std::vector<std::string> views;
    int view = -1;
    std::string read, next;

    void loadWindow() override {}
    void showWindow() override { shown = true; }
    void closeWindow() override { shown = false; }
    void showPromSize(int promSizeCode, bool choosable) override {
        size = promSizeCode;
        sizeChoosable = choosable;
    }
    [[nodiscard]] int shownPromSize() const override { return size; }
    void showMechType(const std::string& type) override { mechType = type; }
    void listViews(const std::vector<std::string>& entries) override {
        views = entries;
        view = entries.empty() ? -1 : 0;
    }
    [[nodiscard]] int chosenView() const override { return view; }
    void showText(const std::string&) override {}
    void showPanes(const std::string& readText, const std::string& nextText) override {
        read = readText;
        next = nextText;
    }
};

struct Bench : MarsWorld {
    RecordedWindow window;
    PromUtilities utilities{state, link, families, errors, window, window};
    std::string neighbours;

    explicit Bench(std::string_view model = "ME111", int promSizeCode = 0)
        : MarsWorld(model, promSizeCode) {
        utilities.leave = [this](bool limits) { neighbours += limits ? "-limits" : "-main"; };
        utilities.goBack = [this](bool limits) { neighbours += limits ? "+limits" : "+main"; };
    }
    void chooseView(int index) {
        window.view = index;
        utilities.changeView();
    }
    void chooseSize(int promSizeCode) {
        window.size = promSizeCode;
        utilities.chooseSize();
    }
    [[nodiscard]] std::string listed() const {
        std::string all;
        for (const std::string& entry : window.views) all += entry + "|";
        return all;
    }
    /// The new image, read back from the socket.
    void readNewImageBack() {
        socket.cells = test::digits(state.images.next, 0, 511);
        utilities.readMemory();
    }
};

/// The segment of `setSampleSegment`, addresses 0..127 of it.
const std::string kSampleLines =
    "00 F C 2 1 F F F D 2 1 0 4 1 0 0 0 \r\n"
    "10 0 0 0 0 9 1 4 A 1 1 0 0 2 0 0 4 \r\n"
    "20 F 1 8 5 2 8 E 3 C 4 4 9 E 3 D 4 \r\n"
    "30 4 0 0 0 0 0 0 0 B 4 2 E 4 3 0 0 \r\n"
    "40 4 0 0 C B 2 0 2 3 0 D 7 4 3 8 1 \r\n"
    "50 D 7 5 3 8 0 0 0 0 0 0 C F 8 E 2 \r\n"
    "60 9 5 0 0 6 0 0 4 8 3 F F 3 0 0 0 \r\n"
    "70 4 7 4 2 5 0 3 0 3 1 3 1 2 E 3 2 \r\n";
std::string emptyLines(const std::string& heads) {
    std::string text;
    for (const char head : heads) {
        text += head + std::string("0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \r\n");
    }
    return text;
}
const std::string kEmptyLowerLines = emptyLines("01234567");
const std::string kEmptyUpperLines = emptyLines("89ABCDEF");

const std::string kHeadings =
    "     Thickness Diameter  Material\r\n"
    "Coin --------- --------- ---------\r\n";

std::string sampleLimits(char segment) {
    std::string text =
        "A#   0300 4095 1000 1100 2000 2100 \r\n"
        "B#   0301 0320 1001 1101 2001 2101 \r\n"
        "C#   0000 0000 0000 0000 0000 0000 \r\n"
        "D#   0400 0420 1200 1250 2300 2350 \r\n"
        "E#   0001 0002 0003 0004 0005 0006 \r\n"
        "F#   0500 0600 0700 0800 0900 1023 \r\n";
    std::ranges::replace(text, '#', segment);
    return text;
}

std::string emptyLimits(char segment) {
    std::string text;
    for (const char coin : std::string("ABCDEF")) {
        text += std::string{coin, segment} + "   0000 0000 0000 0000 0000 0000 \r\n";
    }
    return text;
}

// --- the panes -----------------------------------------------------------------------------

TEST(PromPanes, NibblesByAddress) {
    Bench bench("MS1000", 1);
    bench.utilities.openFromLimits();
    EXPECT_EQ(bench.window.read, kEmptyLowerLines + kEmptyUpperLines);
    EXPECT_EQ(bench.window.next, kEmptyLowerLines + kEmptyUpperLines);

    bench.setSampleSegment();
    bench.utilities.changeView();
    EXPECT_EQ(bench.window.read, kEmptyLowerLines + kEmptyUpperLines) << "nothing was read yet";
    EXPECT_EQ(bench.window.next, kSampleLines + kEmptyUpperLines);
    bench.readNewImageBack();
    EXPECT_EQ(bench.window.read, kSampleLines + kEmptyUpperLines);

    // The upper half has line heads of its own half.
    bench.state.prom.segmentSelected = {};
    bench.state.prom.segmentSelected[2] = true;
    bench.setSampleSegment(13);
    bench.chooseView(2);
    EXPECT_EQ(bench.window.next, kSampleLines + kEmptyUpperLines);
    EXPECT_EQ(bench.window.read, kEmptyLowerLines + kEmptyUpperLines);

    bench.state.images.next[256] = 16;
    bench.state.images.next[257] = -1;
    bench.utilities.changeView();
    EXPECT_EQ(bench.window.next.substr(0, 9), "00 ? ? 2 ");
}

TEST(PromPanes, LimitsByCoin) {
    Bench bench("MS1000", 1);
    bench.state.prom.segmentSelected.fill(true);
    bench.setSampleSegment(7);
    bench.setSampleSegment(13);
    bench.utilities.openFromLimits();
    bench.readNewImageBack();
    // The limits of now are those of the window, whatever the image or the PROM holds.
    bench.setLimits(6, {4095, 5000, 9, 10, 11, 12});

    bench.chooseView(1);
    EXPECT_EQ(bench.window.read, kHeadings + emptyLimits('1') + sampleLimits('2'));
    std::string edited = kHeadings + emptyLimits('1') + sampleLimits('2');
    edited.replace(edited.find("F1"), 35, "F1   4095 5000 0009 0010 0011 0012 ");
    EXPECT_EQ(bench.window.next, edited);

    bench.chooseView(3);
    EXPECT_EQ(bench.window.read, kHeadings + sampleLimits('3') + emptyLimits('4'));
    EXPECT_EQ(bench.window.next, kHeadings + sampleLimits('3') + emptyLimits('4'));
}

TEST(PromPanes, LimitsAndValuesOfAnMe181) {
    Bench bench("ME181", 1);
    bench.state.prom.segmentSelected[1] = true;
    const std::array<int, 12> values = {5, 10, 20, 50, 100, 200, 255, 1, 2, 17, 0, 64};
    for (int channel = 1; channel <= 12; ++channel) {
        bench.state.nriNew.newCoinValue[channel] = values.at(static_cast<std::size_t>(channel - 1));
    }
    bench.setSampleSegment(7);
    bench.utilities.openFromLimits();
    bench.readNewImageBack();
    bench.state.nriNew.newCoinValue[12] = 300;
    bench.setLimits(1, {1, 2, 3, 4, 5, 6});

    bench.chooseView(1);
    EXPECT_EQ(bench.window.read, kHeadings + emptyLimits('1') + sampleLimits('2') +
                                     "Values  A   B   C   D   E   F\r\n"
                                     "    L   005 010 020 050 100 200 \r\n"
                                     "    H   255 001 002 017 000 064 ");
    std::string edited = kHeadings + emptyLimits('1') + sampleLimits('2') +
                         "Values  A   B   C   D   E   F\r\n"
                         "    L   005 010 020 050 100 200 \r\n"
                         "    H   255 001 002 017 000 300 ";
    edited.replace(edited.find("A1"), 35, "A1   0001 0002 0003 0004 0005 0006 ");
    EXPECT_EQ(bench.window.next, edited);
    EXPECT_EQ(bench.state.prom.oldChannelValue[7], 255);

    // The block of segment 1 begins in the upper half of the lower 256 addresses.
    bench.chooseView(0);
    EXPECT_EQ(bench.window.read.substr(0, 37), "00 F 0 8 C 4 6 0 0 2 3 0 0 0 0 0 0 \r\n");
    EXPECT_EQ(bench.window.read.substr(8 * 37, 9), "80 F 0 0 ");
}

TEST(PromPanes, HeadingsAreThoseOfTheirOwnPane) {
    Bench bench("ME181");
    for (int id = 108; id <= 113; ++id) {
        bench.state.messages.setLoaded(id, "<" + std::to_string(id) + ">");
    }
    bench.state.messages.languageTableLoaded = true;
    bench.state.messages.language = "Deutsch";
    bench.utilities.openFromLimits();
    bench.window.view = 1;
    bench.utilities.changeView();
    EXPECT_EQ(bench.window.read.substr(0, 14), "<108>\r\n<110>\r\n");
    EXPECT_EQ(bench.window.next.substr(0, 14), "<109>\r\n<111>\r\n");
    EXPECT_NE(bench.window.read.find("\r\n<112>\r\n    L   000 "), std::string::npos);
    EXPECT_NE(bench.window.next.find("\r\n<113>\r\n    L   000 "), std::string::npos);
}

// --- the window's work ---------------------------------------------------------------------

TEST(PromUtilities, TheViewsFollowModelAndSize) {
    struct Case {
        const char* model;
        int promSizeCode;
        const char* views;
    };
    for (const Case& c :
         {Case{"ME111", 0, "Data Addr 0-255|Limits Segs 1 & 2|"},
          Case{"MS1000", 1,
               "Data Addr 0-255|Limits Segs 1 & 2|Data Addr 256-511|Limits Segs 3 & 4|"},
          Case{"ME181", 0, "Data Addr 0-255|Limits & Values|"},
          Case{"ME181", 1, "Data Addr 0-255|Limits & Values|Data Addr 256-511|"}}) {
        SCOPED_TRACE(c.model);
        Bench bench(c.model, c.promSizeCode);
        bench.utilities.openFromLimits();
        EXPECT_EQ(bench.listed(), c.views);
        // Every entry shows its own text, and beyond the last one nothing changes.
        std::set<std::string> texts;
        bench.state.images.next.fill(1);
        bench.state.images.next[300] = 2;
        for (int view = 0; view < static_cast<int>(bench.window.views.size()); ++view) {
            bench.chooseView(view);
            texts.insert(bench.window.next);
        }
        EXPECT_EQ(texts.size(), bench.window.views.size());
        const std::string last = bench.window.next;
        for (const int beyond : {-1, 4, 7}) {
            bench.chooseView(beyond);
            EXPECT_EQ(bench.window.next, last);
        }
        EXPECT_TRUE(bench.prompts.asked.empty()) << bench.textsAsked();
    }
}

TEST(PromUtilities, FromTheMainWindowThePromIsReadAtOnce) {
    Bench bench("ME111", 1);
    bench.state.limits.utilitiesFromLimits = true;  // of an earlier session
    bench.setSampleSegment();
    bench.socket.cells = std::string(255, '7') + "E" + std::string(256, '9');
    bench.utilities.openFromMain();
    EXPECT_EQ(bench.port.sent, "JEAW");
    EXPECT_EQ(bench.neighbours, "-main");
    EXPECT_TRUE(bench.window.shown && bench.window.sizeChoosable);
    EXPECT_EQ(bench.window.mechType, "ME111");
    EXPECT_EQ(bench.window.size, 0);
    EXPECT_EQ(bench.state.prom.promSizeCode, 0);
    for (const bool selected : bench.state.prom.segmentSelected) EXPECT_TRUE(selected);
    EXPECT_EQ(bench.window.read.substr(0, 13), "00 7 7 7 7 7 ");
    EXPECT_EQ(bench.window.read.substr(bench.window.read.size() - 6), "7 E \r\n");
    EXPECT_EQ(bench.window.next, kEmptyLowerLines + kEmptyUpperLines) << "images are cleared";

    // 2K: two more views; the upper half shows when it has been read.
    bench.chooseSize(1);
    EXPECT_EQ(bench.state.prom.promSizeCode, 1);
    EXPECT_EQ(bench.window.views.size(), 4U);
    bench.chooseView(2);
    EXPECT_EQ(bench.window.read, kEmptyLowerLines + kEmptyUpperLines);
    bench.utilities.readMemory();
    EXPECT_EQ(bench.port.sent, "JEAWJEKW");
    EXPECT_EQ(bench.window.view, 2) << "the technician's choice stays";
    EXPECT_EQ(bench.window.read.substr(0, 13), "00 9 9 9 9 9 ");
    bench.chooseSize(0);
    EXPECT_EQ(bench.state.prom.promSizeCode, 0);
    EXPECT_EQ(bench.window.views.size(), 2U);
    EXPECT_EQ(bench.window.read.substr(0, 13), "00 7 7 7 7 7 ");

    bench.utilities.closeWindow();
    EXPECT_FALSE(bench.window.shown);
    EXPECT_EQ(bench.neighbours, "-main+main");
    EXPECT_EQ(bench.port.sent, "JEAWJEKWW");
}

TEST(PromUtilities, ReadsThatFailAreToldAndWhatCameIsShown) {
    Bench bench;
    bench.socket.cells = std::string(512, '5');
    bench.socket.missingLine = 15;
    bench.utilities.openFromMain();
    EXPECT_EQ(bench.textsAsked(), "Error: Unable to Read PROM : timed out\n");
    EXPECT_TRUE(bench.window.shown);
    EXPECT_EQ(bench.window.read.substr(0, 13), "00 5 5 5 5 5 ");
    EXPECT_EQ(bench.window.read.substr(bench.window.read.size() - 37),
              kEmptyUpperLines.substr(7 * 37));

    // An empty socket: the old data does not stay.
    bench.socket.answersReads = false;
    bench.utilities.readMemory();
    EXPECT_EQ(bench.prompts.asked.size(), 2U);
    EXPECT_EQ(bench.window.read, kEmptyLowerLines + kEmptyUpperLines);
    EXPECT_EQ(bench.port.sent, "JEAWJEAW");
}

}  // namespace
}  // namespace vantor
