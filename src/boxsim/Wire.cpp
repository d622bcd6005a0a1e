#include "boxsim/Wire.h"

#include <algorithm>
#include <charconv>

namespace vantor::boxsim {

namespace {

std::optional<int> wholeNumber(std::string_view digits, int base) {
    // from_chars would take a sign.
    if (digits.empty() || digits.front() == '-') return std::nullopt;
    int value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, base);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return value;
}

}  // namespace

std::string decimalField(int value, int width) {
    int largest = 1;
    for (int i = 0; i < width; ++i) largest *= 10;
    std::string digits = std::to_string(std::clamp(value, 0, largest - 1));
    digits.insert(0, static_cast<std::size_t>(width) - digits.size(), '0');
    return digits;
}

char hexDigit(int value) {
    return "0123456789ABCDEF"[static_cast<unsigned>(value) & 15U];
}

std::optional<int> hexValue(std::string_view digits) {
    return wholeNumber(digits, 16);
}

std::optional<int> decimalValue(std::string_view digits) {
    return wholeNumber(digits, 10);
}

}  // namespace vantor::boxsim
