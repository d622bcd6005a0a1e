#pragma once

#include <map>
#include <ostream>

#include "RoadFixture.h"
#include "boxsim/SimulatedMech.h"
#include "catalogue/Text.h"

// Coin Controls mechs through the windows. What the mechs must hold afterwards is worked out here
// once more, from the numbers that the limits window shows.

namespace vantor::test {

using Words = std::vector<int>;

/// A model's memory as its makers describe it.
struct CcCase {
    std::string model;
    int parameters = 3, channels = 8, rowsOfSegment = 8;
    int base = 0, stride = 0, mirror = 0;
    int words = 128;
    std::map<int, int> fromCoinset{};  ///< words that the coinset gives as they stand
    int kept = 0, source = 0;          ///< a channel that takes over the limits of another
    int binaryPositions = 0;           ///< of the validator test with binary output
};

inline void PrintTo(const CcCase& road, std::ostream* out) {
    *out << road.model;
}

class CcRoad : public Road {
  protected:
    void openCc(const std::string& model) { openMain(model, kCoinControls); }
    void programFromCoinset(const std::string& model) {
        openCc(model);
        openMeasurement();
        runCoinset(model + "-Dorin.cst");
        ASSERT_TRUE(visible("frmPROM")) << last();
    }
    [[nodiscard]] Words words() {
        Words all;
        for (const boxsim::MemoryCell& cell : box.mech()->memory()) {
            all.push_back(std::stoi(cell.content, nullptr, 16));
        }
        return all;
    }
    static std::string fileText(const Words& words) {
        std::string text;
        for (std::size_t i = 0; i < words.size(); ++i) {
            text += std::to_string(i) + "," + std::to_string(words[i]) + "\r\n";
        }
        return text;
    }
};

inline int byteSum(const Words& words, std::size_t first, std::size_t end) {
    int sum = 0;
    for (std::size_t i = first; i < end; ++i) sum += words[i] / 256 + words[i] % 256;
    return sum % 256;
}

/// What the mech must hold: its old memory with the limits and the coinset's words.
inline Words expectedWords(const CcCase& road, const Words& before, const Limits& limits) {
    Words all = before;
    for (std::size_t channel = 0; channel < limits.size(); ++channel) {
        for (int p = 0; p < road.parameters; ++p) {
            const auto& columns = limits[channel];
            const auto low = static_cast<std::size_t>(2 * p);
            const auto at = static_cast<std::size_t>(road.base + p * road.stride) + channel;
            all.at(at) = columns[low + 1] * 256 + columns[low];
            all.at(at + static_cast<std::size_t>(road.mirror)) = all.at(at);
        }
    }
    for (const auto& [word, value] : road.fromCoinset)
        all.at(static_cast<std::size_t>(word)) = value;
    if (road.words == 64) {
        all[56] = 0;
        all[56] = (256 - byteSum(all, 53, 59)) % 256 * 256;
        all[63] = 256 - byteSum(all, 0, 63);
    } else {
        all[127] = (256 - byteSum(all, 0, 127)) % 256 * 256 + before[127] % 256;
    }
    return all;
}

/// The conversation that writes `after` over `before`, from the opening to the closing.
inline std::string writingConversation(const Words& before, const Words& after) {
    const bool sentinel = before.size() == 64;
    std::string text = sentinel ? "TKI" : "xx";
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (after[i] == before[i]) continue;
        const auto at = static_cast<unsigned>(i);
        const auto high = static_cast<unsigned>(after[i] / 256);
        const auto low = static_cast<unsigned>(after[i] % 256);
        if (sentinel) {
            text += "W0030\rW00" + hex(0xC0 + at, 2) + "\rW00" + hex(0x40 + at, 2) + hex(low, 2) +
                    hex(high, 2) + "\rW0000\r";
            continue;
        }
        for (const unsigned byte : {0x7AU, at, high, low, 0x7AU + at + high + low}) {
            text += static_cast<char>(static_cast<unsigned char>(byte % 256));
        }
    }
    return text + (sentinel ? "\r#" : "yy");
}

inline const std::vector<CcCase> kCcCases = {
    {.model = "C120",
     .channels = 12,
     .rowsOfSegment = 6,
     .base = 10,
     .stride = 12,
     .fromCoinset =
         {{109, 0x0201}, {110, 0x0804}, {111, 0x2010}, {112, 0x3003}, {113, 0}, {114, 0}}},
    {.model = "220B", .base = 9, .stride = 16, .mirror = 8, .binaryPositions = 8},
    {.model = "335", .channels = 16, .base = 9, .stride = 16, .binaryPositions = 16},
    {.model = "435",
     .parameters = 5,
     .channels = 16,
     .base = 16,
     .stride = 16,
     .words = 256,
     .fromCoinset = {{11, 0x014A},
                     {110, 12816},
                     {111, 30292},
                     {112, 47768},
                     {113, 65244},
                     {128, 291},
                     {129, 291},
                     {130, 291},
                     {131, 291},
                     {132, 17767},
                     {133, 30292},
                     {134, 4130},
                     {135, 8961},
                     {136, 0},
                     {143, 0},
                     {204, 0x0311},
                     {228, 0x0242}},
     .kept = 10,
     .source = 5,
     .binaryPositions = 16},
    {.model = "450",
     .parameters = 4,
     .channels = 12,
     .rowsOfSegment = 6,
     .base = 16,
     .stride = 12,
     .fromCoinset = {{121, 12816}, {122, 68}, {123, 0}}},
    {.model = "Sentinel",
     .stride = 8,
     .words = 64,
     .fromCoinset = {{53, 0x017F}, {54, 35243}, {55, 52480}, {58, 0xD2D0}},
     .kept = 8,
     .source = 5},
};

}  // namespace vantor::test
