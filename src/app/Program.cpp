#include "app/Program.h"

#include <array>

#include "app/ConfigPanel.h"
#include "app/MainActions.h"
#include "app/Sounds.h"
#include "app/StartUp.h"
#include "app/frmMain.h"
#include "app/frmOpening.h"
#include "catalogue/ErrorReporter.h"
#include "link/MechCheck.h"
#include "link/ProgrammerLink.h"
#include "link/Receiver.h"
#include "platform/ProgramEnded.h"
#include "platform/qt/ActionFrame.h"

namespace vantor {

namespace {

constexpr int kReceptionError = 809;

}  // namespace

struct Program::Impl {
    Impl(const Platform& world, std::filesystem::path folder, std::function<void()> whenEnded)
        : platform(world),
          ended(std::move(whenEnded)),
          errors(state.messages, platform.prompts),
          actions(errors, [this] { finish(); }),
          link(state, platform.loop, platform.port, platform.prompts, errors),
          families(state),
          receiver(state, link, platform.prompts, errors),
          check(state, link, families, platform.prompts, errors),
          sounds(state, platform.sounds, errors),
          main(state, actions),
          opening(actions),
          config(state, platform.prompts, errors, main),
          mainActions({.state = state,
                       .errors = errors,
                       .actions = actions,
                       .link = link,
                       .check = check,
                       .families = families,
                       .main = main,
                       .config = config}),
          startUp({.state = state,
                   .errors = errors,
                   .actions = actions,
                   .link = link,
                   .check = check,
                   .prompts = platform.prompts,
                   .ports = platform.ports,
                   .guard = platform.guard,
                   .main = main,
                   .opening = opening,
                   .config = config,
                   .mainActions = mainActions}) {
        state.app.folder = std::move(folder);
        platform.prompts.setEnding([this] { return state.link.ending; });
        link.setEndedHandler(
            [this] { actions.runThrough(kReceptionError, [] { throw ProgramEnded{}; }); });
        link.setByteHandler([this](std::uint8_t byte) { receiver.handleByte(byte); });
        link.setCoinDisplayReset([this] { receiver.resetValtestDisplay(); });
        connectSinks();
    }

    ~Impl() { platform.prompts.setEnding({}); }

    void connectSinks() {
        MessageSinks& sinks = receiver.sinks;
        sinks.lastLine = [this](const std::string& line) { main.showLastLine(line); };
        sinks.boxVersion = [this](const std::string& version) { main.showBoxVersion(version); };
        sinks.makeSound = [this](int kind) { sounds.makeSound(kind); };
    }

    [[nodiscard]] std::array<QWidget*, 2> windows() { return {&main, &opening}; }

    // Nothing of the program's own is on the stack any more.
    void finish() {
        if (finished) return;
        finished = true;
        link.closePort();
        for (QWidget* window : windows()) window->hide();
        if (ended) ended();
    }

    Platform platform;
    std::function<void()> ended;
    bool finished = false;
    SessionState state;
    ErrorReporter errors;
    ActionFrame actions;
    ProgrammerLink link;
    Families families;
    Receiver receiver;
    MechCheck check;
    Sounds sounds;
    FrmMain main;
    FrmOpening opening;
    ConfigPanel config;
    MainActions mainActions;
    StartUp startUp;
};

Program::Program(const Platform& platform, std::filesystem::path folder,
                 std::function<void()> ended)
    : impl_(std::make_unique<Impl>(platform, std::move(folder), std::move(ended))) {}

Program::~Program() = default;

void Program::load() {
    impl_->startUp.load();
}

SessionState& Program::state() {
    return impl_->state;
}

ActionFrame& Program::actions() {
    return impl_->actions;
}

ProgrammerLink& Program::link() {
    return impl_->link;
}

bool Program::idle() const {
    return impl_->startUp.over() && !impl_->actions.busy();
}

bool Program::ended() const {
    return impl_->finished;
}

QWidget* Program::window(const std::string& name) const {
    for (QWidget* window : impl_->windows()) {
        if (window->objectName().toStdString() == name) return window;
    }
    return nullptr;
}

}  // namespace vantor
