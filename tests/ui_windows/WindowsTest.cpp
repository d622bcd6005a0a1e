#include "WindowsWorld.h"

#include <QCheckBox>
#include <QComboBox>
#include <QProgressBar>
#include <set>

namespace vantor::test {
namespace {

using W = WindowsWorld;

class Windows : public testing::Test {
  protected:
    void select(std::string_view maker, std::string_view model) { w.base.select(maker, model); }
    void openMeasure(std::string_view maker, std::string_view model) {
        select(maker, model);
        w.fillItem();
        w.measure.openWindow();
        w.showItem(true);
    }
    void openLimits(std::string_view maker, std::string_view model) {
        select(maker, model);
        w.limits.openWindow();
        w.limits.layOut(w.layoutFor(w.base.families.selected().look()));
        w.fillLimits();
    }
    [[nodiscard]] std::string list(const std::string& name) {
        auto* box = W::find<QComboBox>(w.measure, name);
        QStringList entries;
        for (int i = 0; i < box->count(); ++i) entries << box->itemText(i);
        return fromQt(entries.join(QLatin1Char('|')));
    }
    [[nodiscard]] std::string segmentStates() {
        std::string states;
        for (int i = 0; i < 4; ++i) {
            const auto name = "chkSegment_" + std::to_string(i);
            states += "-?x"[W::find<QCheckBox>(w.measure, name)->checkState()];
        }
        return states;
    }
    [[nodiscard]] std::string colour(QWidget& window, const std::string& name,
                                     QPalette::ColorRole role) {
        return fromQt(W::control(window, name)->palette().color(role).name());
    }

