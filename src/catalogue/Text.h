#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantor {

// Text inside core is single-byte Windows-1252: a character position is a byte.

/// A number with a leading blank when it is not negative, as messages and labels show it: " 3".
[[nodiscard]] std::string spacedNumber(long long value);

/// "#0.0": one decimal, halves away from zero on the shortest decimal of the float.
[[nodiscard]] std::string oneDecimal(float value);

/// Decimal digits, zero-padded to at least `width`; a negative number keeps its sign in front.
[[nodiscard]] std::string padded(long long value, int width);

/// Upper-case hexadecimal, zero-padded to at least `width` digits.
[[nodiscard]] std::string hex(unsigned value, int width);

/// Nearest integer, halves to even; beyond the range of int, the nearest end of it. NaN gives 0.
[[nodiscard]] int roundHalfEven(double value);

/// Reads the number a text begins with: leading blanks are skipped, reading stops at the first
/// character that is no part of a decimal number (sign, digits, one point, an exponent), and "&h"
/// introduces hexadecimal digits. No number reads as 0. Locale never decides.
[[nodiscard]] double lenientNumber(std::string_view text);

/// The same, rounded half to even.
[[nodiscard]] int lenientInteger(std::string_view text);

/// `length` characters from 1-based `position`; shorter or empty where the text ends.
[[nodiscard]] std::string_view field(std::string_view text, int position, int length);

/// The comma splitter of language and coinset files: double quotes are dropped wherever they
/// stand and protect nothing.
class FieldReader {
  public:
    explicit FieldReader(std::string_view line) : line_(line) {}
    /// The characters up to the next comma, which is consumed, or to the end; empty past the end.
    std::string next();
    /// Whether any field is left to read.
    [[nodiscard]] bool atEnd() const { return position_ > line_.size(); }

  private:
    std::string_view line_;
    std::size_t position_ = 0;
};

/// Fields of a list in which double quotes do protect commas; the quotes are dropped, blanks
/// around unquoted fields are trimmed.
[[nodiscard]] std::vector<std::string> quotedFields(std::string_view line);

/// Lines ended by CR LF or LF (a lone CR ends nothing); a last line without an end counts, an
/// empty remainder does not.
[[nodiscard]] std::vector<std::string_view> splitLines(std::string_view text);

[[nodiscard]] std::string_view trimmed(std::string_view text);
[[nodiscard]] std::string upperCase(std::string_view text);  ///< ASCII letters only

/// Windows-1252 to UTF-8 and back. A character that Windows-1252 lacks becomes "?".
[[nodiscard]] std::string toUtf8(std::string_view windows1252);
[[nodiscard]] std::string fromUtf8(std::string_view utf8);
/// Bytes of a file whose encoding is unknown: well-formed UTF-8 with at least one non-ASCII
/// character (or a byte-order mark) is converted, anything else is taken as Windows-1252.
[[nodiscard]] std::string fromFileBytes(std::string_view bytes);

inline constexpr std::string_view kCrLf = "\r\n";

}  // namespace vantor
