#include "player/ScriptedQtPrompts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <algorithm>
#include <array>
#include <ranges>

#include "catalogue/Text.h"
#include "platform/ProgramEnded.h"
#include "platform/qt/QtText.h"

namespace vantor::player {

namespace {

/// A box that was answered before it was painted gets its press on one of the next turns.
constexpr int kPressAttempts = 100;
constexpr std::array<std::string_view, 4> kAnswerNames = {"ok", "cancel", "yes", "no"};

std::string shownText(std::string_view windows1252) {
    std::string text;
    for (const char c : toUtf8(windows1252)) {
        if (c != '\r') text += c;
    }
    return text;
}

std::string withoutReturns(std::string text) {
    std::erase(text, '\r');
    return text;
}

QMessageBox::StandardButton buttonOf(Answer answer) {
    switch (answer) {
        case Answer::cancel:
            return QMessageBox::Cancel;
        case Answer::yes:
            return QMessageBox::Yes;
        case Answer::no:
            return QMessageBox::No;
        case Answer::ok:
            break;
    }
    return QMessageBox::Ok;
}

Answer answerOf(int button) {
    switch (button) {
        case QMessageBox::Cancel:
            return Answer::cancel;
        case QMessageBox::Yes:
            return Answer::yes;
        case QMessageBox::No:
            return Answer::no;
        default:
            return Answer::ok;
    }
}

bool offers(PromptButtons buttons, Answer answer) {
    switch (buttons) {
        case PromptButtons::ok:
            return answer == Answer::ok;
        case PromptButtons::okCancel:
            return answer == Answer::ok || answer == Answer::cancel;
        case PromptButtons::yesNoCancel:
            return answer != Answer::ok;
    }
    return false;
}

std::string_view nameOf(PromptButtons buttons) {
    switch (buttons) {
        case PromptButtons::okCancel:
            return "OK/Cancel";
        case PromptButtons::yesNoCancel:
            return "Yes/No/Cancel";
        case PromptButtons::ok:
            break;
    }
    return "OK";
}

std::string_view nameOf(PromptIcon icon) {
    switch (icon) {
        case PromptIcon::information:
            return "information";
        case PromptIcon::question:
            return "question";
        case PromptIcon::exclamation:
            return "exclamation";
        case PromptIcon::critical:
            return "critical";
        case PromptIcon::none:
            break;
    }
    return "none";
}

QMessageBox* shownBox(const Prompt& prompt) {
    const QString text = QString::fromStdString(shownText(prompt.text));
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* box = qobject_cast<QMessageBox*>(window);
        if (box && box->isVisible() && box->text().remove(QLatin1Char('\r')) == text) return box;
    }
    return nullptr;
}

}  // namespace

std::string nameOf(Answer answer) {
    return std::string(kAnswerNames.at(static_cast<std::size_t>(answer)));
}

Answer answerNamed(const std::string& name) {
    const auto found = std::ranges::find(kAnswerNames, name);
    return static_cast<Answer>(found - kAnswerNames.begin());
}

/// Takes a box off the list however its wait ends.
class ScriptedQtPrompts::OpenBox {
  public:
    OpenBox(ScriptedQtPrompts& prompts, int id) : prompts_(prompts), id_(id) {}
    ~OpenBox() { prompts_.close(id_); }
    OpenBox(const OpenBox&) = delete;
    OpenBox& operator=(const OpenBox&) = delete;

  private:
    ScriptedQtPrompts& prompts_;
    int id_;
};

ScriptedQtPrompts::ScriptedQtPrompts(EventLoop& loop, Prompts& real, Report report)
    : loop_(loop), real_(real), report_(std::move(report)) {
    real_.setEnding([this] { return over(); });
}

bool ScriptedQtPrompts::over() const {
    return ending_ || (programEnding_ && programEnding_());
}

void ScriptedQtPrompts::setEnding(const std::function<bool()>& ending) {
    programEnding_ = ending;
}

