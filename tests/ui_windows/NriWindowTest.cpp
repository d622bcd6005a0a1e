#include <QComboBox>
#include <QFontInfo>
#include <QPlainTextEdit>
#include <QScrollBar>

#include "WindowsWorld.h"
#include "catalogue/LanguageFile.h"
#include "nri/NriMemoryUtilities.h"
#include "nri/frmNRIdata.h"

namespace vantor::test {
namespace {

using W = WindowsWorld;

struct StoppedCalendar final : Calendar {
    [[nodiscard]] Date today() const override { return {2026, 12, 31}; }
};

class NriWindow : public testing::Test {
  protected:
    NriWindow() { window.setUtilities(utilities); }

    /// The window over a memory that was read: the reading itself needs a box.
    void open(std::string_view model) {
        w.base.select(kNri, model);
        window.loadWindow();
        window.showMechType(std::string(model));
        std::vector<std::string> entries;
        for (const NriView& view : family.utilities().views()) {
            entries.push_back(w.state.msgText(view.caption));
        }
        window.listViews(entries);
        window.showWindow();
        NriFields& fields = w.state.nri.old;
        for (int channel = 1; channel <= w.state.mech.info.channelCount; ++channel) {
            for (int column = 1; column <= 12; ++column) fields.limits[channel][column] = 255;
            for (int p = 1; p <= 6; ++p) fields.parameterMap[channel][p] = 15;
            fields.coinValues[channel] = 9999;
            fields.outputs[channel] = 70;
            fields.outputCodes[channel] = 255;
        }
        fields.date = "1F0C1A";
        choose(0);
    }
    void choose(int view) {
        auto* box = W::find<QComboBox>(window, "cmbDisplay");
        box->setCurrentIndex(view);
        emit box->activated(view);
    }
    QPlainTextEdit* pane() { return W::find<QPlainTextEdit>(window, "lblPROM"); }

    WindowsWorld w;
    FrmProgramming progress{w.state};
    StoppedCalendar calendar;
    NriFamily family{w.state,        w.base.link,           w.base.check,
                     w.base.prompts, w.base.errors,         progress,
                     calendar,       w.base.receiver.sinks, {}};
    FrmNRIdata window{w.state, w.actions};
    NriMemoryUtilities utilities{w.state, w.base.link, w.base.errors, family, window};
};

TEST_F(NriWindow, ShowsEveryViewOfEveryModelWhole) {
    struct Case {
        const char* model;
        std::vector<int> lines;  ///< of each view, the empty one behind the last line end included
    };
    for (const std::string language : {"English", "Deutsch", "Francais", "Espa\xF1ol"}) {
        w.state.messages.language = language;
        loadLanguage(w.state.messages, std::filesystem::path(VANTOR_SOURCE_DIR) / "data",
                     w.base.prompts, w.base.errors);
        for (const Case& c :
             {Case{"G13-6000", {14, 18, 16}}, Case{"G40-0000", {14, 18, 16}},
              Case{"G18-3000", {14, 16, 16}}, Case{"G10-4000/5", {14, 19}},
              Case{"G10-4000", {10, 15}}, Case{"G13-0000", {8, 10}}, Case{"G18-0000", {8, 10}}}) {
            SCOPED_TRACE(language + " " + c.model);
            open(c.model);
            ASSERT_TRUE(window.isVisible());
            EXPECT_EQ(W::label(window, "lblmechType"), c.model);
            EXPECT_TRUE(QFontInfo(pane()->font()).fixedPitch());
            const auto views = static_cast<int>(c.lines.size());
            ASSERT_EQ(W::find<QComboBox>(window, "cmbDisplay")->count(), views);
            for (int view = 0; view < views; ++view) {
                choose(view);
                QApplication::processEvents();
                shoot(window, toQt("nri-" + language + "-" + std::to_string(view) + "-" +
                                   std::string(c.model).substr(0, 8)));
                EXPECT_EQ(pane()->blockCount(), c.lines[static_cast<std::size_t>(view)]) << view;
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

TEST_F(NriWindow, TheFrameGoesBackUnlessAnActionRuns) {
    open("G13-6000");
    w.actions.run(0, [this] { window.close(); });
    EXPECT_TRUE(window.isVisible());
    window.close();
    EXPECT_FALSE(window.isVisible());
}

}  // namespace
}  // namespace vantor::test
