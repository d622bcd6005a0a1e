#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

// A fuzz target is one function on any bytes. libFuzzer drives it (preset "fuzz"), and replay.cpp
// runs it over the kept inputs as an ordinary test.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace vantor::fuzz {

/// What must hold whatever the input is; a fuzzer keeps the input of a call that aborts.
inline void require(bool holds, std::string_view what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %.*s\n", static_cast<int>(what.size()), what.data());
    std::abort();
}

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Cuts what stands before the first `end` off the front of `text`, and `end` with it.
inline std::string_view cut(std::string_view& text, char end) {
    const std::size_t at = text.find(end);
    const std::string_view head = text.substr(0, at);
    text = at == std::string_view::npos ? std::string_view{} : text.substr(at + 1);
    return head;
}

/// A number from any text, for choices that the input makes: the same on every machine.
inline std::uint32_t hashOf(std::string_view text) {
    std::uint32_t hash = 2166136261U;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    return hash;
}

/// A folder of this process for the files that the code under test wants; empty at its start.
inline const std::filesystem::path& scratchFolder() {
    struct Folder {
        std::filesystem::path path =
            std::filesystem::temp_directory_path() / ("vantor-fuzz-" + std::to_string(::getpid()));
        Folder() { std::filesystem::create_directories(path); }
        ~Folder() {
            std::error_code ignored;
            std::filesystem::remove_all(path, ignored);
        }
    };
    static const Folder folder;
    return folder.path;
}

}  // namespace vantor::fuzz
