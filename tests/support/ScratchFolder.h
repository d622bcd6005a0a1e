#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace vantor::test {

/// A folder of a test's own below the one for such things, gone with its end.
class ScratchFolder {
  public:
    ScratchFolder() {
        static int made = 0;
        const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string("vantor-") + test->test_suite_name() + "." + test->name() +
                           "-" + std::to_string(++made);
        for (char& c : name) c = c == '/' ? '-' : c;
        path = std::filesystem::path(::testing::TempDir()) / name;
        std::filesystem::remove_all(path);
        std::filesystem::create_directories(path);
    }
    ~ScratchFolder() { std::filesystem::remove_all(path); }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::filesystem::path path;
};

}  // namespace vantor::test
