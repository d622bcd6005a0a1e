#include "nri/NriLayout.h"

#include <algorithm>
#include <stdexcept>

#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr int kPlainDigits = 3;
constexpr int kPlainLowsFrom = 13;
constexpr int kPlainChannelBlock = 24;
constexpr int kPlainChannelLines = 8;
constexpr int kPlainValueLines = 7;
constexpr int kPlainDateFrom = 29;
constexpr int kPlainDateLength = 8;
constexpr int kPlainHeader = 11;

constexpr int kFirstTube = 13;
constexpr int kTubes = 4;
constexpr int kTubeDigits = 4;
constexpr int kRoutedHeader = 8;
constexpr int kRoutedValues = 8;

constexpr int kDateBlock = 3;
constexpr int kFirstChannelBlock = 4;
constexpr int kCodeBlock = 16;
constexpr int kValueBlock = 17;
constexpr int kRouteBlock = 18;
constexpr int kOutputBlock = 19;
constexpr int kMapBlock = 20;
constexpr int kCompensationBlock = 26;
constexpr int kLastBlock = 28;
constexpr int kDateLength = 6;
constexpr int kMapDigits = 6;
constexpr int kRouteLength = 12;
constexpr int kSecondRouteLength = 8;

constexpr int kOutputs = 6;
constexpr int kOutputBits = 63;
constexpr int kFlagBits = 192;
constexpr int kValueBits = 64;
constexpr int kHighestByte = 255;

constexpr int kStringCodes = 73;
constexpr int kStringOutputs = 97;
constexpr int kStringChannels = 12;

int decimals(std::string_view text, int position, int digits) {
    return lenientInteger(field(text, position, digits));
}

int hexadecimal(std::string_view text, int position, int digits = 2) {
    return lenientInteger("&h" + std::string(field(text, position, digits)));
}

