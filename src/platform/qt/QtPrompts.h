#pragma once

#include <QPointer>
#include <vector>

#include "platform/EventLoop.h"
#include "platform/Prompts.h"

class QDialog;
class QMessageBox;
class QWidget;

namespace vantor {

/// Questions and notices as windows. A question never starts a loop of the toolkit's own: it
/// pumps the program's event loop, so that the box, the ticks and a simulated clock go on.
///
/// Object names: message boxes "prompt", file dialogs "filePrompt", notices "notice".
class QtPrompts final : public Prompts {
  public:
    explicit QtPrompts(EventLoop& loop) : loop_(loop) {}
    ~QtPrompts() override;

    Answer ask(const Prompt& prompt) override;
    void notice(const Prompt& prompt) override;
    std::optional<std::filesystem::path> askFile(const FileQuestion& question) override;
    void beep() override;
    void setEnding(const std::function<bool()>& ending) override { ending_ = ending; }
    void setCaptions(const Captions& captions) override { captions_ = captions; }

  private:
    void waitFor(QDialog& dialog);
    void captionButtons(QMessageBox& box) const;

    EventLoop& loop_;
    std::function<bool()> ending_;
    Captions captions_;
    std::vector<QPointer<QMessageBox>> notices_;
};

}  // namespace vantor
