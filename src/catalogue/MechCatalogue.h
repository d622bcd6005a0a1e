#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/MessageTable.h"

namespace vantor {

/// Maker codes, compared case-sensitively everywhere.
inline constexpr std::string_view kMars = "Mars";
inline constexpr std::string_view kCoinControls = "CC";
inline constexpr std::string_view kNri = "NRI";

/// How the bytes of a mech are framed while the box passes them through.
enum class SerialForm {
    none,      ///< the mech has no serial mode: bytes are dropped
    ccShort,   ///< CC frames, coin frames of 4 data bytes and a sum
    ccLong,    ///< CC frames, coin frames of 9 data bytes and a sum
    ccMedium,  ///< CC frames, coin frames of 6 data bytes and a sum, or 7 when that sum fails
    sentinel,  ///< echoed characters
    nriText,   ///< text lines with 06 acknowledgements
};

/// One mech model. Every difference between models that the catalogue, the link and the
/// validator test know stands in a named column here; the families' own differences (memory
/// layouts, timings) stand in tables of their folders.
struct MechModel {
    std::string_view maker;
    std::string_view code;
    bool listed = true;  ///< offered in the main window; the others may come from a coinset
    int paramCount = 3;
    int channelCount = 6;
    int channelsPerSegment = 6;
    int segmentCount = 1;
    int memorySize = 128;
    /// Message numbers of the parameter names; 0 = "Parameter" and the digit.
    std::array<int, 6> nameMessages{};
    SerialForm serialForm = SerialForm::none;
    bool tubeOrder = false;  ///< coin letters B, C, D come as tubes: positions 1, 2, 3 are 2, 3, 1
    bool binaryOutput = false;  ///< coded outputs: an "X" event is one position
    bool coinPause = false;     ///< after a coin the box wants C01, 50 ms, C00
    bool keepAlive = false;     ///< coin data requests must be repeated while no coin falls
    /// Parameter (from 1) that is judged upwards only: its limits are always 0 and its highest
    /// reading plus 10, whatever the limit source says; 0 = none.
    int upwardsOnlyParameter = 0;
    bool g40Variants = false;  ///< the validator test offers the variants of kG40Variants
};

/// All models in list order, maker by maker.
[[nodiscard]] std::span<const MechModel> mechModels();

/// The row of a model, matched exactly. Any Mars code, known or not, has a Mars row; nullptr for
/// an unknown CC or NRI code or another maker.
[[nodiscard]] const MechModel* findModel(std::string_view maker, std::string_view code);

/// The codes offered for a maker, in list order.
[[nodiscard]] std::vector<std::string_view> listedModels(std::string_view maker);
/// 0-based entry of `listedModels` that is shown first.
[[nodiscard]] int preselectedModel(std::string_view maker);

/// A variant of the G40-0000 for the validator test.
struct G40Variant {
    std::string_view code;
    bool letterOrder =
        false;  ///< coin letters come in the order of the positions, not of the tubes
};

/// In list order.
inline constexpr std::array<G40Variant, 5> kG40Variants = {
    {{"G40-x0xx"}, {"G40-x3xx", true}, {"G40-x4xx", true}, {"G40-x5xx"}, {"G40-x6xx"}}};

/// Whether a variant code names one whose letters come in the order of the positions.
[[nodiscard]] bool keepsLetterOrder(std::string_view variant);

/// The attributes of the selected model.
struct MechTypeInfo {
    int paramCount = 3;          ///< measured parameters per coin, 1..6
    int channelCount = 6;        ///< coin channels of the mech
    int channelsPerSegment = 6;  ///< channels shown and programmed together
    int segmentCount = 1;
    int memorySize = 0;  ///< Mars: PROM entries; CC: 16-bit words; unused for NRI
    std::array<std::string, 7> paramNames{};  ///< parameter p (1-based) at p - 1
};

/// Which mech is worked on.
struct MechSelection {
    std::string manufacturer;  ///< kMars, kCoinControls, kNri; empty before the first action
    std::string mechType;
    MechTypeInfo info;

    /// The catalogue row; nullptr while no known model is selected.
    [[nodiscard]] const MechModel* model() const { return findModel(manufacturer, mechType); }
};

/// Fills `selection.info` from its maker and model. An unknown CC or NRI model keeps the numbers
/// of the model before and gets the default names.
void applyMechType(MechSelection& selection, const MessageTable& messages);

}  // namespace vantor