Answer ScriptedQtPrompts::ask(const Prompt& prompt) {
    if (over()) throw ProgramEnded{};
    const Box& box = open(Kind::prompt, prompt);
    const int id = box.id;
    const OpenBox guard(*this, id);
    const Answer answer = real_.ask(prompt);
    if (over()) throw ProgramEnded{};
    report_("box \"" + shownText(prompt.title) + "\" answered: " + nameOf(answer));
    return answer;
}

void ScriptedQtPrompts::notice(const Prompt& prompt) {
    if (over()) return;
    const bool alreadyOpen = std::ranges::any_of(boxes_, [&](const Box& box) {
        return box.kind == Kind::notice && noticeKind(box.prompt) == noticeKind(prompt);
    });
    real_.notice(prompt);
    if (alreadyOpen) return;
    Box& box = open(Kind::notice, prompt);
    box.window = shownBox(prompt);
    if (!box.window) return;
    QObject::connect(box.window, &QMessageBox::finished, box.window,
                     [this, id = box.id](int button) { noteClosed(id, button); });
}

void ScriptedQtPrompts::noteClosed(int id, int pressedButton) {
    if (const Box* box = find(id)) {
        report_("notice \"" + shownText(box->prompt.title) +
                "\" answered: " + nameOf(answerOf(pressedButton)));
    }
    close(id);
}

std::optional<std::filesystem::path> ScriptedQtPrompts::askFile(const FileQuestion& question) {
    if (over()) throw ProgramEnded{};
    const std::string what = question.saving ? "save " : "open ";
    const Box& box = open(Kind::file, {.title = question.title, .text = what + question.pattern});
    const OpenBox guard(*this, box.id);
    while (!box.fileAnswered) {
        if (over()) throw ProgramEnded{};
        loop_.pump();
    }
    if (over()) throw ProgramEnded{};
    if (!box.file) {
        report_("file dialog \"" + shownText(question.title) + "\" answered: cancel");
        return std::nullopt;
    }
    const auto path = (question.startFolder / *box.file).lexically_normal();
    report_("file dialog \"" + shownText(question.title) +
            "\" answered: " + pathToQt(path).toStdString());
    return path;
}

void ScriptedQtPrompts::beep() {
    report_("beep");
}

ScriptedQtPrompts::Box& ScriptedQtPrompts::open(Kind kind, const Prompt& prompt) {
    Box& box = boxes_.emplace_back();
    box.id = ++lastId_;
    box.kind = kind;
    box.prompt = prompt;
    print(box);
    takeKept(box);
    return box;
}

void ScriptedQtPrompts::print(const Box& box) const {
    const std::string title = '"' + shownText(box.prompt.title) + '"';
    if (box.kind == Kind::file) {
        report_("file dialog " + title + " " + shownText(box.prompt.text));
        return;
    }
    report_(std::string(box.kind == Kind::notice ? "notice " : "box ") + title +
            " icon=" + std::string(nameOf(box.prompt.icon)) +
            " buttons=" + std::string(nameOf(box.prompt.buttons)));
    const std::string text = shownText(box.prompt.text);
    for (const std::string_view line : splitLines(text)) report_("  | " + std::string(line));
}

void ScriptedQtPrompts::takeKept(Box& box) {
    if (box.kind == Kind::file) {
        if (files_.empty()) return;
        box.file = files_.front();
        box.fileAnswered = box.foreseen = true;
        files_.pop_front();
        return;
    }
    if (answers_.empty()) return;
    const KeptAnswer kept = answers_.front();
    if (shownText(box.prompt.text).find(kept.part) == std::string::npos) {
        problem_ = "this box is not the one that the script foresaw (\"" + kept.part + "\")";
        return;
    }
    answers_.pop_front();
    if (Problem problem = give(box, kept.answer); !problem.empty()) problem_ = problem;
}

