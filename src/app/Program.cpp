#include "app/Program.h"

#include <array>
#include <stdexcept>

#include "app/ConfigPanel.h"
#include "app/MainActions.h"
#include "app/Sounds.h"
#include "app/StartUp.h"
#include "app/TestCallers.h"
#include "app/frmMain.h"
#include "app/frmOpening.h"
#include "catalogue/ErrorReporter.h"
#include "cc/CcFamily.h"
#include "cc/EepromUtilities.h"
#include "cc/frmEEPROMdata.h"
#include "limits/LimitsReview.h"
#include "limits/frmPROM.h"
#include "link/MechCheck.h"
#include "link/ProgrammerLink.h"
#include "link/Receiver.h"
#include "mars/MarsFamily.h"
#include "mars/PromUtilities.h"
#include "mars/frmPROMdata.h"
#include "mars/frmProgramming.h"
#include "measure/MeasureFlows.h"
#include "measure/frmCoinMeasure1.h"
#include "nri/NriFamily.h"
#include "nri/NriMemoryUtilities.h"
#include "nri/frmNRIdata.h"
#include "platform/ProgramEnded.h"
#include "platform/qt/ActionFrame.h"
#include "valtest/ValidatorTest.h"
#include "valtest/frmValtest.h"

namespace vantor {

namespace {

constexpr int kReceptionError = 809;
constexpr int kLimitsTestError = 1221;
constexpr const char* kNoSession = " - the mech does not answer: press Cancel Operation";
constexpr int kOkCaption = 144;
constexpr int kCancelCaption = 859;

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
          programming(state),
          mars(state, link, platform.prompts, errors, programming),
          coinControls(state, link, check, platform.prompts, errors, programming, receiver.sinks),
          nri(state, link, check, platform.prompts, errors, programming, platform.calendar,
              receiver.sinks,
              {.open = [this] { return coinControls.memory().sentinel().openSentinelSession(); },
               .close = [this] { coinControls.memory().sentinel().closeSentinelSession(); }}),
          measureWindow(state, actions, families, errors),
          limitsWindow(state, actions, errors),
          limits(state, link, families, platform.prompts, errors, limitsWindow),
          measure({.state = state,
                   .link = link,
                   .families = families,
                   .prompts = platform.prompts,
                   .errors = errors,
                   .display = measureWindow,
                   .limits = limits,
                   .limitsDisplay = limitsWindow}),
          promWindow(state, actions),
          promUtilities(state, link, families, errors, promWindow, promWindow),
          eepromWindow(state, actions),
          eepromUtilities(state, link, errors, coinControls, eepromWindow, eepromWindow),
          nriWindow(state, actions),
          nriUtilities(state, link, errors, nri, nriWindow),
          main(state, actions),
          opening(actions),
          config(state, platform.prompts, errors, main),
          mainActions({.state = state,
                       .errors = errors,
                       .actions = actions,
                       .link = link,
                       .check = check,
                       .main = main,
                       .config = config}),
          testWindow(state, actions),
          testCallers(main, mainActions, limitsWindow),
          test({.state = state,
                .link = link,
                .check = check,
                .families = families,
                .receiver = receiver,
                .prompts = platform.prompts,
                .errors = errors,
                .window = testWindow,
                .callers = testCallers}),
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
        families.add(mars);
        families.add(coinControls);
        families.add(nri);
        platform.prompts.setEnding([this] { return state.link.ending; });
        platform.prompts.setCaptions([this](Answer answer) { return promptCaption(answer); });
        link.setEndedHandler(
            [this] { actions.runThrough(kReceptionError, [] { throw ProgramEnded{}; }); });
        link.setByteHandler([this](std::uint8_t byte) { receiver.handleByte(byte); });
        link.setCoinDisplayReset([this] { receiver.resetValtestDisplay(); });
        actions.setHold([this] { return link.holdingInput(); });
        connectSinks();
        connectWindows();
    }

    ~Impl() {
        platform.prompts.setEnding({});
        platform.prompts.setCaptions({});
    }

    // Texts name these buttons ("Press CANCEL to ..."), so they follow the texts' language.
    [[nodiscard]] std::string promptCaption(Answer answer) const {
        if (answer == Answer::ok) return state.msgText(kOkCaption);
        return answer == Answer::cancel ? state.msgText(kCancelCaption) : std::string{};
    }

    void connectWindows() {
        measureWindow.setFlows(measure);
        measureWindow.hideMain = [this] { main.hide(); };
        measureWindow.backToMain = [this] {
            main.show();
            mainActions.setupMainForm();
        };
        limitsWindow.setReview(limits);
        limitsWindow.back = [this] { measure.CoinInitialise(0); };
        limits.setTransfer([this] { measure.PROMxfr(); });
        mainActions.openMeasurement = [this] {
            measureWindow.openWindow();
            main.hide();
        };
        connectMemoryUtilities();
        testWindow.setTest(test);
        testWindow.setMiddle(main);
        mainActions.openValidatorTest = [this](int error) { test.openFromMain(error); };
        limitsWindow.validatorTest = [this] { test.openFromLimits(kLimitsTestError); };
    }

