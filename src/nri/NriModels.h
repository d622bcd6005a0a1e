#pragma once

#include <array>
#include <span>
#include <string_view>

namespace vantor {

/// How the blocks beside the channels' limits are laid out.
enum class NriBlocks {
    values,       ///< plain: "Y" holds the multiplier and the coin values
    tubes,        ///< plain: "X" holds a header, tube values and coin values
    outputs,      ///< handshake: output codes, values, outputs, parameter map, compensation
    routedTubes,  ///< handshake: header with tube and coin values, two route texts
};

/// How a channel's route is shown.
enum class NriRouteView {
    none,
    fourBits,  ///< one per tube and the cashbox
    flag,      ///< whether the route is 2
};

/// What sets one NRI model apart from the others; the counts of channels and parameters stand in
/// the catalogue.
struct NriModel {
    std::string_view code;
    /// 06 acknowledges the first letter of a command and every pair of data; numbers are
    /// hexadecimal. Otherwise nothing is acknowledged and numbers are decimal.
    bool handshake = false;
    NriBlocks blocks = NriBlocks::values;
    std::string_view modeCommand;               ///< the box's serial mode
    std::string_view secondModeCommand{};       ///< tried when the first brought no answer
    std::array<std::string_view, 3> answers{};  ///< accepted to "I"; empty ones are unused
    bool waitsToIdentify = false;
    bool interfaceProbe = false;      ///< may lack what old interface boards need
    bool beepsPerCoin = false;        ///< the program beeps when a reading came
    bool mappedReadings = false;      ///< a reading is picked by the channel's parameter map
    std::array<int, 6> wizardMap{};   ///< parameter map of a channel that a wizard works on
    bool slugCode = false;            ///< slugs of a coinset name a channel
    int compensationBytes = 0;        ///< in block 26
    bool singleCompensation = false;  ///< two more, in blocks 27 and 28
    bool routeWritten = false;        ///< the route text of block 18 is programmed
    int lastFileBlock = 0;            ///< handshake: programming from a file ends with this command
    // --- display: message numbers
    int mapCaption = 0;  ///< 0 = the model has no map
    int otherHeading = 0;
    NriRouteView route = NriRouteView::none;
    std::array<int, 2> mapLegend{};  ///< 0 = the texts below
    std::array<std::string_view, 2> mapLegendTexts{};
};

[[nodiscard]] std::span<const NriModel> nriModels();

/// The row of a code, matched exactly; throws std::out_of_range for an unknown one.
[[nodiscard]] const NriModel& nriModel(std::string_view code);

/// The CC model that the interface board is probed as.
inline constexpr std::string_view kInterfaceProbeModel = "Sentinel";

}  // namespace vantor
