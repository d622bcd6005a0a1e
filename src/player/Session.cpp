#include "player/Session.h"

#include <QCoreApplication>
#include <algorithm>
#include <filesystem>
#include <iostream>

#include "app/World.h"
#include "boxsim/BenchCommands.h"
#include "boxsim/qt/SimulatedBench.h"
#include "platform/Files.h"
#include "platform/VirtualEventLoop.h"
#include "player/Player.h"

namespace vantor::player {

namespace {

/// How long a look for a typed line may hold up a program whose time stands still.
constexpr std::chrono::milliseconds kTypingLook{50};

std::unique_ptr<CommandSource> openScript(const std::string& name, std::ostream& err) {
    const auto read = [](const std::string& path) {
        return readFile(std::filesystem::path(std::u8string(path.begin(), path.end())));
    };
    if (name == "-") return std::make_unique<StreamSource>(std::cin, ScriptPlace{.read = read});
    const auto text = read(name);
    if (!text) {
        err << "cannot read " << name << '\n';
        return nullptr;
    }
    ParsedScript parsed = parseScript(*text, {.read = read, .files = {name}});
    if (const auto* errors = std::get_if<std::vector<ScriptError>>(&parsed)) {
        for (const ScriptError& error : *errors) {
            err << (error.file.empty() ? name : error.file) << ':' << error.line << ": "
                << error.text << '\n';
        }
        return nullptr;
    }
    return std::make_unique<ScriptSource>(std::get<std::vector<Command>>(std::move(parsed)));
}

/// The program, the box if it is simulated, and the player on one event loop.
class Session {
  public:
    Session(const SessionOptions& options, CommandSource& source, std::ostream& out)
        : folder_(programFolder(options.program)),
          world_(folder_, options.program),
          loop_(options.virtualTime ? static_cast<EventLoop&>(virtual_) : world_.loop),
          source_(source),
          real_(loop_),
          prompts_(loop_, real_,
                   [&out](const std::string& line) { say(out, "            " + line); }) {
        virtual_.setCompanion([] { QCoreApplication::processEvents(); });
        if (options.program.simulate) {
            bench_ = std::make_unique<boxsim::SimulatedBench>(
                loop_, options.program.simulate->maker, options.program.simulate->model);
            bench_->window().show();
        }
        program_ = std::make_unique<Program>(platform(), folder_, [] {});
        player_ = std::make_unique<Player>(loop_, source_, prompts_, stage(options.virtualTime),
                                           [&out](const std::string& line) { say(out, line); });
    }

    int run() {
        loop_.callAfter(Micros{0}, [this] { program_->load(); });
        player_->start();
        // Every flow has unwound when the outermost turn comes back here.
        while (!player_->finished()) loop_.pump();
        return player_->exitStatus() == 0 ? kAllHeld : kNotAsExpected;
    }

  private:
    static void say(std::ostream& out, const std::string& line) { out << line << std::endl; }

    Platform platform() {
        Platform machine = world_.platform();
        const Platform ours{loop_,          machine.port,     machine.ports, prompts_,
                            machine.sounds, machine.calendar, machine.guard};
        return bench_ ? bench_->platformOn(ours) : ours;
    }

    Stage stage(bool virtualTime) {
        Stage stage;
        stage.idle = [this] { return program_->idle() || program_->ended(); };
        stage.over = [this] { program_->state().link.ending = true; };
        stage.bench = [this](std::span<const std::string> words, std::string& reply) {
            if (!bench_) return Problem("there is no bench without --simulate");
            auto result = boxsim::runBenchCommand(bench_->box(), words);
            reply = std::move(result.reply);
            return std::move(result.error);
        };
        if (virtualTime) {
            // Virtual time would race ahead while somebody types; so it stands still instead.
            stage.noCommandYet = [this] {
                auto* typed = dynamic_cast<StreamSource*>(&source_);
                while (typed && !typed->waitForLine(kTypingLook)) QCoreApplication::processEvents();
            };
        }
        return stage;
    }

    std::filesystem::path folder_;
    VirtualEventLoop virtual_;
    World world_;
    EventLoop& loop_;
    CommandSource& source_;
    QtPrompts real_;
    ScriptedQtPrompts prompts_;
    std::unique_ptr<boxsim::SimulatedBench> bench_;
    std::unique_ptr<Program> program_;
    std::unique_ptr<Player> player_;
};

}  // namespace

SessionOptions parseSessionOptions(std::span<const std::string> arguments) {
    SessionOptions options;
    options.program = parseCommandLine(arguments);
    options.error = options.program.error;
    for (const std::string& word : options.program.rest) {
        if (word == "--virtual-time") {
            options.virtualTime = true;
        } else if (word.size() > 1 && word.front() == '-') {
            options.error = "unknown option " + word;
        } else if (options.script.empty()) {
            options.script = word;
        } else {
            options.error = "one script at a time";
        }
    }
    if (!options.error.empty() || options.program.help || options.program.version) return options;
    if (options.script.empty()) options.error = "which script? (a file, or - for standard input)";
    if (options.virtualTime && !options.program.simulate) {
        options.error = "--virtual-time goes with --simulate only: a real box does not hurry";
    }
    return options;
}

std::string sessionHelp() {
    return "vantor-player [options] SCRIPT\n"
           "Plays a session on the real windows of the program; SCRIPT is a file, or - for\n"
           "standard input. docs/player.md describes the commands.\n\n" +
           commandLineHelp() +
           "  --virtual-time      do not wait for real time to pass (with --simulate only)\n"
           "\nExit status: 0 everything as expected, 1 not so, 2 not started.\n";
}

int playSession(const SessionOptions& options, std::ostream& out, std::ostream& err) {
    const auto source = openScript(options.script, err);
    if (!source) return kNotStarted;
    return Session(options, *source, out).run();
}

}  // namespace vantor::player
