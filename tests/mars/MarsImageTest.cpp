#include <gtest/gtest.h>

#include "MarsWorld.h"

namespace vantor {
namespace {

using test::digits;
using test::MarsWorld;

const std::string kEmptyBlock(128, '0');
const std::string kSampleBlock =
    "FC21FFFD21041000"
    "0000914A11002004"
    "F18528E3C449E3D4"
    "40000000B42E4300"
    "400CB20230D74381"
    "D7538000000CF8E2"
    "9500600483FF3000"
    "4742503031312E32";

TEST(MarsImage, ASegmentIsMappedAsDrawn) {
    MarsWorld world;
    world.setSampleSegment();
    EXPECT_EQ(digits(world.state.images.next, 0, 127), kSampleBlock);
    EXPECT_EQ(digits(world.state.images.next, 128, 511), kEmptyBlock + kEmptyBlock + kEmptyBlock);
}

TEST(MarsImage, OnlySelectedSegmentsChange) {
    MarsWorld world("MS1000", 1);
    world.state.images.next.fill(7);
    world.state.prom.segmentSelected = {};
    world.state.prom.segmentSelected[2] = true;
    world.state.limits.changeFlag = true;
    world.setSampleSegment(13);
    const MechImage& image = world.state.images.next;
    std::string edited = kSampleBlock;
    edited.replace(109, 3, "77F");  // the two unused cells stay, the change flag is set
    EXPECT_EQ(digits(image, 256, 383), edited);
    EXPECT_EQ(digits(image, 0, 255), std::string(256, '7'));
    EXPECT_EQ(digits(image, 384, 511), std::string(128, '7'));
}

TEST(MarsImage, AShortReferenceLeavesTheOtherNibbles) {
    MechImage image;
    image.fill(9);
    SegmentFlags selected;
    selected[0] = true;
    addCoinsetReference(image, marsModel("ME111").layout, selected, "AB", "\xE9");
    EXPECT_EQ(digits(image, 111, 128), "94142999999E999999");
    addCoinsetReference(image, marsModel("ME111").layout, selected, "LONGER", "12.5");
    EXPECT_EQ(digits(image, 112, 127), "4C4F4E474531322E");
}

TEST(MarsImage, TheMe181HasItsBlocksAndCoinValuesWhereTheMechWantsThem) {
    MarsWorld world("ME181", 1);
    // What an image held before must not shine through.
    world.state.images.next.fill(6);
    const std::array<int, 12> values = {5, 10, 20, 50, 100, 200, 255, 1, 2, 17, 0, 300};
    for (int channel = 1; channel <= 12; ++channel) {
        world.state.nriNew.newCoinValue[channel] = values.at(static_cast<std::size_t>(channel - 1));
    }
    world.setSampleSegment();
    const MechImage& image = world.state.images.next;
    const std::string none(48, '0');
    EXPECT_EQ(digits(image, 0, 127),
              "F08C460023000000"
              "4100000000000000"
              "A000000000000000"
              "0000000000000000"
              "5000000000000000" +
                  none);
    EXPECT_EQ(digits(image, 128, 255), kSampleBlock);
    EXPECT_EQ(digits(image, 256, 383),
              "F0FF000011000000"
              "2000000000000000"
              "1000000000000000"
              "0000000000000000"
              "FF00000000000000" +
                  none);
    EXPECT_EQ(digits(image, 384, 511), kEmptyBlock);

    // Built again it stands in the same places: nothing is moved twice. Both segments now.
    world.state.prom.segmentSelected[1] = true;
    world.state.limits.changeFlag = true;
    world.setSampleSegment(7);
    std::string edited = kSampleBlock;
    edited[111] = 'F';
    EXPECT_EQ(digits(image, 128, 255), edited);
    EXPECT_EQ(digits(image, 384, 511), edited);
    EXPECT_EQ(digits(image, 0, 3), "F08C");
}

// --- taking channels over ------------------------------------------------------------------

/// An old image whose limit at a cell tells the cell: nibbles 0..15 in turn, scrambled a little.
MechImage oldImage() {
    MechImage image;
    for (int cell = 0; cell < 512; ++cell) image[cell] = (cell * 7 + cell / 16) % 16;
    return image;
}

TEST(MarsTakeOver, ASourceThatTheOldPromLacksIsToldAndChangesNothing) {
    struct Case {
        const char* model;
        int promSizeCode;
        int source;
        const char* told;
    };
    for (const Case& c : {Case{"ME181", 1, 13, "PROM COPY SOURCE ERROR ME181"},
                          Case{"ME111", 0, 13,
                               " 118 Error Copying Old PROM Data :  \r\n"
                               "The old PROM has no channel 13 - 9"},
                          Case{"ME111", 1, 25, "The old PROM has no channel 25"}}) {
        MarsWorld world(c.model, c.promSizeCode);
        world.state.images.carryOver = oldImage();
        world.setLimits(4, {1, 2, 3, 4, 5, 6});
        world.state.nriNew.newCoinValue[4] = 77;
        world.state.coinset.oldChannelSource[4] = c.source;
        world.state.coinset.oldChannelSource[5] = 5;
        world.mars.copyOldMemoryData();
        ASSERT_EQ(world.prompts.asked.size(), 1U) << world.prompts.texts();
        EXPECT_TRUE(world.prompts.told(c.told)) << world.prompts.texts();
        EXPECT_EQ(world.limitsOf(4), (std::array<int, 6>{1, 2, 3, 4, 5, 6}));
        EXPECT_EQ(world.state.nriNew.newCoinValue[4], 77);
        EXPECT_NE(world.limitsOf(5)[0], 0) << "the other channels are still taken over";
    }
}

TEST(MarsTakeOver, TheMe181TakesCoinValuesToo) {
    MarsWorld world("ME181", 1);
    world.state.images.carryOver[64] = 5;  // channel 1: 5 + 16 x 1
    world.state.images.carryOver[65] = 1;
    world.state.images.carryOver[258] = 4;  // channel 12
    world.state.images.carryOver[259] = 6;
    world.state.coinset.oldChannelSource[2] = -12;
    world.state.coinset.oldChannelSource[3] = 1;
    world.state.nriNew.newCoinValue[1] = 33;
    world.mars.copyOldMemoryData();
    EXPECT_EQ(world.state.nriNew.newCoinValue[1], 33);
    EXPECT_EQ(world.state.nriNew.newCoinValue[2], 100);
    EXPECT_EQ(world.state.nriNew.newCoinValue[3], 21);
    EXPECT_EQ(world.state.prom.oldChannelValue[12], 100);
}

}  // namespace
}  // namespace vantor
