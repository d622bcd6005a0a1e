#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/EventLoop.h"

namespace vantor::boxsim {

inline constexpr std::uint8_t kEscape = 27;
inline constexpr std::uint8_t kCarriageReturn = 13;

/// The box's own time between the last byte of a command and the first byte of its answer.
inline constexpr Micros kCommandTime{500};
/// From a coin's passage to the first byte of its line: the sensors settle, the box measures.
inline constexpr Micros kCoinTime{2000};

/// `value` as exactly `width` decimal digits; what does not fit is cut to 0 or to all nines.
[[nodiscard]] std::string decimalField(int value, int width);
/// The low 4 bits as an upper-case hexadecimal digit.
[[nodiscard]] char hexDigit(int value);
/// The value of a run of hexadecimal digits; nothing when another character is among them or
/// there is none.
[[nodiscard]] std::optional<int> hexValue(std::string_view digits);
/// The same for decimal digits.
[[nodiscard]] std::optional<int> decimalValue(std::string_view digits);

}  // namespace vantor::boxsim
