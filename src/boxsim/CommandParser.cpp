#include "boxsim/CommandParser.h"

#include <string_view>
#include <utility>

#include "boxsim/Wire.h"

namespace vantor::boxsim {

namespace {

constexpr std::string_view kThreeCharacters = "C$#";
constexpr std::string_view kUpToReturn = "ZP";
/// The box's line memory; what runs on beyond it is handed over cut, and refused there.
constexpr std::size_t kLongestLine = 64;

bool begins(std::string_view starters, char c) {
    return starters.find(c) != std::string_view::npos;
}

}  // namespace

std::optional<std::string> CommandParser::take(std::uint8_t byte) {
    const char c = static_cast<char>(byte);
    if (partial_.empty()) {
        if (!begins(kThreeCharacters, c) && !begins(kUpToReturn, c)) return std::string(1, c);
        partial_ = c;
        return std::nullopt;
    }
    const bool line = begins(kUpToReturn, partial_.front());
    if (line && byte == kCarriageReturn) return std::exchange(partial_, {});
    partial_ += c;
    if (partial_.size() == (line ? kLongestLine : 3)) return std::exchange(partial_, {});
    return std::nullopt;
}

}  // namespace vantor::boxsim
