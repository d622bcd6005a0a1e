#include <QClipboard>

#include "MemoryWindow.h"
#include "mars/PromUtilities.h"
#include "mars/frmPROMdata.h"

namespace vantor::test {
namespace {

class PromWindow : public MemoryWindowTest {
  protected:
    PromWindow() {
        look(window);
        window.setUtilities(utilities);
    }

    /// Opens the window over the limits window, with numbers in every column of both panes.
    void open(std::string_view model, int promSizeCode) {
        w.base.select(kMars, model);
        w.state.prom.promSizeCode = promSizeCode;
        for (int channel = 1; channel <= kChannels; ++channel) {
            for (int column = 1; column <= 6; ++column) {
                w.state.limits.channelLimits[channel][column] = 100 * channel + column;
            }
            w.state.nriNew.newCoinValue[channel] = 5 * channel;
        }
        for (int cell = 0; cell < 512; ++cell) w.state.images.old[cell] = cell * 7 / 3 % 16;
        utilities.openFromLimits();
    }

    FrmPROMdata window{w.state, w.actions};
    PromUtilities utilities{w.state, w.base.link, w.base.families, w.base.errors, window, window};
};

TEST_F(PromWindow, ShowsBothSidesWhole) {
    struct Case {
        const char* model;
        int promSizeCode, view, lines;
        const char *what, *next;  ///< a line of the new side
    };
    inEveryLanguage([this] {
        for (const Case& c :
             {Case{"ME111", 0, 0, 17, "raw", "F0 0 0 0 "},
              Case{"MS1000", 1, 3, 15, "limits", "B3   1401 1402 1403 1404 1405 1406 "},
              Case{"ME181", 1, 1, 17, "values", "    H   035 040 045 050 055 060 "}}) {
            SCOPED_TRACE(c.what);
            open(c.model, c.promSizeCode);
            choose(c.view);
            EXPECT_EQ(W::label(window, "lblmechType"), c.model);
            EXPECT_FALSE(W::control(window, "cmbSize")->isEnabled());
            EXPECT_EQ(W::find<QComboBox>(window, "cmbSize")->currentIndex(), c.promSizeCode);
            for (const char* name : {"lblPROM", "lblPROM2"}) expectWhole(c.lines, name);
            const std::string next = fromQt(pane("lblPROM2")->toPlainText());
            EXPECT_NE(next.find("\n" + std::string(c.next)), std::string::npos) << next;
            EXPECT_EQ(W::cutTexts(window), "");
            utilities.closeWindow();
            expectClosedAndEmpty();
        }
    });
}

TEST_F(PromWindow, HeadingsAreThoseOfTheirOwnPane) {
    for (int id = 108; id <= 113; ++id) {
        w.state.messages.setLoaded(id, "<" + std::to_string(id) + ">");
    }
    w.state.messages.languageTableLoaded = true;
    w.state.messages.language = "Deutsch";
    open("ME181", 0);
    choose(1);
    const QString read = pane()->toPlainText(), next = pane("lblPROM2")->toPlainText();
    EXPECT_TRUE(read.startsWith(u"<108>\n<110>\n") && read.contains(u"\n<112>\n    L   "));
    EXPECT_TRUE(next.startsWith(u"<109>\n<111>\n") && next.contains(u"\n<113>\n    L   "));
}

TEST_F(PromWindow, ThePanesCanBeCopiedAndNotTypedInto) {
    open("ME111", 0);
    const QString before = pane()->toPlainText();
    ASSERT_TRUE(before.startsWith(u"00 0 2 4 7 9 B E 0 2 5 7 9 C E 0 3 \n10 "));
    W::type(pane(), QStringLiteral("x"));
    EXPECT_EQ(pane()->toPlainText(), before);
    pane()->selectAll();
    pane()->copy();
    EXPECT_EQ(QApplication::clipboard()->text(), before);
    w.actions.run(1, [this] { EXPECT_TRUE(pane()->isEnabled()) << "while a mech is read"; });
}

}  // namespace
}  // namespace vantor::test
