#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

// The table of planted faults (tests/mutants) must follow the sources: a fault whose place is gone,
// or is not the only one, would be planted nowhere or twice.

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

TEST(Mutants, EachHasItsPlaceInTheSources) {
    const fs::path root = VANTOR_SOURCE_DIR;
    std::ifstream table(root / "tests/mutants/table.txt");
    std::map<std::string, std::string> sources;
    std::string file;
    int mutants = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.starts_with("file ")) {
            file = line.substr(5);
            sources.emplace(file, contentOf(root / file));
        }
        if (!line.starts_with("- ")) continue;
        ++mutants;
        const std::string& source = sources.at(file);
        const std::string old = line.substr(2);
        const std::size_t at = source.find(old);
        EXPECT_TRUE(at != source.npos && source.find(old, at + 1) == source.npos)
            << file << " does not have exactly once: " << old;
    }
    EXPECT_GE(mutants, 60);
}

}  // namespace
