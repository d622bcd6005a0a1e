#include "boxsim/NriVariants.h"

#include <algorithm>
#include <array>

namespace vantor::boxsim {

namespace {

// Sensors of the plain mechs and of those with a fixed order: NFP, GRO, (GRU,) NFA, (RCH,) HFP.
constexpr std::array<Sensor, 4> kG13Plain = {
    {{45, 0, 0, 2.6}, {48, 0, 14.5, 0}, {50, 90, 0, 0.9}, {60, 0, 4, 1.7}}};
constexpr std::array<Sensor, 4> kG18Plain = {
    {{42, 0, 0, 2.7}, {46, 0, 15, 0}, {48, 95, 0, 0.8}, {58, 0, 4, 1.8}}};
constexpr std::array<Sensor, 4> kG10Plain = {
    {{44, 0, 0, 2.6}, {47, 0, 14, 0}, {43, 140, 0, 0}, {55, 0, 3, 1.9}}};
constexpr std::array<Sensor, 6> kG18 = {{{45, 0, 0, 2.6},
                                         {47, 0, 14.8, 0},
                                         {52, 0, 12, 0.3},
                                         {44, 100, 0, 0.9},
                                         {60, 40, 0, 0.5},
                                         {58, 0, 4, 1.7}}};
constexpr std::array<Sensor, 6> kG10 = {{{43, 0, 0, 2.7},
                                         {46, 0, 14.3, 0},
                                         {50, 0, 12.5, 0.2},
                                         {42, 105, 0, 0.8},
                                         {57, 35, 0, 0.6},
                                         {55, 0, 3.5, 1.8}}};
// Sensors that the channels choose from: hfp nfa gro hfa nfp hxn hxa snp shp, then seven more.
constexpr std::array<Sensor, 16> kG13 = {{{58, 0, 4, 1.7},
                                          {46, 100, 0, 0.9},
                                          {48, 0, 14.6, 0},
                                          {50, 60, 0, 1.2},
                                          {44, 0, 0, 2.7},
                                          {52, 30, 3, 1.5},
                                          {50, 80, 2, 0.8},
                                          {60, 0, 6, 1.0},
                                          {55, 0, 5, 1.2},
                                          {40, 70, 0, 1.0},
                                          {40, 0, 8, 0.8},
                                          {70, 10, 0, 0.5},
                                          {70, 0, 1, 0.5},
                                          {80, 5, 1, 0.3},
                                          {80, 0, 0, 0.9},
                                          {90, 20, 0, 0.4}}};
// nfa bod hfp lft hfa mas gro gru slf m09 lsa lsb, then four more.
constexpr std::array<Sensor, 16> kG40 = {{{45, 105, 0, 0.8},
                                          {46, 0, 3, 2.0},
                                          {57, 0, 4, 1.7},
                                          {50, 120, 2, 0},
                                          {50, 60, 0, 1.2},
                                          {48, 90, 4, 0.3},
                                          {47, 0, 14.4, 0},
                                          {51, 0, 12, 0.3},
                                          {60, 20, 3, 1.3},
                                          {40, 70, 0, 1.0},
                                          {54, 0, 6, 1.1},
                                          {54, 0, 5, 1.2},
                                          {70, 0, 1, 0.5},
                                          {80, 5, 1, 0.3},
                                          {80, 0, 0, 0.9},
                                          {90, 20, 0, 0.4}}};

// Handshake mechs: number, series and date of the last adjustment in blocks 1 to 3; then codes of
// the outputs, multiplier and values (5 times 1, 2, 4, 10, 20), routes, outputs with pulses, map.
constexpr std::array kG13Blocks = {FactoryBlock{1, "0413A7C2"},
                                   FactoryBlock{2, "136000070205"},
                                   FactoryBlock{3, "110605"},
                                   FactoryBlock{16, "010204081020010204081020"},
                                   FactoryBlock{17, "050102040A1400000000000000"},
                                   FactoryBlock{18, "000000000000"},
                                   FactoryBlock{19, "010244081020000000000000"},
                                   FactoryBlock{20,
                                                "412056412056412056412056412056412056"
                                                "412056412056412056412056412056412056"},
                                   FactoryBlock{21, "00FF10A0"},
                                   FactoryBlock{22, "0C0C0C0C"},
                                   FactoryBlock{23, "20406080"},
                                   FactoryBlock{24, "0000"},
                                   FactoryBlock{25, "FFFF"},
                                   FactoryBlock{26, "807F8180"},
                                   FactoryBlock{27, "82"},
                                   FactoryBlock{28, "7E"}};
constexpr std::array kG40Blocks = {FactoryBlock{1, "0609B318"},
                                   FactoryBlock{2, "400000020104"},
                                   FactoryBlock{3, "1C0B06"},
                                   FactoryBlock{16, "010204081020010204081020"},
                                   FactoryBlock{17, "050102040A1400000000000000"},
                                   FactoryBlock{18, "010204080000"},
                                   FactoryBlock{19, "010204481020000000000000"},
                                   FactoryBlock{20,
                                                "01368A01368A01368A01368A01368A01368A"
                                                "01368A01368A01368A01368A01368A01368A"},
                                   FactoryBlock{21, "00FF10A4"},
                                   FactoryBlock{22, "0E0E0E0E"},
                                   FactoryBlock{23, "204060A0"},
                                   FactoryBlock{24, "0000"},
                                   FactoryBlock{25, "FFFF"},
                                   FactoryBlock{26, "7F808280"},
                                   FactoryBlock{27, "80"},
                                   FactoryBlock{28, "81"}};
constexpr std::array kG18Blocks = {FactoryBlock{1, "0507D94E"},
                                   FactoryBlock{2, "183000050301"},
                                   FactoryBlock{3, "090305"},
                                   FactoryBlock{16, "010204081020010204081020"},
                                   FactoryBlock{17, "050102040A1400000000000000"},
                                   FactoryBlock{18, "010200020000"},
                                   FactoryBlock{19, "010204081020000000000000"},
                                   FactoryBlock{20,
                                                "000000000000000000000000000000111000"
                                                "000000000000000000000000000000000000"},
                                   FactoryBlock{21, "00FF18A0"},
                                   FactoryBlock{22, "0A0A0A0A"},
                                   FactoryBlock{23, "20204040"},
                                   FactoryBlock{24, "0000"},
                                   FactoryBlock{25, "FFFF"},
                                   FactoryBlock{26, "807F8180827E"}};
// Header, lowest value and the tubes (5, 10, 20, 50), values of channels 1 to 8; the tube of each
// channel (left 4, middle 2, right 1; channels 7 to 12 stand between 1 to 6); maps of 9 to 12.
constexpr std::array kG10Blocks = {FactoryBlock{1, "0704C05A"},
                                   FactoryBlock{2, "104000050602"},
                                   FactoryBlock{3, "1A0807"},
                                   FactoryBlock{16,
                                                "10400005"
                                                "0005001000200050"
                                                "00050010002000500100000000000000"},
                                   FactoryBlock{17, "000402010000"},
                                   FactoryBlock{18, "01020304"},
                                   FactoryBlock{19, "00FF"},
                                   FactoryBlock{20, "204060"},
                                   FactoryBlock{21, "FFFF"}};
// Plain mechs: multiplier and values of channels 6 to 1, or header, lowest value, tubes and values;
// the date of the last adjustment.
constexpr std::array kPlainSixBlocks = {FactoryBlock{7, "005000020010004002001"},
                                        FactoryBlock{8, "14/02/05"}};
constexpr std::array kPlainEightBlocks = {FactoryBlock{9,
                                                       "G10-4000 R2"
                                                       "0005001000200050"
                                                       "00050010002000500100000000000000"},
                                          FactoryBlock{10, "23/09/06"}};

constexpr std::array kVariants = {
    NriVariant{.code = "G13-6000",
               .mode = "$05",
               .identity = "07",
               .channels = 12,
               .parameters = 6,
               .blocks = 28,
               .sensors = kG13,
               .mapped = true,
               .factory = kG13Blocks},
    NriVariant{.code = "G40-0000",
               .mode = "$05",
               .identity = "02",
               .channels = 12,
               .parameters = 6,
               .blocks = 28,
               .sensors = kG40,
               .mapped = true,
               .factory = kG40Blocks},
    NriVariant{.code = "G18-3000",
               .mode = "$05",
               .identity = "05",
               .channels = 12,
               .parameters = 6,
               .blocks = 26,
               .sensors = kG18,
               .factory = kG18Blocks},
    NriVariant{.code = "G10-4000/5",
               .mode = "$23",
               .identity = "06",
               .channels = 12,
               .parameters = 6,
               .blocks = 21,
               .sensors = kG10,
               .coinRecords = true,
               .factory = kG10Blocks},
    NriVariant{.code = "G13-0000",
               .mode = "$01",
               .identity = "0",
               .blocks = 8,
               .sensors = kG13Plain,
               .plain = true,
               .factory = kPlainSixBlocks},
    NriVariant{.code = "G18-0000",
               .mode = "$01",
               .identity = "?",
               .blocks = 8,
               .sensors = kG18Plain,
               .plain = true,
               .factory = kPlainSixBlocks},
    NriVariant{.code = "G10-4000",
               .mode = "$23",
               .identity = "?",
               .channels = 8,
               .blocks = 10,
               .sensors = kG10Plain,
               .plain = true,
               .coinRecords = true,
               .factory = kPlainEightBlocks},
};

}  // namespace

const NriVariant& nriVariant(std::string_view code) {
    return *std::find_if(kVariants.begin(), kVariants.end(),
                         [&](const NriVariant& row) { return row.code == code; });
}

}  // namespace vantor::boxsim
