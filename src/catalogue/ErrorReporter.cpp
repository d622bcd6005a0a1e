#include "catalogue/ErrorReporter.h"

#include <ios>
#include <new>
#include <stdexcept>
#include <system_error>

#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr std::size_t kDescriptionLength = 50;

// The numbers that technicians' notes and support know for these kinds of error.
constexpr int kErrorOverflow = 6;
constexpr int kErrorOutOfMemory = 7;
constexpr int kErrorSubscript = 9;
constexpr int kErrorInput = 5;
constexpr int kErrorInternal = 51;

int numberOf(const std::exception& error) {
    if (const auto* system = dynamic_cast<const std::system_error*>(&error)) {
        return system->code().value();
    }
    if (dynamic_cast<const std::out_of_range*>(&error)) return kErrorSubscript;
    if (dynamic_cast<const std::overflow_error*>(&error)) return kErrorOverflow;
    if (dynamic_cast<const std::invalid_argument*>(&error)) return kErrorInput;
    if (dynamic_cast<const std::bad_alloc*>(&error)) return kErrorOutOfMemory;
    return kErrorInternal;
}

}  // namespace

void ErrorReporter::report(int messageNumber, const std::exception& error) {
    report(messageNumber, error.what(), numberOf(error));
}

void ErrorReporter::report(int messageNumber, std::string_view description, int errorNumber) {
    show(spacedNumber(messageNumber) + " " + messages_.msgText(messageNumber), description,
         errorNumber);
}

void ErrorReporter::reportText(std::string_view text, const std::exception& error) {
    show(std::string(text), error.what(), numberOf(error));
}

void ErrorReporter::show(const std::string& head, std::string_view description, int errorNumber) {
    Prompt prompt;
    prompt.title = messages_.msgText(208);
    prompt.text = head + " " + std::string(kCrLf) +
                  std::string(description.substr(0, kDescriptionLength)) + " - " +
                  std::to_string(errorNumber);
    prompt.icon = PromptIcon::critical;
    if (quiet_ > 0) {
        prompts_.notice(prompt);
    } else {
        prompts_.ask(prompt);
    }
}

}  // namespace vantor
