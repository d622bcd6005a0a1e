#include "mars/MarsModels.h"

#include <algorithm>
#include <array>

namespace vantor {

namespace {

constexpr std::array<MarsModel, 10> kModels = {{
    {.code = "MS1000", .timingCommand = "Z150150150425", .idleWaitMs = 1000},
    {.code = "ME111"},
    {.code = "ME181",
     .cfdBracketed = true,
     .alwaysTwoK = true,
     .duplicates = false,
     .layout = {.segments = 2, .segmentCells = 256, .blockOffset = 128, .coinValues = true}},
    {.code = "MS130B1"},
    {.code = "MS111"},
    {.code = "MS1400",
     .timingCommand = "Z150150150425",
     .commandBeforeTimings = "C02",
     .idleWaitMs = 1000},
    {.code = "ME115"},
    {.code = "MS110"},
    {.code = "MS100"},
    {.code = ""},
}};

}  // namespace

std::span<const MarsModel> marsModels() {
    return kModels;
}

const MarsModel& marsModel(std::string_view code) {
    const auto found = std::ranges::find(kModels, code, &MarsModel::code);
    return found == kModels.end() ? kModels.back() : *found;
}

}  // namespace vantor
