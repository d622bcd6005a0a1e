#include <QClipboard>
#include <QComboBox>
#include <QFontInfo>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScrollBar>

#include "WindowsWorld.h"
#include "catalogue/LanguageFile.h"
#include "cc/EepromUtilities.h"
#include "cc/frmEEPROMdata.h"

namespace vantor::test {
namespace {

using W = WindowsWorld;

class EepromWindow : public testing::Test {
  protected:
    EepromWindow() { window.setUtilities(utilities); }

    /// Nobody answers, so nothing is read; then the memory holds what a whole read would bring.
    void open(std::string_view model) {
        w.base.select(kCoinControls, model);
        const bool asksForTheBox = ccModel(model).session == CcSession::i2c;
        if (asksForTheBox) w.base.prompts.expect(w.state.msgText(122), Answer::ok);
        utilities.openFromMain();
        for (int word = 0; word < 256; ++word) w.state.images.old[word] = 257 * word % 65536;
        w.state.noteOldImage(true);
        choose(0);
    }
    void choose(int view) {
        auto* box = W::find<QComboBox>(window, "cmbDisplay");
        box->setCurrentIndex(view);
        emit box->activated(view);
    }
    QPlainTextEdit* pane() { return W::find<QPlainTextEdit>(window, "lblPROM"); }
    QLineEdit* box(const std::string& name) { return W::find<QLineEdit>(window, name); }

    WindowsWorld w;
    FrmProgramming progress{w.state};
    CcFamily family{w.state,       w.base.link, w.base.check,         w.base.prompts,
                    w.base.errors, progress,    w.base.receiver.sinks};
    FrmEEPROMdata window{w.state, w.actions};
    EepromUtilities utilities{w.state, w.base.link, w.base.errors, family, window, window};
};

TEST_F(EepromWindow, ShowsEveryViewOfEveryModelWhole) {
    struct Case {
        const char* model;
        int linesOfWords, linesOfLimits, linesOfOther;
    };
    for (const std::string language : {"English", "Deutsch", "Francais", "Espa\xF1ol"}) {
        w.state.messages.language = language;
        loadLanguage(w.state.messages, std::filesystem::path(VANTOR_SOURCE_DIR) / "data",
                     w.base.prompts, w.base.errors);
        for (const Case& c :
             {Case{"C120", 8, 13, 15}, Case{"220B", 8, 9, 3}, Case{"335", 8, 17, 3},
              Case{"450", 8, 13, 13}, Case{"435", 16, 17, 0}, Case{"Sentinel", 4, 9, 9}}) {
            SCOPED_TRACE(language + " " + c.model);
            open(c.model);
            ASSERT_TRUE(window.isVisible());
            EXPECT_EQ(W::label(window, "lblmechType"), c.model);
            EXPECT_TRUE(QFontInfo(pane()->font()).fixedPitch());
            for (const int view : {0, 1, 2}) {
                choose(view);
                QApplication::processEvents();
                shoot(window,
                      toQt("eeprom-" + language + "-" + c.model + "-") + QString::number(view));
                const bool boxes = view == 2 && c.linesOfOther == 0;
                EXPECT_EQ(W::control(window, "frm435")->isVisible(), boxes);
                EXPECT_EQ(pane()->isVisible(), !boxes);
                EXPECT_EQ(W::control(window, "cmdProgramme")->isEnabled(), !boxes);
                EXPECT_EQ(W::control(window, "cmdRouting")->isEnabled(), boxes);
                if (boxes) continue;
                const int lines[] = {c.linesOfWords, c.linesOfLimits, c.linesOfOther};
                EXPECT_EQ(pane()->blockCount(), lines[view]);
                EXPECT_EQ(pane()->verticalScrollBar()->maximum(), 0) << "not all of it shows";
                EXPECT_EQ(pane()->horizontalScrollBar()->maximum(), 0) << "not all of it shows";
            }
            for (QWidget* control : window.findChildren<QWidget*>()) {
                if (!control->isVisible() || control == pane()) continue;
                if (!qobject_cast<QLabel*>(control) && !qobject_cast<QAbstractButton*>(control)) {
                    continue;
                }
                EXPECT_GE(control->width(), control->sizeHint().width())
                    << control->objectName().toStdString();
            }
            utilities.closeWindow();
            EXPECT_FALSE(window.isVisible());
            EXPECT_EQ(pane()->toPlainText(), QString());
        }
    }
}

TEST_F(EepromWindow, ThePaneCanBeCopiedAndNotTypedInto) {
    open("335");
    const QString before = pane()->toPlainText();
    ASSERT_TRUE(before.startsWith(QStringLiteral("  00 0000 0101 0202 ")));
    W::type(pane(), QStringLiteral("x"));
    EXPECT_EQ(pane()->toPlainText(), before);
    pane()->selectAll();
    pane()->copy();
    EXPECT_EQ(QApplication::clipboard()->text(), before);
}

TEST_F(EepromWindow, TheBoxesShowAndGiveBackThe435sSettings) {
    open("435");
    C435Settings settings;
    for (std::size_t i = 0; i < settings.paths.size(); ++i) {
        settings.paths.at(i) = "ABCDabcd?"[i % 9];
    }
    for (std::size_t i = 0; i < settings.codes.size(); ++i) {
        settings.codes.at(i) = i % 2 == 0 ? "0101" : "1110";
    }
    settings.fromMemory = true;
    settings.plugDefault = "c";
    window.showC435Settings(settings);
    EXPECT_EQ(window.enteredC435Settings(), settings);
    EXPECT_TRUE(W::find<QRadioButton>(window, "optMemory")->isChecked());

    // As the memory has them: the row's lowest nibble is its first choice.
    w.state.images.old[128] = 0x3210;
    w.state.images.old[143] = 0x8000;
    w.state.images.old[110] = 0xA001;
    w.state.images.old[11] = 0x0000;
    w.state.images.old[204] = 0x0442;
    choose(2);
    std::string row;
    for (int i = 0; i < 4; ++i) row += fromQt(box("txtSort_" + std::to_string(i))->text());
    EXPECT_EQ(row, "DCBA");
    EXPECT_EQ(box("txtSort_63")->text(), QStringLiteral("?"));
    EXPECT_EQ(box("txtCode_0")->text(), QStringLiteral("0001"));
    EXPECT_EQ(box("txtCode_3")->text(), QStringLiteral("1010"));
    EXPECT_TRUE(W::find<QRadioButton>(window, "optPlug")->isChecked());
    EXPECT_EQ(box("txtPlugDefault")->text(), QStringLiteral("a"));

    const auto typeOver = [&](const char* name, const char* text) {
        box(name)->selectAll();
        W::type(box(name), QLatin1String(text));
    };
    typeOver("txtSort_5", "e");
    W::click(window, "cmdRouting");
    EXPECT_TRUE(w.base.prompts.told("Invalid Routing Path entered"));
    EXPECT_EQ(box("txtSort_5")->text(), QStringLiteral("e")) << "what was typed stays";
}

}  // namespace
}  // namespace vantor::test
