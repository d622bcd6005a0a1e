#include "cc/EepromFile.h"

#include <bitset>
#include <charconv>
#include <optional>

#include "catalogue/Text.h"
#include "cc/CcLayout.h"

namespace vantor {

namespace {

/// The whole of a field as a decimal number; nothing for anything else.
std::optional<long long> wholeNumber(const std::string& text) {
    std::string_view digits = trimmed(text);
    if (digits.size() > 1 && digits.front() == '+' && digits[1] != '-') digits.remove_prefix(1);
    long long value = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    if (digits.empty() || error != std::errc{} || stop != end) return std::nullopt;
    return value;
}

}  // namespace

std::string eepromFileText(const MechImage& image, int words) {
    std::string text;
    for (int i = 0; i < words; ++i) {
        text += std::to_string(i) + "," + std::to_string(image[i]) + std::string(kCrLf);
    }
    return text;
}

EepromFile parseEepromFile(std::string_view text, int words) {
    EepromFile file;
    std::bitset<MechImage::kLast + 1> seen;
    for (const std::string_view line : splitLines(text)) {
        if (trimmed(line).empty()) continue;
        FieldReader fields(line);
        const auto index = wholeNumber(fields.next());
        const auto value = wholeNumber(fields.next());
        const bool fits = value && *value >= 0 && *value <= 0xFFFF;
        if (!index || *index < 0 || *index > MechImage::kLast || !fits) {
            ++file.skipped;
            continue;
        }
        const int word = static_cast<int>(*index);
        file.image[word] = static_cast<int>(*value);
        if (word < words) seen.set(static_cast<std::size_t>(word));
    }
    file.given = static_cast<int>(seen.count());
    return file;
}

}  // namespace vantor
