#include "boxsim/PromFile.h"

#include "boxsim/PromSocket.h"
#include "boxsim/Wire.h"

namespace vantor::boxsim {

namespace {
constexpr std::size_t kCellsPerLine = 16;
constexpr std::size_t kAddressDigits = 3;
}  // namespace

std::string promText(std::span<const std::uint8_t> cells) {
    std::string text;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (i % kCellsPerLine == 0) {
            const int address = static_cast<int>(i);
            text += {hexDigit(address >> 8), hexDigit(address >> 4), hexDigit(address), ' '};
        }
        text += hexDigit(cells[i]);
        if (i % kCellsPerLine == kCellsPerLine - 1) text += '\n';
    }
    return text;
}

std::optional<std::vector<std::uint8_t>> promCellsOf(std::string_view text) {
    std::vector<std::uint8_t> cells;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.empty()) continue;
        if (line.size() != kAddressDigits + 1 + kCellsPerLine || line[kAddressDigits] != ' ') {
            return std::nullopt;
        }
        const auto address = hexValue(line.substr(0, kAddressDigits));
        if (!address || static_cast<std::size_t>(*address) != cells.size()) return std::nullopt;
        for (std::size_t i = kAddressDigits + 1; i < line.size(); ++i) {
            const auto nibble = hexValue(line.substr(i, 1));
            if (!nibble) return std::nullopt;
            cells.push_back(static_cast<std::uint8_t>(*nibble));
        }
    }
    if (cells.empty() || cells.size() > static_cast<std::size_t>(PromSocket::kLarge)) {
        return std::nullopt;
    }
    return cells;
}

}  // namespace vantor::boxsim
