#include "cc/CcLayout.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace vantor {

// Words of an EEPROM; a word is high byte x 256 + low byte. A limit word holds the high limit in
// its high and the low limit in its low byte; channels run on within a parameter.
//
//             limits (parameters x channels)             other words used here
//   C120      10..21  22..33  34..45                     82..88 outputs (new), 109..114 (Jaguar)
//   220B       9..16  25..32  41..48, mirrored 8 further
//   335        9..24  25..40  41..56
//   450       16..27  28..39  40..51  52..63             121..123 routing
//   435       16..31  32..47  48..63  64..79  80..95     11, 110..113, 128..143, 204, 228
//   Sentinel   0..7    8..15  16..23                     53..58 routing block, 63 check word
//
//   word 127   high: check byte over words 0..126        low: the mech's own (all but Sentinel)
//
//   C120 outputs, one mask per channel:      high   low
//     Jaguar   109 + k   (k = 0..5)          2k+2   2k+1
//     new       82                              1   (0)
//               82 + j   (j = 1..5)          2j+1   2j
//               88                            (0)   12
//
//   450, words 121..123, least significant nibble last:    | c+3 | c+2 | c+1 | c |
//   Sentinel, words 54 and 55, channels from the left:     | c | c+1 | c+2 | c+3 |
//   Sentinel 53: high counts transfers; 56: high checks words 53..58; 58: 0xD2D0
//
//   435 11: bit 8 routed from memory     435 128 + row: | 4th | 3rd | 2nd | 1st | path choice
//   435 110 + r: binary codes 4r+3 .. 4r, likewise
//   435 204: high = plug default, path code      435 228: high = plug default, plug code; low 0x42

