#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "FixedCalendar.h"
#include "platform/SerialPort.h"
#include "platform/Services.h"

// The system around the program, as its tests have it: one port.

namespace vantor::test {

class FakeDirectory final : public PortDirectory {
  public:
    [[nodiscard]] PortDescription describe(int portNumber) const override {
        return {.device = "/dev/fake" + std::to_string(portNumber),
                .present = portNumber == 1,
                .calledItself = portNumber == 1 ? "Bench adapter" : ""};
    }
};

class RecordedSounds final : public SoundPlayer {
  public:
    void play(const std::filesystem::path& file) override { played.push_back(file.filename()); }
    std::vector<std::filesystem::path> played;
};

class FakeGuard final : public InstanceGuard {
  public:
    [[nodiscard]] bool acquire() override { return only; }
    bool only = true;
};

}  // namespace vantor::test
