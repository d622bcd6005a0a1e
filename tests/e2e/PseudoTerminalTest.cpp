// The same road once more in real time: the real serial port code, a pseudo-terminal, and the
// simulated box as a program of its own behind it.

#include <gtest/gtest.h>
#ifndef _WIN32

#include <QFileDialog>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>

#include "ProgramFixture.h"
#include "catalogue/Text.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/qt/QtSerialPort.h"

namespace vantor::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

class PseudoTerminalRoad : public ::testing::Test {
  protected:
    static constexpr Micros kLimit = seconds(90);

    PseudoTerminalRoad() {
        const QString link = directory.filePath("box");
        boxTool.setProgram(VANTOR_BOXSIM);
        boxTool.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        map.assign(1, link.toStdString());
    }
    ~PseudoTerminalRoad() override {
        boxTool.terminate();
        boxTool.waitForFinished(5000);
    }

    void startBox(const QStringList& options) {
        boxTool.setArguments(QStringList{"--link", directory.filePath("box")} + options);
        boxTool.start();
        ASSERT_TRUE(boxTool.waitForReadyRead(10'000));
    }
    void bench(const std::string& command) {
        boxTool.write((command + "\n").c_str());
        boxTool.waitForBytesWritten(1000);
    }
    /// What the tool printed after `command`.
    std::string benchAnswer(const std::string& command) {
        boxTool.readAllStandardOutput();
        bench(command);
        boxTool.waitForReadyRead(5000);
        return boxTool.readAllStandardOutput().toStdString();
    }
    void writeFile(const std::string& name, const std::string& bytes) {
        writeFileWhole(folder() / name, bytes);
    }
    [[nodiscard]] std::filesystem::path folder() const { return directory.path().toStdString(); }

    void play() {
        program =
            std::make_unique<Program>(Platform{loop, port, ports, prompts, sounds, calendar, guard},
                                      folder(), [this] { ended = true; });
        hands.start(kLimit, [this] { program->link().endProgram(); });
        dropper.start(milliseconds(150), [this] { dropWhileAsked(); });
        loop.callAfter(Micros{0}, [this] { program->load(); });
        const Micros end = loop.now() + kLimit + seconds(10);
        while (!ended && !(hands.done() && program->idle()) && loop.now() < end) loop.pump();
        dropper.stop();
    }
    void dropWhileAsked() {
        // Also before the mech is asked: what nobody hears is dropped again.
        if (!program->state().gather.runActive) return;
        if (std::atoi(label("frmCoinMeasure1.lblNumber").c_str()) < 1) return;
        bench("drop \"" + label("frmCoinMeasure1.lblDescription") + "\"");
    }
    std::function<bool()> ready(const std::string& window) {
        return [this, window] { return program->idle() && visible(window); };
    }
    /// From the main window to the limits, with a coinset of a coin and a slug.
    Hands& measure(std::function<void()> start, const std::string& coinset) {
        writeFile("config0000.txt", "\" 1\",\"English\",\" 0\",\" 0\",\"\"\r\n");
        writeFile("short.cst", coinset);
        return hands.when("main window", ready("frmMain"), std::move(start))
            .when("measurement window", ready("frmCoinMeasure1"),
                  [] { click("frmCoinMeasure1.cmdRunCoinset"); })
            .when(
                "file dialog",
                [] { return windowNamed("filePrompt") != nullptr && visible("filePrompt"); },
                [this] {
                    auto* dialog = dynamic_cast<QFileDialog*>(windowNamed("filePrompt"));
                    dialog->findChild<QLineEdit*>()->setText(directory.filePath("short.cst"));
                    static_cast<QDialog*>(dialog)->done(QDialog::Accepted);
                })
            .answer("Press YES", QMessageBox::Yes)
            .answer("Gathered Coin 5 Pell", QMessageBox::Ok)
            .answer("Press YES", QMessageBox::Yes)
            .answer("Gathered Coin Steel Washer", QMessageBox::Ok)
            .answer("Data Gathering Complete", QMessageBox::Ok);
    }
    static int shownLimit(int box) {
        return widget<QLineEdit>("frmPROM.txtProm_" + std::to_string(box))->text().toInt();
    }
    /// A mech with serial memory, from a coinset of its maker with this coin and slug. `told`
    /// when it is programmed; then the mech's memory holds `content()` in `cell`.
    void programSerial(std::string_view maker, const std::string& model, const std::string& items,
                       const std::string& told, int cell,
                       const std::function<std::string()>& content) {
        const bool nri = maker == kNri;
        startBox({"--model", QString::fromStdString(model), "--prom", "none"});
        measure(
            [model, nri] {
                choose(nri ? "frmMain.cmbNRImech" : "frmMain.cmbCCmech", model);
                click(nri ? "frmMain.cmdNRIprog" : "frmMain.cmdCCprog");
            },
            std::string(maker) + "." + model + ",\"Short\",SHORT,1.0\r\n\r\n" + items)
            .when("limits window", ready("frmPROM"), [] { click("frmPROM.cmdProgPROM"); })
            .answer(told, QMessageBox::Ok);
        play();
        EXPECT_TRUE(hands.done());
        EXPECT_FALSE(ended);
        ASSERT_GT(shownLimit(0), 0);
        const std::string expected = content();
        const auto answer =
            benchAnswer("expect-memory " + std::to_string(cell) + " " + expected + "\nshow-memory");
        EXPECT_NE(answer.find(expected), std::string::npos) << answer;
        EXPECT_EQ(answer.find("error"), std::string::npos) << answer;
    }
    /// The first window of the first channel is one word.
    void programCc(const std::string& model, int word) {
        programSerial(kCoinControls, model,
                      "CD,5 Pell,01,4,3,-2,3,2,40,3,-2,3,2,40,3,-2,3,2,40\r\n"
                      "S,Steel Washer,3,2,40,2,40,2,40\r\n",
                      "EEPROM Verified OK", word, [] {
                          return hex(static_cast<unsigned>(shownLimit(1) * 256 + shownLimit(0)), 4);
                      });
    }

    QTemporaryDir directory;
    QtEventLoop loop;
    PortMap map;
    QtSerialPort port{map};
    FakeDirectory ports;
    QtPrompts prompts{loop};
    RecordedSounds sounds;
    FixedCalendar calendar;
    FakeGuard guard;
    Hands hands{loop};
    RepeatingTimer dropper{loop};
    QProcess boxTool;
    bool ended = false;
    std::unique_ptr<Program> program;
};

TEST_F(PseudoTerminalRoad, ProgramsAnMe111OverTheRealSerialPort) {
    startBox({"--model", "ME111", "--prom", "none"});
    measure([] { click("frmMain.cmdMars"); },
            "Mars.ME111,\"Short\",SHORT,1.0\r\n1K,1,0,0,0,264,344,172,252,458,538\r\n"
            "CD,5 Pell,A1,4,3,-2,3,2,20,3,-2,3,2,20,3,-4,3,4,20\r\n"
            "S,Steel Washer,3,2,20,2,20,3,20\r\n")
        .when("limits window", ready("frmPROM"), [] { click("frmPROM.cmdProgPROM"); })
        .when(
            "load prompt", [] { return box("BOTH SWITCHES ON") != nullptr; },
            [this] {
                bench("insert e1 1K");
                bench("switch 1 on");
                bench("switch 2 on");
                press(box("BOTH SWITCHES ON"), QMessageBox::Ok);
            })
        .when(
            "switch prompt", [] { return box("TURN SWITCH 2 OFF") != nullptr; },
            [this] {
                bench("switch 2 off");
                press(box("TURN SWITCH 2 OFF"), QMessageBox::Ok);
            })
        .answer("Verify PROM OK", QMessageBox::Ok);
    play();
    EXPECT_TRUE(hands.done());
    EXPECT_FALSE(ended);
    // The marker, then the lowest nibbles of the first limit that the window shows.
    const int limit = shownLimit(0);
    ASSERT_GT(limit, 0);
    const std::string digits = "F" + hex(static_cast<unsigned>(limit % 16), 1) +
                               hex(static_cast<unsigned>(limit / 16 % 16), 1) +
                               hex(static_cast<unsigned>(limit / 256), 1);
    EXPECT_NE(benchAnswer("show-prom").find("000 " + digits), std::string::npos) << digits;
}

TEST_F(PseudoTerminalRoad, ProgramsA335OverTheRealSerialPort) {
    programCc("335", 9);
}

TEST_F(PseudoTerminalRoad, ProgramsASentinelOverTheRealSerialPort) {
    programCc("Sentinel", 0);
}

TEST_F(PseudoTerminalRoad, ProgramsAG18_3000OverTheRealSerialPort) {
    programSerial(kNri, "G18-3000",
                  "CD,5 Pell,Coin 01,4,3,-2,3,2,40,3,-2,3,2,40,3,-2,3,2,40,3,-2,3,2,40,3,-2,3,2,40,"
                  "3,-2,3,2,40\r\nS,Steel Washer,3,2,40,2,40,2,40,2,40,2,40,2,40\r\n",
                  "NRI Memory Programmed OK", 4, [] {
                      std::string pairs;
                      for (const int i : {1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10})
                          pairs += hex(static_cast<unsigned>(shownLimit(i)), 2);
                      return pairs;
                  });
}

TEST_F(PseudoTerminalRoad, ProgramsAG13_0000OverTheRealSerialPort) {
    programSerial(kNri, "G13-0000",
                  "CD,5 Pell,Coin 01,4,3,-2,3,2,40,3,-2,3,2,40,3,-2,3,2,40,3,-2,3,2,40\r\n"
                  "S,Steel Washer,3,2,40,2,40,2,40,2,40\r\n",
                  "NRI Memory Programmed OK", 1, [] {
                      std::string highs, lows;
                      for (int i = 0; i < 8; i += 2) {
                          lows += padded(shownLimit(i), 3);
                          highs += padded(shownLimit(i + 1), 3);
                      }
                      return highs + lows;
                  });
}

}  // namespace
}  // namespace vantor::test

#endif
