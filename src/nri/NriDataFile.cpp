#include "nri/NriDataFile.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "catalogue/Text.h"

namespace vantor {

namespace {

std::optional<int> blockNumber(const std::string& text) {
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end) return std::nullopt;
    if (number < NriBlockTexts::kFirst || number > NriBlockTexts::kLast) return std::nullopt;
    return number;
}

}  // namespace

std::string nriFileText(const NriBlockTexts& blocks) {
    std::string text;
    for (int block = NriBlockTexts::kFirst; block <= NriBlockTexts::kLast; ++block) {
        // A quote would end the text too early, a line end the line; blocks of a mech hold neither.
        std::string content = blocks[block];
        std::erase_if(content, [](char c) { return c == '"' || c == '\r' || c == '\n'; });
        text += std::to_string(block) + ",\"" + content + '"' + std::string(kCrLf);
    }
    return text;
}

NriDataFile parseNriFile(std::string_view text) {
    NriDataFile file;
    for (const std::string_view line : splitLines(text)) {
        if (trimmed(line).empty()) continue;
        const auto fields = quotedFields(line);
        const auto number = fields.size() >= 2 ? blockNumber(fields[0]) : std::nullopt;
        if (number) {
            file.blocks[*number] = fields[1];
        } else {
            ++file.skipped;
        }
    }
    return file;
}

std::string nriDumpName(std::string_view mechType) {
    std::string name(mechType);
    std::ranges::replace(name, '/', '-');
    return name + "temp.txt";
}

}  // namespace vantor
