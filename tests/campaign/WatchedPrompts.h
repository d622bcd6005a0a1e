#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/qt/QtPrompts.h"

namespace vantor::campaign {

/// The real message boxes, and what is asked in them in order.
class WatchedPrompts final : public Prompts {
  public:
    explicit WatchedPrompts(EventLoop& loop) : inner_(loop) {}

    /// Called before a box is shown; what is true then is what the box speaks of.
    std::function<void(const Prompt&)> watcher;
    /// The English of what is asked, for those who read it here.
    std::function<std::string(std::string)> english = [](std::string text) { return text; };
    std::function<void()> onSave;   ///< a file to save to was picked
    std::vector<std::string> seen;  ///< "title|text", notices too
    static constexpr std::size_t kNever = static_cast<std::size_t>(-2);
    std::size_t fileOpenedAt = kNever;  ///< how many boxes had been seen when a file was picked
    int open = 0;                       ///< boxes and dialogs that somebody waits for

    Answer ask(const Prompt& prompt) override {
        note(prompt);
        const Open counted(open);
        return inner_.ask(prompt);
    }
    void notice(const Prompt& prompt) override {
        note(prompt);
        inner_.notice(prompt);
    }
    std::optional<std::filesystem::path> askFile(const FileQuestion& question) override {
        const Open counted(open);
        auto chosen = inner_.askFile(question);
        if (chosen && !question.saving) fileOpenedAt = seen.size();
        if (chosen && question.saving && onSave) onSave();
        return chosen;
    }
    void beep() override { inner_.beep(); }
    void setEnding(const std::function<bool()>& ending) override { inner_.setEnding(ending); }
    void setCaptions(const Captions& captions) override { inner_.setCaptions(captions); }

  private:
    class Open {
      public:
        explicit Open(int& count) : count_(count) { ++count_; }
        ~Open() { --count_; }
        Open(const Open&) = delete;
        Open& operator=(const Open&) = delete;

      private:
        int& count_;
    };

    void note(Prompt prompt) {
        prompt.title = english(prompt.title);
        prompt.text = english(prompt.text);
        seen.push_back(prompt.title + "|" + prompt.text);
        if (watcher) watcher(prompt);
    }

    QtPrompts inner_;
};

}  // namespace vantor::campaign