bool isDecimal(std::string_view text) {
    return text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Without control characters: a return inside a block would end its write too early.
bool isText(std::string_view text) {
    return std::ranges::none_of(text, [](char c) {
        const auto code = static_cast<unsigned char>(c);
        return code < 32 || code == 127;
    });
}

// --- steps

NriReadStep blockStep(int block, int least) {
    return {.command = "X" + hex(static_cast<unsigned>(block - 1), 2),
            .block = block,
            .lines = 1,
            .from = 1,
            .least = least};
}

void addOutputSteps(const NriShape& shape, std::vector<NriReadStep>& steps) {
    const NriModel& model = shape.model;
    steps.push_back(blockStep(kCodeBlock, 2 * shape.channels));
    steps.push_back(blockStep(kValueBlock, 2 + 2 * shape.channels));
    steps.push_back(blockStep(kOutputBlock, 2 * shape.channels));
    steps.push_back(blockStep(kMapBlock, kMapDigits * shape.channels));
    for (int block = kMapBlock + 1; block < kCompensationBlock; ++block) {
        steps.push_back(blockStep(block, 0));
    }
    steps.push_back(blockStep(kCompensationBlock, 2 * model.compensationBytes));
    if (model.singleCompensation) {
        for (int block = kCompensationBlock + 1; block <= kLastBlock; ++block) {
            // Kept, and neither shown nor programmed: a mech may well lack them.
            steps.push_back(blockStep(block, 0));
        }
    }
    steps.push_back(blockStep(kRouteBlock, model.routeWritten ? kRouteLength : 0));
}

void addRoutedSteps(std::vector<NriReadStep>& steps) {
    steps.push_back(blockStep(kCodeBlock, kRoutedHeader + kTubeDigits * (kTubes + kRoutedValues)));
    steps.back().decimalsFrom = kRoutedHeader;
    steps.push_back(blockStep(kValueBlock, kRouteLength));
    steps.push_back(blockStep(kRouteBlock, kSecondRouteLength));
    for (int block = kOutputBlock; block <= kMapBlock + 1; ++block) {
        steps.push_back(blockStep(block, 0));
    }
}

std::vector<NriReadStep> handshakeSteps(const NriShape& shape) {
    std::vector<NriReadStep> steps;
    for (int block = 1; block <= kDateBlock; ++block) {
        steps.push_back(blockStep(block, block == kDateBlock ? kDateLength : 0));
    }
    for (int channel = 1; channel <= shape.channels; ++channel) {
        steps.push_back(blockStep(kFirstChannelBlock + channel - 1, 4 * shape.parameters));
    }
    if (shape.model.blocks == NriBlocks::outputs) {
        addOutputSteps(shape, steps);
    } else {
        addRoutedSteps(steps);
    }
    return steps;
}

std::vector<NriReadStep> plainSteps(const NriShape& shape) {
    const int c = shape.channels;
    std::vector<NriReadStep> steps;
    steps.push_back({.command = "Z",
                     .block = c + 2,
                     .lines = 1,
                     .from = kPlainDateFrom,
                     .least = kPlainDateLength});
    if (shape.model.blocks == NriBlocks::tubes) {
        steps.push_back({.command = "X",
                         .block = c + 1,
                         .lines = 1,
                         .from = 1,
                         .least = kPlainHeader + kTubeDigits * (kTubes + c),
                         .decimalsFrom = kPlainHeader});
    } else {
        steps.push_back({.command = "Y",
                         .block = c + 1,
                         .lines = kPlainValueLines,
                         .from = 1,
                         .least = kPlainDigits * (1 + c)});
    }
    for (int channel = 1; channel <= c; ++channel) {
        steps.push_back({.command = "V" + std::to_string(channel),
                         .block = channel,
                         .lines = kPlainChannelLines,
                         .from = 1,
                         .least = kPlainChannelBlock});
    }
    return steps;
}

// --- decoding

/// Tube and coin values of four decimals, which follow a header.
void decodeTubes(std::string_view text, int headerLength, int values, NriFields& fields) {
    fields.header = field(text, 1, headerLength);
    int position = headerLength + 1;
    const auto next = [&] {
        const int value = decimals(text, position, kTubeDigits);
        position += kTubeDigits;
        return value;
    };
    for (int tube = 0; tube < kTubes; ++tube) fields.coinValues[kFirstTube + tube] = next();
    for (int channel = 1; channel <= values; ++channel) fields.coinValues[channel] = next();
    fields.valueMultiplier = 1;
}

std::string dateField(std::string_view ddmmyy) {
    std::string date;
    for (const int position : {1, 4, 7}) {
        const int part = std::clamp(decimals(ddmmyy, position, 2), 0, kHighestByte);
        date += hex(static_cast<unsigned>(part), 2);
    }
    return date;
}

void decodePlain(const NriShape& shape, const NriBlockTexts& blocks, NriFields& fields) {
    const int c = shape.channels;
    for (int channel = 1; channel <= c; ++channel) {
        for (int p = 0; p < shape.parameters; ++p) {
            const std::string& text = blocks[channel];
            fields.limits[channel][2 * p + 2] = decimals(text, kPlainDigits * p + 1, kPlainDigits);
            fields.limits[channel][2 * p + 1] =
                decimals(text, kPlainDigits * p + kPlainLowsFrom, kPlainDigits);
        }
    }
    const std::string& values = blocks[c + 1];
    if (shape.model.blocks == NriBlocks::tubes) {
        decodeTubes(values, kPlainHeader, c, fields);
    } else {
        fields.valueMultiplier = decimals(values, 1, kPlainDigits);
        for (int channel = 1; channel <= c; ++channel) {
            fields.coinValues[channel] =
                decimals(values, kPlainDigits * (c - channel + 1) + 1, kPlainDigits);
        }
    }
    fields.date = dateField(blocks[c + 2]);
}

void decodeOutputBlocks(const NriShape& shape, const NriBlockTexts& blocks, NriFields& fields) {
    fields.valueMultiplier = hexadecimal(blocks[kValueBlock], 1);
    const int step = nriValueStep(fields.valueMultiplier);
    for (int channel = 1; channel <= shape.channels; ++channel) {
        const int pair = 2 * (channel - 1) + 1;
        fields.outputCodes[channel] = hexadecimal(blocks[kCodeBlock], pair);
        fields.coinValues[channel] = step * hexadecimal(blocks[kValueBlock], pair + 2);
        fields.outputs[channel] = nriOutput(hexadecimal(blocks[kOutputBlock], pair));
        for (int p = 1; p <= shape.parameters; ++p) {
            fields.parameterMap[channel][p] =
                hexadecimal(blocks[kMapBlock], kMapDigits * (channel - 1) + p, 1);
        }
    }
    for (int i = 0; i < shape.model.compensationBytes; ++i) {
        fields.compensation[i] = hexadecimal(blocks[kCompensationBlock], 2 * i + 1);
    }
    if (shape.model.singleCompensation) {
        for (int i = 1; i <= 2; ++i) {
            fields.compensation[shape.model.compensationBytes + i - 1] =
                hexadecimal(blocks[kCompensationBlock + i], 1);
        }
    }
    fields.routeText[0] = blocks[kRouteBlock];
}

void decodeHandshake(const NriShape& shape, const NriBlockTexts& blocks, NriFields& fields) {
    for (int channel = 1; channel <= shape.channels; ++channel) {
        const std::string& text = blocks[kFirstChannelBlock + channel - 1];
        for (int p = 0; p < shape.parameters; ++p) {
            fields.limits[channel][2 * p + 2] = hexadecimal(text, 4 * p + 1);
            fields.limits[channel][2 * p + 1] = hexadecimal(text, 4 * p + 3);
        }
    }
    fields.date = field(blocks[kDateBlock], 1, kDateLength);
    if (shape.model.blocks == NriBlocks::outputs) {
        decodeOutputBlocks(shape, blocks, fields);
    } else {
        decodeTubes(blocks[kCodeBlock], kRoutedHeader, kRoutedValues, fields);
        fields.routeText = {blocks[kValueBlock], blocks[kRouteBlock]};
    }
}

void checkSource(const NriShape& shape, int source) {
    if (source >= 1 && source <= shape.channels) return;
    throw std::out_of_range("The mech has no channel " + std::to_string(source));
}

}  // namespace

