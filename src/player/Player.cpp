#include "player/Player.h"

#include <QColor>
#include <QDir>
#include <QFileInfo>
#include <QPixmap>
#include <QWidget>
#include <cstdio>

#include "platform/qt/QtText.h"

namespace vantor::player {

namespace {

using std::chrono::milliseconds;

/// How often a waiting command looks. Flows react within one tick of 20 ms, so half of that.
constexpr milliseconds kLook{10};
/// How long the first command is held back while the program starts up. The start-up with a box
/// takes about two seconds; one that waits for the technician must be played by the script.
constexpr milliseconds kStartUp{10'000};

milliseconds msOf(const std::string& word) {
    return milliseconds(parseMs(word));
}

/// Commands that only look, or move the bench: they may come while a box waits for the script.
bool leavesBoxesAlone(Verb verb) {
    switch (verb) {
        case Verb::remark:
        case Verb::expect:
        case Verb::expectPart:
        case Verb::expectEnabled:
        case Verb::expectVisible:
        case Verb::expectColour:
        case Verb::print:
        case Verb::shot:
        case Verb::bench:
        case Verb::sleep:
        case Verb::awaitPrompt:
        case Verb::answer:
        case Verb::file:
            return true;
        default:
            return false;
    }
}

/// Commands by which a script shows that it takes care of the start-up itself.
bool mindsTheStartUp(Verb verb) {
    switch (verb) {
        case Verb::await:
        case Verb::awaitVisible:
        case Verb::awaitIdle:
        case Verb::awaitPrompt:
        case Verb::sleep:
            return true;
        default:
            return false;
    }
}

/// Commands that need no window, so that the start-up does not matter to them.
bool preparesOnly(Verb verb) {
    return verb == Verb::remark || verb == Verb::answer || verb == Verb::file ||
           verb == Verb::bench;
}

}  // namespace

Player::Player(EventLoop& loop, CommandSource& source, ScriptedQtPrompts& prompts, Stage stage,
               Report report)
    : loop_(loop),
      source_(source),
      prompts_(prompts),
      stage_(std::move(stage)),
      report_(std::move(report)) {}

Player::~Player() {
    loop_.cancel(scheduled_);
}

void Player::start() {
    heldSince_ = loop_.now();
    schedule(Micros{0});
}

void Player::schedule(Micros delay) {
    scheduled_ = loop_.callAfter(delay, [this] {
        // The flow around this turn must not take a failure of the player for one of its own.
        try {
            step();
        } catch (const std::exception& error) {
            ++failures_;
            report_(stamp() + "the player itself failed: " + error.what());
            finish();
        }
    });
}

void Player::step() {
    if (finished_) return;
    if (wait_) return pollWait();
    if (held_) {
        if (startsTooEarly(*held_)) return schedule(kLook);
        const Command command = std::move(*held_);
        held_.reset();
        return begin(command);
    }
    const NextCommand next = source_.next();
    if (std::holds_alternative<NotYet>(next)) {
        if (stage_.noCommandYet) stage_.noCommandYet();
        return schedule(kLook);
    }
    if (const auto* error = std::get_if<ScriptError>(&next)) {
        ++failures_;
        const std::string file = error->file.empty() ? "line " : error->file + ":";
        report_(file + std::to_string(error->line) + ": " + error->text);
        return finish();
    }
    if (const auto* command = std::get_if<Command>(&next)) {
        if (!startsTooEarly(*command)) return begin(*command);
        held_ = *command;
        return schedule(kLook);
    }
    Problem left = prompts_.unforeseen();
    if (left.empty()) left = prompts_.leftovers();
    if (!left.empty()) {
        ++failures_;
        report_(stamp() + "at the end of the script: " + left);
    }
    finish();
}

bool Player::startsTooEarly(const Command& command) {
    if (startUpSeen_ || preparesOnly(command.verb)) return false;
    startUpSeen_ = mindsTheStartUp(command.verb) || stage_.idle() ||
                   loop_.now() - heldSince_ >= kStartUp || !prompts_.unforeseen().empty();
    return !startUpSeen_;
}

void Player::begin(const Command& command) {
    if (command.verb != Verb::remark) ++commands_;
    // On its way before the command is carried out: a click may start a flow that pumps the loop.
    schedule(Micros{0});
    Problem problem = prompts_.problem();
    if (problem.empty() && !leavesBoxesAlone(command.verb)) problem = prompts_.unforeseen();
    if (!problem.empty()) return fail(command, problem);
    execute(command);
}

void Player::execute(const Command& command) {
    switch (command.verb) {
        case Verb::await:
        case Verb::awaitVisible:
        case Verb::awaitIdle:
        case Verb::awaitPrompt:
        case Verb::sleep:
            return wait(command);
        case Verb::answer: {
            const Problem problem =
                prompts_.answer(answerNamed(command.words.at(0)), command.words.at(1));
            return problem.empty() ? passed(command) : fail(command, problem);
        }
        case Verb::file:
            passed(command);
            if (command.words.at(0) == "cancel") return prompts_.chooseFile(std::nullopt);
            return prompts_.chooseFile(pathFromQt(QString::fromStdString(command.words.at(0))));
        case Verb::remark:
            return report_(command.written);
        case Verb::shot:
            return shoot(command);
        case Verb::bench:
            return runBench(command);
        default:
            break;
    }
    const Target target = findTarget(command.words.at(0));
    if (!target.widget) return fail(command, target.problem);
    if (command.verb == Verb::print) return printControls(command, target.widget);
    useHands(command, target.widget);
}

void Player::useHands(const Command& command, QWidget* widget) {
    const auto accepted = [&] { passed(command); };
    const std::string second = command.words.size() > 1 ? command.words.at(1) : std::string();
    const std::string text = textOf(widget).toStdString();
    const std::string read = "it reads \"" + text + '"';
    const auto unless = [](bool held, const Problem& problem) {
        return held ? Problem() : problem;
    };
    Problem problem;
    switch (command.verb) {
        case Verb::expect:
            return expectation(command, unless(shows(widget, second), read));
        case Verb::expectPart:
            return expectation(command, unless(text.find(second) != text.npos, read));
        case Verb::expectEnabled:
            return expectation(command,
                               unless(widget->isEnabled() == (second == "yes"), "it is not so"));
        case Verb::expectVisible:
            return expectation(command,
                               unless(widget->isVisible() == (second == "yes"), "it is not so"));
        case Verb::expectColour: {
            const QColor colour = colourOf(widget);
            return expectation(command, unless(colour == QColor(QString::fromStdString(second)),
                                               "it is " + colour.name().toStdString()));
        }
        case Verb::click:
            problem = click(widget, accepted);
            break;
        case Verb::close:
            problem = closeWindow(widget, accepted);
            break;
        case Verb::choose:
            problem = choose(widget, second, accepted);
            break;
        case Verb::type:
            problem = typeInto(widget, second, accepted);
            break;
        case Verb::tick:
            problem = tick(widget, second == "on", accepted);
            break;
        case Verb::tab:
            problem = chooseTab(widget, second, accepted);
            break;
        default:
            problem = "not a command for a control";
    }
    if (!problem.empty() && !finished_) fail(command, problem);
}

void Player::wait(const Command& command) {
    Wait wait;
    wait.command = command;
    wait.began = loop_.now();
    wait.deadline = wait.began + msOf(command.words.back());
    const std::string name = command.words.at(0);
    switch (command.verb) {
        case Verb::sleep:
            wait.toleratesBoxes = wait.passesAtDeadline = true;
            wait.holds = [] { return false; };
            break;
        case Verb::awaitIdle:
            wait.holds = stage_.idle;
            wait.whyNot = [] { return Problem("a flow is still running"); };
            break;
        case Verb::awaitPrompt:
            wait.holds = [this, name] { return prompts_.foresee(name); };
            wait.whyNot = [] { return Problem("no such box came"); };
            break;
        case Verb::awaitVisible:
            wait.holds = [name] {
                const Target target = findTarget(name);
                return target.widget && target.widget->isVisible();
            };
            wait.whyNot = [name] {
                const Target target = findTarget(name);
                return target.widget ? Problem("it is not visible") : target.problem;
            };
            break;
        default:
            wait.holds = [name, text = command.words.at(1)] {
                const Target target = findTarget(name);
                return target.widget && shows(target.widget, text);
            };
            wait.whyNot = [name] {
                const Target target = findTarget(name);
                if (!target.widget) return target.problem;
                return "it reads \"" + textOf(target.widget).toStdString() + '"';
            };
    }
    wait_ = std::move(wait);
}

void Player::pollWait() {
    const Micros now = loop_.now();
    const bool due = now >= wait_->deadline;
    const auto finishWait = [this] {
        Wait done = std::move(*wait_);
        wait_.reset();
        return done;
    };
    if (wait_->holds() || (due && wait_->passesAtDeadline)) {
        schedule(Micros{0});
        const Wait done = finishWait();
        const auto took = std::chrono::duration_cast<milliseconds>(now - done.began);
        say(done.command, "ok after " + std::to_string(took.count()) + " ms");
        return;
    }
    // A flow that asks something stands still; so what is awaited will not come by itself.
    Problem problem = prompts_.problem();
    if (problem.empty() && !wait_->toleratesBoxes) problem = prompts_.unforeseen();
    if (problem.empty() && due) {
        problem = "not within " + wait_->command.words.back() + " ms: " + wait_->whyNot();
    }
    if (!problem.empty()) return fail(finishWait().command, problem);
    schedule(std::min<Micros>(kLook, wait_->deadline - now));
}

void Player::printControls(const Command& command, QWidget* widget) {
    passed(command);
    const bool whole = command.words.at(0).find('.') == std::string::npos;
    if (!whole) return report_("  " + describe(widget, command.words.at(0)));
    for (const std::string& line : describeAll(widget)) report_("  " + line);
}

void Player::shoot(const Command& command) {
    QWidget* window =
        command.words.size() == 2 ? findWindow(command.words.front()) : windowInFront();
    if (!window) return fail(command, "there is no such window");
    if (!window->isVisible()) return fail(command, "it is not shown");
    const QString file = QString::fromStdString(command.words.back());
    QDir().mkpath(QFileInfo(file).path());
    if (!window->grab().save(file, "PNG")) return fail(command, "the picture cannot be written");
    passed(command);
}

void Player::runBench(const Command& command) {
    std::string reply;
    const Problem problem = stage_.bench(command.words, reply);
    // What the bench compares is an expectation like any other.
    if (command.words.front().starts_with("expect") || command.words.front().starts_with("check")) {
        expectation(command, problem);
    } else if (!problem.empty()) {
        return fail(command, problem);
    } else {
        passed(command);
    }
    if (!reply.empty()) report_("  " + reply);
}

void Player::say(const Command& command, const std::string& result) {
    report_(stamp() + command.place() + ": " + command.written + "  -> " + result);
}

void Player::expectation(const Command& command, const Problem& problem) {
    if (problem.empty()) return passed(command);
    ++failures_;
    say(command, "NOT AS EXPECTED: " + problem);
}

void Player::fail(const Command& command, const Problem& problem) {
    ++failures_;
    say(command, "FAILED: " + problem);
    finish();
}

void Player::finish() {
    if (finished_) return;
    finished_ = true;
    loop_.cancel(scheduled_);
    report_(stamp() + std::to_string(commands_) + " commands, " +
            (failures_ == 0 ? std::string("everything as expected")
                            : std::to_string(failures_) + " not as expected"));
    prompts_.end();
    stage_.over();
}

std::string Player::stamp() const {
    char text[32];
    const double seconds = std::chrono::duration<double>(loop_.now()).count();
    std::snprintf(text, sizeof text, "[%9.3f] ", seconds);
    return text;
}

}  // namespace vantor::player
