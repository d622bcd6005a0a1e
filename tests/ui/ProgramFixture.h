#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTemporaryDir>
#include <filesystem>
#include <memory>
#include <string>

#include "Hands.h"
#include "Surroundings.h"
#include "app/Program.h"
#include "boxsim/SimulatedBox.h"
#include "link/ProgrammerLink.h"
#include "platform/Files.h"
#include "platform/PortMap.h"
#include "platform/VirtualEventLoop.h"
#include "platform/qt/ActionFrame.h"
#include "platform/qt/QtPrompts.h"

namespace vantor::test {

/// The whole program with its windows in virtual time, on a simulated box behind COM1.
class ProgramTest : public ::testing::Test {
  protected:
    static constexpr Micros kLimit = std::chrono::minutes(10);

    ProgramTest() {
        loop.setCompanion([] { QCoreApplication::processEvents(); });
        box.plugValidator(kMars, "ME111");
    }

    [[nodiscard]] std::filesystem::path folder() const {
        return missingFolder ? std::filesystem::path(directory.path().toStdString()) / "missing"
                             : std::filesystem::path(directory.path().toStdString());
    }
    void writeConfig(const std::string& bytes) { write("config0000.txt", bytes); }
    void write(const std::string& name, const std::string& bytes) {
        writeFileWhole(folder() / name, bytes);
    }
    [[nodiscard]] std::string config() const {
        return readFile(folder() / "config0000.txt").value_or("(none)");
    }

    /// Runs the program's start-up and the hands to their end.
    void run() {
        program = std::make_unique<Program>(
            Platform{loop, port, directory_, prompts, sounds, calendar, guard}, folder(),
            [this] { ++endings; });
        hands.start(kLimit, [this] { program->link().endProgram(); });
        loop.callAfter(Micros{0}, [this] { program->load(); });
        EXPECT_TRUE(loop.runUntil(
            [this] { return endings > 0 || (hands.done() && program->idle()); }, 2 * kLimit));
    }

    VirtualEventLoop loop;
    QTemporaryDir directory;
    bool missingFolder = false;
    boxsim::SimulatedBox box{loop, 1};
    boxsim::SimulatedPort port{loop, box, 1};
    FakeDirectory directory_;
    QtPrompts prompts{loop};
    RecordedSounds sounds;
    FixedCalendar calendar;
    FakeGuard guard;
    Hands hands{loop};
    int endings = 0;
    std::unique_ptr<Program> program;
};

}  // namespace vantor::test
