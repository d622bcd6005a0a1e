// The toolkit's side of the world interfaces.

#include <gtest/gtest.h>

#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTemporaryDir>
#include <vector>

#include "Hands.h"
#include "platform/ProgramEnded.h"
#include "platform/VirtualEventLoop.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/qt/QtPrompts.h"
#include "platform/qt/QtServices.h"

namespace vantor::test {
namespace {

using std::chrono::milliseconds;

TEST(QtEventLoopTest, CallsInTheOrderOfTheirTimesAndForgetsCancelledOnes) {
    QtEventLoop loop;
    std::string order;
    const auto note = [&](char c) { return [&order, c] { order += c; }; };
    Micros begun{};
    std::vector<EventLoop::TimerId> calls;
    do {
        // A machine that stalls while the calls are placed puts their times in another order.
        for (const auto call : calls) loop.cancel(call);
        begun = loop.now();
        calls = {loop.callAfter(Micros(4300), note('d')),
                 loop.callAfter(milliseconds(2), note('b')),
                 loop.callAfter(milliseconds(1), note('x')), loop.callAfter(Micros(-5), note('a')),
                 loop.callAfter(milliseconds(3), note('c'))};
    } while (loop.now() - begun > Micros(800));
    loop.cancel(calls[2]);
    loop.cancel(calls[2] + 1000);
    while (order.size() < 4) loop.pump();
    EXPECT_EQ(order, "abcd");
    EXPECT_GE(loop.now() - begun, Micros(4300)) << "called early";
}

TEST(QtEventLoopTest, ACallThatWaitsLeavesTheOthersGoingAndNothingEscapes) {
    QtEventLoop loop;
    std::string order;
    loop.callAfter(Micros(0), [&] {
        order += '(';
        while (order.size() < 3) loop.pump();
        order += ')';
    });
    loop.callAfter(Micros(0), [&] {
        order += '1';
        throw ProgramEnded{};
    });
    loop.callAfter(milliseconds(1), [&] { order += '2'; });
    while (order.size() < 4) loop.pump();
    EXPECT_EQ(order, "(12)");
}

struct AnswerCase {
    PromptButtons buttons;
    int key;  ///< pressed in the fresh box; 0 = the frame's X
    Answer expected;
};

class QtPromptsTest : public ::testing::Test {
  protected:
    QtPromptsTest() {
        loop.setCompanion([] { QCoreApplication::processEvents(); });
        prompts.setEnding([this] { return ending; });
    }
    /// Acts once the box or dialog of this name is open.
    void whenOpen(const std::string& name, std::function<void()> act) {
        hands.when(
            name, [name] { return windowNamed(name) != nullptr; }, std::move(act));
        hands.start(std::chrono::minutes(1), [this] { ending = true; });
    }
    VirtualEventLoop loop;
    QtPrompts prompts{loop};
    Hands hands{loop};
    bool ending = false;
};

void pressKey(QWidget* widget, int key) {
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &down);
    QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &up);
}

TEST_F(QtPromptsTest, KeysAndTheFrameAnswerAsPromised) {
    const std::vector<AnswerCase> cases = {
        {PromptButtons::ok, Qt::Key_Return, Answer::ok},
        {PromptButtons::ok, Qt::Key_Escape, Answer::ok},
        {PromptButtons::ok, 0, Answer::ok},
        {PromptButtons::okCancel, Qt::Key_Return, Answer::ok},
        {PromptButtons::okCancel, Qt::Key_Escape, Answer::cancel},
        {PromptButtons::okCancel, 0, Answer::cancel},
        {PromptButtons::yesNoCancel, Qt::Key_Return, Answer::yes},
        // Cancel clears something there, which takes more than Escape: the box stays.
        {PromptButtons::yesNoCancel, Qt::Key_Escape, Answer::no},
        {PromptButtons::yesNoCancel, 0, Answer::no},
    };
    for (const AnswerCase& row : cases) {
        whenOpen("prompt", [&row] {
            QMessageBox* open = box("question");
            if (row.key == 0) {
                open->close();
            } else {
                pressKey(open, row.key);
            }
            if (row.expected == Answer::no) press(open, QMessageBox::No);
        });
        const Answer answer =
            prompts.ask({.title = "T", .text = "question", .buttons = row.buttons});
        EXPECT_EQ(static_cast<int>(answer), static_cast<int>(row.expected))
            << static_cast<int>(row.buttons) << " key " << row.key;
    }
}