Problem ScriptedQtPrompts::give(Box& box, Answer answer) {
    box.foreseen = true;
    if (!offers(box.prompt.buttons, answer)) {
        return "the box \"" + shownText(box.prompt.title) + "\" has no button for " +
               nameOf(answer);
    }
    box.answer = answer;
    loop_.callAfter(Micros{0}, [this, id = box.id] { press(id, 0); });
    return {};
}

void ScriptedQtPrompts::press(int id, int attempt) {
    const Box* box = find(id);
    if (!box || !box->answer || over()) return;
    QMessageBox* window = box->window ? box->window.data() : shownBox(box->prompt);
    QAbstractButton* button = window ? window->button(buttonOf(*box->answer)) : nullptr;
    if (button) {
        button->click();
    } else if (attempt < kPressAttempts) {
        loop_.callAfter(std::chrono::milliseconds(1),
                        [this, id, attempt] { press(id, attempt + 1); });
    } else {
        problem_ = "the box \"" + shownText(box->prompt.title) + "\" never showed its buttons";
    }
}

ScriptedQtPrompts::Box* ScriptedQtPrompts::find(int id) {
    const auto found = std::ranges::find(boxes_, id, &Box::id);
    return found == boxes_.end() ? nullptr : &*found;
}

void ScriptedQtPrompts::close(int id) {
    boxes_.remove_if([id](const Box& box) { return box.id == id; });
}

ScriptedQtPrompts::Box* ScriptedQtPrompts::openWith(const std::string& part) {
    const std::string wanted = withoutReturns(part);
    for (Box& box : boxes_ | std::views::reverse) {
        if (box.kind == Kind::file || box.answer) continue;
        if (shownText(box.prompt.text).find(wanted) != std::string::npos) return &box;
    }
    return nullptr;
}

Problem ScriptedQtPrompts::answer(Answer answer, const std::string& part) {
    if (Box* box = openWith(part)) return give(*box, answer);
    const auto waiting = std::ranges::find_if(
        boxes_, [](const Box& box) { return box.kind != Kind::file && !box.answer; });
    if (waiting != boxes_.end()) {
        return "the open box \"" + shownText(waiting->prompt.title) + "\" does not say that";
    }
    answers_.push_back({answer, withoutReturns(part)});
    return {};
}

void ScriptedQtPrompts::chooseFile(std::optional<std::filesystem::path> file) {
    const auto waiting = std::ranges::find_if(
        boxes_, [](const Box& box) { return box.kind == Kind::file && !box.fileAnswered; });
    if (waiting == boxes_.end()) {
        files_.push_back(std::move(file));
    } else {
        waiting->file = std::move(file);
        waiting->fileAnswered = waiting->foreseen = true;
    }
}

bool ScriptedQtPrompts::foresee(const std::string& part) {
    Box* box = openWith(part);
    if (box) box->foreseen = true;
    return box != nullptr;
}

std::string ScriptedQtPrompts::unforeseen() const {
    const auto found = std::ranges::find_if(boxes_, [](const Box& box) { return !box.foreseen; });
    if (found == boxes_.end()) return {};
    const std::string kind = found->kind == Kind::file ? "file dialog" : "box";
    return "the script did not foresee the " + kind + " \"" + shownText(found->prompt.title) +
           "\": " + shownText(found->prompt.text);
}

Problem ScriptedQtPrompts::leftovers() const {
    for (const Box& box : boxes_) {
        if (!box.answer && !box.fileAnswered) {
            return "the box \"" + shownText(box.prompt.title) + "\" was never answered";
        }
    }
    if (!answers_.empty()) {
        return "no box asked for the answer \"" + answers_.front().part + "\"";
    }
    if (!files_.empty()) return "no file dialog asked for the file that the script gave";
    return {};
}

void ScriptedQtPrompts::end() {
    ending_ = true;
    for (Box& box : boxes_) {
        if (box.window) box.window->disconnect();
        if (box.window) box.window->close();
    }
}

}  // namespace vantor::player
