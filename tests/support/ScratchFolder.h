#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>

namespace vantor::test {

/// A folder of a test's own below the one for such things, gone with its end. Tests, and whole
/// suites, run side by side: no two may share one.
class ScratchFolder {
  public:
    ScratchFolder() {
        std::random_device random;
        do {
            path = std::filesystem::path(::testing::TempDir()) /
                   ("vantor-test-" + std::to_string(random()));
        } while (!std::filesystem::create_directories(path));
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::filesystem::path path;
};

}  // namespace vantor::test
