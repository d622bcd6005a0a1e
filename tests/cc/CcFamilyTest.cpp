#include <gtest/gtest.h>

#include "CcWorld.h"
#include "platform/Files.h"

namespace vantor {
namespace {

using test::CcWorld;
using test::escapes;
using test::leaving;
using test::opening;
using test::readPackets;

void setLimits(CcWorld& world, int channel, int low, int high) {
    for (int p = 1; p <= world.state.n(); ++p) {
        world.state.limits.channelLimits[channel][2 * p - 1] = low + p;
        world.state.limits.channelLimits[channel][2 * p] = high + p;
    }
}

TEST(CcProbe, AsksTheMechAndLeavesSerialModeEitherWay) {
    const std::string check = escapes(25) + "MJS";
    struct Case {
        const char* model;
        std::string opened, closed;
    };
    const Case cases[] = {{"C120", opening("C00"), "yy"},
                          {"450", opening("C08"), "yy"},
                          {"Sentinel", "C00" + escapes(25) + "$06\r#TKI", "\r#"}};
    for (const Case& c : cases) {
        CcWorld there(c.model);
        EXPECT_TRUE(there.check.checkMech(true)) << c.model;
        EXPECT_EQ(there.port.sent, check + c.opened + c.closed + leaving()) << c.model;
        EXPECT_TRUE(there.inCommandMode()) << c.model;

        CcWorld missing(c.model);
        missing.box.openingsIgnored = 1;
        EXPECT_FALSE(missing.check.checkMech(true)) << c.model;
        EXPECT_EQ(missing.port.sent, check + c.opened + leaving()) << c.model;
        EXPECT_EQ(missing.told(), "! Validator Check: Validator NOT DETECTED\n") << c.model;
        EXPECT_TRUE(missing.inCommandMode()) << c.model;

        CcWorld without(c.model);
        without.box.openingsIgnored = 1;
        EXPECT_TRUE(without.check.checkMech(false)) << c.model;
        EXPECT_EQ(without.port.sent, check) << c.model;
    }
}

TEST(CcOldMemory, IsReadBetweenJAndWAndChannelsAreTakenOver) {
    CcWorld world("335");
    world.box.words[9] = 0x3412;   // channel 1, parameter 1
    world.box.words[56] = 0x7856;  // channel 16, parameter 3
    world.state.coinset.oldChannelSource[1] = 1;
    world.state.coinset.oldChannelSource[2] = -16;
    world.state.coinset.oldChannelSource[3] = 17;  // a 335 has 16
    setLimits(world, 3, 50, 60);
    world.cc.readOldMemory();
    EXPECT_EQ(world.port.sent, "J" + opening("C08") + readPackets(0, 127) + "yy" + leaving() + "W");
    EXPECT_TRUE(world.state.images.oldMemoryRead);
    EXPECT_EQ(world.state.images.carryOver[56], 0x7856);
    const auto& limits = world.state.limits.channelLimits;
    EXPECT_EQ(limits[1][1], 0x12);
    EXPECT_EQ(limits[1][2], 0x34);
    EXPECT_EQ(limits[2][5], 0x56);
    EXPECT_EQ(limits[2][6], 0x78);
    EXPECT_EQ(limits[3][1], 51) << "left as it was";
    EXPECT_EQ(world.prompts.asked.size(), 1U);
    EXPECT_TRUE(world.prompts.told(" 118 Error Copying Old PROM Data : "));
}

TEST(CcOldMemory, WhatWasNotReadIsNotTakenOverAndNothingIsProgrammed) {
    CcWorld world("C120");
    world.box.silentRead = 100;
    world.state.coinset.oldChannelSource[1] = 1;
    world.cc.readOldMemory();
    EXPECT_FALSE(world.state.images.oldMemoryRead);
    EXPECT_EQ(world.state.limits.channelLimits[1][1], 0);
    world.cc.rebuildImage();
    world.port.sent.clear();
    world.prompts.asked.clear();
    EXPECT_FALSE(world.cc.programAndVerify());
    EXPECT_EQ(world.told(), "! Error: Timeout reading Coin Mech EEPROM\n");
    EXPECT_EQ(world.port.sent, "");

    // A good read later on, in the EEPROM utilities, takes nothing over either.
    world.box.silentRead = -1;
    EXPECT_TRUE(world.cc.readMemory());
    world.port.sent.clear();
    EXPECT_FALSE(world.cc.programAndVerify());
    EXPECT_EQ(world.port.sent, "");

    // A whole read of another model is none of this one.
    world.cc.readOldMemory();
    world.select(kCoinControls, "220B");
    world.port.sent.clear();
    EXPECT_FALSE(world.cc.programAndVerify());
    EXPECT_EQ(world.port.sent, "");
}

TEST(CcOldMemory, RestoredChannelsComeFromBeforeTheProgramming) {
    CcWorld world("C120");
    world.box.words[11] = 0x2010;  // channel 2, parameter 1
    world.state.coinset.oldChannelSource[1] = 2;
    world.cc.readOldMemory();
    setLimits(world, 2, 90, 99);
    EXPECT_TRUE(world.cc.programAndVerify());
    EXPECT_EQ(world.box.words[10], 0x2010);
    EXPECT_EQ(world.box.words[11], 0x645B);

    world.port.sent.clear();
    world.state.limits.channelLimits[1] = {};
    world.cc.copyOldMemoryData();
    EXPECT_EQ(world.state.limits.channelLimits[1][1], 0x10);
    EXPECT_EQ(world.state.limits.channelLimits[1][2], 0x20);
    EXPECT_EQ(world.port.sent, "") << "the memory was read whole by the verification";

    // A verification that could not read leaves nothing to build on: Restore Limits reads again.
    world.box.silentRead = 3;
    EXPECT_FALSE(world.cc.programAndVerify());
    EXPECT_FALSE(world.cc.programAndVerify());
    world.box.silentRead = -1;
    world.cc.copyOldMemoryData();
    EXPECT_EQ(world.state.limits.channelLimits[1][1], 0x10);
    EXPECT_TRUE(world.cc.programAndVerify());
}

TEST(CcRebuild, ASentinelCountsACoinsetsRoutingOnce) {
    CcWorld world("Sentinel");
    const auto transfers = [&] { return world.box.words[53] / 256; };
    const int before = transfers();
    world.state.coinset.routingPresent = true;
    world.state.coinset.routing[0] = 0x1234;
    world.cc.readOldMemory();
    // Ended behind the count, then programmed whole, then once more.
    world.box.silentWrite = 56;
    EXPECT_FALSE(world.cc.programAndVerify());
    EXPECT_EQ(transfers(), before + 1);
    world.box.silentWrite = -1;
    EXPECT_TRUE(world.cc.programAndVerify());
    const int writes = world.box.wordWrites;
    EXPECT_TRUE(world.cc.programAndVerify());
    EXPECT_EQ(transfers(), before + 1);
    EXPECT_EQ(world.box.wordWrites, writes) << "nothing is left to write";
    world.cc.readOldMemory();
    EXPECT_TRUE(world.cc.programAndVerify());
    EXPECT_EQ(transfers(), before + 2) << "another run";
}

TEST(CcRebuild, RoutingAndOutputsComeWithACoinsetAndNotWithAWizard) {
    CcWorld world("450");
    world.takeMemoryAsRead();
    world.state.coinset.routingPresent = true;
    world.state.coinset.routing[0] = 0x1111;
    world.cc.rebuildImage();
    EXPECT_EQ(world.state.images.next[121], 0x1111);
    const int checked = world.state.images.next[127];
    world.state.gather.wizardRun = true;
    world.cc.rebuildImage();
    EXPECT_EQ(world.state.images.next[121], world.state.images.old[121]);
    EXPECT_NE(world.state.images.next[127], checked);

    for (const char* model : {"C120", "220B"}) {
        CcWorld other(model);
        other.takeMemoryAsRead();
        other.state.coinset.c120MapPresent = true;
        other.state.coinset.c120Jaguar = true;
        other.state.coinset.c120OutputMap[12] = 3;
        other.cc.rebuildImage();
        const bool mapped = std::string_view(model) == "C120";
        EXPECT_EQ(other.state.images.next[114], mapped ? 0x0400 : other.state.images.old[114])
            << model;
        int change = 0;
        for (int i = 0; i <= 127; ++i) {
            const int a = other.state.images.next[i], b = other.state.images.old[i];
            change += a / 256 + a % 256 - b / 256 - b % 256;
        }
        EXPECT_EQ(change % 256, 0) << model << ": the check byte takes every change up";
    }
}

}  // namespace
}  // namespace vantor
