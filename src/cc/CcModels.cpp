#include "cc/CcModels.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace vantor {

namespace {

constexpr std::string_view kRequestPair = "\xFF\xFF";
constexpr std::string_view kRequestFrame = "\x7F\x1F\x9E";

constexpr std::array<CcModel, 6> kModels = {{
    {.code = "C120",
     .setUp = {"#80", "C00"},
     .limits = {.base = 10, .stride = 12},
     .verifiedWords = 128,
     .outputMap = true,
     .coinRequest = kRequestFrame},
    {.code = "220B",
     .setUp = {"#80", "C08"},
     .limits = {.base = 9, .stride = 16, .mirror = 8},
     .verifiedWords = 128,
     .coinRequest = kRequestPair},
    {.code = "335",
     .setUp = {"#80", "C08"},
     .limits = {.base = 9, .stride = 16},
     .verifiedWords = 128,
     .coinRequest = kRequestPair},
    // What lies beyond word 200 is written but not compared: the mech keeps its own data there too.
    {.code = "435",
     .setUp = {"#80", "C08"},
     .limits = {.base = 16, .stride = 16},
     .verifiedWords = 201,
     .routing = CcRouting::c435,
     .coinRequest = kRequestFrame,
     .optionalParameter = 4},
    {.code = "450",
     .setUp = {"#80", "C08"},
     .limits = {.base = 16, .stride = 12},
     .verifiedWords = 128,
     .routing = CcRouting::c450,
     .coinRequest = kRequestFrame},
    {.code = "Sentinel",
     .session = CcSession::sentinel,
     .setUp = {"C00"},
     .modeCommand = "$06",
     .limits = {.base = 0, .stride = 8},
     .check = CcCheck::sentinelWord63,
     .verifiedWords = 64,
     .routing = CcRouting::sentinel},
}};

}  // namespace

std::span<const CcModel> ccModels() {
    return kModels;
}

const CcModel& ccModel(std::string_view code) {
    const auto found = std::ranges::find(kModels, code, &CcModel::code);
    if (found == kModels.end()) {
        throw std::out_of_range("No Coin Controls model \"" + std::string(code) + "\"");
    }
    return *found;
}

}  // namespace vantor
