#include "nri/NriModels.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace vantor {

namespace {

constexpr int kParameterMap = 923;
constexpr int kCompensationMap = 924;
constexpr int kHeading = 942;
constexpr int kHeadingWithRoute = 977;

constexpr std::array<NriModel, 7> kModels = {{
    {.code = "G13-6000",
     .handshake = true,
     .blocks = NriBlocks::outputs,
     .modeCommand = "$05",
     .answers = {"07"},
     .mappedReadings = true,
     .wizardMap = {4, 1, 2, 0, 5, 6},
     .slugCode = true,
     .compensationBytes = 4,
     .singleCompensation = true,
     .lastFileBlock = 0x1B,
     .mapCaption = kParameterMap,
     .otherHeading = kHeading,
     .mapLegend = {936, 937}},
    {.code = "G13-0000",
     .blocks = NriBlocks::values,
     .modeCommand = "$01",
     .answers = {"0"},
     .waitsToIdentify = true,
     .beepsPerCoin = true},
    {.code = "G18-3000",
     .handshake = true,
     .blocks = NriBlocks::outputs,
     .modeCommand = "$05",
     .answers = {"05", "01"},
     .interfaceProbe = true,
     .compensationBytes = 6,
     .routeWritten = true,
     .lastFileBlock = 0x19,
     .mapCaption = kCompensationMap,
     .otherHeading = kHeadingWithRoute,
     .route = NriRouteView::flag},
    {.code = "G18-0000",
     .blocks = NriBlocks::values,
     .modeCommand = "$01",
     .answers = {"?"},
     .waitsToIdentify = true,
     .interfaceProbe = true,
     .beepsPerCoin = true},
    {.code = "G10-4000",
     .blocks = NriBlocks::tubes,
     .modeCommand = "$23",
     .answers = {"?"},
     .waitsToIdentify = true},
    // The mech is read up to block 21, so a file of it holds no more.
    {.code = "G10-4000/5",
     .handshake = true,
     .blocks = NriBlocks::routedTubes,
     .modeCommand = "$23",
     .secondModeCommand = "$25",
     .answers = {"03", "06", "08"},
     .waitsToIdentify = true,
     .lastFileBlock = 0x14},
    {.code = "G40-0000",
     .handshake = true,
     .blocks = NriBlocks::outputs,
     .modeCommand = "$05",
     .answers = {"02"},
     .mappedReadings = true,
     .wizardMap = {0, 1, 3, 6, 8, 10},
     .slugCode = true,
     .compensationBytes = 4,
     .singleCompensation = true,
     .routeWritten = true,
     .lastFileBlock = 0x1B,
     .mapCaption = kParameterMap,
     .otherHeading = kHeadingWithRoute,
     .route = NriRouteView::fourBits,
     .mapLegendTexts = {"00=nfa  01=bod  02=hfp  03=lft  04=hfa  05=mas  06=gro  07=gru",
                        "08=slf  09=m09  10=lsa  11=lsb  12=m12  13=m13  14=m14  15=m15"}},
}};

}  // namespace

std::span<const NriModel> nriModels() {
    return kModels;
}

const NriModel& nriModel(std::string_view code) {
    const auto found = std::ranges::find(kModels, code, &NriModel::code);
    if (found == kModels.end()) {
        throw std::out_of_range("No NRI model \"" + std::string(code) + "\"");
    }
    return *found;
}

}  // namespace vantor
