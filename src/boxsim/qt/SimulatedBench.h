#pragma once

#include <string>

#include "app/Program.h"
#include "boxsim/SimulatedBox.h"
#include "boxsim/qt/BenchWindow.h"

namespace vantor::boxsim {

/// The simulated programmer box in this process, as COM1, with the bench window beside it.
class SimulatedBench {
  public:
    /// Plugs a model of the catalogue in, and an E+1 device of its size into the socket.
    SimulatedBench(EventLoop& loop, const std::string& maker, const std::string& model);

    /// The machine with the simulated box in place of its serial ports.
    [[nodiscard]] Platform platformOn(const Platform& machine);
    [[nodiscard]] SimulatedBox& box() { return box_; }
    [[nodiscard]] BenchWindow& window() { return window_; }

  private:
    class Directory final : public PortDirectory {
      public:
        [[nodiscard]] PortDescription describe(int portNumber) const override;
    };

    SimulatedBox box_;
    SimulatedPort port_;
    Directory directory_;
    BenchWindow window_;
};

}  // namespace vantor::boxsim
