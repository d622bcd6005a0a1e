#pragma once

#include <QPointer>
#include <deque>
#include <filesystem>
#include <functional>
#include <list>
#include <optional>
#include <string>

#include "platform/EventLoop.h"
#include "platform/Prompts.h"
#include "player/Controls.h"

class QMessageBox;

namespace vantor::player {

/// The program's boxes as a script meets them: the real ones are shown, and each is printed and
/// gets its answer from the script. A box is foreseen when an answer for it is queued, or when
/// the script awaits or answers it while it is open. File dialogs are printed, not shown.
class ScriptedQtPrompts final : public Prompts {
  public:
    using Report = std::function<void(const std::string& line)>;

    /// `real` shows the boxes; `report` gets UTF-8 lines.
    ScriptedQtPrompts(EventLoop& loop, Prompts& real, Report report);

    Answer ask(const Prompt& prompt) override;
    void notice(const Prompt& prompt) override;
    std::optional<std::filesystem::path> askFile(const FileQuestion& question) override;
    void beep() override;
    void setEnding(const std::function<bool()>& ending) override;
    void setCaptions(const Captions& captions) override { real_.setCaptions(captions); }

    /// Answers the open box, or is kept for the next one. `part` (UTF-8) must be in its text.
    [[nodiscard]] Problem answer(Answer answer, const std::string& part);
    /// Answers the open file dialog, or is kept for the next one; nothing = cancelled. A relative
    /// name stands in the folder in which the dialog starts.
    void chooseFile(std::optional<std::filesystem::path> file);

    /// Whether a box with `part` in its text is open; it counts as foreseen from then on.
    [[nodiscard]] bool foresee(const std::string& part);
    /// A box or file dialog that the script has not met yet; empty when there is none.
    [[nodiscard]] std::string unforeseen() const;
    /// What can only be an error: a box that is not the one an answer was kept for.
    [[nodiscard]] const Problem& problem() const { return problem_; }
    /// What is left at the end of a script: open boxes and answers that nobody asked for.
    [[nodiscard]] Problem leftovers() const;
    /// The run is over: open boxes go away and every `ask` throws ProgramEnded.
    void end();

  private:
    enum class Kind { prompt, notice, file };
    struct Box {
        int id = 0;
        Kind kind = Kind::prompt;
        Prompt prompt;  ///< title and text of a file dialog too
        bool foreseen = false;
        std::optional<Answer> answer;
        bool fileAnswered = false;
        std::optional<std::filesystem::path> file;
        QPointer<QMessageBox> window;  ///< of a notice
    };
    struct KeptAnswer {
        Answer answer = Answer::ok;
        std::string part;
    };
    class OpenBox;

    Box& open(Kind kind, const Prompt& prompt);
    void close(int id);
    Box* find(int id);
    /// The newest open box with `part` in its text that has no answer yet.
    Box* openWith(const std::string& part);
    void takeKept(Box& box);
    Problem give(Box& box, Answer answer);
    void press(int id, int attempt);
    void noteClosed(int id, int pressedButton);
    void print(const Box& box) const;
    [[nodiscard]] bool over() const;

    EventLoop& loop_;
    Prompts& real_;
    Report report_;
    std::list<Box> boxes_;
    std::deque<KeptAnswer> answers_;
    std::deque<std::optional<std::filesystem::path>> files_;
    Problem problem_;
    int lastId_ = 0;
    std::function<bool()> programEnding_;
    bool ending_ = false;
};

/// The script's word for an answer, and back ("ok", "cancel", "yes", "no").
[[nodiscard]] std::string nameOf(Answer answer);
[[nodiscard]] Answer answerNamed(const std::string& name);

}  // namespace vantor::player