    WindowsWorld w;
};

// --- measurement window

TEST_F(Windows, MeasurementPanelFollowsTheModel) {
    struct Case {
        std::string_view maker, model;
        int n, twips;
        bool promSocket;
        const char *name, *colour, *duplicate;
    };
    const Case cases[] = {
        {kMars, "ME111", 3, 6735, true, "Mars", "#0000ff", "Duplicate Segments"},
        {kCoinControls, "435", 5, 10095, false, "Coin Controls", "#008000", "Clone Coin Mech"},
        {kNri, "G13-6000", 6, 11775, false, "NRI", "#ff0000", "Clone Coin Mech"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        openMeasure(c.maker, c.model);
        EXPECT_EQ(flowCalls().take(), "initialise0");
        EXPECT_TRUE(w.measure.isVisible());
        w.measure.setBackButton(445, true);
        EXPECT_EQ(W::label(w.measure, "lblManufacturer"), c.name);
        EXPECT_EQ(W::label(w.measure, "lblMechType"), c.model);
        EXPECT_EQ(colour(w.measure, "lblManufacturer", QPalette::WindowText), c.colour);
        EXPECT_EQ(W::caption(w.measure, "chkduplicate"), c.duplicate);
        EXPECT_EQ(W::control(w.measure, "frmMeasurements")->property("widthTwips").toInt(),
                  c.twips);
        QApplication::processEvents();
        std::set<int> widths;
        for (int p = 0; p < kMaxParameters; ++p) {
            QWidget* frame = W::control(w.measure, "frmParameter_" + std::to_string(p));
            EXPECT_EQ(frame->isVisible(), p < c.n) << p;
            if (frame->isVisible()) widths.insert(frame->width());
        }
        EXPECT_LE(*widths.rbegin() - *widths.begin(), 1) << "frames of different width";
        for (const char* frame : {"frmPromSize", "frmPromSegments"}) {
            EXPECT_EQ(W::control(w.measure, frame)->isVisible(), c.promSocket);
        }
        w.measure.closeWindow();
    }
}

TEST_F(Windows, StatisticsShowACoinOrASlug) {
    openMeasure(kMars, "ME111");
    w.state.item.limitOrigins[6] = {LimitSource::reference, 5, "05"};
    w.showItem(true);
    EXPECT_EQ(W::label(w.measure, "lblReading_1"), " 1826");
    EXPECT_EQ(W::label(w.measure, "lblMean_2"), "2125.2");
    EXPECT_EQ(W::label(w.measure, "lblSDL_0"), "4.8");
    EXPECT_EQ(W::label(w.measure, "lblSDU_0"), "12.3");
    EXPECT_EQ(W::label(w.measure, "lblLow_0"), " 1497");
    EXPECT_EQ(W::label(w.measure, "lblHigh_2"), " 2151");
    EXPECT_EQ(W::label(w.measure, "lblOffset_0"), "-2");
    EXPECT_EQ(W::label(w.measure, "lblLimit_5"), " 2150");
    EXPECT_EQ(W::label(w.measure, "lblSrc_0"), "2*SD");
    EXPECT_EQ(W::label(w.measure, "lblSrc_5"), "Ref 05");
    EXPECT_EQ(W::label(w.measure, "lblSrcHead"), "Limit Source");
    EXPECT_EQ(W::label(w.measure, "lblLimitHead"), "PROM Limits");
    EXPECT_FALSE(W::control(w.measure, "lblSeparation_0")->isVisible());

    const int height = w.measure.sizeHint().height();
    w.showItem(false);
    EXPECT_EQ(W::label(w.measure, "lblSrcHead"), "Slug Separation");
    EXPECT_EQ(W::label(w.measure, "lblLimitHead"), "Slug 3SD Limits");
    EXPECT_EQ(W::label(w.measure, "lblSeparation_2"), " 2");
    for (const char* gone : {"lblSrc_0", "lblOffset_3", "lblOffsetHead"}) {
        EXPECT_FALSE(W::control(w.measure, gone)->isVisible()) << gone;
    }
    EXPECT_EQ(w.measure.sizeHint().height(), height) << "the panel jumps between layouts";
}

TEST_F(Windows, RowsOfThePanelAreLevel) {
    openMeasure(kNri, "G13-6000");
    const auto middle = [this](const std::string& name) {
        const QWidget* control = W::control(w.measure, name);
        return control->mapTo(&w.measure, control->rect().center()).y();
    };
    for (const bool coin : {true, false}) {
        w.showItem(coin);
        QApplication::processEvents();
        const std::pair<const char*, const char*> rows[] = {
            {"lblReadingHead", "lblReading_"}, {"lblMeanHead", "lblMean_"},
            {"lblSDHead", "lblSDU_"},          {"lblExtremesHead", "lblLow_"},
            {"lblLimitHead", "lblLimit_"},     {"lblSrcHead", coin ? "lblSrc_" : "lblSeparation_"}};
        for (const auto& [head, value] : rows) {
            for (const char* member : {"0", "5"}) {
                EXPECT_NEAR(middle(head), middle(std::string(value) + member), 1) << head;
            }
        }
    }
}

TEST_F(Windows, PromChoicesAndTargetLists) {
    openMeasure(kMars, "ME111");
    flowCalls().take();
    // Segments 3 and 4 do not exist in a 1K PROM: grey, and a click leaves them so.
    EXPECT_EQ(segmentStates(), "x-??");
    W::click(w.measure, "chkSegment_2");
    EXPECT_EQ(flowCalls().take(), "segments1000");
    EXPECT_EQ(segmentStates(), "x-??");
    W::click(w.measure, "chkSegment_1");
    EXPECT_EQ(flowCalls().take(), "segments1100");

    W::click(w.measure, "opt2K");
    EXPECT_EQ(flowCalls().take(), "size1");
    w.state.prom.promSizeCode = 1;
    w.state.prom.segmentSelected.fill(true);
    w.measure.showPromChoices();
    w.measure.showTargetLists();
    EXPECT_EQ(segmentStates(), "xxxx");
    auto* segments = W::find<QComboBox>(w.measure, "cmbSegment");
    segments->setCurrentIndex(2);
    emit segments->activated(2);
    EXPECT_EQ(list("cmbCoin"), "A3|B3|C3|D3|E3|F3");
    EXPECT_EQ(list("cmbOutput").substr(0, 21), "         1|         2");

    w.mars.twoSegments = true;
    w.measure.showTargetLists();
    EXPECT_EQ(list("cmbSegment"), "1|2");
}

TEST_F(Windows, TheLinesFollowTheCoinThatIsClicked) {
    openMeasure(kNri, "G40-0000");
    auto* coins = W::find<QComboBox>(w.measure, "cmbCoin");
    const auto linesAfter = [&](int entry) {
        coins->setCurrentIndex(entry);
        emit coins->activated(entry);
        return w.measure.chosenOutputLine() * 10 + w.measure.chosenInhibitLine();
    };
    EXPECT_EQ(linesAfter(2), 11) << "a model without lines";
    w.nri.panel.lines = true;
    EXPECT_EQ(linesAfter(2), 33);
    EXPECT_EQ(linesAfter(11), 66);
    EXPECT_EQ(linesAfter(12), 66) << "no line is coin 13's";
    W::find<QComboBox>(w.measure, "cmbOutput")->setCurrentIndex(4);
    EXPECT_EQ(w.measure.chosenOutputLine(), 5);
}

TEST_F(Windows, TheWizardPanelTakesTheFocusAndDigitsOnly) {
    openMeasure(kMars, "ME181");
    flowCalls().take();
    QApplication::processEvents();
    W::control(w.measure, "cmdSpecialUtilities")->setFocus();
    flowCalls().duringCall = [this] {
        w.measure.enableRunButtons(false);
        w.measure.setBackButton(445, false);
        w.measure.showWizardPanel(true);
    };
    W::click(w.measure, "cmdSpecialUtilities");
    flowCalls().duringCall = {};
    EXPECT_EQ(w.measure.focusWidget(), W::control(w.measure, "cmbCoin"));
    w.measure.close();
    EXPECT_EQ(flowCalls().take(), "wizards") << "the X is no way out of the panel";
    W::click(w.measure, "cmdCancelWizards");
    EXPECT_EQ(flowCalls().take(), "cancelWizards");

    // Only digits get into the coin value.
    w.measure.showWizardChoices({.coinValue = true});
    auto* value = W::find<QLineEdit>(w.measure, "txtCoinValue");
    value->selectAll();
    W::type(value, QStringLiteral("-2x5,"));
    EXPECT_EQ(w.measure.coinValueText(), "25");
}

TEST_F(Windows, BackAndTheFramesXOfTheMeasurementWindow) {
    openMeasure(kMars, "ME111");
    flowCalls().take();
    w.measure.close();
    EXPECT_EQ(flowCalls().take(), "back") << "the X is the back button";
    EXPECT_TRUE(w.measure.isVisible());

    // Another action is waiting: neither the X nor the button gets through.
    w.actions.run(495, [this] {
        w.measure.close();
        W::click(w.measure, "cmdBack");
        W::click(w.measure, "cmdRunCoinset");
        EXPECT_FALSE(W::control(w.measure, "cmdRunCoinset")->isEnabled());
        EXPECT_EQ(flowCalls().take(), "");
        // A run is waiting: both are Cancel Operation.
        w.state.gather.runActive = true;
        w.measure.setBackButton(407, true);
        EXPECT_EQ(W::caption(w.measure, "cmdBack"), "Cancel Operation");
        W::click(w.measure, "cmdBack");
        w.measure.close();
        EXPECT_EQ(flowCalls().take(), "back back");
        w.measure.setBackButton(407, false);  // pressed once already
        w.measure.close();
        EXPECT_EQ(flowCalls().take(), "");
        w.state.gather.runActive = false;
    });
    EXPECT_TRUE(W::control(w.measure, "cmdRunCoinset")->isEnabled());
}

TEST_F(Windows, TheFocusNeverWaitsOnCancelOperation) {
    w.actions.run(430, [this] {
        openMeasure(kMars, "ME111");
        QApplication::processEvents();
        EXPECT_EQ(w.measure.focusWidget(), &w.measure);
    });
    EXPECT_EQ(w.measure.focusWidget(), W::control(w.measure, "cmdRunCoinset"));
    flowCalls().duringCall = [this] {
        QApplication::processEvents();
        EXPECT_NE(w.measure.focusWidget(), W::control(w.measure, "cmdBack"));
    };
    W::click(w.measure, "cmdRunCoinset");
    EXPECT_EQ(w.measure.focusWidget(), W::control(w.measure, "cmdRunCoinset"));
}

TEST_F(Windows, ClosingTheMeasurementWindowResetsItsChoices) {
    openMeasure(kMars, "ME111");
    w.state.prom.promSizeCode = 1;
    W::click(w.measure, "chkduplicate");
    W::click(w.measure, "chkLog");
    EXPECT_TRUE(w.state.prom.duplicateSegments && w.measure.duplicateTicked());
    EXPECT_TRUE(w.measure.logResultsTicked());
    bool mainShown = false;
    w.measure.backToMain = [&] { mainShown = true; };
    w.measure.backToMainWindow();
    EXPECT_TRUE(mainShown);
    EXPECT_FALSE(w.measure.isVisible());
    EXPECT_FALSE(w.state.prom.duplicateSegments || w.measure.duplicateTicked());
    EXPECT_FALSE(w.measure.logResultsTicked());
    EXPECT_EQ(w.state.prom.promSizeCode, 0);
    EXPECT_EQ(W::label(w.measure, "lblTitle"), "");
}

// --- limits window

TEST_F(Windows, LimitsGridFollowsTheLayout) {
    struct Case {
        std::string_view maker, model;
        std::size_t boxes, slugLabels;
        int rows;
        bool promSocket;
        const char *display, *program;
    };
    const Case cases[] = {
        {kMars, "ME111", 36, 36, 6, true, "Display PROM Segment", "Program New PROM"},
        {kCoinControls, "435", 80, 60, 8, false, "Display EEPROM Segment", "Program EEPROM"},
        {kNri, "G13-6000", 72, 72, 6, false, "Display EEPROM Segment", "Program EEPROM"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.model);
        openLimits(c.maker, c.model);
        std::size_t boxes = 0;
        std::size_t slugs = 0;
        for (const QLineEdit* box : w.limits.findChildren<QLineEdit*>()) boxes += box->isVisible();
        for (const QLabel* label : w.limits.findChildren<QLabel*>()) {
            slugs += label->isVisible() && label->objectName().startsWith(u"lblSlugLimits");
        }
        EXPECT_EQ(boxes, c.boxes);
        EXPECT_EQ(slugs, c.slugLabels);
        EXPECT_FALSE(W::control(w.limits, "lblCoin_" + std::to_string(c.rows - 1))->isHidden());
        EXPECT_EQ(W::control(w.limits, "lblAcceptance_7")->isVisible(), c.rows == 8);
        for (const char* frame : {"frmPromSize", "frmPromType"}) {
            EXPECT_EQ(W::control(w.limits, frame)->isVisible(), c.promSocket);
        }
        EXPECT_EQ(fromQt(W::find<QGroupBox>(w.limits, "frmDisplay")->title()), c.display);
        EXPECT_EQ(W::caption(w.limits, "cmdProgPROM"), c.program);
        EXPECT_TRUE(W::control(w.limits, "optSeg_1")->isEnabled());
        EXPECT_FALSE(W::control(w.limits, "optSeg_2")->isEnabled());
        EXPECT_EQ(W::label(w.limits, "Label10_5"), "Slug 6");
    }
}

TEST_F(Windows, ColoursOfLimitsAndSlugs) {
    openLimits(kMars, "ME111");
    EXPECT_EQ(colour(w.limits, "txtProm_0", QPalette::Base), "#ffff00");
    EXPECT_EQ(colour(w.limits, "txtProm_29", QPalette::Base), "#00ffff");
    EXPECT_EQ(colour(w.limits, "txtProm_30", QPalette::Base), "#ffffff");
    EXPECT_EQ(colour(w.limits, "lblSlugLimits_6", QPalette::Window), "#00ffff");
    w.limits.clearColours();
    const auto face = fromQt(QApplication::palette().color(QPalette::Button).name());
    EXPECT_EQ(colour(w.limits, "txtProm_0", QPalette::Base), "#ffffff");
    EXPECT_EQ(colour(w.limits, "lblSlugLimits_6", QPalette::Window), face);
}

TEST_F(Windows, OnlyTypingCountsAsAnEdit) {
    openLimits(kMars, "ME111");
    EXPECT_FALSE(w.state.limits.limitsEdited);
    for (const char* text : {"-5", "12.5", "5000"}) {
        w.state.limits.limitsEdited = false;
        w.limits.setLimit(0, 1, "");
        EXPECT_FALSE(w.state.limits.limitsEdited);
        W::type(W::control(w.limits, "txtProm_0"), QString::fromLatin1(text));
        EXPECT_EQ(w.limits.limitText(0, 1), text);
        EXPECT_TRUE(w.state.limits.limitsEdited);
    }
}

TEST_F(Windows, TheValidatorTestIsOfferedAfterAProgrammingOnly) {
    openLimits(kMars, "ME111");
    QWidget* test = W::control(w.limits, "cmdValtest");
    EXPECT_FALSE(test->isEnabled());
    int tests = 0;
    w.limits.validatorTest = [&] { ++tests; };
    w.limits.enableValidatorTest(true);
    W::click(w.limits, "cmdValtest");
    EXPECT_EQ(tests, 1);
    w.limits.layOut(w.layoutFor(w.mars.look()));
    EXPECT_FALSE(test->isEnabled()) << "a new layout has programmed nothing yet";
}

TEST_F(Windows, LeavingTheLimitsWindow) {
    int backs = 0;
    w.limits.back = [&] { ++backs; };
    openLimits(kMars, "ME111");
    w.state.prom.target = TargetProm::bipolar;
    w.actions.run(1219, [this] { w.limits.close(); });
    EXPECT_TRUE(w.limits.isVisible()) << "the X is ignored while an action runs";
    EXPECT_EQ(backs, 0);
    w.limits.close();
    EXPECT_FALSE(w.limits.isVisible());
    EXPECT_EQ(backs, 1);
    EXPECT_EQ(w.state.prom.target, TargetProm::vantorE1);
    w.actions.run(1219, [this] { openLimits(kMars, "ME111"); });
    EXPECT_EQ(w.limits.focusWidget(), W::control(w.limits, "optSeg_0"));
    W::click(w.limits, "cmdBack1");
    EXPECT_EQ(backs, 2);
}

// --- progress window

TEST_F(Windows, ProgressWindow) {
    w.progress.openProgress("Programming", "PROM PROGRAMMING IN PROGRESS", true);
    w.progress.showSegment(2);
    w.progress.showProgress(11);
    EXPECT_TRUE(w.progress.isVisible());
    EXPECT_EQ(W::label(w.progress, "lblSeg"), "Segment");
    EXPECT_EQ(W::label(w.progress, "lblSegment"), " 2");
    EXPECT_EQ(W::find<QProgressBar>(w.progress, "prgProg")->value(), 11);
    EXPECT_EQ(W::find<QProgressBar>(w.progress, "prgProg")->maximum(), 16);
    w.progress.close();
    EXPECT_TRUE(w.progress.isVisible()) << "only the flow closes it";
    w.progress.openProgress("EEPROM Read", "READING EEPROM IN PROGRESS", false);
    EXPECT_FALSE(W::control(w.progress, "lblSeg")->isVisible());
    EXPECT_EQ(fromQt(w.progress.windowTitle()), "EEPROM Read");
    EXPECT_EQ(W::find<QProgressBar>(w.progress, "prgProg")->value(), 0);
    w.progress.closeProgress();
    EXPECT_FALSE(w.progress.isVisible());
}

// --- all windows

TEST_F(Windows, LongerLanguagesFit) {
    const std::pair<std::string_view, std::string_view> models[] = {
        {kMars, "ME111"}, {kCoinControls, "435"}, {kNri, "G13-6000"}};
    for (const std::string language : {"English", "longer", "Deutsch", "Francais", "Espa\xF1ol"}) {
        if (language == "longer") {
            w.speakLongLanguage();
        } else {
            w.speak(language);
        }
        for (const auto& [maker, model] : models) {
            SCOPED_TRACE(std::string(model) + " " + language);
            openMeasure(maker, model);
            w.measure.setBackButton(445, true);
            EXPECT_EQ(W::cutTexts(w.measure), "");
            w.measure.showWizardChoices({.coinValue = true, .lines = maker == kNri});
            w.measure.showWizardPanel(true);
            EXPECT_EQ(W::cutTexts(w.measure), "");
            w.measure.closeWindow();
            openLimits(maker, model);
            EXPECT_EQ(W::cutTexts(w.limits), "");
            w.limits.closeWindow();
        }
    }
}

TEST_F(Windows, TheTabKeyReachesEveryControlInReadingOrder) {
    openMeasure(kMars, "ME111");
    openLimits(kMars, "ME111");
    for (QWidget* window : std::initializer_list<QWidget*>{&w.measure, &w.limits}) {
        QStringList visited;
        int lastIndex = -1;
        for (QWidget* next = window->nextInFocusChain(); next != window;
             next = next->nextInFocusChain()) {
            if (!next->isVisible() || !(next->focusPolicy() & Qt::TabFocus)) continue;
            visited << next->objectName();
            if (next->objectName().startsWith(u"txtProm_")) {
                const int index = next->objectName().mid(8).toInt();
                EXPECT_EQ(index, lastIndex + 1);
                lastIndex = index;
            }
        }
        for (const QWidget* control : window->findChildren<QWidget*>()) {
            if (control->isVisible() && (control->focusPolicy() & Qt::TabFocus)) {
                EXPECT_TRUE(visited.contains(control->objectName()))
                    << fromQt(control->objectName());
            }
        }
        EXPECT_TRUE(visited.last().startsWith(u"cmdBack")) << fromQt(visited.join(u' '));
    }
}

TEST_F(Windows, TextsAreShownPlainly) {
    for (QWidget* window : std::initializer_list<QWidget*>{&w.measure, &w.limits, &w.progress}) {
        for (const QLabel* label : window->findChildren<QLabel*>()) {
            EXPECT_EQ(label->textFormat(), Qt::PlainText) << fromQt(label->objectName());
        }
    }
}

}  // namespace
}  // namespace vantor::test
