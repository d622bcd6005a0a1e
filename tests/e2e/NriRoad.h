#pragma once

#include <QPlainTextEdit>
#include <algorithm>
#include <map>
#include <ostream>

#include "RoadFixture.h"
#include "boxsim/SimulatedMech.h"
#include "catalogue/Text.h"

// NRI mechs through the windows. What the mechs must hold afterwards is worked out here once more,
// from the numbers that the limits window shows.

namespace vantor::test {

using Blocks = std::map<int, std::string>;

struct NriCase {
    std::string model;
    bool plain = false;
    int parameters = 6, channels = 12, rowsOfSegment = 6;
    Blocks fromCoinset{};      ///< as makers describe the blocks, worked out by hand
    int kept = 0, source = 0;  ///< a channel that takes over the limits of another
};

inline void PrintTo(const NriCase& road, std::ostream* out) {
    *out << road.model;
}

class NriRoad : public Road {
  protected:
    static std::string fileStem(std::string model) {
        std::ranges::replace(model, '/', '-');
        return model;
    }
    void openNri(const std::string& model) { openMain(model, kNri); }
    [[nodiscard]] Blocks blocks() {
        Blocks all;
        for (const boxsim::MemoryCell& cell : box.mech()->memory()) all[cell.number] = cell.content;
        return all;
    }
    static std::string fileText(const Blocks& blocks) {
        std::string text;
        for (int i = 1; i <= 28; ++i) {
            const auto block = blocks.find(i);
            text += std::to_string(i) + ",\"" +
                    (block == blocks.end() ? std::string() : block->second) + "\"\r\n";
        }
        return text;
    }
    [[nodiscard]] std::string dump(const std::string& model) const {
        return readFile(folder() / (fileStem(model) + "temp.txt")).value_or("(none)");
    }
    /// "J" and "W" as they were sent.
    [[nodiscard]] std::string switches() {
        letTheLineClear();
        std::string sent = box.sentByPc();
        std::erase_if(sent, [](char c) { return c != 'J' && c != 'W'; });
        return sent;
    }
    void expectCommandMode() {
        Road::expectCommandMode();
        EXPECT_EQ(box.unknownBytes(), 0) << "what is meant for the mech";
    }
    static std::string pane() {
        return widget<QPlainTextEdit>("frmNRIdata.lblPROM")->toPlainText().toStdString();
    }
};

/// A channel's block: pairs of high and low, or the highs and then the lows in decimal.
inline std::string channelText(const NriCase& road, const std::vector<int>& limits) {
    std::string pairs, highs, lows;
    for (std::size_t p = 0; p < limits.size() / 2; ++p) {
        const int low = limits[2 * p];
        const int high = limits[2 * p + 1];
        pairs += hex(static_cast<unsigned>(high), 2) + hex(static_cast<unsigned>(low), 2);
        highs += padded(high, 3);
        lows += padded(low, 3);
    }
    return road.plain ? highs + lows : pairs;
}

inline Blocks expectedBlocks(const NriCase& road, const Blocks& before, const Limits& limits) {
    Blocks all = before;
    for (int channel = 1; channel <= road.channels; ++channel) {
        all[(road.plain ? 0 : 3) + channel] =
            channelText(road, limits.at(static_cast<std::size_t>(channel - 1)));
    }
    for (const auto& [number, text] : road.fromCoinset) all[number] = text;
    // The bench's calendar stands still on the 9th of March 2026.
    all[road.plain ? road.channels + 2 : 3] = road.plain ? "09/03/26" : "09031A";
    return all;
}

/// A text for each of several channels.
inline std::string times(int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

/// The model as the name of a test.
inline std::string testName(std::string model) {
    std::erase_if(model, [](char c) { return c == '-' || c == '/'; });
    return "Model" + model;
}

inline const std::string kCodes = "010204081020010204081020";
inline const std::string kValuesOfEight = "050102040A1428641400000000";

inline const std::vector<NriCase> kNriCases = {
    {.model = "G13-6000",
     .fromCoinset = {{16, kCodes},
                     {17, kValuesOfEight},
                     {19, "010244081020010200000000"},
                     {20, times(7, "412056") + "412057" + times(4, "412056")},
                     {26, "807F8180"}}},
    {.model = "G40-0000",
     .fromCoinset = {{16, kCodes},
                     {17, kValuesOfEight},
                     {18, "010204080102"},
                     {19, "010204481020010200000000"},
                     {20, times(7, "01368A") + "01368B" + times(4, "01368A")},
                     {26, "7F808280"}}},
    {.model = "G18-3000",
     .fromCoinset = {{16, kCodes},
                     {17, kValuesOfEight},
                     {18, "010202010200"},
                     {19, "010204081020010200000000"},
                     {20, times(5, "000000") + "111000" + times(6, "000000")},
                     {26, "807F8180827E"}}},
    {.model = "G10-4000/5",
     .fromCoinset = {{16,
                      "104000050005001000200050"
                      "00050010002000500100020005000100"},
                     {17, "000402010000"},
                     {18, "01020304"}}},
    {.model = "G13-0000",
     .plain = true,
     .parameters = 4,
     .channels = 6,
     .fromCoinset = {{7, "005040020010004002001"}}},
    {.model = "G18-0000",
     .plain = true,
     .parameters = 4,
     .channels = 6,
     .fromCoinset = {{7, "005040020010004002001"}}},
    {.model = "G10-4000",
     .plain = true,
     .parameters = 4,
     .channels = 8,
     .rowsOfSegment = 8,
     .fromCoinset = {{9,
                      "G10-4000 R20005001000200050"
                      "00050010002000500100020005000100"}},
     .kept = 8,
     .source = 5},
};

}  // namespace vantor::test
