#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <cctype>

#include "FakeFlows.h"
#include "LinkWorld.h"
#include "QuietFamily.h"
#include "catalogue/LanguageFile.h"
#include "catalogue/Text.h"
#include "limits/frmPROM.h"
#include "mars/frmProgramming.h"
#include "measure/frmCoinMeasure1.h"
#include "platform/qt/ActionFrame.h"
#include "platform/qt/QtText.h"

namespace vantor::test {

/// A maker's family as far as windows ask for it.
class LookOnlyFamily final : public QuietFamily {
  public:
    LookOnlyFamily(std::string_view code, FamilyLook look) : QuietFamily(code), look_(look) {}
    [[nodiscard]] FamilyLook look() const override { return look_; }
    [[nodiscard]] bool twoSegmentProm() const override { return twoSegments; }
    [[nodiscard]] WizardPanel wizardPanel() const override { return panel; }

    bool twoSegments = false;
    WizardPanel panel;

  private:
    FamilyLook look_;
};

/// The three windows of a session with sample state, nothing behind them.
struct WindowsWorld {
    LinkWorld base;
    SessionState& state = base.state;
    int ended = 0;
    ActionFrame actions{base.errors, [this] { ++ended; }};
    LookOnlyFamily mars{kMars,
                        {.name = "Mars",
                         .colour = 0x0000FF,
                         .duplicateCaption = 548,
                         .displayCaption = 1226,
                         .programCaption = 1227,
                         .utilitiesCaption = 1228,
                         .promSocket = true}};
    LookOnlyFamily nri{kNri, {.name = "NRI", .colour = 0xFF0000}};
    LookOnlyFamily cc{kCoinControls, {.name = "Coin Controls", .colour = 0x008000}};
    FrmCoinMeasure1 measure{state, actions, base.families, base.errors};
    FrmPROM limits{state, actions, base.errors};
    FrmProgramming progress{state};
    LimitsReview review{state, base.link, base.families, base.prompts, base.errors, limits};
    MeasureFlows flows{
        {state, base.link, base.families, base.prompts, base.errors, measure, review, limits}};

    WindowsWorld() {
        base.families.add(mars);
        base.families.add(nri);
        base.families.add(cc);
        measure.setFlows(flows);
        limits.setReview(review);
        flowCalls() = {};
    }

    template <class Control>
    static Control* find(QWidget& window, const std::string& name) {
        auto* control = window.findChild<Control*>(QString::fromStdString(name));
        if (!control) throw std::runtime_error("no control " + name);
        return control;
    }
    static QWidget* control(QWidget& window, const std::string& name) {
        return find<QWidget>(window, name);
    }
    static std::string label(QWidget& window, const std::string& name) {
        return fromQt(find<QLabel>(window, name)->text());
    }
    static std::string caption(QWidget& window, const std::string& name) {
        return fromQt(find<QAbstractButton>(window, name)->text());
    }
    static void click(QWidget& window, const std::string& name) {
        find<QAbstractButton>(window, name)->click();
    }
    static void type(QWidget* box, const QString& text) {
        for (const QChar& letter : text) {
            QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
            QApplication::sendEvent(box, &press);
        }
    }

    /// A language that there is a file of.
    void speak(const std::string& language) {
        state.messages.language = language;
        loadLanguage(state.messages, std::filesystem::path(VANTOR_SOURCE_DIR) / "data",
                     base.prompts, base.errors);
    }
    /// A language whose texts are about 40 % longer than English.
    void speakLongLanguage() {
        for (const EnglishText& row : englishMessages()) {
            state.messages.setLoaded(row.id, lengthened(row.text));
        }
        state.messages.languageTableLoaded = true;
        state.messages.language = "Deutsch";
    }

    static std::string lengthened(std::string_view text) {
        std::string result;
        std::size_t letters = 0;
        for (const char c : text) {
            result += c;
            if (std::isalpha(static_cast<unsigned char>(c)) && ++letters % 5 % 3 == 2) {
                result += char(std::tolower(static_cast<unsigned char>(c)));
            }
        }
        return result;
    }

