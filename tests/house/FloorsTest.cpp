#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <string>

// The house is only easy to live in while includes run downwards. Link targets keep core away
// from the toolkit; this walk keeps the folders apart.

namespace {

namespace fs = std::filesystem;

const std::map<std::string, int> kFloors = {
    {"platform", 0}, {"catalogue", 1}, {"resources", 1}, {"link", 2},    {"mars", 3},
    {"cc", 3},       {"nri", 3},       {"limits", 4},    {"measure", 5}, {"valtest", 5}};
constexpr int kWindows = 6;
constexpr int kApp = 7;

/// Floor of a file given by its path below src/; nothing for what stands beside the house.
std::optional<int> floorOf(const fs::path& file) {
    const std::string folder = file.begin()->string();
    if (folder == "app") return kApp;
    // The toolkit's side of the world interfaces serves windows and the program, nobody below.
    if (file.generic_string().starts_with("platform/qt/")) return kWindows;
    if (file.filename().string().starts_with("frm")) return kWindows;
    const auto row = kFloors.find(folder);
    if (row == kFloors.end()) return std::nullopt;
    return row->second;
}

bool isWidgetSide(const fs::path& file) {
    const std::string path = file.generic_string();
    return path.starts_with("platform/qt/") || path.starts_with("app/") ||
           path.starts_with("player/") || path.starts_with("boxsim/qt/") ||
           file.filename().string().starts_with("frm");
}

TEST(House, IncludesRunDownwards) {
    const fs::path root = fs::path(VANTOR_SOURCE_DIR) / "src";
    const std::regex include("^\\s*#include\\s*([\"<])([^\">]+)[\">]");
    int read = 0;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        const fs::path file = entry.path().lexically_relative(root);
        if (file.extension() != ".h" && file.extension() != ".cpp") continue;
        std::ifstream in(entry.path());
        ++read;
        const auto floor = floorOf(file);
        for (std::string line; std::getline(in, line);) {
            std::smatch match;
            if (!std::regex_search(line, match, include)) continue;
            const std::string name = match[2];
            if (match[1] == "<") {
                const bool widget = name.size() > 1 && name[0] == 'Q' && std::isupper(name[1]);
                EXPECT_TRUE(!widget || isWidgetSide(file)) << file << " includes " << name;
                continue;
            }
            if (name.starts_with("ui_")) continue;
            const auto target = floorOf(name);
            if (floor && target) {
                EXPECT_LE(*target, *floor) << file << " includes upwards: " << name;
            }
            // The simulator shares no codec with the program.
            if (file.begin()->string() == "boxsim" && !isWidgetSide(file)) {
                EXPECT_TRUE(!target || *target <= 1) << file << " includes " << name;
            }
        }
    }
    EXPECT_GT(read, 40);
}

}  // namespace
