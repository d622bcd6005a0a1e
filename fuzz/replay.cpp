#include <algorithm>
#include <vector>

#include "FuzzTarget.h"
#include "platform/Files.h"

// Runs a fuzz target over kept inputs: files, or folders of them. Without any it fails, because a
// folder that was moved would else pass for ever.

int main(int count, char** arguments) {
    namespace fs = std::filesystem;
    std::vector<fs::path> inputs;
    for (int i = 1; i < count; ++i) {
        if (!fs::is_directory(arguments[i])) {
            inputs.emplace_back(arguments[i]);
            continue;
        }
        for (const auto& entry : fs::directory_iterator(arguments[i])) {
            inputs.push_back(entry.path());
        }
    }
    std::ranges::sort(inputs);
    for (const fs::path& input : inputs) {
        // Told first, so that a crash names its input.
        std::printf("%s\n", input.c_str());
        std::fflush(stdout);
        const auto bytes = vantor::readFile(input);
        vantor::fuzz::require(bytes.has_value(), "the input can be read");
        (void)LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes->data()),
                                     bytes->size());
    }
    vantor::fuzz::require(!inputs.empty(), "there are inputs");
    return 0;
}
