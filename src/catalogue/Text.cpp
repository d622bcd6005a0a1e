#include "catalogue/Text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace vantor {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Code points of the Windows-1252 bytes 0x80..0x9F; 0 where the code page has no character.
constexpr std::array<std::uint16_t, 32> kHighControls = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

char32_t codePointOf(unsigned char byte) {
    if (byte < 0x80 || byte > 0x9F) return byte;
    const char32_t mapped = kHighControls[byte - 0x80U];
    return mapped == 0 ? char32_t{byte} : mapped;
}

char byteOf(char32_t codePoint) {
    if (codePoint < 0x80 || (codePoint >= 0xA0 && codePoint <= 0xFF)) {
        return static_cast<char>(static_cast<unsigned char>(codePoint));
    }
    for (unsigned i = 0; i < kHighControls.size(); ++i) {
        const char32_t mapped = kHighControls[i];
        if (mapped == codePoint || (mapped == 0 && codePoint == 0x80U + i)) {
            return static_cast<char>(static_cast<unsigned char>(0x80U + i));
        }
    }
    return '?';
}

void appendUtf8(std::string& out, char32_t c) {
    const auto push = [&out](char32_t bits) {
        out.push_back(static_cast<char>(static_cast<unsigned char>(bits)));
    };
    if (c < 0x80) {
        push(c);
    } else if (c < 0x800) {
        push(0xC0 | (c >> 6));
        push(0x80 | (c & 0x3F));
    } else {
        push(0xE0 | (c >> 12));
        push(0x80 | ((c >> 6) & 0x3F));
        push(0x80 | (c & 0x3F));
    }
}

/// The code point at `position`, which moves past it; nothing when the bytes are not UTF-8.
std::optional<char32_t> nextCodePoint(std::string_view text, std::size_t& position) {
    const auto at = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = at(position);
    std::size_t more = 0;
    char32_t value = lead;
    if (lead >= 0xF0 && lead <= 0xF4) {
        more = 3;
        value = lead & 0x07U;
    } else if (lead >= 0xE0 && lead < 0xF0) {
        more = 2;
        value = lead & 0x0FU;
    } else if (lead >= 0xC2 && lead < 0xE0) {
        more = 1;
        value = lead & 0x1FU;
    } else if (lead >= 0x80) {
        return std::nullopt;
    }
    if (position + more >= text.size() + (more == 0 ? 1 : 0)) return std::nullopt;
    for (std::size_t i = 1; i <= more; ++i) {
        const unsigned char next = at(position + i);
        if ((next & 0xC0U) != 0x80U) return std::nullopt;
        value = (value << 6) | (next & 0x3FU);
    }
    position += more + 1;
    return value;
}

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

std::string spacedNumber(long long value) {
    return value < 0 ? std::to_string(value) : " " + std::to_string(value);
}

std::string oneDecimal(float value) {
    if (!std::isfinite(value)) value = 0;
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(value),
                                   std::chars_format::fixed)
                         .ptr;
    std::string digits(buffer.data(), end);
    const std::size_t point = digits.find('.');
    std::string whole = digits.substr(0, point);
    std::string fraction = point == std::string::npos ? "" : digits.substr(point + 1);
    fraction.resize(std::max<std::size_t>(fraction.size(), 2), '0');
    std::string tenths = whole + fraction[0];
    if (fraction[1] >= '5') {
        std::size_t i = tenths.size();
        while (i > 0 && tenths[i - 1] == '9') tenths[--i] = '0';
        if (i == 0) {
            tenths.insert(tenths.begin(), '1');
        } else {
            ++tenths[i - 1];
        }
    }
    const bool negative = value < 0 && tenths.find_first_not_of('0') != std::string::npos;
    return (negative ? "-" : "") + tenths.substr(0, tenths.size() - 1) + "." + tenths.back();
}

