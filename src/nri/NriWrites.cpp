#include "nri/NriWrites.h"

#include <algorithm>

#include "catalogue/Text.h"
#include "link/ProgressDisplay.h"

namespace vantor {

namespace {

constexpr int kPlainChannelMs = 300;
constexpr int kPlainValuesMs = 400;
constexpr int kChannelMs = 100;
constexpr int kBlockMs = 200;
constexpr int kRouteMs = 100;
constexpr int kPlainFileMs = 400;
constexpr int kFileMs = 500;
/// What the progress of a plain file counts to, whatever the model's channels.
constexpr int kPlainFileSteps = 7;

constexpr std::size_t kHalfChannelText = 12;
constexpr std::size_t kRouteLength = 12;
constexpr std::size_t kSecondRouteLength = 8;
constexpr std::size_t kPlainHeader = 11;
constexpr std::size_t kRoutedHeader = 8;
constexpr int kFirstTube = 13;
constexpr int kLastTube = 16;
constexpr int kRoutedValues = 8;
constexpr int kCentury = 2000;
constexpr char kReturn = '\r';

std::string pair(int value) {
    return hex(static_cast<unsigned>(std::clamp(value, 0, 255)), 2);
}
std::string digit(int value) {
    return hex(static_cast<unsigned>(std::clamp(value, 0, 15)), 1);
}
std::string three(int value) {
    return padded(std::clamp(value, 0, 999), 3);
}
std::string four(int value) {
    return padded(std::clamp(value, 0, 9999), 4);
}

/// Header, tube values and the values of channels 1..count; empty without a whole header.
std::string tubeText(const NriFields& fields, std::size_t headerLength, int count) {
    if (fields.header.size() != headerLength) return {};
    std::string text = fields.header;
    for (int tube = kFirstTube; tube <= kLastTube; ++tube) text += four(fields.coinValues[tube]);
    for (int channel = 1; channel <= count; ++channel) text += four(fields.coinValues[channel]);
    return text;
}

/// A route that is too short would leave the mech waiting for the rest, and a letter that is no
/// digit would be a command to it.
std::string wholeRoute(const std::string& text, std::size_t least) {
    return text.size() >= least && isHexPairs(text) ? text : std::string();
}

std::string plainLimits(const NriShape& shape, const ChannelLimitTable& limits, int channel) {
    std::string highs;
    std::string lows;
    for (int p = 1; p <= shape.parameters; ++p) {
        highs += three(limits[channel][2 * p]);
        lows += three(limits[channel][2 * p - 1]);
    }
    return std::to_string(channel) + highs + kReturn + lows + kReturn;
}

std::vector<NriWrite> plainWrites(const NriShape& shape, const ChannelLimitTable& limits,
                                  const NriFields& fields, const Date& today) {
    std::vector<NriWrite> writes;
    const auto add = [&](const char* command, std::string data, int waitMs) {
        writes.push_back(
            {.command = command, .data = std::move(data), .waitMs = waitMs, .always = true});
    };
    for (int channel = 1; channel <= shape.channels; ++channel) {
        add("D", plainLimits(shape, limits, channel), kPlainChannelMs);
    }
    if (shape.model.blocks == NriBlocks::tubes) {
        std::string text = tubeText(fields, kPlainHeader, shape.channels);
        if (!text.empty()) text += std::string("::") + kReturn;
        add("F", text, kPlainValuesMs);
    } else {
        std::string text = three(fields.valueMultiplier);
        for (int channel = shape.channels; channel >= 1; --channel) {
            text += three(fields.coinValues[channel]);
        }
        add("B", text + kReturn, kPlainValuesMs);
    }
    const auto part = [](int value) { return padded(std::clamp(value, 0, 99), 2); };
    add("E",
        part(today.day) + "/" + part(today.month) + "/" + part(today.year - kCentury) + kReturn, 0);
    return writes;
}

std::string pairs(const NriShape& shape, const Ranged<int, 1, kChannels>& values) {
    std::string text;
    for (int channel = 1; channel <= shape.channels; ++channel) text += pair(values[channel]);
    return text;
}

std::string handshakeLimits(const NriShape& shape, const ChannelLimitTable& limits, int channel) {
    std::string text;
    for (int p = 1; p <= shape.parameters; ++p) {
        text += pair(limits[channel][2 * p]) + pair(limits[channel][2 * p - 1]);
    }
    return text;
}

std::string valueText(const NriShape& shape, const NriFields& fields) {
    const int multiplier = std::clamp(fields.valueMultiplier, 0, 255);
    const int step = nriValueStep(multiplier);
    std::string text = pair(multiplier);
    for (int channel = 1; channel <= shape.channels; ++channel) {
        text += pair(fields.coinValues[channel] / step);
    }
    return text;
}

std::string outputText(const NriShape& shape, const NriFields& fields) {
    std::string text;
    for (int channel = 1; channel <= shape.channels; ++channel) {
        text += pair(nriMaskByte(fields.outputs[channel]));
    }
    return text;
}

std::string mapText(const NriShape& shape, const NriFields& fields) {
    std::string text;
    for (int channel = 1; channel <= shape.channels; ++channel) {
        for (int p = 1; p <= shape.parameters; ++p) text += digit(fields.parameterMap[channel][p]);
    }
    return text;
}

std::string compensationText(const NriShape& shape, const NriFields& fields) {
    std::string text;
    for (int i = 0; i < shape.model.compensationBytes; ++i) text += pair(fields.compensation[i]);
    return text;
}

std::vector<NriWrite> handshakeWrites(const NriShape& shape, const ChannelLimitTable& limits,
                                      const NriFields& fields, const Date& today) {
    std::vector<NriWrite> writes;
    const auto add = [&](std::string command, std::string data, int waitMs, bool always = false) {
        writes.push_back({.command = std::move(command),
                          .data = std::move(data),
                          .waitMs = waitMs,
                          .always = always});
    };
    for (int channel = 1; channel <= shape.channels; ++channel) {
        add("Z" + hex(static_cast<unsigned>(channel + 2), 2),
            handshakeLimits(shape, limits, channel), kChannelMs, true);
    }
    add("Z02", pair(today.day) + pair(today.month) + pair(today.year - kCentury), 0, true);
    if (shape.model.blocks == NriBlocks::routedTubes) {
        add("Z0F", tubeText(fields, kRoutedHeader, kRoutedValues), kBlockMs);
        add("Z10", wholeRoute(fields.routeText[0], kRouteLength), kBlockMs);
        add("Z11", wholeRoute(fields.routeText[1], kSecondRouteLength), kBlockMs);
        return writes;
    }
    add("Z0F", pairs(shape, fields.outputCodes), kBlockMs);
    add("Z10", valueText(shape, fields), kBlockMs);
    add("Z12", outputText(shape, fields), kBlockMs);
    add("Z13", mapText(shape, fields), kBlockMs);
    if (fields.compensationPresent) add("Z19", compensationText(shape, fields), 0);
    if (shape.model.routeWritten) {
        add("Z11", wholeRoute(fields.routeText[0], kRouteLength), kRouteMs);
    }
    return writes;
}

std::optional<std::vector<NriWrite>> plainFileWrites(const NriShape& shape,
                                                     const NriBlockTexts& blocks) {
    const int c = shape.channels;
    std::vector<NriWrite> writes;
    const auto add = [&](const char* command, std::string data, int waitMs, int progress) {
        writes.push_back({.command = command,
                          .data = std::move(data),
                          .waitMs = waitMs,
                          .always = true,
                          .progress = progress});
    };
    for (int channel = 1; channel <= c; ++channel) {
        const std::string& text = blocks[channel];
        add("D",
            std::to_string(channel) + text.substr(0, kHalfChannelText) + kReturn +
                text.substr(kHalfChannelText) + kReturn,
            kPlainFileMs, ProgressDisplay::kRange * (channel - 1) / kPlainFileSteps);
    }
    if (shape.model.blocks == NriBlocks::tubes) {
        add("F", blocks[c + 1] + "::" + kReturn, kPlainFileMs, ProgressDisplay::kRange);
    } else {
        add("B", blocks[c + 1] + kReturn, kPlainFileMs, ProgressDisplay::kRange);
    }
    add("E", blocks[c + 2] + kReturn, 0, ProgressDisplay::kRange);
    return writes;
}

std::optional<std::vector<NriWrite>> handshakeFileWrites(const NriShape& shape,
                                                         const NriBlockTexts& blocks) {
    std::vector<NriWrite> writes;
    const int last = shape.model.lastFileBlock;
    for (int i = 0; i <= last; ++i) {
        const std::string& text = blocks[i + 1];
        std::string data = text.substr(0, text.size() / 2 * 2);
        if (!isHexPairs(data)) return std::nullopt;
        // What the mech of the file has not got is not begun: it would wait for the rest.
        if (data.empty()) continue;
        writes.push_back({.command = "Z" + hex(static_cast<unsigned>(i), 2),
                          .data = std::move(data),
                          .waitMs = kFileMs,
                          .always = true,
                          .progress = ProgressDisplay::kRange * i / (last + 1)});
    }
    return writes;
}

}  // namespace

std::vector<NriWrite> nriWrites(const NriShape& shape, const ChannelLimitTable& limits,
                                const NriFields& fields, const Date& today) {
    auto writes = shape.model.handshake ? handshakeWrites(shape, limits, fields, today)
                                        : plainWrites(shape, limits, fields, today);
    const int count = static_cast<int>(writes.size());
    for (int i = 0; i < count; ++i) {
        writes[static_cast<std::size_t>(i)].progress = ProgressDisplay::kRange * (i + 1) / count;
    }
    return writes;
}

std::optional<std::vector<NriWrite>> nriFileWrites(const NriShape& shape,
                                                   const NriBlockTexts& blocks) {
    for (const NriReadStep& step : nriReadSteps(shape)) {
        if (!nriBlockSound(shape, step, blocks[step.block])) return std::nullopt;
    }
    return shape.model.handshake ? handshakeFileWrites(shape, blocks)
                                 : plainFileWrites(shape, blocks);
}

}  // namespace vantor