NriShape nriShape(std::string_view code) {
    const MechModel* counts = findModel(kNri, code);
    const NriModel& model = nriModel(code);
    if (counts == nullptr) throw std::out_of_range("No NRI model \"" + std::string(code) + "\"");
    return {.model = model, .channels = counts->channelCount, .parameters = counts->paramCount};
}

std::vector<NriReadStep> nriReadSteps(const NriShape& shape) {
    return shape.model.handshake ? handshakeSteps(shape) : plainSteps(shape);
}

bool nriBlockSound(const NriShape& shape, const NriReadStep& step, std::string_view text) {
    const auto least = static_cast<std::size_t>(step.least);
    if (text.size() < least || !isText(text)) return false;
    if (step.decimalsFrom >= 0) {
        const auto from = static_cast<std::size_t>(step.decimalsFrom);
        if (!isDecimal(text.substr(from, least - from))) return false;
        // A character more in the header would have moved them all.
        if (!shape.model.handshake && text.size() > least && isDecimal(text.substr(least, 1))) {
            return false;
        }
    }
    if (shape.model.handshake) return least == 0 || isHexPairs(text);
    return step.lines == 1 || (text.size() == least && isDecimal(text));
}

bool isHexPairs(std::string_view text) {
    return text.size() % 2 == 0 &&
           text.find_first_not_of("0123456789ABCDEFabcdef") == std::string_view::npos;
}

NriFields decodeNriBlocks(const NriShape& shape, const NriBlockTexts& blocks) {
    NriFields fields;
    if (shape.model.handshake) {
        decodeHandshake(shape, blocks, fields);
    } else {
        decodePlain(shape, blocks, fields);
    }
    return fields;
}

int nriOutput(int maskByte) {
    int number = 0;
    for (int output = 1; output <= kOutputs; ++output) {
        if ((maskByte & kOutputBits) == 1 << (output - 1)) number = output;
    }
    return number + (maskByte & kFlagBits);
}

int nriMaskByte(int output) {
    const int number = output & kOutputBits;
    const int mask = number >= 1 && number <= kOutputs ? 1 << (number - 1) : 0;
    return mask + (output & kFlagBits);
}