    void connectMemoryUtilities() {
        promWindow.setUtilities(promUtilities);
        eepromWindow.setUtilities(eepromUtilities);
        nriWindow.setUtilities(nriUtilities);
        mainActions.openMemoryUtilities = [this] { memoryUtilities().openFromMain(); };
        limitsWindow.utilities = [this] { memoryUtilities().openFromLimits(); };
        for (MemoryUtilities* utilities : allUtilities()) connectCallers(*utilities);
    }

    [[nodiscard]] std::array<MemoryUtilities*, 3> allUtilities() {
        return {&promUtilities, &eepromUtilities, &nriUtilities};
    }
    /// Of the selected maker.
    [[nodiscard]] MemoryUtilities& memoryUtilities() {
        for (MemoryUtilities* utilities : allUtilities()) {
            if (utilities->maker() == state.mech.manufacturer) return *utilities;
        }
        throw std::logic_error("No memory utilities for maker " + state.mech.manufacturer);
    }

    void connectCallers(MemoryUtilities& utilities) {
        utilities.leave = [this](bool fromLimits) {
            mainActions.enableUtilities(false);
            limitsWindow.enableUtilities(false);
            if (fromLimits) {
                limitsWindow.hide();
            } else {
                main.hide();
            }
        };
        utilities.goBack = [this](bool fromLimits) {
            mainActions.enableUtilities(true);
            limitsWindow.enableUtilities(true);
            if (fromLimits) {
                limitsWindow.openWindow();
            } else {
                main.show();
                mainActions.setupMainForm();
            }
        };
    }

    void connectSinks() {
        MessageSinks& sinks = receiver.sinks;
        sinks.lastLine = [this](const std::string& line) { main.showLastLine(line); };
        sinks.boxVersion = [this](const std::string& version) { main.showBoxVersion(version); };
        sinks.promLine = [this](std::string_view line) { mars.parsePromLine(line); };
        sinks.marsMeasurement = [this](std::string_view line) { measure.loadMeasurement(line); };
        sinks.logReading = [this] { measure.logReading(); };
        sinks.reading = [this] { measure.updateStats(0); };
        sinks.requestCoinData = [this] { coinControls.coinData().requestCcCoinData(); };
        coinControls.coinData().sessionOpened = [this](bool open) {
            measureWindow.showItem(state.item.itemCode,
                                   state.item.itemDescription + (open ? "" : kNoSession));
        };
        sinks.makeSound = [this](int kind) { sounds.makeSound(kind); };
    }

    [[nodiscard]] std::array<QWidget*, 9> windows() {
        return {&main,       &opening,    &measureWindow, &limitsWindow, &programming,
                &promWindow, &testWindow, &eepromWindow,  &nriWindow};
    }

    // Nothing of the program's own is on the stack any more.
    void finish() {
        if (finished) return;
        finished = true;
        // The log is renamed to its place as it closes; a failure is told by nobody any more.
        try {
            measure.closeFiles();
        } catch (const std::exception&) {
            qWarning("the results log could not be closed");
        }
        for (QWidget* window : windows()) window->hide();
        link.hangUp([this] {
            over = true;
            if (ended) ended();
        });
    }

    Platform platform;
    std::function<void()> ended;
    bool finished = false;  ///< the end has begun
    bool over = false;      ///< the port is closed
    SessionState state;
    ErrorReporter errors;
    ActionFrame actions;
    ProgrammerLink link;
    Families families;
    Receiver receiver;
    MechCheck check;
    Sounds sounds;
    FrmProgramming programming;
    MarsFamily mars;
    CcFamily coinControls;
    NriFamily nri;
    FrmCoinMeasure1 measureWindow;
    FrmPROM limitsWindow;
    LimitsReview limits;
    MeasureFlows measure;
    FrmPROMdata promWindow;
    PromUtilities promUtilities;
    FrmEEPROMdata eepromWindow;
    EepromUtilities eepromUtilities;
    FrmNRIdata nriWindow;
    NriMemoryUtilities nriUtilities;
    FrmMain main;
    FrmOpening opening;
    ConfigPanel config;
    MainActions mainActions;
    FrmValtest testWindow;
    TestCallers testCallers;
    ValidatorTest test;
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
    return impl_->startUp.over() && !impl_->finished && !impl_->actions.busy() &&
           !impl_->link.holdingInput();
}

bool Program::ended() const {
    return impl_->over;
}

QWidget* Program::window(const std::string& name) const {
    for (QWidget* window : impl_->windows()) {
        if (window->objectName().toStdString() == name) return window;
    }
    return nullptr;
}

}  // namespace vantor
