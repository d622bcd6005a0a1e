#include "player/Player.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <sstream>

#include "app/World.h"
#include "platform/ProgramEnded.h"
#include "platform/VirtualEventLoop.h"
#include "platform/qt/QtPrompts.h"

namespace vantor::player {
namespace {

using std::chrono::milliseconds;

/// A window with one control of each kind, whose button starts a flow that a test gives.
class TinyWindow : public QWidget {
  public:
    TinyWindow() {
        setObjectName("frmTiny");
        setWindowTitle("Tiny");
        auto* layout = new QVBoxLayout(this);
        const auto add = [&](QWidget* widget, const char* name) {
            widget->setObjectName(name);
            layout->addWidget(widget);
        };
        add(&go, "cmdGo");
        add(&off, "cmdOff");
        add(&label, "lblState");
        add(&edit, "txtProm_10");
        add(&list, "cmbMech");
        add(&box, "chkLog");
        add(&tabs, "tabMaker");
        off.setEnabled(false);
        list.addItems({"ME110", "ME111", "ME181"});
        tabs.addTab(new QWidget, "Mars");
        tabs.addTab(new QWidget, "Coin && Controls");
        QObject::connect(&go, &QPushButton::clicked, [this] {
            if (flow) flow();
        });
        QObject::connect(&list, &QComboBox::activated,
                         [this] { label.setText(list.currentText()); });
        show();
    }

    std::function<void()> flow;
    QPushButton go{"&Go"}, off{"Off"};
    QLabel label{"idle"};
    QLineEdit edit;
    QComboBox list;
    QCheckBox box{"Log Results"};
    QTabWidget tabs;
};

/// Plays a script on the tiny window in virtual time.
class PlayerTest : public testing::Test {
  protected:
    PlayerTest() {
        loop.setCompanion([] { QCoreApplication::processEvents(); });
        window.flow = [this] { runFlow(); };
    }

    /// What a slot of the program is: a flow, and the frame that ends it.
    void runFlow() {
        busy = true;
        try {
            if (flow) flow();
        } catch (const ProgramEnded&) {
            unwound = true;
        }
        busy = false;
    }

    int play(const std::string& text) {
        ParsedScript parsed = parseScript(text);
        auto* commands = std::get_if<std::vector<Command>>(&parsed);
        if (!commands) throw std::invalid_argument("the test's script is wrong");
        ScriptSource source(std::move(*commands));
        return play(source);
    }

    int play(CommandSource& source) {
        const auto report = [this](const std::string& line) { output += line + '\n'; };
        ScriptedQtPrompts prompts(loop, real, report);
        asking = &prompts;
        Stage stage;
        stage.idle = [this] { return !busy; };
        stage.bench = [this](std::span<const std::string> words, std::string& reply) {
            for (const std::string& word : words) benched += word + ' ';
            reply = "benched";
            return words.front() == "nonsense" || words.front() == "expect-no" ? "no" : "";
        };
        stage.over = [this] { over = true; };
        stage.noCommandYet = noCommandYet;
        Player player(loop, source, prompts, stage, report);
        player.start();
        (void)loop.runUntil([&] { return player.finished(); }, std::chrono::hours(1));
        EXPECT_TRUE(player.finished());
        EXPECT_TRUE(over);
        (void)loop.runUntil([&] { return !busy; }, std::chrono::hours(1));
        EXPECT_FALSE(busy);
        return player.exitStatus();
    }

    void waitInFlow(milliseconds time) {
        const Micros end = loop.now() + time;
        loop.callAfter(time, [] {});
        while (loop.now() < end) {
            if (over) throw ProgramEnded{};
            loop.pump();
        }
    }

    [[nodiscard]] bool printed(const std::string& part) const {
        return output.find(part) != std::string::npos;
    }

