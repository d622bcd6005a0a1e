#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Prompts.h"

namespace vantor::test {

/// Answers boxes from a script and records every question. A box that the script does not
/// foresee fails the test; boxes with OK alone are answered OK without a script.
class ScriptedPrompts final : public Prompts {
  public:
    /// The next box must contain `part` and gets `answer`; `meanwhile` runs while it is open.
    void expect(std::string part, Answer answer, std::function<void()> meanwhile = {}) {
        script_.push_back({std::move(part), answer, std::move(meanwhile)});
    }
    void chooseFile(std::optional<std::filesystem::path> file) {
        files_.push_back(std::move(file));
    }

    Answer ask(const Prompt& prompt) override {
        asked.push_back(prompt);
        if (!script_.empty() && prompt.text.find(script_.front().part) != std::string::npos) {
            const Step step = script_.front();
            script_.pop_front();
            if (step.meanwhile) step.meanwhile();
            return step.answer;
        }
        if (prompt.buttons != PromptButtons::ok) {
            ADD_FAILURE() << "unforeseen box: " << prompt.title << ": " << prompt.text;
            return Answer::cancel;
        }
        return Answer::ok;
    }

    void notice(const Prompt& prompt) override { notices.push_back(prompt); }

    std::optional<std::filesystem::path> askFile(const FileQuestion& question) override {
        fileQuestions.push_back(question);
        if (files_.empty()) {
            ADD_FAILURE() << "unforeseen file dialog: " << question.title;
            return std::nullopt;
        }
        auto file = files_.front();
        files_.pop_front();
        return file;
    }

    void beep() override { ++beeps; }

    [[nodiscard]] bool told(const std::string& part) const {
        for (const auto* boxes : {&asked, &notices}) {
            for (const Prompt& box : *boxes) {
                if (box.text.find(part) != std::string::npos) return true;
            }
        }
        return false;
    }
    /// Every box that was asked, a line each: "title: text".
    [[nodiscard]] std::string texts() const {
        std::string all;
        for (const Prompt& box : asked) all += box.title + ": " + box.text + "\n";
        return all;
    }
    [[nodiscard]] bool scriptDone() const { return script_.empty() && files_.empty(); }

    std::vector<Prompt> asked;
    std::vector<Prompt> notices;
    std::vector<FileQuestion> fileQuestions;
    int beeps = 0;

  private:
    struct Step {
        std::string part;
        Answer answer = Answer::ok;
        std::function<void()> meanwhile;
    };
    std::deque<Step> script_;
    std::deque<std::optional<std::filesystem::path>> files_;
};

}  // namespace vantor::test
