#include "MemoryWindow.h"
#include "cc/EepromUtilities.h"
#include "cc/frmEEPROMdata.h"

namespace vantor::test {
namespace {

class EepromWindow : public MemoryWindowTest {
  protected:
    EepromWindow() {
        look(window);
        window.setUtilities(utilities);
    }

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

    FrmProgramming progress{w.state};
    CcFamily family{w.state,       w.base.link, w.base.check,         w.base.prompts,
                    w.base.errors, progress,    w.base.receiver.sinks};
    FrmEEPROMdata window{w.state, w.actions};
    EepromUtilities utilities{w.state, w.base.link, w.base.errors, family, window, window};
};

TEST_F(EepromWindow, ShowsEveryViewOfEveryModelWhole) {
    struct Case {
        const char* model;
        std::array<int, 3> lines;  ///< of each view; 0 = boxes
    };
    inEveryLanguage([this] {
        for (const Case& c :
             {Case{"C120", {8, 13, 15}}, Case{"220B", {8, 9, 3}}, Case{"335", {8, 17, 3}},
              Case{"450", {8, 13, 13}}, Case{"435", {16, 17, 0}}, Case{"Sentinel", {4, 9, 9}}}) {
            SCOPED_TRACE(c.model);
            open(c.model);
            ASSERT_TRUE(window.isVisible());
            EXPECT_EQ(W::label(window, "lblmechType"), c.model);
            for (int view = 0; view < 3; ++view) {
                choose(view);
                const int lines = c.lines.at(static_cast<std::size_t>(view));
                EXPECT_EQ(W::control(window, "frm435")->isVisible(), lines == 0);
                EXPECT_EQ(pane()->isVisible(), lines > 0);
                EXPECT_EQ(W::control(window, "cmdProgramme")->isEnabled(), lines > 0);
                EXPECT_EQ(W::control(window, "cmdRouting")->isEnabled(), lines == 0);
                if (lines > 0) expectWhole(lines);
            }
            EXPECT_EQ(W::cutTexts(window), "");
            utilities.closeWindow();
            expectClosedAndEmpty();
        }
    });
}

}  // namespace
}  // namespace vantor::test
