#pragma once

#include "platform/Prompts.h"
#include "platform/SerialPort.h"

namespace vantor::fuzz {

/// Answers everything with OK and says nothing.
class QuietPrompts final : public Prompts {
  public:
    Answer ask(const Prompt&) override { return Answer::ok; }
    void notice(const Prompt&) override {}
    std::optional<std::filesystem::path> askFile(const FileQuestion&) override { return {}; }
    void beep() override {}
};

/// Takes everything and answers nothing.
class QuietPort final : public SerialPort {
  public:
    OpenResult open(int) override { return {.open = true, .reason = {}}; }
    void close() override {}
    [[nodiscard]] bool isOpen() const override { return true; }
    [[nodiscard]] bool write(std::span<const std::uint8_t>) override { return true; }
    void setBreak(bool) override {}
    void discardInput() override {}
    void setReceiver(Receiver) override {}
    void setFailureHandler(FailureHandler) override {}
};

}  // namespace vantor::fuzz
