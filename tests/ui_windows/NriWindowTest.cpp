#include "FixedCalendar.h"
#include "MemoryWindow.h"
#include "nri/NriMemoryUtilities.h"
#include "nri/frmNRIdata.h"

namespace vantor::test {
namespace {

class NriWindow : public MemoryWindowTest {
  protected:
    NriWindow() {
        look(window);
        window.setUtilities(utilities);
    }

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

    FrmProgramming progress{w.state};
    FixedCalendar calendar;
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
    const Case cases[] = {{"G13-6000", {14, 18, 16}}, {"G40-0000", {14, 18, 16}},
                          {"G18-3000", {14, 16, 16}}, {"G10-4000/5", {14, 19}},
                          {"G10-4000", {10, 15}},     {"G13-0000", {8, 10}},
                          {"G18-0000", {8, 10}}};
    inEveryLanguage([&] {
        for (const Case& c : cases) {
            SCOPED_TRACE(c.model);
            open(c.model);
            ASSERT_TRUE(window.isVisible());
            EXPECT_EQ(W::label(window, "lblmechType"), c.model);
            const auto views = static_cast<int>(c.lines.size());
            ASSERT_EQ(W::find<QComboBox>(window, "cmbDisplay")->count(), views);
            for (int view = 0; view < views; ++view) {
                choose(view);
                expectWhole(c.lines[static_cast<std::size_t>(view)]);
            }
            EXPECT_EQ(W::cutTexts(window), "");
            utilities.closeWindow();
            expectClosedAndEmpty();
        }
    });
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