    VirtualEventLoop loop;
    QtPrompts real{loop};
    TinyWindow window;
    ScriptedQtPrompts* asking = nullptr;
    std::function<void()> flow, noCommandYet;
    std::string output, benched;
    bool busy = false, over = false, unwound = false;
};

TEST_F(PlayerTest, GoesOnAfterAFailedExpectationOnly) {
    EXPECT_EQ(play("expect frmTiny.lblState busy\nexpect frmTiny.lblState idle\nbench expect-no"),
              1);
    EXPECT_TRUE(printed("1: expect frmTiny.lblState busy  -> NOT AS EXPECTED: it reads \"idle\""));
    EXPECT_TRUE(printed("2: expect frmTiny.lblState idle  -> ok"));
    EXPECT_TRUE(printed("3 commands, 2 not as expected")) << output;
}

TEST_F(PlayerTest, EndsAtWhatCannotBeDone) {
    window.edit.setReadOnly(true);
    const struct {
        std::string command;
        std::string problem;
    } cases[] = {
        {"click frmTiny.cmdOff", "it is disabled"},
        {"click frmNone.cmdOff", "there is no window frmNone"},
        {"click frmTiny.cmdNone", "the window frmTiny has no control cmdNone"},
        {"choose frmTiny.cmbMech ME1",
         "it has no such entry, only \"ME110\", \"ME111\", \"ME181\""},
        {"tab frmTiny.tabMaker NRI", "it has no such tab, only \"Mars\", \"Coin & Controls\""},
        {"type frmTiny.txtProm_10 5", "it is read-only"},
        {"tick frmTiny.cmdGo on", "it is nothing that can be ticked"},
        {"await frmTiny.lblState busy 50", "not within 50 ms: it reads \"idle\""},
        {"await-visible frmNone 50", "not within 50 ms: there is no window frmNone"},
        {"await-prompt any 50", "not within 50 ms: no such box came"},
        {"bench nonsense", "no"},
    };
    for (const auto& c : cases) {
        output.clear();
        over = false;
        EXPECT_EQ(play(c.command + "\nexpect frmTiny.lblState idle"), 1) << c.command;
        EXPECT_TRUE(printed("FAILED: " + c.problem + "\n")) << c.command << '\n' << output;
        EXPECT_FALSE(printed("2: ")) << output;
    }
}

TEST_F(PlayerTest, AwaitIdleTellsARunningFlow) {
    flow = [this] { waitInFlow(milliseconds(500)); };
    EXPECT_EQ(play("click frmTiny.cmdGo\nawait-idle 100"), 1);
    EXPECT_TRUE(printed("not within 100 ms: a flow is still running")) << output;
    EXPECT_TRUE(unwound);
}

TEST_F(PlayerTest, HoldsTheFirstCommandBackUntilTheStartUpIsOver) {
    busy = true;
    loop.callAfter(milliseconds(300), [this] {
        busy = false;
        window.label.setText("ready");
    });
    EXPECT_EQ(play("answer ok x\nexpect frmTiny.lblState ready"), 1);
    EXPECT_TRUE(printed("expect frmTiny.lblState ready  -> ok")) << output;
    EXPECT_TRUE(printed("no box asked for the answer \"x\"")) << output;
}

const Prompt kQuestion{.title = "Data Gather",
                       .text = "Press YES\r\nto program",
                       .icon = PromptIcon::question,
                       .buttons = PromptButtons::yesNoCancel};

TEST_F(PlayerTest, AnswersBoxesFromTheQueueAndWhileTheyAreOpen) {
    std::vector<Answer> answers;
    flow = [&] {
        answers.push_back(asking->ask(kQuestion));
        answers.push_back(asking->ask(kQuestion));
        answers.push_back(asking->ask({.title = "T", .text = "Gathered"}));
    };
    EXPECT_EQ(play("answer no YES\nclick frmTiny.cmdGo\n"
                   "await-prompt $'YES\\nto' 100\nsleep 50\nbench drop a\nclick frmTiny.cmdGo"),
              1);
    EXPECT_TRUE(printed("box \"Data Gather\" icon=question buttons=Yes/No/Cancel")) << output;
    EXPECT_TRUE(printed("  | Press YES\n  | to program\n")) << output;
    EXPECT_TRUE(printed("answered: no")) << output;
    EXPECT_TRUE(printed("FAILED: the open box \"Data Gather\" is in front of it")) << output;
    EXPECT_TRUE(unwound);

    output.clear();
    over = unwound = false;
    answers.clear();
    EXPECT_EQ(play("answer no YES\nclick frmTiny.cmdGo\nawait-prompt YES 100\nbench drop a\n"
                   "answer yes program\nanswer ok Gathered\nawait-idle 100"),
              0)
        << output;
    EXPECT_EQ(answers, (std::vector<Answer>{Answer::no, Answer::yes, Answer::ok}));
}

TEST_F(PlayerTest, ABoxThatNobodyForesawEndsTheRun) {
    flow = [&] { (void)asking->ask(kQuestion); };
    for (const std::string after :
         {"await-idle 60000", "click frmTiny.cmdGo", "await frmTiny.lblState x 60000", "sleep 10",
          "answer yes other", "await-prompt other 60000", "answer ok YES", ""}) {
        output.clear();
        over = unwound = false;
        EXPECT_EQ(play("click frmTiny.cmdGo\n" + after), 1) << after;
        EXPECT_TRUE(unwound) << after;
        EXPECT_LT(loop.now(), milliseconds(60000)) << after;
    }
    output.clear();
    over = false;
    EXPECT_EQ(play("answer yes other\nclick frmTiny.cmdGo\nsleep 60000"), 1);
    EXPECT_TRUE(printed("this box is not the one that the script foresaw (\"other\")")) << output;
    EXPECT_LT(loop.now(), milliseconds(60000));
}

TEST_F(PlayerTest, NoticesAreBoxesTooButNobodyWaitsForThem) {
    const Prompt battery{.title = "B", .text = "Battery low", .icon = PromptIcon::exclamation};
    flow = [&] {
        asking->notice(battery);
        asking->notice(battery);
        window.label.setText("told");
    };
    EXPECT_EQ(play("click frmTiny.cmdGo\nawait-prompt Battery 10\nexpect frmTiny.lblState told\n"
                   "answer ok Battery\nsleep 5\nanswer ok Battery\nclick frmTiny.cmdGo\nsleep 5"),
              0)
        << output;
    output.clear();
    over = false;
    EXPECT_EQ(play("click frmTiny.cmdGo\nawait-idle 100\nclick frmTiny.cmdGo"), 1);
    EXPECT_TRUE(printed("did not foresee the box \"B\"")) << output;
}

TEST_F(PlayerTest, FileDialogsGetTheirNames) {
    std::vector<std::optional<std::filesystem::path>> chosen;
    flow = [&] {
        const FileQuestion question{"Open", "*.cst", "/folder/CoinSets", false};
        for (int i = 0; i < 3; ++i) chosen.push_back(asking->askFile(question));
    };
    EXPECT_EQ(play("file \"../my coins.cst\"\nclick frmTiny.cmdGo\nfile cancel\nfile /abs/x\n"
                   "await-idle 10"),
              0)
        << output;
    ASSERT_EQ(chosen.size(), 3u);
    EXPECT_EQ(chosen[0], "/folder/my coins.cst");
    EXPECT_EQ(chosen[1], std::nullopt);
    EXPECT_EQ(chosen[2], "/abs/x");
    output.clear();
    over = false;
    EXPECT_EQ(play("click frmTiny.cmdGo\nawait-idle 10"), 1);
    EXPECT_TRUE(printed("did not foresee the file dialog \"Open\"")) << output;
}

TEST_F(PlayerTest, TakesCommandsLineByLine) {
    static std::istringstream lines(
        "# typed\ninclude state.vps S=idle\nexpect-part frmTiny.lblState reads\nexpect");
    StreamSource source(lines, {.read = [](const std::string& path) {
                            return path == "state.vps"
                                       ? std::optional<std::string>("expect frmTiny.lblState ${S}")
                                       : std::nullopt;
                        }});
    noCommandYet = [&] { EXPECT_TRUE(source.waitForLine(std::chrono::seconds(20))); };
    EXPECT_EQ(play(source), 1);
    EXPECT_TRUE(printed("state.vps:1: expect frmTiny.lblState idle  -> ok")) << output;
    EXPECT_TRUE(printed("3: expect-part frmTiny.lblState reads  -> NOT AS EXPECTED")) << output;
    EXPECT_TRUE(printed("line 4: 2 argument(s) wanted, 0 given")) << output;
}

}  // namespace
}  // namespace vantor::player

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // The tests are listed during the build, when there may be no display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication app(argc, argv);
    vantor::setUpApplication();
    return RUN_ALL_TESTS();
}
