// The program on the application's own event loop, in real time but never for long.

#include "app/World.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <QTimer>
#include <fstream>

#include "Hands.h"
#include "app/Configuration.h"
#include "platform/Files.h"

namespace vantor::test {
namespace {

class WorldTest : public ::testing::Test {
  protected:
    WorldTest() { commandLine.ports.emplace_back(1, "/dev/vantor-no-such-port"); }

    /// Runs the program; `act` is done as soon as `there` holds. True when it came to that.
    bool run(const std::function<bool()>& there, const std::function<void()>& act) {
        World world(folder, commandLine);
        bool acted = false;
        QTimer looking;
        QObject::connect(&looking, &QTimer::timeout, &looking, [&] {
            if (acted || !there()) return;
            acted = true;
            act();
        });
        looking.start(1);
        QTimer::singleShot(20000, &looking, [] { QCoreApplication::exit(99); });
        EXPECT_EQ(runProgram(world.platform(), folder), 0);
        return acted;
    }

    QTemporaryDir directory;
    std::filesystem::path folder{directory.path().toStdString()};
    CommandLine commandLine;
};

TEST_F(WorldTest, ExitEndsTheApplicationFromInsideAWait) {
    const auto there = [] { return windowNamed("frmMain") && visible("frmMain.frmConfig"); };
    EXPECT_TRUE(run(there, [] { click("frmMain.cmdExit"); }));
}

TEST_F(WorldTest, PortsOfTheFolderCountAndTheCommandLineMore) {
    std::ofstream(folder / "ports.txt") << "1,/dev/one\n2,/dev/two\n";
    const World world(folder, commandLine);
    EXPECT_EQ(world.map.device(1), "/dev/vantor-no-such-port");
    EXPECT_EQ(world.map.device(2), "/dev/two");
}

TEST_F(WorldTest, TheSimulatorsFolderIsReadyForANewcomer) {
    CommandLine simulated;
    simulated.simulate = CommandLine::Simulated{"Mars", "ME111"};
    simulated.folder = folder / "simulator";
    const std::filesystem::path chosen = programFolder(simulated);
    const auto stored = readConfiguration(chosen);
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->portNumber, 1);
    EXPECT_EQ(stored->language, "English");
    EXPECT_TRUE(std::filesystem::exists(chosen / "accept.wav"));
    EXPECT_TRUE(std::filesystem::is_directory(chosen / "CoinSets"));

    writeConfiguration(chosen, {.portNumber = 7, .language = "Deutsch"}, {});
    EXPECT_EQ(readConfiguration(programFolder(simulated))->portNumber, 7);
}

#ifndef _WIN32
class SoundTest : public ::testing::Test {
  protected:
    SoundTest() : path_(qgetenv("PATH")) { qputenv("PATH", directory.path().toUtf8()); }
    ~SoundTest() override { qputenv("PATH", path_); }
    void installPlayer(const std::string& name, const std::string& body) {
        const std::filesystem::path file = folder / name;
        std::ofstream(file) << "#!/bin/sh\n" << body << "\n";
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    }
    std::string played() const { return readFile(folder / "played").value_or(""); }

    QTemporaryDir directory;
    std::filesystem::path folder{directory.path().toStdString()};
    QtSoundPlayer player;

  private:
    QByteArray path_;
};

TEST_F(SoundTest, IsPlayedByTheFirstPlayerThatCanAndElseThereIsSilence) {
    const std::filesystem::path sound = folder / "accept.wav";
    player.play(sound);
    std::ofstream(sound) << "RIFF";
    player.play(sound);
    EXPECT_EQ(played(), "");
    installPlayer("paplay", "exit 1");
    installPlayer("aplay", "echo \"$1\" > " + (folder / "played").string());
    player.play(sound);
    EXPECT_EQ(played(), sound.string() + "\n");
}
#endif

}  // namespace
}  // namespace vantor::test
