#include "WindowsWorld.h"

#include <QClipboard>
#include <QComboBox>
#include <QFontInfo>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextCursor>

#include "catalogue/LanguageFile.h"
#include "mars/PromUtilities.h"
#include "mars/frmPROMdata.h"

namespace vantor::test {
namespace {

using W = WindowsWorld;

class PromWindow : public testing::Test {
  protected:
    PromWindow() { window.setUtilities(utilities); }

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
    QPlainTextEdit* pane(const char* name) { return W::find<QPlainTextEdit>(window, name); }
    void choose(const char* list, int entry) {
        auto* box = W::find<QComboBox>(window, list);
        box->setCurrentIndex(entry);
        emit box->activated(entry);
    }

    WindowsWorld w;
    FrmPROMdata window{w.state, w.actions};
    PromUtilities utilities{w.state, w.base.link, w.base.families, w.base.errors, window, window};
};

TEST_F(PromWindow, ShowsBothSidesInFixedPitch) {
    struct Case {
        const char* model;
        int promSizeCode, view, lines;
        const char* shot;
    };
    for (const std::string language : {"English", "Deutsch", "Francais", "Espa\xF1ol"}) {
        w.state.messages.language = language;
        loadLanguage(w.state.messages, std::filesystem::path(VANTOR_SOURCE_DIR) / "data",
                     w.base.prompts, w.base.errors);
        for (const Case& c : {Case{"ME111", 0, 0, 17, "raw"}, Case{"MS1000", 1, 3, 15, "limits"},
                              Case{"ME181", 1, 1, 17, "values"}}) {
            SCOPED_TRACE(language + " " + c.shot);
            open(c.model, c.promSizeCode);
            choose("cmbDisplay", c.view);
            QApplication::processEvents();
            EXPECT_EQ(W::label(window, "lblmechType"), c.model);
            EXPECT_FALSE(W::control(window, "cmbSize")->isEnabled());
            EXPECT_EQ(W::find<QComboBox>(window, "cmbSize")->currentIndex(), c.promSizeCode);
            for (const char* name : {"lblPROM", "lblPROM2"}) {
                EXPECT_TRUE(QFontInfo(pane(name)->font()).fixedPitch());
                EXPECT_EQ(pane(name)->blockCount(), c.lines);
                EXPECT_EQ(pane(name)->verticalScrollBar()->maximum(), 0) << "not all of it shows";
                EXPECT_EQ(pane(name)->horizontalScrollBar()->maximum(), 0) << "not all of it shows";
            }
            for (const char* name : {"cmdReadPROM", "cmdBye", "cmbDisplay", "Label1", "Label2",
                                     "Label3", "Label4", "Label5", "lblmechType"}) {
                const QWidget* control = W::control(window, name);
                EXPECT_GE(control->width(), control->sizeHint().width()) << name;
            }
            shoot(window, toQt("prom-" + language + "-" + c.shot));
            utilities.closeWindow();
            EXPECT_FALSE(window.isVisible());
            EXPECT_EQ(pane("lblPROM")->toPlainText(), QString());
        }
    }
}

TEST_F(PromWindow, ThePanesCanBeCopiedAndNotTypedInto) {
    open("ME111", 0);
    QPlainTextEdit* left = pane("lblPROM");
    const QString before = left->toPlainText();
    ASSERT_TRUE(before.startsWith(QStringLiteral("00 0 2 4 7 9 B E 0 2 5 7 9 C E 0 3 \n10 ")));
    W::type(left, QStringLiteral("x"));
    EXPECT_EQ(left->toPlainText(), before);
    left->selectAll();
    left->copy();
    EXPECT_EQ(QApplication::clipboard()->text(), before);
    w.actions.run(1, [left] { EXPECT_TRUE(left->isEnabled()) << "while the PROM is read"; });
}

}  // namespace
}  // namespace vantor::test