namespace {

constexpr int kHighestLimit = 255;
constexpr int kSentinelCheckWord = 63;

constexpr int kC120Channels = 12;
constexpr int kC120Outputs = 6;
constexpr int kJaguarFirstWord = 109;
constexpr int kNewFirstWord = 82;

constexpr int kC450RoutingWord = 121;
constexpr int kC450RoutingWords = 3;
constexpr int kNibbles = 4;

constexpr int kSentinelChannels = 8;
constexpr int kTransferCountWord = 53;
constexpr int kSortWord = 54;
constexpr int kBlockCheckWord = 56;
constexpr int kBlockMarkWord = 58;
constexpr int kBlockMark = 0xD2D0;

constexpr int kSourceWord = 11;
constexpr int kFromMemoryBit = 0x100;
constexpr int kBinaryCodeWord = 110;
constexpr int kBinaryCodeWords = 4;
constexpr int kSortTableWord = 128;
constexpr int kPlugPathWord = 204;
constexpr int kPlugWord = 228;
constexpr int kPlugMark = 0x42;

// Places of a 435's values in a coinset's routing record.
constexpr int kRoutingSource = 16;
constexpr int kRoutingCodes = 17;
constexpr int kRoutingPlug = 21;
constexpr int kRoutingPlugPath = 22;

constexpr std::array<C435Route, 8> kC435Routes = {{
    {'D', 0, 5},
    {'C', 1, 4},
    {'B', 2, 3},
    {'A', 3, 2},
    {'a', 4, 7},
    {'b', 5, 8},
    {'c', 6, 9},
    {'d', 7, 6},
}};

constexpr std::array<std::string_view, 14> kSentinelRoutes = {
    "No Sort", "", "", "", "", "", "", "", "A", "C", "B", "D", "AB", "CD"};

int wrapToByte(int value) {
    return (value % 256 + 256) % 256;
}

void checkRange(const char* what, int value, int last) {
    if (value >= 1 && value <= last) return;
    throw std::out_of_range("No " + std::string(what) + " " + std::to_string(value));
}

/// Sum of the bytes of words first..last, modulo 256.
int byteSum(const MechImage& image, int first, int last) {
    int sum = 0;
    for (int i = first; i <= last; ++i) sum += highByte(image[i]) + lowByte(image[i]);
    return sum % 256;
}

/// Where a C120 keeps the output of a channel.
struct ByteAddress {
    int word = 0;
    bool high = false;
};

ByteAddress c120Address(int channel, bool jaguar) {
    checkRange("channel", channel, kC120Channels);
    // As a sequence of bytes, low before high: the Jaguar layout begins with channel 1, the new
    // one with an empty byte.
    const int place = jaguar ? channel - 1 : channel;
    return {(jaguar ? kJaguarFirstWord : kNewFirstWord) + place / 2, place % 2 != 0};
}

void storeByte(MechImage& image, ByteAddress at, int value) {
    int& word = image[at.word];
    word = at.high ? wordOf(value, lowByte(word)) : wordOf(highByte(word), value);
}

std::string routeLetter(int pathCode) {
    const auto found = std::ranges::find(kC435Routes, pathCode, &C435Route::pathCode);
    return std::string(1, found == kC435Routes.end() ? '?' : found->letter);
}

const C435Route* routeOf(std::string_view text) {
    if (text.size() != 1) return nullptr;
    const auto found = std::ranges::find(kC435Routes, text.front(), &C435Route::letter);
    return found == kC435Routes.end() ? nullptr : &*found;
}

std::string binaryDigits(int code) {
    std::string digits;
    for (int bit = kNibbles - 1; bit >= 0; --bit) digits += (code >> bit & 1) != 0 ? '1' : '0';
    return digits;
}

std::optional<int> binaryCode(std::string_view digits) {
    if (digits.size() != std::size_t{kNibbles}) return std::nullopt;
    int code = 0;
    for (const char digit : digits) {
        if (digit != '0' && digit != '1') return std::nullopt;
        code = 2 * code + (digit - '0');
    }
    return code;
}

/// Puts `code` into a nibble of a word that has 0 there.
void putNibble(int& word, int nibble, int code) {
    word |= code << (4 * nibble);
}

void routeC435(const CoinsetRouting& routing, const MechImage& old, MechImage& next) {
    for (int row = 0; row < kC435Rows; ++row) next[kSortTableWord + row] = cutToWord(routing[row]);
    next[kSourceWord] =
        (old[kSourceWord] & ~kFromMemoryBit) | (routing[kRoutingSource] != 0 ? kFromMemoryBit : 0);
    for (int i = 0; i < kBinaryCodeWords; ++i) {
        next[kBinaryCodeWord + i] = cutToWord(routing[kRoutingCodes + i]);
    }
    next[kPlugWord] = wordOf(lowByte(cutToWord(routing[kRoutingPlug])), kPlugMark);
    next[kPlugPathWord] =
        wordOf(lowByte(cutToWord(routing[kRoutingPlugPath])), lowByte(old[kPlugPathWord]));
}

void routeSentinel(const CoinsetRouting& routing, const MechImage& old, MechImage& next,
                   bool counted) {
    next[kSortWord] = cutToWord(routing[0]);
    next[kSortWord + 1] = cutToWord(routing[1]);
    const int transfers = sentinelTransfers(old) + (counted ? 0 : 1);
    next[kTransferCountWord] = wordOf(wrapToByte(transfers), lowByte(old[kTransferCountWord]));
    next[kBlockMarkWord] = kBlockMark;
    next[kBlockCheckWord] = 0;
    const int check = wrapToByte(-byteSum(next, kTransferCountWord, kBlockMarkWord));
    next[kBlockCheckWord] = wordOf(check, 0);
}

}  // namespace

CcShape ccShape(std::string_view code) {
    const CcModel& model = ccModel(code);
    const MechModel* numbers = findModel(kCoinControls, code);
    if (numbers == nullptr) throw std::out_of_range("No such mech in the catalogue");
    return {model, numbers->memorySize, numbers->channelCount, numbers->paramCount};
}

// --- limits --------------------------------------------------------------------------------

