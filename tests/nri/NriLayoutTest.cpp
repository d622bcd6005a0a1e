#include <gtest/gtest.h>

#include <algorithm>

#include "nri/NriDataFile.h"
#include "nri/NriWrites.h"

namespace vantor {
namespace {

std::string joined(const std::vector<NriWrite>& writes) {
    std::string all;
    for (const NriWrite& write : writes) {
        std::string data = write.data;
        std::ranges::replace(data, '\r', '|');
        all += write.command + " " + data + " " + std::to_string(write.waitMs) + "\n";
    }
    return all;
}

/// Limits that tell channels and columns apart.
ChannelLimitTable sampleLimits() {
    ChannelLimitTable limits;
    for (int channel = 1; channel <= kChannels; ++channel) {
        for (int column = 1; column <= kLimitColumns; ++column) {
            limits[channel][column] = channel * 16 + column;
        }
    }
    return limits;
}

/// What a handshake mech of twelve channels gets of the sample limits.
std::string channelWrites() {
    std::string all;
    for (int channel = 1; channel <= 12; ++channel) {
        std::string data = "#2#1#4#3#6#5#8#7#A#9#C#B";
        std::ranges::replace(data, '#', "0123456789ABC"[channel]);
        all += std::string("Z0") + "  3456789ABCDE"[channel + 1] + " " + data + " 100\n";
    }
    return all;
}

TEST(NriLayout, HandshakeBlocksBothWays) {
    const NriShape g40 = nriShape("G40-0000");
    NriBlockTexts blocks;
    blocks[3] = "1F0C15 and more";
    blocks[4] = "2810FF00";
    blocks[15] = "000000000000000000000102";
    blocks[16] = "01FF";
    blocks[17] = "8305FF";
    blocks[18] = "102030405060";
    blocks[19] = "440320C10144";
    blocks[20] = "412056" + std::string(60, '0') + "0138AF";
    blocks[26] = "0A141E28";
    blocks[27] = "32";
    blocks[28] = "3C";
    const NriFields fields = decodeNriBlocks(g40, blocks);
    EXPECT_EQ(fields.limits[1][1], 0x10);
    EXPECT_EQ(fields.limits[1][2], 0x28);
    EXPECT_EQ(fields.limits[1][4], 0xFF);
    EXPECT_EQ(fields.limits[1][6], 0) << "missing characters";
    EXPECT_EQ(fields.limits[12][12] * 1000 + fields.limits[12][11], 1002);
    EXPECT_EQ(fields.outputCodes[2], 255);
    EXPECT_EQ(fields.valueMultiplier, 0x83);
    EXPECT_EQ(fields.coinValues[1], 15);
    EXPECT_EQ(fields.outputs[1], 3 + 64);
    EXPECT_EQ(fields.outputs[2], 0) << "two bits are no output";
    EXPECT_EQ(fields.outputs[3], 6);
    EXPECT_EQ(fields.outputs[4], 1 + 192);
    EXPECT_EQ(fields.parameterMap[1][6], 6);
    EXPECT_EQ(fields.parameterMap[12][5], 10);
    EXPECT_EQ(fields.compensation[3] + 1000 * fields.compensation[5], 60040);
    EXPECT_EQ(fields.date + fields.routeText[0], "1F0C15102030405060");

    NriFields next = fields;
    next.coinValues[2] = 766;   // 255 times 3, and a rest that the mech cannot hold
    next.coinValues[3] = 9000;  // beyond a byte
    next.outputs[5] = 7;        // no such output
    next.outputCodes[12] = 300;
    next.compensationPresent = true;
    EXPECT_EQ(joined(nriWrites(g40, sampleLimits(), next, {2026, 11, 9})),
              channelWrites() +
                  "Z02 090B1A 0\n"
                  "Z0F 01FF000000000000000000FF 200\n"
                  "Z10 8305FFFF000000000000000000 200\n"
                  "Z12 440020C10044000000000000 200\n"
                  "Z13 412056" +
                  std::string(60, '0') +
                  "0138AF 200\n"
                  "Z19 0A141E28 0\n"
                  "Z11 102030405060 100\n");
}

TEST(NriLayout, TheTubesOfAG10) {
    const NriShape g10 = nriShape("G10-4000/5");
    const Date day{2025, 2, 1};
    NriFields fields;
    fields.header = "ABCDEF01";
    fields.routeText = {"210000000000", "12345678"};
    fields.coinValues[1] = 5;
    fields.coinValues[8] = 10000;
    for (int tube = 13; tube <= 16; ++tube) fields.coinValues[tube] = tube;
    EXPECT_EQ(joined(nriWrites(g10, sampleLimits(), fields, day)),
              channelWrites() +
                  "Z02 010219 0\n"
                  "Z0F ABCDEF01001300140015001600050000000000000000000000009999 200\n"
                  "Z10 210000000000 200\nZ11 12345678 200\n");
    // What would leave the mech waiting for the rest is not sent at all.
    fields.header = "ABCDEF0";
    fields.routeText = {"21000000000Z", "123456"};
    EXPECT_EQ(joined(nriWrites(g10, sampleLimits(), fields, day)),
              channelWrites() + "Z02 010219 0\nZ0F  200\nZ10  200\nZ11  200\n");
}

TEST(NriLayout, PlainBlocksBothWays) {
    const NriShape g13 = nriShape("G13-0000");
    NriBlockTexts blocks;
    blocks[1] = "211212213214111112113114";
    blocks[7] = "005060050040030020010";
    blocks[8] = "31/12/21";
    NriFields fields = decodeNriBlocks(g13, blocks);
    EXPECT_EQ(fields.limits[1][2] * 1000 + fields.limits[1][1], 211111);
    EXPECT_EQ(fields.limits[1][8] * 1000 + fields.limits[1][7], 214114);
    EXPECT_EQ(fields.valueMultiplier, 5);
    EXPECT_EQ(fields.coinValues[1] * 1000 + fields.coinValues[6], 10060);
    EXPECT_EQ(fields.date, "1F0C15");
    fields.coinValues[2] = 1000;
    ChannelLimitTable limits = sampleLimits();
    limits[1][1] = -1;
    EXPECT_EQ(joined(nriWrites(g13, limits, fields, {2009, 3, 7})),
              "D 1018020022024|000019021023| 300\n"
              "D 2034036038040|033035037039| 300\n"
              "D 3050052054056|049051053055| 300\n"
              "D 4066068070072|065067069071| 300\n"
              "D 5082084086088|081083085087| 300\n"
              "D 6098100102104|097099101103| 300\n"
              "B 005060050040030999010| 400\n"
              "E 07/03/09| 0\n");

    const NriShape g10 = nriShape("G10-4000");
    blocks[9] = "HEADER 1234000100020003000400050010002000500100020005001000";
    blocks[10] = "07/03/09";
    fields = decodeNriBlocks(g10, blocks);
    EXPECT_EQ(fields.header, "HEADER 1234");
    EXPECT_EQ(fields.coinValues[13] + 10 * fields.coinValues[16], 41);
    EXPECT_EQ(fields.coinValues[1] + fields.coinValues[8], 1005);
    EXPECT_EQ(fields.valueMultiplier, 1);
    const auto writes = nriWrites(g10, limits, fields, {2009, 3, 7});
    ASSERT_EQ(writes.size(), 10U);
    EXPECT_EQ(joined({writes[8]}),
              "F HEADER 1234000100020003000400050010002000500100020005001000::| 400\n");
}

TEST(NriLayout, EveryMaskByteOfOneOutputComesBack) {
    for (const int flags : {0, 64, 128, 192}) {
        for (const int mask : {0, 1, 2, 4, 8, 16, 32}) {
            EXPECT_EQ(nriMaskByte(nriOutput(mask + flags)), mask + flags);
        }
    }
}

// --- coinsets ------------------------------------------------------------------------------

TEST(NriLayout, ParameterStringsGoParameterByParameter) {
    std::string text;
    for (const char digit : {'4', '1', '2', '0', '5', 'F'}) text += std::string(11, digit) + '9';
    text += "0102040810200102040810FF";
    text += "123AQas0/@";  // two characters are missing
    NriFields fields;
    decodeNriParameters(nriShape("G13-6000"), text, fields);
    EXPECT_EQ(fields.parameterMap[1][1] * 100 + fields.parameterMap[11][6], 415);
    EXPECT_EQ(fields.parameterMap[12][3], 9);
    EXPECT_EQ(fields.outputCodes[6] * 1000 + fields.outputCodes[12], 32255);
    std::string outputs;
    for (int channel = 1; channel <= 12; ++channel) {
        outputs += std::to_string(fields.outputs[channel]) + " ";
    }
    EXPECT_EQ(outputs, "1 2 3 65 129 193 3 0 207 64 0 0 ");
}

TEST(NriLayout, NewFieldsAreTheCoinsetsAndOtherwiseTheOldOnes) {
    const NriShape g40 = nriShape("G40-0000");
    NriFields old;
    old.coinValues[3] = 30;
    old.valueMultiplier = 10;
    old.outputs[3] = 3;
    old.outputCodes[3] = 4;
    old.parameterMap[3][1] = 7;
    old.compensation[0] = 99;
    old.header = "kept";
    old.routeText = {"old route", "second"};
    NriNewData given;
    CoinsetData coinset;
    NriFields next = newNriFields(g40, given, coinset, old);
    EXPECT_EQ(next.coinValues[3] * 100 + next.valueMultiplier, 3010);
    EXPECT_EQ(next.outputs[3] * 10 + next.parameterMap[3][1], 37);
    EXPECT_EQ(next.header + next.routeText[0], "keptold route");
    EXPECT_FALSE(next.compensationPresent);

    given.valuesPresent = true;
    given.newCoinValue[3] = 5;
    given.parameterString = "1";
    given.compensation[0] = 1;
    given.routeText[0] = "new";
    coinset.compensationPresent = coinset.routingPresent = true;
    next = newNriFields(g40, given, coinset, old);
    EXPECT_EQ(next.coinValues[3] * 100 + next.valueMultiplier, 501);
    EXPECT_EQ(next.outputs[3] + next.parameterMap[3][1], 0);
    EXPECT_EQ(next.parameterMap[1][1] + next.compensation[0], 2);
    EXPECT_EQ(next.routeText[0] + next.routeText[1], "newsecond");
    EXPECT_TRUE(next.compensationPresent);

    takeOverNriChannel(g40, old, 3, next, 1);
    EXPECT_EQ(next.coinValues[1] * 100 + next.outputs[1] * 10 + next.outputCodes[1], 3034);
    EXPECT_EQ(next.parameterMap[1][1], 7);
    EXPECT_THROW(takeOverNriChannel(g40, old, 13, next, 1), std::out_of_range);
}

// --- readings ------------------------------------------------------------------------------

TEST(NriLayout, ReadingsNeedEveryCharacter) {
    const auto text = [](const char* model, std::string_view answer,
                         const Ranged<int, 1, kMaxParameters>* map = nullptr) {
        const NriShape shape = nriShape(model);
        const auto readings = nriReading(shape, answer, map);
        std::string all = readings ? "" : "none";
        for (int p = 0; readings && p < shape.parameters; ++p) {
            all += std::to_string(readings->at(static_cast<std::size_t>(p))) + " ";
        }
        return all;
    };
    EXPECT_EQ(text("G13-0000", "001022255120"), "1 22 255 120 ");
    for (const char* spoilt : {"00102225512", "0010222551200", "00102225512x"}) {
        EXPECT_EQ(text("G13-0000", spoilt), "none") << spoilt;
    }
    EXPECT_EQ(text("G18-3000", "0102FF0405A6"), "1 2 255 4 5 166 ");
    for (const char* spoilt : {"0102FF0405G6", "0102FF0405A", "0102FF0405A60"}) {
        EXPECT_EQ(text("G18-3000", spoilt), "none") << spoilt;
    }
    Ranged<int, 1, kMaxParameters> map;
    int at = 1;
    for (const int k : {4, 1, 2, 0, 5, 7}) map[at++] = k;
    EXPECT_EQ(text("G13-6000", "0001020304050607", &map), "4 1 2 0 5 7 ");
    EXPECT_EQ(text("G13-6000", "00010203040506", &map), "none");
}

// --- files ---------------------------------------------------------------------------------

TEST(NriFile, WritesTheBlocksThatTheModelHas) {
    const std::string plainChannel = "202203204205102103104105";
    const auto commands = [](const char* model, const NriBlockTexts& blocks) {
        const auto writes = nriFileWrites(nriShape(model), blocks);
        if (!writes) return std::string("refused");
        return writes->front().command + ".." + writes->back().command + " " +
               std::to_string(writes->size()) + " " + std::to_string(writes->back().progress);
    };
    NriBlockTexts blocks;
    blocks.fill(std::string(72, '1'));
    EXPECT_EQ(commands("G13-6000", blocks), "Z00..Z1B 28 15");
    EXPECT_EQ(commands("G40-0000", blocks), "Z00..Z1B 28 15");
    EXPECT_EQ(commands("G18-3000", blocks), "Z00..Z19 26 15");
    EXPECT_EQ(commands("G10-4000/5", blocks), "Z00..Z14 21 15");
    EXPECT_EQ(commands("G18-0000", blocks), "refused") << "channels of 24 characters";
    // What the mech of the file did not have is left out.
    NriBlockTexts lacking = blocks;
    lacking[22] = "";
    lacking[28] = "?";
    EXPECT_EQ(commands("G13-6000", lacking), "Z00..Z1A 26 14");
    struct Wrong {
        const char* model;
        int block;
        std::string text;
    };
    for (const Wrong& wrong :
         {Wrong{"G13-6000", 4, ""}, Wrong{"G13-6000", 4, "ABC"}, Wrong{"G13-6000", 4, "ABCD"},
          Wrong{"G13-6000", 4, "ABCDEFABCDEFABCDEFABCDEX"}, Wrong{"G13-6000", 22, "00FFZ0020C"},
          Wrong{"G10-4000/5", 16, std::string(50, '1') + "A111111"}}) {
        NriBlockTexts spoilt = blocks;
        spoilt[wrong.block] = wrong.text;
        EXPECT_EQ(commands(wrong.model, spoilt), "refused") << wrong.text;
    }
    NriBlockTexts tubes;
    for (int channel = 1; channel <= 8; ++channel) tubes[channel] = plainChannel;
    tubes[9] = "HEADER-TEXT" + std::string(48, '5') + "::";
    tubes[10] = "07/03/09";
    EXPECT_EQ(commands("G10-4000", tubes), "D..E 10 16");
    for (const std::string& values : {"HEADER-TEXT" + std::string(40, '5') + "0p500050::",
                                      "HEADER-TEXT5" + std::string(48, '5') + "::"}) {
        tubes[9] = values;
        EXPECT_EQ(commands("G10-4000", tubes), "refused") << values;
    }

    NriBlockTexts plain;
    for (int channel = 1; channel <= 6; ++channel) plain[channel] = plainChannel;
    plain[7] = "005060050040030020010";
    plain[8] = "07/03/09";
    const auto writes = nriFileWrites(nriShape("G18-0000"), plain);
    ASSERT_TRUE(writes);
    EXPECT_EQ(joined({writes->at(1), writes->at(6), writes->at(7)}),
              "D 2202203204205|102103104105| 400\n"
              "B 005060050040030020010| 400\n"
              "E 07/03/09| 0\n");
    EXPECT_EQ(writes->at(5).progress, 11);
    for (const int block : {6, 7, 8}) {
        NriBlockTexts cut = plain;
        cut[block].pop_back();
        EXPECT_FALSE(nriFileWrites(nriShape("G18-0000"), cut)) << block;
        // The mech would take the return for the end of the block.
        cut[block] = plain[block] + "\r";
        EXPECT_FALSE(nriFileWrites(nriShape("G18-0000"), cut)) << block;
        if (block == 8) continue;  // a date's form is the mech's own affair
        cut[block] = plain[block];
        cut[block][1] = 'x';
        EXPECT_FALSE(nriFileWrites(nriShape("G18-0000"), cut)) << block;
    }
}

TEST(NriFile, TwentyEightLinesBothWays) {
    NriBlockTexts blocks;
    blocks[1] = "AB,\"CD";
    blocks[28] = "50";
    const std::string text = nriFileText(blocks);
    EXPECT_TRUE(text.starts_with("1,\"AB,CD\"\r\n2,\"\"\r\n")) << text;
    EXPECT_TRUE(text.ends_with("\r\n27,\"\"\r\n28,\"50\"\r\n")) << text;
    EXPECT_EQ(std::ranges::count(text, '\n'), 28);
    const NriDataFile back = parseNriFile(text);
    EXPECT_EQ(back.blocks[1] + back.blocks[28], "AB,CD50");
    EXPECT_EQ(back.skipped, 0);

    const NriDataFile odd = parseNriFile("2,AB\n0,\"x\"\n29,\"x\"\n3x,\"x\"\nnonsense\n\n2,\"CD\"");
    EXPECT_EQ(odd.blocks[2], "CD");
    EXPECT_EQ(odd.skipped, 4);
    EXPECT_EQ(nriDumpName("G10-4000/5"), "G10-4000-5temp.txt");
}

}  // namespace
}  // namespace vantor
