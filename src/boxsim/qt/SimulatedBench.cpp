#include "boxsim/qt/SimulatedBench.h"

#include <QScreen>

#include "boxsim/BenchCommands.h"

namespace vantor::boxsim {

namespace {

constexpr int kPort = 1;
/// Always the same, so that a session can be repeated to the byte.
constexpr std::uint64_t kSeed = 1;
constexpr int kLargeProm = 512;

}  // namespace

SimulatedBench::SimulatedBench(EventLoop& loop, const std::string& maker, const std::string& model)
    : box_(loop, kSeed),
      port_(loop, box_, kPort),
      window_(loop, box_, [this](const std::vector<std::string>& words) {
          return runBenchCommand(box_, words).error;
      }) {
    box_.plugValidator(maker, model);
    // The large one serves coinsets for both sizes.
    box_.insertProm(PromKind::e1, kLargeProm);
    // To the right, where the program's windows do not open.
    window_.adjustSize();
    const QRect screen = window_.screen()->availableGeometry();
    window_.move(screen.right() - window_.width(), screen.top());
}

Platform SimulatedBench::platformOn(const Platform& machine) {
    return {machine.loop,     port_,        directory_, machine.prompts, machine.sounds,
            machine.calendar, machine.guard};
}

PortDescription SimulatedBench::Directory::describe(int portNumber) const {
    if (portNumber != kPort) return {};
    return {.device = "simulated", .present = true, .calledItself = "Simulated programmer box"};
}

}  // namespace vantor::boxsim
