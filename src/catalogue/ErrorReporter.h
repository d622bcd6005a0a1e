#pragma once

#include <exception>
#include <string>
#include <string_view>

#include "catalogue/MessageTable.h"
#include "platform/ProgramEnded.h"
#include "platform/Prompts.h"

namespace vantor {

/// The one place that shows run-time errors. A procedure runs each of its steps through
/// `attempt`: an error in one is shown, and the procedure goes on with the next.
class ErrorReporter {
  public:
    ErrorReporter(const MessageTable& messages, Prompts& prompts)
        : messages_(messages), prompts_(prompts) {}

    /// Runs `step`; a std::exception in it is shown under `messageNumber`. True when none came.
    /// ProgramEnded passes through.
    template <class Step>
    bool attempt(int messageNumber, Step&& step) {
        try {
            step();
            return true;
        } catch (const std::exception& error) {
            report(messageNumber, error);
            return false;
        }
    }

    void report(int messageNumber, const std::exception& error);
    /// For failures that are no exceptions; `errorNumber` as the field knows it.
    void report(int messageNumber, std::string_view description, int errorNumber);
    /// With a text in place of the numbered message (the number is left out).
    void reportText(std::string_view text, const std::exception& error);

    /// While a Quiet lives (the receive path is running), reports are notices that nobody waits
    /// for, so that nothing modal opens inside the drain.
    class Quiet {
      public:
        explicit Quiet(ErrorReporter& reporter) : reporter_(reporter) { ++reporter_.quiet_; }
        ~Quiet() { --reporter_.quiet_; }
        Quiet(const Quiet&) = delete;
        Quiet& operator=(const Quiet&) = delete;

      private:
        ErrorReporter& reporter_;
    };

  private:
    void show(const std::string& head, std::string_view description, int errorNumber);

    const MessageTable& messages_;
    Prompts& prompts_;
    int quiet_ = 0;
};

}  // namespace vantor
