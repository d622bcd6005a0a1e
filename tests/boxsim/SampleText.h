#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "platform/Files.h"

namespace vantor::boxsim::test {

inline std::vector<std::string> split(const std::string& line, char separator) {
    std::vector<std::string> parts(1);
    bool inQuotes = false;
    for (const char c : line) {
        if (c == '"') {
            inQuotes = !inQuotes;
        } else if (c == separator && !inQuotes) {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

inline std::filesystem::path sampleFolder(const char* name) {
    return std::filesystem::path(VANTOR_SOURCE_DIR) / "data" / name;
}

/// The lines of a sample file, each of which must end with CR LF.
inline std::vector<std::string> sampleLines(const std::filesystem::path& path) {
    const auto text = readFile(path);
    EXPECT_TRUE(text && text->ends_with("\r\n")) << path;
    std::istringstream stream(text.value_or(""));
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        EXPECT_TRUE(line.ends_with('\r')) << path << ": " << line;
        line.resize(line.size() - 1);
        lines.push_back(line);
    }
    return lines;
}

}  // namespace vantor::boxsim::test
