#pragma once

#include <QComboBox>
#include <QFontMetricsF>
#include <QPlainTextEdit>
#include <QScrollBar>

#include "WindowsWorld.h"
#include "link/frmMemory.h"

namespace vantor::test {

/// One of the memory utilities windows over a memory that needs no box.
class MemoryWindowTest : public testing::Test {
  protected:
    using W = WindowsWorld;

    /// Once the window is made.
    void look(FrmMemory& window) { window_ = &window; }

    /// Runs `check` in each language that there is a file of.
    void inEveryLanguage(const std::function<void()>& check) {
        for (const std::string language : {"English", "Deutsch", "Francais", "Espa\xF1ol"}) {
            SCOPED_TRACE(language);
            w.speak(language);
            check();
        }
    }
    void choose(int view) {
        auto* box = W::find<QComboBox>(*window_, "cmbDisplay");
        box->setCurrentIndex(view);
        emit box->activated(view);
        QApplication::processEvents();
    }
    QPlainTextEdit* pane(const char* name = "lblPROM") {
        return W::find<QPlainTextEdit>(*window_, name);
    }
    /// All lines of a pane show at once, in fixed pitch. (Some fonts have it without saying so.)
    void expectWhole(int lines, const char* name = "lblPROM") {
        const QFontMetricsF metrics(pane(name)->font());
        EXPECT_EQ(metrics.horizontalAdvance(QLatin1Char('i')),
                  metrics.horizontalAdvance(QLatin1Char('W')));
        EXPECT_EQ(pane(name)->blockCount(), lines);
        EXPECT_EQ(pane(name)->verticalScrollBar()->maximum(), 0) << "not all of it shows";
        EXPECT_EQ(pane(name)->horizontalScrollBar()->maximum(), 0) << "not all of it shows";
    }
    void expectClosedAndEmpty() {
        EXPECT_FALSE(window_->isVisible());
        EXPECT_EQ(pane()->toPlainText(), QString());
        EXPECT_EQ(W::label(*window_, "lblmechType"), "");
    }

    WindowsWorld w;

  private:
    FrmMemory* window_ = nullptr;
};

}  // namespace vantor::test