TEST_F(QtPromptsTest, TextIsShownAsItIs) {
    whenOpen("prompt", [] {
        QMessageBox* open = box("<b>");
        EXPECT_EQ(open->text().toStdString(), "<b>R&D</b> \xC3\xB1\nsecond");
        EXPECT_EQ(open->textFormat(), Qt::PlainText);
        EXPECT_EQ(open->icon(), QMessageBox::Warning);
        press(open, QMessageBox::No);
    });
    EXPECT_EQ(prompts.ask({.title = "T",
                           .text = "<b>R&D</b> \xF1\r\nsecond",
                           .icon = PromptIcon::exclamation,
                           .buttons = PromptButtons::yesNoCancel}),
              Answer::no);
}

TEST_F(QtPromptsTest, AnEndingProgramClosesBoxesAndFileDialogs) {
    const auto end = [this] { ending = true; };
    whenOpen("prompt", end);
    EXPECT_THROW(prompts.ask({.title = "T", .text = "question"}), ProgramEnded);
    EXPECT_EQ(windowNamed("prompt"), nullptr);
    ending = false;
    whenOpen("filePrompt", end);
    EXPECT_THROW(prompts.askFile({.title = "T", .pattern = "*.cst", .startFolder = "/"}),
                 ProgramEnded);
    EXPECT_EQ(windowNamed("filePrompt"), nullptr);
}

TEST_F(QtPromptsTest, NoticesWaitForNobodyAndComeOncePerKind) {
    const auto open = [] {
        int count = 0;
        for (QWidget* window : QApplication::topLevelWidgets()) {
            count += window->isVisible() && window->objectName() == QLatin1String("notice");
        }
        return count;
    };
    prompts.notice({.title = "W", .text = "Battery Low"});
    prompts.notice({.title = "W", .text = "Battery Low"});
    prompts.notice({.title = "W", .text = "Out Of Range\r\n 1 2 3"});
    prompts.notice({.title = "W", .text = "Out Of Range\r\n 4 5 6"});
    EXPECT_EQ(open(), 2);
    press(box("Battery", "notice"), QMessageBox::Ok);
    EXPECT_EQ(open(), 1);
    prompts.notice({.title = "W", .text = "Battery Low"});
    EXPECT_EQ(open(), 2);
}

TEST_F(QtPromptsTest, FileDialogsNeverAskAboutTheFileThemselves) {
    QTemporaryDir directory;
    const std::filesystem::path folder = directory.path().toStdString();
    for (const bool saving : {false, true}) {
        whenOpen("filePrompt", [] {
            auto* dialog = dynamic_cast<QFileDialog*>(windowNamed("filePrompt"));
            ASSERT_NE(dialog, nullptr);
            dialog->findChild<QLineEdit*>()->setText(QStringLiteral("not there.cst"));
            QMetaObject::invokeMethod(dialog, "accept", Qt::DirectConnection);
        });
        const auto chosen = prompts.askFile(
            {.title = "Open", .pattern = "*.cst", .startFolder = folder, .saving = saving});
        EXPECT_EQ(chosen, folder / "not there.cst");
    }
    whenOpen("filePrompt", [] { pressKey(windowNamed("filePrompt"), Qt::Key_Escape); });
    EXPECT_EQ(prompts.askFile({.title = "Open", .pattern = "*.cst", .startFolder = folder}),
              std::nullopt);
}

TEST_F(QtPromptsTest, AMissingFolderIsNotProposedAsTheNameOfAFile) {
    QTemporaryDir directory;
    const std::filesystem::path folder = directory.path().toStdString();
    QString proposed = QStringLiteral("none");
    whenOpen("filePrompt", [&] {
        auto* dialog = dynamic_cast<QFileDialog*>(windowNamed("filePrompt"));
        proposed = dialog->findChild<QLineEdit*>()->text() + dialog->directory().path();
        dialog->reject();
    });
    (void)prompts.askFile(
        {.title = "Save", .pattern = "*.csv", .startFolder = folder / "CoinSets", .saving = true});
    EXPECT_EQ(proposed.toStdString(), folder.string());
}

TEST(QtInstanceGuardTest, OneCopyPerFolder) {
    QTemporaryDir directory;
    const std::filesystem::path folder = directory.path().toStdString();
    auto first = std::make_unique<QtInstanceGuard>(folder);
    QtInstanceGuard second(folder);
    EXPECT_TRUE(first->acquire());
    EXPECT_FALSE(second.acquire());
    first.reset();
    EXPECT_TRUE(second.acquire());
    // Where no lock can be made, the program is not kept off either.
    EXPECT_TRUE(QtInstanceGuard(folder / "missing").acquire());
}

}  // namespace
}  // namespace vantor::test