std::string padded(long long value, int width) {
    std::string digits = std::to_string(value < 0 ? -value : value);
    if (digits.size() < static_cast<std::size_t>(width)) {
        digits.insert(0, static_cast<std::size_t>(width) - digits.size(), '0');
    }
    return (value < 0 ? "-" : "") + digits;
}

std::string hex(unsigned value, int width) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (unsigned rest = value; rest != 0; rest /= 16U)
        text.insert(text.begin(), kDigits[rest % 16U]);
    if (text.size() < static_cast<std::size_t>(width)) {
        text.insert(0, static_cast<std::size_t>(width) - text.size(), '0');
    }
    return text;
}

int roundHalfEven(double value) {
    if (std::isnan(value)) return 0;
    const double below = std::floor(value);
    const double rest = value - below;
    const bool up = rest > 0.5 || (rest == 0.5 && std::fmod(below, 2.0) != 0.0);
    const double rounded = up ? below + 1 : below;
    if (rounded >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
    if (rounded <= std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
    return static_cast<int>(rounded);
}

double lenientNumber(std::string_view text) {
    text = text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
    if (text.size() > 2 && text[0] == '&' && (text[1] == 'h' || text[1] == 'H')) {
        unsigned long value = 0;
        std::from_chars(text.data() + 2, text.data() + text.size(), value, 16);
        return static_cast<double>(value);
    }
    bool negative = false;
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
        negative = text[0] == '-';
        text.remove_prefix(1);
    }
    // from_chars would also take "inf", "nan" and a second sign.
    if (text.empty() || !(isDigit(text[0]) || text[0] == '.')) return 0;
    double value = 0;
    const auto result =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::general);
    if (result.ec != std::errc{}) return 0;
    return negative ? -value : value;
}

int lenientInteger(std::string_view text) {
    return roundHalfEven(lenientNumber(text));
}

std::string_view field(std::string_view text, int position, int length) {
    const auto start = static_cast<std::size_t>(std::max(position, 1) - 1);
    if (start >= text.size() || length <= 0) return {};
    return text.substr(start, static_cast<std::size_t>(length));
}

std::string FieldReader::next() {
    std::string collected;
    while (position_ < line_.size() && line_[position_] != ',') {
        if (line_[position_] != '"') collected.push_back(line_[position_]);
        ++position_;
    }
    ++position_;
    return collected;
}

std::vector<std::string> quotedFields(std::string_view line) {
    std::vector<std::string> fields;
    std::string current;
    bool inside = false;
    bool quoted = false;
    const auto finish = [&] {
        fields.emplace_back(quoted ? std::string_view(current) : trimmed(current));
        current.clear();
        quoted = false;
    };
    for (const char c : line) {
        if (c == '"') {
            if (!inside && !quoted) current.clear();
            inside = !inside;
            quoted = true;
        } else if (c == ',' && !inside) {
            finish();
        } else if (inside || !quoted) {
            current.push_back(c);
        }
    }
    finish();
    return fields;
}

std::vector<std::string_view> splitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        lines.push_back(line);
        text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    }
    return lines;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string upperCase(std::string_view text) {
    std::string upper(text);
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return upper;
}

std::string toUtf8(std::string_view windows1252) {
    std::string out;
    out.reserve(windows1252.size());
    for (const char c : windows1252) appendUtf8(out, codePointOf(static_cast<unsigned char>(c)));
    return out;
}

std::string fromUtf8(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        if (const auto codePoint = nextCodePoint(utf8, i)) {
            out.push_back(byteOf(*codePoint));
        } else {
            out.push_back('?');
            ++i;
        }
    }
    return out;
}

std::string fromFileBytes(std::string_view bytes) {
    const bool marked = bytes.starts_with(kByteOrderMark);
    if (marked) bytes.remove_prefix(kByteOrderMark.size());
    for (std::size_t i = 0; i < bytes.size();) {
        if (!nextCodePoint(bytes, i)) return std::string(bytes);
    }
    return fromUtf8(bytes);
}

}  // namespace vantor
