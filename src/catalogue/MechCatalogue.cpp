#include "catalogue/MechCatalogue.h"

#include <algorithm>

namespace vantor {

namespace {

constexpr std::array<int, 6> kMarsNames = {232, 233, 234};
constexpr std::array<int, 6> kPlainNriNames = {235, 236, 237, 238};

constexpr MechModel marsModel(std::string_view code, bool listed, bool coinPause = false) {
    return {.maker = kMars,
            .code = code,
            .listed = listed,
            .paramCount = 3,
            .channelCount = 6,
            .channelsPerSegment = 6,
            .segmentCount = 4,
            .memorySize = 512,
            .nameMessages = kMarsNames,
            .coinPause = coinPause};
}

// The four segments of a Mars PROM are alternative limit sets of the same six channels; for the
// other makers channelCount is channelsPerSegment x segmentCount.
constexpr std::array kModels = {
    marsModel("MS1000", true),
    marsModel("ME111", true),
    marsModel("ME181", true, true),
    marsModel("MS130B1", true),
    marsModel("MS111", true),
    marsModel("MS1400", true),
    marsModel("ME115", false),
    marsModel("MS110", false),
    marsModel("MS100", false),
    MechModel{.maker = kCoinControls,
              .code = "C120",
              .paramCount = 3,
              .channelCount = 12,
              .channelsPerSegment = 6,
              .segmentCount = 2,
              .memorySize = 128,
              .serialForm = SerialForm::ccMedium,
              .binaryOutput = true},
    MechModel{.maker = kCoinControls,
              .code = "220B",
              .paramCount = 3,
              .channelCount = 8,
              .channelsPerSegment = 8,
              .segmentCount = 1,
              .memorySize = 128,
              .serialForm = SerialForm::ccShort,
              .binaryOutput = true,
              .keepAlive = true},
    MechModel{.maker = kCoinControls,
              .code = "335",
              .paramCount = 3,
              .channelCount = 16,
              .channelsPerSegment = 8,
              .segmentCount = 2,
              .memorySize = 128,
              .serialForm = SerialForm::ccShort,
              .binaryOutput = true,
              .keepAlive = true},
    MechModel{.maker = kCoinControls,
              .code = "435",
              .paramCount = 5,
              .channelCount = 16,
              .channelsPerSegment = 8,
              .segmentCount = 2,
              .memorySize = 256,
              .serialForm = SerialForm::ccMedium,
              .binaryOutput = true,
              .upwardsOnlyParameter = 5},
    MechModel{.maker = kCoinControls,
              .code = "450",
              .paramCount = 4,
              .channelCount = 12,
              .channelsPerSegment = 6,
              .segmentCount = 2,
              .memorySize = 128,
              .serialForm = SerialForm::ccLong,
              .tubeOrder = true,
              .binaryOutput = true},
    MechModel{.maker = kCoinControls,
              .code = "Sentinel",
              .paramCount = 3,
              .channelCount = 8,
              .channelsPerSegment = 8,
              .segmentCount = 1,
              .memorySize = 64,
              .serialForm = SerialForm::sentinel,
              .binaryOutput = true},
    MechModel{.maker = kNri,
              .code = "G13-6000",
              .paramCount = 6,
              .channelCount = 12,
              .channelsPerSegment = 6,
              .segmentCount = 2,
              .serialForm = SerialForm::nriText},
    MechModel{.maker = kNri,
              .code = "G13-0000",
              .paramCount = 4,
              .channelCount = 6,
              .channelsPerSegment = 6,
              .segmentCount = 1,
              .nameMessages = kPlainNriNames,
              .serialForm = SerialForm::nriText},
    MechModel{.maker = kNri,
              .code = "G18-3000",
              .paramCount = 6,
              .channelCount = 12,
              .channelsPerSegment = 6,
              .segmentCount = 2,
              .nameMessages = {240, 241, 242, 243, 244, 245},
              .serialForm = SerialForm::nriText,
              .tubeOrder = true},
    MechModel{.maker = kNri,
              .code = "G18-0000",
              .paramCount = 4,
              .channelCount = 6,
              .channelsPerSegment = 6,
              .segmentCount = 1,
              .nameMessages = kPlainNriNames,
              .serialForm = SerialForm::nriText,
              .tubeOrder = true},
    MechModel{.maker = kNri,
              .code = "G10-4000",
              .paramCount = 4,
              .channelCount = 8,
              .channelsPerSegment = 8,
              .segmentCount = 1,
              .nameMessages = {246, 247, 248, 249},
              .serialForm = SerialForm::nriText},
    MechModel{.maker = kNri,
              .code = "G10-4000/5",
              .paramCount = 6,
              .channelCount = 12,
              .channelsPerSegment = 6,
              .segmentCount = 2,
              .nameMessages = {250, 251, 252, 253, 254, 255},
              .serialForm = SerialForm::nriText},
    MechModel{.maker = kNri,
              .code = "G40-0000",
              .paramCount = 6,
              .channelCount = 12,
              .channelsPerSegment = 6,
              .segmentCount = 2,
              .serialForm = SerialForm::nriText,
              .tubeOrder = true,
              .binaryOutput = true,
              .g40Variants = true},
};

}  // namespace

std::span<const MechModel> mechModels() {
    return kModels;
}

const MechModel* findModel(std::string_view maker, std::string_view code) {
    const auto found = std::find_if(kModels.begin(), kModels.end(), [&](const MechModel& model) {
        return model.maker == maker && model.code == code;
    });
    if (found != kModels.end()) return &*found;
    static constexpr MechModel kAnyMars = marsModel("", false);
    return maker == kMars ? &kAnyMars : nullptr;
}

std::vector<std::string_view> listedModels(std::string_view maker) {
    std::vector<std::string_view> codes;
    for (const MechModel& model : kModels) {
        if (model.maker == maker && model.listed) codes.push_back(model.code);
    }
    return codes;
}

int preselectedModel(std::string_view maker) {
    return maker == kMars ? 1 : 0;
}

bool keepsLetterOrder(std::string_view variant) {
    return std::any_of(kG40Variants.begin(), kG40Variants.end(), [&](const G40Variant& row) {
        return row.letterOrder && row.code == variant;
    });
}

void applyMechType(MechSelection& selection, const MessageTable& messages) {
    MechTypeInfo& info = selection.info;
    for (std::size_t i = 0; i < 6; ++i) {
        info.paramNames[i] = messages.msgText(231) + std::to_string(i + 1);
    }
    const MechModel* model = selection.model();
    if (model == nullptr) return;
    info.paramCount = model->paramCount;
    info.channelCount = model->channelCount;
    info.channelsPerSegment = model->channelsPerSegment;
    info.segmentCount = model->segmentCount;
    info.memorySize = model->memorySize;
    for (std::size_t i = 0; i < model->nameMessages.size(); ++i) {
        if (model->nameMessages[i] != 0) {
            info.paramNames[i] = messages.msgText(model->nameMessages[i]);
        }
    }
}

}  // namespace vantor
