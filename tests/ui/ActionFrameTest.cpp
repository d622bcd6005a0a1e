#include "platform/qt/ActionFrame.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ScriptedPrompts.h"
#include "catalogue/SessionState.h"

namespace vantor::test {
namespace {

class ActionFrameTest : public ::testing::Test {
  protected:
    ActionFrameTest() {
        auto* layout = new QVBoxLayout(&window);
        for (QWidget* control : std::initializer_list<QWidget*>{&first, &exit, &field}) {
            layout->addWidget(control);
        }
        frame.adopt(&window);
        frame.allowWhileBusy(&exit);
        window.show();
        window.activateWindow();
        QCoreApplication::processEvents();
    }

    SessionState state;
    ScriptedPrompts prompts;
    ErrorReporter errors{state.messages, prompts};
    int endings = 0;
    ActionFrame frame{errors, [this] { ++endings; }};
    QWidget window;
    QPushButton exit{QStringLiteral("Exit")};
    QPushButton first{QStringLiteral("Program")};
    QLineEdit field;
};

TEST_F(ActionFrameTest, OneActionAtATimeAndOnlyTheAllowedGetThrough) {
    std::vector<bool> changes;
    frame.onBusyChange([&](bool busy) { changes.push_back(busy); });
    bool inner = false, through = false;
    EXPECT_TRUE(frame.run(800, [&] {
        EXPECT_TRUE(frame.busy());
        EXPECT_FALSE(first.isEnabled());
        EXPECT_FALSE(field.isEnabled());
        EXPECT_TRUE(exit.isEnabled());
        EXPECT_FALSE(frame.run(801, [&] { inner = true; }));
        frame.runThrough(802, [&] { through = true; });
        EXPECT_TRUE(frame.busy());
    }));
    EXPECT_FALSE(inner);
    EXPECT_TRUE(through);
    EXPECT_FALSE(frame.busy());
    EXPECT_TRUE(first.isEnabled());
    EXPECT_EQ(changes, (std::vector<bool>{true, false}));
}

TEST_F(ActionFrameTest, WhatAnActionEnablesOrDisablesHoldsAfterIt) {
    frame.setEnabled(&field, false);
    frame.run(800, [&] {
        frame.setEnabled(&first, false);
        frame.setEnabled(&field, true);
        EXPECT_FALSE(field.isEnabled());
    });
    EXPECT_FALSE(first.isEnabled());
    EXPECT_TRUE(field.isEnabled());
}

TEST_F(ActionFrameTest, FailuresAreReportedAndNothingEscapes) {
    frame.run(805, [] { throw std::out_of_range("subscript"); });
    EXPECT_TRUE(prompts.told(" 805 "));
    EXPECT_TRUE(prompts.told("subscript - 9"));
    frame.run(806, [] { throw 7; });
    EXPECT_TRUE(prompts.told(" 806 "));
    EXPECT_FALSE(frame.busy());
    EXPECT_EQ(endings, 0);
}

TEST_F(ActionFrameTest, TheEndIsAnnouncedOnceAndOnlyWhenEveryFrameHasUnwound) {
    frame.runThrough(815, [&] {
        frame.run(805, [&] {
            frame.runThrough(815, [] { throw ProgramEnded{}; });
            EXPECT_EQ(endings, 0);
            throw ProgramEnded{};
        });
        EXPECT_EQ(endings, 0);
    });
    EXPECT_EQ(endings, 1);
}

TEST_F(ActionFrameTest, TheFocusNeverFallsOnWhatStaysEnabled) {
    first.setFocus();
    ASSERT_TRUE(first.hasFocus());
    frame.run(800, [&] { EXPECT_FALSE(exit.hasFocus()); });
    EXPECT_TRUE(first.hasFocus());
    // An action chooses where its end leaves the technician.
    frame.run(800, [&] { frame.setFocus(&field); });
    EXPECT_TRUE(field.hasFocus());
    // Whoever moves on meanwhile is not called back.
    frame.run(800, [&] { exit.setFocus(); });
    EXPECT_TRUE(exit.hasFocus());
}

}  // namespace
}  // namespace vantor::test