    /// Names of visible texts that get less room than they need.
    static std::string cutTexts(QWidget& window) {
        QApplication::processEvents();
        std::string cut;
        for (QWidget* control : window.findChildren<QWidget*>()) {
            const bool text =
                qobject_cast<QLabel*>(control) || qobject_cast<QAbstractButton*>(control);
            if (!text || !control->isVisible()) continue;
            if (control->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored) continue;
            const auto* label = qobject_cast<QLabel*>(control);
            const QSize need =
                label && label->wordWrap() ? control->minimumSizeHint() : control->sizeHint();
            if (control->width() < need.width() || control->height() < need.height()) {
                cut += fromQt(control->objectName()) + " ";
            }
        }
        for (QGroupBox* box : window.findChildren<QGroupBox*>()) {
            const int title = box->fontMetrics().horizontalAdvance(box->title());
            if (box->isVisible() && box->width() < title) cut += fromQt(box->objectName()) + " ";
        }
        return cut;
    }

    /// Sample statistics of a half-gathered item.
    void fillItem() {
        const int n = state.n();
        for (int p = 1; p <= n; ++p) {
            state.item.mean[p] = 1203.4F + 307.25F * static_cast<float>(p);
            state.item.sdLower[p] = 4.75F;
            state.item.sdUpper[p] = 12.3F;
            state.item.lowest[p] = 1187 + 310 * p;
            state.item.highest[p] = 1221 + 310 * p;
            state.item.slugSeparation[p] = 2;
        }
        for (int i = 1; i <= 2 * n; ++i) {
            state.item.limitAdjust[i] = i % 2 == 1 ? -2 : 2;
            state.item.limits[i] = 1190 + 160 * i;
            state.item.limitOrigins[i] = {LimitSource::twoSd, 0, {}};
        }
        state.coinset.title = "Fictional Coins, large and small";
        state.coinset.referenceCode = "FC001";
        state.coinset.version = "1.0";
    }

    void showItem(bool coin) {
        measure.showMech();
        measure.showPromChoices();
        measure.showTargetLists();
        measure.showCoinset();
        measure.showItem(coin ? "A1" : "Slug", coin ? "10 Crowns" : "Brass washer");
        measure.showStatistics(coin);
        measure.showLimitSources();
        measure.showNumber(" 7");
        for (int p = 1; p <= state.n(); ++p) measure.showReading(p, spacedNumber(1204 + 311 * p));
    }

    [[nodiscard]] LimitsLayout layoutFor(const FamilyLook& look) const {
        LimitsLayout layout;
        layout.promSocket = look.promSocket;
        layout.displayCaption = look.displayCaption;
        layout.programCaption = look.programCaption;
        layout.utilitiesCaption = look.utilitiesCaption;
        layout.mechType = state.mech.mechType;
        layout.promSize = "2K";
        for (int p = 0; p < state.n(); ++p) {
            layout.paramNames.push_back(state.mech.info.paramNames.at(static_cast<std::size_t>(p)));
        }
        for (int row = 0; row < state.mech.info.channelsPerSegment; ++row) {
            layout.rowHeads.push_back(state.msgText(1229) + char('A' + row) + "1");
        }
        layout.segmentEnabled = {true, true, false, false};
        return layout;
    }

    /// Rows of limits, two coins that overlap and a slug that gets through.
    void fillLimits() {
        const int rows = state.mech.info.channelsPerSegment;
        for (int row = 0; row < rows; ++row) {
            for (int column = 1; column <= 2 * state.n(); ++column) {
                limits.setLimit(row, column, std::to_string(300 * row + 37 * column));
            }
            limits.setAcceptance(row, row == 2 ? "???" : "99.7");
        }
        for (int slug = 1; slug <= kMostSlugs; ++slug) {
            for (int column = 1; column <= 2 * state.n(); ++column) {
                if (slug < 3) limits.setSlugLimit(slug, column, std::to_string(1000 + column));
            }
            limits.setRejection(slug, slug < 3 ? "96.1" : "0.0");
        }
        limits.colourRow(0, kYellow);
        limits.colourRow(1, kYellow);
        limits.colourRow(4, kCyan);
        limits.colourSlug(2, kCyan);
    }
};

}  // namespace vantor::test
