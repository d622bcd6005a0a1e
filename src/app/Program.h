#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "catalogue/SessionState.h"
#include "platform/EventLoop.h"
#include "platform/Prompts.h"
#include "platform/SerialPort.h"
#include "platform/Services.h"

class QWidget;

namespace vantor {

class ActionFrame;
class ProgrammerLink;

/// The world outside as the program gets it.
struct Platform {
    EventLoop& loop;
    SerialPort& port;
    PortDirectory& ports;
    Prompts& prompts;
    SoundPlayer& sounds;
    Calendar& calendar;
    InstanceGuard& guard;
};

/// The wiring: makes the state, the floors and the windows and connects them. One per process;
/// tests and the player make it with a virtual clock and a simulated box.
class Program {
  public:
    /// `folder`: the program's folder. `ended` is called once when the program is to quit.
    Program(const Platform& platform, std::filesystem::path folder, std::function<void()> ended);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// The main window's load routine, up to the ready main window. Must run inside the event
    /// loop (post it), because it waits.
    void load();

    [[nodiscard]] SessionState& state();
    [[nodiscard]] ActionFrame& actions();
    [[nodiscard]] ProgrammerLink& link();
    /// No flow is running, the start-up is over and the end has not begun.
    [[nodiscard]] bool idle() const;
    [[nodiscard]] bool ended() const;
    /// A window by object name ("frmMain"); nullptr for an unknown one.
    [[nodiscard]] QWidget* window(const std::string& name) const;

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace vantor
