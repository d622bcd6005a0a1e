#include <QApplication>
#include <cstdio>
#include <optional>

#include "app/World.h"
#include "boxsim/qt/SimulatedBench.h"

namespace {

constexpr int kBadCommandLine = 2;

/// What is answered without starting the program: help, the version, mistakes.
std::optional<int> answered(const vantor::CommandLine& commandLine) {
    std::string error = commandLine.error;
    if (error.empty() && !commandLine.rest.empty()) {
        error = "unknown argument \"" + commandLine.rest.front() + "\"";
    }
    if (!error.empty()) {
        std::fprintf(stderr, "%s\n\n%s", error.c_str(), vantor::commandLineHelp().c_str());
        return kBadCommandLine;
    }
    if (commandLine.help) {
        std::fputs(vantor::commandLineHelp().c_str(), stdout);
        return 0;
    }
    if (commandLine.version) {
        std::puts(qPrintable(QCoreApplication::applicationVersion()));
        return 0;
    }
    return std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    vantor::setUpApplication();
    const vantor::CommandLine commandLine = vantor::commandLineOfProcess();
    if (const auto status = answered(commandLine)) return *status;

    const std::filesystem::path folder = vantor::programFolder(commandLine);
    vantor::World world(folder, commandLine);
    if (!commandLine.simulate) return vantor::runProgram(world.platform(), folder);

    const auto& [maker, model] = *commandLine.simulate;
    vantor::boxsim::SimulatedBench bench(world.loop, maker, model);
    bench.window().show();
    return vantor::runProgram(bench.platformOn(world.platform()), folder);
}
