#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <exception>
#include <string>

#include <array>

#include "boxsim/BenchCommands.h"
#include "boxsim/SimulatedBox.h"
#include "boxsim/pty/Options.h"
#include "boxsim/pty/PseudoTerminal.h"
#include "boxsim/pty/RealTimeLoop.h"

namespace vantor::boxsim {
namespace {

volatile std::sig_atomic_t ended = 0;

void endOnSignals() {
    struct sigaction action {};
    action.sa_handler = [](int) { ended = 1; };
    sigset_t blocked;
    sigemptyset(&blocked);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaction(signal, &action, nullptr);
        sigaddset(&blocked, signal);
    }
    // The loop lets them in while it waits.
    sigprocmask(SIG_BLOCK, &blocked, nullptr);
}

void say(const std::string& text) {
    if (text.empty()) return;
    std::printf("%s\n", text.c_str());
    std::fflush(stdout);
}

/// The box, its connector and the hands at the bench.
class Tool {
  public:
    explicit Tool(const Options& options)
        : options_(options),
          box_(loop_, options.seed),
          line_(loop_, [this](std::span<const std::uint8_t> bytes) { box_.fromPc(bytes); }) {
        box_.setEscapesAloneAsBreak(true);
        box_.plugValidator(options.maker, options.model);
        box_.insertProm(options.prom, options.words);
    }

    void run() {
        connect();
        say("A pseudo-terminal cannot carry a break: 20 ESC in a row count as one here.");
        loop_.watch(STDIN_FILENO, [this] { readBench(); });
        while (ended == 0) loop_.pump();
    }

  private:
    void connect() {
        line_.open(options_.link);
        box_.setOutput([this](std::uint8_t byte) { line_.write(byte); },
                       [this](const std::string&) { line_.close(); });
        say(line_.path());
    }

    void readBench() {
        std::array<char, 512> bytes{};
        const ssize_t got = read(STDIN_FILENO, bytes.data(), bytes.size());
        // Without a bench the box goes on by itself.
        if (got <= 0) loop_.unwatch(STDIN_FILENO);
        for (ssize_t i = 0; i < got; ++i) {
            const char c = bytes[static_cast<std::size_t>(i)];
            if (c != '\n') {
                benchLine_ += c;
                continue;
            }
            bench(benchLine_);
            benchLine_.clear();
        }
    }

    void bench(const std::string& command) {
        if (command == "quit") {
            ended = 1;
            return;
        }
        const BenchResult result = runBenchLine(box_, command);
        say(result.reply);
        if (!result.ok()) say("error: " + result.error);
        // A pseudo-terminal that was hung up is gone; the box comes back behind another.
        if (box_.pluggedIn() && !line_.isOpen()) connect();
    }

    Options options_;
    RealTimeLoop loop_;
    SimulatedBox box_;
    PseudoTerminal line_;
    std::string benchLine_;
};

}  // namespace
}  // namespace vantor::boxsim

int main(int argc, char** argv) {
    using namespace vantor::boxsim;
    try {
        Options options;
        const auto words = std::span<char* const>(argv, static_cast<std::size_t>(argc));
        const std::string error = readOptions(words.subspan(words.empty() ? 0 : 1), options);
        if (!error.empty()) {
            std::fprintf(stderr, "vantor-boxsim: %s (--help lists the options)\n", error.c_str());
            return 2;
        }
        if (options.help) {
            std::printf("%s%s\nquit\n", usage().c_str(), benchHelp().c_str());
            return 0;
        }
        endOnSignals();
        Tool(options).run();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vantor-boxsim: %s\n", error.what());
        return 1;
    }
}