int ccLimitWord(const CcShape& shape, int channel, int parameter) {
    checkRange("channel", channel, shape.channels);
    checkRange("parameter", parameter, shape.parameters);
    const CcLimitBlock& block = shape.model.limits;
    return block.base + (channel - 1) + (parameter - 1) * block.stride;
}

CcWindow ccWindow(const MechImage& image, const CcShape& shape, int channel, int parameter) {
    const int word = image[ccLimitWord(shape, channel, parameter)];
    return {lowByte(word), highByte(word)};
}

void mapLimitsToCcImage(const CcShape& shape, const MechImage& old, CcChannelLimits& limits,
                        MechImage& next) {
    for (int i = 0; i < shape.words; ++i) next[i] = old[i];
    for (int channel = 1; channel <= shape.channels; ++channel) {
        auto& columns = limits[channel];
        for (int parameter = 1; parameter <= shape.parameters; ++parameter) {
            int& low = columns[2 * parameter - 1];
            int& high = columns[2 * parameter];
            low = std::clamp(low, 0, kHighestLimit);
            high = std::clamp(high, 0, kHighestLimit);
            const int index = ccLimitWord(shape, channel, parameter);
            next[index] = wordOf(high, low);
            if (shape.model.limits.mirror != 0) {
                next[index + shape.model.limits.mirror] = next[index];
            }
        }
    }
}

void copyCcChannel(const MechImage& image, const CcShape& shape, int source,
                   CcChannelLimits& limits, int channel) {
    checkRange("channel", source, shape.channels);
    for (int parameter = 1; parameter <= shape.parameters; ++parameter) {
        const CcWindow window = ccWindow(image, shape, source, parameter);
        limits[channel][2 * parameter - 1] = window.low;
        limits[channel][2 * parameter] = window.high;
    }
}

// --- check byte ----------------------------------------------------------------------------

int sentinelCheckWord(const MechImage& image) {
    return 256 - byteSum(image, 0, kSentinelCheckWord - 1);
}

void ccChecksum(const CcShape& shape, const MechImage& old, MechImage& next) {
    if (shape.model.check == CcCheck::sentinelWord63) {
        next[kSentinelCheckWord] = sentinelCheckWord(next);
        return;
    }
    const int change = byteSum(next, 0, kCcCheckWord - 1) - byteSum(old, 0, kCcCheckWord - 1);
    const int check = wrapToByte(highByte(old[kCcCheckWord]) - change);
    next[kCcCheckWord] = wordOf(check, lowByte(old[kCcCheckWord]));
}

// --- outputs and routing -------------------------------------------------------------------

void mapC120Outputs(const C120OutputMap& map, bool jaguar, MechImage& next) {
    if (!jaguar) {
        // The bytes before channel 1 and behind channel 12 belong to the block and are empty.
        next[kNewFirstWord] = 0;
        next[kNewFirstWord + kC120Channels / 2] = 0;
    }
    for (int channel = 1; channel <= kC120Channels; ++channel) {
        const int entry = map[channel];
        const int mask =
            entry >= 1 && entry <= kC120Outputs ? 1 << (entry - 1) : lowByte(cutToWord(entry));
        storeByte(next, c120Address(channel, jaguar), mask);
    }
}

int c120OutputMask(const MechImage& image, int channel, bool jaguar) {
    const ByteAddress at = c120Address(channel, jaguar);
    return at.high ? highByte(image[at.word]) : lowByte(image[at.word]);
}

int c120Output(int mask) {
    if (mask == 0) return 0;
    for (int output = 1; output <= kC120Outputs; ++output) {
        if (mask == 1 << (output - 1)) return output;
    }
    return -1;
}

int sentinelTransfers(const MechImage& image) {
    return highByte(image[kTransferCountWord]);
}

