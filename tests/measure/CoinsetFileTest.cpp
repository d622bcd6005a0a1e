#include "measure/CoinsetFile.h"

#include <gtest/gtest.h>

#include "catalogue/FileNames.h"

namespace vantor {
namespace {

TEST(CoinsetFile, HeaderSplitsAtTheLastStopAndProtectsQuotedCommas) {
    const CoinsetHeader header =
        parseCoinsetHeader("\"Mars.ME181\" , \"Euro, new\",REF0123, \"V1.25\",more");
    EXPECT_EQ(header.maker, "Mars");
    EXPECT_EQ(header.mechType, "ME181");
    EXPECT_EQ(header.title, "Euro, new");
    EXPECT_EQ(header.referenceCode, "REF0123");
    EXPECT_EQ(header.version, "V1.25");
    EXPECT_EQ(parseCoinsetHeader("A.B.C,t").maker, "A.B");
    EXPECT_EQ(parseCoinsetHeader("Mars").mechType, "Mars");
    EXPECT_EQ(parseCoinsetHeader("").maker, "");
}

TEST(CoinsetFile, PromLine) {
    const PromChoices full = parsePromChoices("PROM 2K,1,0,1,2,90,110,190,210,290,310");
    EXPECT_TRUE(full.twoK);
    EXPECT_EQ(full.segments, (std::array{1, 0, 1, 2}));
    EXPECT_EQ(full.idleLimits, (std::array{90, 110, 190, 210, 290, 310}));
    const PromChoices cut = parsePromChoices("1K,1");
    EXPECT_FALSE(cut.twoK);
    EXPECT_EQ(cut.segments, (std::array{1, 0, 0, 0}));
    EXPECT_EQ(cut.idleLimits, (std::array<int, 6>{}));
    EXPECT_FALSE(parsePromChoices("2KB,1").twoK);
}

TEST(CoinsetFile, Records) {
    const CoinsetRecord coin = parseCoinsetRecord(
        "CD, \"Ten\" pence , A1 ,20,2,-2,3,5,10,M,0,F,4095,20,L,-1,H,1,30", 3, false);
    EXPECT_EQ(coin.kind, RecordKind::coin);
    EXPECT_EQ(coin.description, " Ten pence ");
    EXPECT_EQ(coin.code, "A1");
    EXPECT_EQ(coin.drops, 20);
    EXPECT_EQ(coin.parameters[0].lowCode, "2");
    EXPECT_EQ(coin.parameters[0].lowOffset, -2);
    EXPECT_EQ(coin.parameters[1].highCode, "F");
    EXPECT_EQ(coin.parameters[1].highOffset, 4095);
    EXPECT_EQ(coin.parameters[2].tolerance, 30);

    const CoinsetRecord linked = parseCoinsetRecord("CR,x,B1,R05,-6,R06,7,20", 1, false);
    EXPECT_EQ(linked.kind, RecordKind::linkedCoin);
    EXPECT_EQ(linked.drops, 0);
    EXPECT_EQ(linked.parameters[0].lowCode, "R05");
    EXPECT_EQ(linked.parameters[0].highCode, "R06");
    EXPECT_EQ(linked.parameters[0].highOffset, 7);

    const CoinsetRecord copied = parseCoinsetRecord("CO,old one,A2,B1", 3, false);
    EXPECT_EQ(copied.kind, RecordKind::copiedCoin);
    EXPECT_EQ(copied.code + copied.oldCode, "A2B1");

    const std::string_view slugLine = "S,washer,15,2,20,3,21,Coin 04";
    const CoinsetRecord slug = parseCoinsetRecord(slugLine, 2, false);
    EXPECT_EQ(slug.kind, RecordKind::slug);
    EXPECT_EQ(slug.code, "Slug");
    EXPECT_EQ(slug.drops, 15);
    EXPECT_EQ(slug.parameters[1].separation, 3);
    EXPECT_EQ(slug.parameters[1].tolerance, 21);
    EXPECT_EQ(parseCoinsetRecord(slugLine, 2, true).code, "Coin 04");

    const CoinsetRecord reference = parseCoinsetRecord("R,ref,R05,10,20,21", 2, false);
    EXPECT_EQ(reference.kind, RecordKind::reference);
    EXPECT_EQ(reference.parameters[1].tolerance, 21);

    // Missing and senseless fields.
    EXPECT_EQ(parseCoinsetRecord("", 3, false).kind, RecordKind::unknown);
    EXPECT_EQ(parseCoinsetRecord("cd,x", 3, false).kind, RecordKind::unknown);
    const CoinsetRecord bare = parseCoinsetRecord("CD", 6, false);
    EXPECT_EQ(bare.kind, RecordKind::coin);
    EXPECT_EQ(bare.code, "");
    EXPECT_EQ(bare.drops, 0);
    EXPECT_EQ(parseCoinsetRecord("CD,x,A1,-5", 3, false).drops, 0);
}

TEST(CoinsetFile, CoinValues) {
    NriNewData nri;
    storeCoinValues("V,1,2,5,10,20,50,100,200,0,0,0,0,7,8,9,16,3", nri);
    EXPECT_EQ(nri.newCoinValue[1], 1);
    EXPECT_EQ(nri.newCoinValue[8], 200);
    EXPECT_EQ(nri.newCoinValue[16], 16);
    EXPECT_EQ(nri.newCoinValue[17], 0);
    EXPECT_EQ(nri.valueMultiplier, 3);
}

TEST(CoinsetFile, FamilyData) {
    CoinsetData coinset;
    NriNewData nri;
    storeFamilyData("D,unknown,1,2,3", coinset, nri);
    EXPECT_FALSE(coinset.routingPresent || coinset.c120MapPresent || coinset.compensationPresent);

    storeFamilyData("D,435R,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23", coinset,
                    nri);
    EXPECT_TRUE(coinset.routingPresent);
    EXPECT_EQ(coinset.routing[22], 23);
    storeFamilyData("D,SentinelR,41,42,43", coinset, nri);
    EXPECT_EQ(coinset.routing[1], 42);
    EXPECT_EQ(coinset.routing[2], 3);

    storeFamilyData("D,120M,x3F,9,6,,1,0,2,3,4,5,xFF,-1", coinset, nri);
    EXPECT_TRUE(coinset.c120MapPresent && coinset.c120Jaguar);
    EXPECT_EQ(coinset.c120OutputMap[1], -32705);
    EXPECT_EQ(coinset.c120OutputMap[2], 0);
    EXPECT_EQ(coinset.c120OutputMap[3], 6);
    EXPECT_EQ(coinset.c120OutputMap[11], 255 - 32768);
    EXPECT_EQ(coinset.c120OutputMap[12], 0);
    storeFamilyData("D,120N,x3F,3", coinset, nri);
    EXPECT_FALSE(coinset.c120Jaguar);
    EXPECT_EQ(coinset.c120OutputMap[1], 0);
    EXPECT_EQ(coinset.c120OutputMap[2], 3);

    storeFamilyData("D,G13-6000P,4120", coinset, nri);
    EXPECT_EQ(nri.parameterString, "4120");
    storeFamilyData("D,G40-0000X,1,2,3,4,5,6", coinset, nri);
    EXPECT_TRUE(coinset.compensationPresent);
    EXPECT_EQ(nri.compensation[5], 6);
    storeFamilyData("D,G10-4000/5R,first, second ", coinset, nri);
    EXPECT_EQ(nri.routeText[0] + nri.routeText[1], "firstsecond");
}

TEST(FileNames, OnlyTheLastComponentIsEdited) {
    EXPECT_EQ(coinsetFileName("d.ir/COINS.TXT"), "d.ir/COINS.cst");
    EXPECT_EQ(coinsetFileName("d/a.b.c"), "d/a.b.cst");
    EXPECT_EQ(coinsetFileName("d.ir/COINS"), "d.ir/COINS");
    EXPECT_EQ(coinsetFileName("d.ir\\COINS"), "d.ir\\COINS");
    EXPECT_EQ(withNewExtension("d.ir/coins", ".txt"), "d.ir/coins");
    EXPECT_EQ(withExtension("d.ir/coins", ".txt"), "d.ir/coins.txt");
    EXPECT_EQ(withExtension("d.ir\\old.coins.dat", ".txt"), "d.ir\\old.coins.txt");
    EXPECT_EQ(logFileName("d.ir/results.old.txt"), "d.ir/results.csv");
    EXPECT_EQ(logFileName("d.ir\\results"), "d.ir\\results.csv");
    EXPECT_EQ(shownFileName("a/b\\QZx.cst"), "QZx.cst");
}

}  // namespace
}  // namespace vantor
