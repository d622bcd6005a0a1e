#include "limits/Overlap.h"

#include <gtest/gtest.h>

#include <vector>

namespace vantor {
namespace {

TEST(Overlap, WindowsMeet) {
    struct Case {
        Window one, other;
        bool meet;
    };
    for (const Case& c : {Case{{100, 140}, {140, 150}, true}, Case{{100, 140}, {141, 150}, false},
                          Case{{100, 140}, {90, 100}, true}, Case{{100, 140}, {90, 99}, false},
                          Case{{100, 140}, {110, 120}, true}, Case{{110, 120}, {100, 140}, true},
                          Case{{10, 50}, {60, 5}, true}, Case{{60, 5}, {10, 50}, true}}) {
        EXPECT_EQ(windowsMeet(c.one, c.other), c.meet)
            << c.one.low << ".." << c.one.high << " and " << c.other.low << ".." << c.other.high;
    }
}

struct Mech {
    LimitsState limits;
    CoinTable table;
    SegmentView view{.paramCount = 3, .channelCount = 6, .rules = {.displayedSegmentOnly = true}};

    void channel(int number, const std::vector<Window>& windows) {
        int column = 1;
        for (const Window& window : windows) {
            limits.channelLimits[number][column++] = window.low;
            limits.channelLimits[number][column++] = window.high;
        }
    }
    void slug(int row, const std::vector<Window>& windows) {
        limits.slugList[++limits.slugCount] = row;
        int column = 2;
        for (const Window& window : windows) {
            table.itemLimits[row][column++] = window.low;
            table.itemLimits[row][column++] = window.high;
        }
    }
    /// The marked channels as text, for example "1c 3s 5cs / slug 2".
    [[nodiscard]] std::string marked() const {
        const OverlapMarks marks = findOverlaps(limits, table, view);
        std::string text;
        for (int c = 1; c <= kChannels; ++c) {
            if (!marks.coinOverlap[c] && !marks.slugOverlap[c]) continue;
            text += std::to_string(c) + (marks.coinOverlap[c] ? "c" : "") +
                    (marks.slugOverlap[c] ? "s" : "") + " ";
        }
        for (int s = 1; s <= kMostSlugs; ++s) {
            if (marks.slug[s]) text += "slug " + std::to_string(s) + " ";
        }
        return text;
    }
};

const std::vector<Window> kCoin = {{100, 140}, {200, 240}, {300, 340}};

TEST(Overlap, CoinsAreAlikeOnlyWhenEveryParameterMeets) {
    Mech mech;
    mech.channel(5, kCoin);
    mech.channel(6, {{140, 150}, {210, 220}, {250, 400}});
    EXPECT_EQ(mech.marked(), "5c 6c ");
    mech.channel(6, {{141, 150}, {210, 220}, {250, 400}});
    EXPECT_EQ(mech.marked(), "");
    mech.channel(6, {{100, 140}, {0, 0}, {300, 340}});
    EXPECT_EQ(mech.marked(), "") << "switched off on one parameter";
}

TEST(Overlap, AlternativeSegmentsAreNotComparedWithEachOther) {
    Mech mech;
    mech.view.channelCount = 12;
    mech.channel(2, kCoin);
    mech.channel(8, kCoin);
    EXPECT_EQ(mech.marked(), "");
    mech.view.firstChannel = 7;
    mech.channel(12, kCoin);
    EXPECT_EQ(mech.marked(), "8c 12c ");
    // Where all channels are live at once, the segment displayed does not matter.
    mech.view.rules.displayedSegmentOnly = false;
    EXPECT_EQ(mech.marked(), "2c 8c 12c ");
}

TEST(Overlap, AReversedWindowCountsAsTheFamilySays) {
    struct Case {
        const char* what;
        Window a, b;
        bool reversedIsEmpty;
        const char* marked;
    };
    for (const Case& c : {Case{"b reversed", {100, 140}, {130, 120}, false, "1c 2c "},
                          Case{"b reversed, empty", {100, 140}, {130, 120}, true, ""},
                          Case{"a reversed, empty", {130, 120}, {100, 140}, true, ""},
                          Case{"a single value, empty", {120, 120}, {100, 140}, true, ""}}) {
        Mech mech;
        mech.view.paramCount = 1;
        mech.view.rules.reversedIsEmpty = c.reversedIsEmpty;
        mech.channel(1, {c.a});
        mech.channel(2, {c.b});
        EXPECT_EQ(mech.marked(), c.marked) << c.what;
    }
}

TEST(Overlap, SlugsAgainstChannels) {
    Mech mech;
    mech.channel(1, kCoin);
    mech.channel(3, {{500, 540}, {600, 640}, {700, 740}});
    mech.slug(9, {{130, 160}, {230, 260}, {330, 360}});
    EXPECT_EQ(mech.marked(), "1s slug 1 ");
    mech.slug(2, {{530, 560}, {630, 660}, {741, 760}});
    EXPECT_EQ(mech.marked(), "1s slug 1 ") << "the second slug is told apart";
    mech.channel(1, {{100, 140}, {240, 200}, {300, 340}});
    EXPECT_EQ(mech.marked(), "") << "a reversed window lets nothing through";
    mech.channel(1, kCoin);
    mech.channel(2, kCoin);
    EXPECT_EQ(mech.marked(), "1cs 2cs slug 1 ");
}

TEST(Overlap, TheOptionalParameterMayBeSwitchedOff) {
    struct Case {
        const char* what;
        Window a, b;
        int optional;
        const char* marked;
    };
    for (const Case& c : {Case{"both off", {0, 0}, {0, 0}, 1, "1cs 2cs slug 1 "},
                          Case{"one off", {0, 0}, {0, 50}, 1, "1cs 2cs slug 1 "},
                          Case{"reversed is not off", {50, 10}, {0, 0}, 1, "2s slug 1 "},
                          Case{"both off, not optional", {0, 0}, {0, 0}, -1, ""}}) {
        Mech mech;
        mech.view.paramCount = 2;
        mech.view.rules = {.optionalParameter = c.optional};
        mech.channel(1, {{100, 140}, c.a});
        mech.channel(2, {{100, 140}, c.b});
        mech.slug(0, {{100, 140}, {10, 20}});
        EXPECT_EQ(mech.marked(), c.marked) << c.what;
    }
}

}  // namespace
}  // namespace vantor