void applyCoinsetRouting(const CcShape& shape, const CoinsetRouting& routing, const MechImage& old,
                         MechImage& next, bool counted) {
    switch (shape.model.routing) {
        case CcRouting::none:
            return;
        case CcRouting::c435:
            routeC435(routing, old, next);
            break;
        case CcRouting::c450:
            for (int i = 0; i < kC450RoutingWords; ++i) {
                next[kC450RoutingWord + i] = cutToWord(routing[i]);
            }
            break;
        case CcRouting::sentinel:
            routeSentinel(routing, old, next, counted);
            break;
    }
    ccChecksum(shape, old, next);
}

char c450Route(const MechImage& image, int channel) {
    checkRange("channel", channel, kNibbles * kC450RoutingWords);
    const int word = image[kC450RoutingWord + (channel - 1) / kNibbles];
    return static_cast<char>('A' + nibbleOf(word, (channel - 1) % kNibbles));
}

int sentinelSortCode(const MechImage& image, int channel) {
    checkRange("channel", channel, kSentinelChannels);
    const int word = image[kSortWord + (channel - 1) / kNibbles];
    return nibbleOf(word, kNibbles - 1 - (channel - 1) % kNibbles);
}

std::string_view sentinelRouteName(int sortCode) {
    const auto code = static_cast<std::size_t>(sortCode);
    return sortCode >= 0 && code < kSentinelRoutes.size() ? kSentinelRoutes.at(code)
                                                          : std::string_view{};
}

// --- the 435's ancillary settings ----------------------------------------------------------

std::span<const C435Route> c435Routes() {
    return kC435Routes;
}

C435Settings c435Settings(const MechImage& image) {
    C435Settings settings;
    for (std::size_t i = 0; i < settings.paths.size(); ++i) {
        const int at = static_cast<int>(i);
        settings.paths.at(i) =
            routeLetter(nibbleOf(image[kSortTableWord + at / kNibbles], at % kNibbles));
    }
    for (std::size_t i = 0; i < settings.codes.size(); ++i) {
        const int at = static_cast<int>(i);
        settings.codes.at(i) =
            binaryDigits(nibbleOf(image[kBinaryCodeWord + at / kNibbles], at % kNibbles));
    }
    settings.fromMemory = (image[kSourceWord] & kFromMemoryBit) != 0;
    settings.plugDefault = routeLetter(highByte(image[kPlugPathWord]));
    return settings;
}

C435Fault writeC435Settings(const CcShape& shape, const C435Settings& settings,
                            const MechImage& old, MechImage& next) {
    std::array<int, kC435Rows> rows{};
    for (std::size_t i = 0; i < settings.paths.size(); ++i) {
        const C435Route* route = routeOf(settings.paths.at(i));
        if (route == nullptr) return C435Fault::path;
        putNibble(rows.at(i / kNibbles), static_cast<int>(i % kNibbles), route->pathCode);
    }
    const C435Route* plug = routeOf(settings.plugDefault.substr(0, 1));
    if (plug == nullptr) return C435Fault::path;
    std::array<int, kBinaryCodeWords> codes{};
    for (std::size_t i = 0; i < settings.codes.size(); ++i) {
        const auto code = binaryCode(settings.codes.at(i));
        if (!code) return C435Fault::binaryCode;
        putNibble(codes.at(i / kNibbles), static_cast<int>(i % kNibbles), *code);
    }

    for (int i = 0; i < shape.words; ++i) next[i] = old[i];
    for (int row = 0; row < kC435Rows; ++row) {
        next[kSortTableWord + row] = rows.at(static_cast<std::size_t>(row));
    }
    for (int i = 0; i < kBinaryCodeWords; ++i) {
        next[kBinaryCodeWord + i] = codes.at(static_cast<std::size_t>(i));
    }
    next[kSourceWord] =
        (old[kSourceWord] & ~kFromMemoryBit) | (settings.fromMemory ? kFromMemoryBit : 0);
    next[kPlugWord] = wordOf(plug->plugCode, kPlugMark);
    next[kPlugPathWord] = wordOf(plug->pathCode, lowByte(old[kPlugPathWord]));
    ccChecksum(shape, old, next);
    return C435Fault::none;
}

}  // namespace vantor
