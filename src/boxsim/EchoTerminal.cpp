#include "boxsim/EchoTerminal.h"

#include <utility>

#include "boxsim/FaultInjector.h"
#include "boxsim/Wire.h"

namespace vantor::boxsim {

namespace {

constexpr std::string_view kBeforeVersion = "TK";
constexpr char kVersionLetter = 'I';
constexpr char kEnd = '#';
constexpr std::string_view kEndMark = "%";
constexpr Micros kVersionTime{2000};
/// What is typed without an end is garbage; no command comes near this.
constexpr std::size_t kLongestLine = 80;

}  // namespace

void EchoTerminal::reset() {
    line_.clear();
    open_ = false;
}

std::optional<std::string> EchoTerminal::take(std::uint8_t byte, FaultInjector& faults) {
    const char c = static_cast<char>(byte);
    if (c == kVersionLetter && line_.ends_with(kBeforeVersion)) {
        line_.clear();
        if (faults.barsSession()) return std::nullopt;
        open_ = version_.starts_with(kVersionLetter);
        voice_.answer(version_ + static_cast<char>(kCarriageReturn), kVersionTime);
        return std::nullopt;
    }
    voice_.echo(byte);
    if (c == kEnd) {
        reset();
        if (endMark_) voice_.answer(kEndMark, Micros{0});
        return std::nullopt;
    }
    if (byte == kCarriageReturn) return std::exchange(line_, {});
    if (line_.size() < kLongestLine) line_ += c;
    return std::nullopt;
}

}  // namespace vantor::boxsim
