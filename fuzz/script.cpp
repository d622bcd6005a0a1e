#include <cstdint>
#include <string_view>

#include "player/Script.h"

// A session script of any content.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    (void)vantor::player::parseScript({reinterpret_cast<const char*>(data), size});
    return 0;
}
