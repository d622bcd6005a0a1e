#pragma once

#include <filesystem>

#include "app/CommandLine.h"
#include "app/Program.h"
#include "platform/PortMap.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/qt/QtPrompts.h"
#include "platform/qt/QtSerialPort.h"
#include "platform/qt/QtServices.h"

namespace vantor {

/// The machine that the program runs on.
struct World {
    /// `folder`: the program's folder, whose `ports.txt` counts.
    World(const std::filesystem::path& folder, const CommandLine& commandLine);

    [[nodiscard]] Platform platform() {
        return {loop, port, ports, prompts, sounds, calendar, guard};
    }

    QtEventLoop loop;
    PortMap map;
    QtSerialPort port;
    QtPortDirectory ports;
    QtPrompts prompts;
    QtSoundPlayer sounds;
    QtCalendar calendar;
    QtInstanceGuard guard;
};

/// Name, style and the rules of closing; once, after the application object was made.
void setUpApplication();

/// The command line of this process.
[[nodiscard]] CommandLine commandLineOfProcess();

/// The program's folder for this command line; the simulator has one of its own, in which COM1
/// and English are chosen already.
[[nodiscard]] std::filesystem::path programFolder(const CommandLine& commandLine);

/// Loads the program inside the application's event loop and runs it to its end.
int runProgram(const Platform& platform, const std::filesystem::path& folder);

}  // namespace vantor