std::optional<std::array<int, kMaxParameters>> nriReading(
    const NriShape& shape, std::string_view answer, const Ranged<int, 1, kMaxParameters>* map) {
    const bool handshake = shape.model.handshake;
    const auto plainLength = std::size_t{kPlainDigits} * static_cast<std::size_t>(shape.parameters);
    const bool whole =
        handshake ? isHexPairs(answer) : answer.size() == plainLength && isDecimal(answer);
    if (!whole) return std::nullopt;
    std::array<int, kMaxParameters> readings{};
    for (int p = 0; p < shape.parameters; ++p) {
        int& reading = readings.at(static_cast<std::size_t>(p));
        if (!handshake) {
            reading = decimals(answer, kPlainDigits * p + 1, kPlainDigits);
            continue;
        }
        const int k = map != nullptr ? (*map)[p + 1] : p;
        if (field(answer, 2 * k + 1, 2).size() != 2) return std::nullopt;
        reading = hexadecimal(answer, 2 * k + 1);
    }
    return readings;
}

// --- building new fields

void decodeNriParameters(const NriShape& shape, std::string_view text, NriFields& fields) {
    for (int channel = 1; channel <= shape.channels; ++channel) {
        for (int p = 1; p <= shape.parameters; ++p) {
            fields.parameterMap[channel][p] =
                hexadecimal(text, (p - 1) * shape.channels + channel, 1);
        }
    }
    for (int channel = 1; channel <= kStringChannels; ++channel) {
        fields.outputCodes[channel] = hexadecimal(text, 2 * (channel - 1) + kStringCodes);
        const std::string_view entry = field(text, kStringOutputs + channel - 1, 1);
        if (entry.empty()) {
            fields.outputs[channel] = 0;
            continue;
        }
        // Digits stand for outputs without flags; the columns of the code table above for flags.
        const int code = static_cast<unsigned char>(entry.front());
        const int flags = (code / 16 + 1) % 4;
        fields.outputs[channel] = code % 16 + kValueBits * flags;
    }
}

NriFields newNriFields(const NriShape& shape, const NriNewData& given, const CoinsetData& coinset,
                       const NriFields& old) {
    NriFields fields = old;
    if (given.valuesPresent) {
        fields.coinValues = given.newCoinValue;
        fields.valueMultiplier = given.valueMultiplier;
    }
    if (!given.parameterString.empty()) {
        decodeNriParameters(shape, given.parameterString, fields);
    }
    fields.compensationPresent = coinset.compensationPresent;
    if (coinset.compensationPresent) fields.compensation = given.compensation;
    for (std::size_t i = 0; i < fields.routeText.size(); ++i) {
        if (coinset.routingPresent && !given.routeText[i].empty()) {
            fields.routeText[i] = given.routeText[i];
        }
    }
    return fields;
}

void takeOverNriChannel(const NriShape& shape, const NriFields& old, int source, NriFields& next,
                        int channel) {
    checkSource(shape, source);
    next.coinValues[channel] = old.coinValues[source];
    if (shape.model.blocks != NriBlocks::outputs) return;
    next.outputCodes[channel] = old.outputCodes[source];
    next.outputs[channel] = old.outputs[source];
    next.parameterMap[channel] = old.parameterMap[source];
}

void copyNriLimits(const NriShape& shape, const NriFields& old, int source,
                   ChannelLimitTable& limits, int channel) {
    checkSource(shape, source);
    for (int column = 1; column <= 2 * shape.parameters; ++column) {
        limits[channel][column] = old.limits[source][column];
    }
}

int highestNriValue(const NriShape& shape, int multiplier) {
    constexpr int kThreeDigits = 999;
    constexpr int kFourDigits = 9999;
    switch (shape.model.blocks) {
        case NriBlocks::values:
            return kThreeDigits;
        case NriBlocks::outputs:
            return kHighestByte * nriValueStep(multiplier);
        case NriBlocks::tubes:
        case NriBlocks::routedTubes:
            break;
    }
    return kFourDigits;
}

int nriValueStep(int multiplier) {
    return std::max(multiplier % kValueBits, 1);
}

}  // namespace vantor
