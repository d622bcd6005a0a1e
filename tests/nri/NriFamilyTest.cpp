#include <gtest/gtest.h>

#include "NriWorld.h"

namespace vantor {
namespace {

using test::NriWorld;

const std::string kEnter = "C00<25 esc>";

TEST(NriFamily, RulesOfTheModels) {
    for (const NriModel& model : nriModels()) {
        NriWorld world(model.code);
        const bool mapped = model.code == "G13-6000" || model.code == "G40-0000";
        EXPECT_EQ(world.nri.coinsetRules().slugCode, mapped) << model.code;
        EXPECT_EQ(world.nri.wizardPanel().lines, mapped || model.code == "G18-3000") << model.code;
    }
    NriWorld world("G13-6000");
    EXPECT_EQ(world.nri.look().name, "NRI");
    EXPECT_EQ(world.nri.look().colour, 0xFF0000U);
    EXPECT_TRUE(world.nri.limitRules().reversedIsEmpty);
    EXPECT_EQ(world.nri.limitRules().capacity, 255);
    EXPECT_TRUE(world.nri.coinsetRules().alwaysReadsOldMemory);
    EXPECT_TRUE(world.nri.wizardPanel().coinValue);
}

TEST(NriFamily, TheCheckFindsTheMechAndLeavesSerialMode) {
    NriWorld world("G40-0000");
    EXPECT_TRUE(world.check.checkMech(true));
    EXPECT_TRUE(world.inCommandMode());
    world.mech.identity = "07";
    EXPECT_FALSE(world.check.checkMech(true));
    EXPECT_TRUE(world.prompts.told("Validator NOT DETECTED"));
    EXPECT_TRUE(world.inCommandMode());
}

// --- readings ------------------------------------------------------------------------------

TEST(NriReadings, AHandshakeMechUntilNoCoinRemains) {
    NriWorld world("G18-3000");
    world.mech.coins = {"0102030405FF", "0A0B0C", "0A0B0C0D0E0F"};
    world.state.gather.coinsRemaining = 2;
    int rejects = 0;
    world.receiver.sinks.makeSound = [&](int kind) { rejects += kind; };
    world.nri.enableCoinData(3);
    EXPECT_EQ(world.readings, "1 2 3 4 5 255 ;10 11 12 13 14 15 ;");
    EXPECT_EQ(rejects, 1) << "a reading cut short is no coin";
    EXPECT_EQ(world.transcript(), kEnter + "$05ITTT" + NriWorld::kLeave);
    EXPECT_EQ(world.state.gather.coinsRemaining, 0);
    EXPECT_EQ(world.prompts.beeps, 1);
    EXPECT_TRUE(world.inCommandMode());
    world.nri.disableCoinData();
    EXPECT_TRUE(world.transcript().ends_with(std::string(NriWorld::kLeave) + NriWorld::kLeave));
}

TEST(NriReadings, APlainMechBeepsAtEachCoin) {
    NriWorld world("G13-0000");
    world.mech.coins = {"001|022|033|044", "255|000|010|020"};
    world.state.gather.coinsRemaining = 2;
    int logged = 0;
    world.state.gather.logEnabled = true;
    world.receiver.sinks.logReading = [&] { ++logged; };
    world.nri.enableCoinData(1);
    EXPECT_EQ(world.readings, "1 22 33 44 ;255 0 10 20 ;");
    EXPECT_EQ(world.prompts.beeps, 3);
    EXPECT_EQ(logged, 2);
}

TEST(NriReadings, CancelEndsTheWaitForACoinThatNeverFalls) {
    NriWorld world("G13-6000");
    world.state.images.oldMemoryRead = true;
    world.state.gather.coinsRemaining = 5;
    world.mech.coins = {"000102030405060708090A0B0C0D0E0F"};
    world.loop.callAfter(std::chrono::minutes(3),
                         [&world] { world.state.gather.abortFlag = true; });
    world.nri.enableCoinData(0);
    EXPECT_EQ(world.readings, "0 1 2 3 4 5 ;") << "no channel: the order of the mech";
    EXPECT_EQ(world.state.gather.coinsRemaining, 4);
    EXPECT_TRUE(world.inCommandMode());
    EXPECT_TRUE(world.prompts.asked.empty());

    NriWorld pausing("G13-0000");
    pausing.state.gather.coinsRemaining = 5;
    pausing.mech.coins = {"001|022|033|044"};
    RepeatingTimer hand(pausing.loop);
    hand.start(std::chrono::milliseconds(10), [&pausing] {
        pausing.state.gather.abortFlag |=
            pausing.port.sent.ends_with('T') && pausing.state.box.linesComplete;
    });
    pausing.nri.enableCoinData(1);
    EXPECT_EQ(pausing.readings, "") << "a coin that Cancel overtook";
    EXPECT_EQ(pausing.state.gather.coinsRemaining, 5);
}

TEST(NriReadings, AMechThatIsSilentEndsTheRun) {
    NriWorld world("G18-3000");
    world.mech.identity = "07";
    world.interfaceVersion = "I2.0";
    world.state.gather.coinsRemaining = 5;
    world.nri.enableCoinData(1);
    EXPECT_TRUE(world.state.gather.abortFlag);
    EXPECT_EQ(world.prompts.texts(), NriWorld::kReadFailure);
    EXPECT_TRUE(world.inCommandMode());
}

TEST(NriReadings, MapsComeFromTheCoinsetOrFromTheMemory) {
    NriWorld world("G40-0000");
    world.mech.coins = {"000102030405060708090A0B0C0D0E0F", "000102030405060708090A0B0C0D0E0F"};
    world.state.gather.coinsRemaining = 1;
    world.nri.enableCoinData(2);
    EXPECT_EQ(world.readings, "4 1 2 0 5 6 ;") << "the memory's map";
    EXPECT_TRUE(world.state.images.oldMemoryRead);
    EXPECT_NE(world.transcript().find("X13"), std::string::npos);

    world.port.sent.clear();
    world.readings.clear();
    std::string given;
    for (const char digit : std::string("F13680")) given += std::string(12, digit);
    world.state.nriNew.parameterString = given;
    world.state.gather.coinsRemaining = 1;
    world.nri.enableCoinData(2);
    EXPECT_EQ(world.readings, "15 1 3 6 8 0 ;");
    EXPECT_EQ(world.transcript(), kEnter + "$05IT" + NriWorld::kLeave);

    NriWorld failing("G40-0000");
    failing.mech.silentTo = {"X13"};
    failing.state.gather.coinsRemaining = 1;
    failing.nri.enableCoinData(2);
    EXPECT_TRUE(failing.state.gather.abortFlag);
    EXPECT_FALSE(failing.state.images.oldMemoryRead);
    EXPECT_EQ(failing.transcript().find('T'), std::string::npos) << "no coin is asked for";
}

// --- the old memory ------------------------------------------------------------------------

TEST(NriTakeOver, ACoinsetRunKeepsWhatItDoesNotSupply) {
    NriWorld world("G40-0000");
    world.state.coinset.oldChannelSource[2] = 9;
    world.state.coinset.oldChannelSource[3] = 20;
    world.state.limits.channelLimits[1][1] = 77;
    world.nri.readOldMemory();
    EXPECT_TRUE(world.transcript().starts_with("J" + kEnter));
    EXPECT_TRUE(world.transcript().ends_with("W"));
    EXPECT_TRUE(world.state.images.oldMemoryRead);
    const NriFields& next = world.state.nri.next;
    EXPECT_EQ(next.valueMultiplier, 0x83);
    EXPECT_EQ(next.coinValues[1] * 100 + next.coinValues[2], 15 * 100 + 39) << "value of channel 9";
    EXPECT_EQ(next.outputs[2], 128 + 1);
    EXPECT_EQ(next.outputCodes[2], 4);
    EXPECT_EQ(next.coinValues[3], 21) << "there is no channel 20: as it was";
    EXPECT_TRUE(world.prompts.told("324"));
    EXPECT_EQ(world.state.limits.channelLimits[1][1], 77);
    EXPECT_EQ(world.state.limits.channelLimits[2][2], 0xAC);

    // Restore Limits after programming: kept channels come from the mech as it was before.
    world.state.nri.old.limits[9][2] = 1;
    world.state.limits.channelLimits[2][2] = 0;
    world.state.nriNew.valuesPresent = true;
    world.nri.copyOldMemoryData();
    EXPECT_EQ(world.state.limits.channelLimits[2][2], 0xAC);
    EXPECT_EQ(next.coinValues[1] * 100 + next.coinValues[2], 39);
}

TEST(NriTakeOver, AnIncompleteReadTakesNothingOver) {
    NriWorld world("G13-0000");
    world.state.coinset.oldChannelSource[1] = 1;
    world.mech.silentTo = {"V3"};
    world.nri.readOldMemory();
    EXPECT_FALSE(world.state.images.oldMemoryRead);
    EXPECT_EQ(world.state.limits.channelLimits[1][2], 0);
    EXPECT_TRUE(world.transcript().ends_with("W"));
    EXPECT_FALSE(world.nri.programAndVerify());

    // A good read later on, in the memory utilities, gives the new fields nothing either.
    world.mech.silentTo.clear();
    EXPECT_TRUE(world.nri.readMemory());
    world.port.sent.clear();
    EXPECT_FALSE(world.nri.programAndVerify());
    EXPECT_EQ(world.transcript(), "");
    EXPECT_TRUE(world.prompts.texts().ends_with("Error: Error Programming NRI Memory\n"))
        << world.prompts.texts();
    world.nri.readOldMemory();
    EXPECT_EQ(world.state.limits.channelLimits[1][2], 201);
    EXPECT_TRUE(world.nri.programAndVerify());
}

// --- wizards -------------------------------------------------------------------------------

struct NriWizard : NriWorld {
    explicit NriWizard(std::string_view model) : NriWorld(model) {
        state.gather.wizardRun = true;
        for (int channel = 1; channel <= kChannels; ++channel) {
            state.coinset.oldChannelSource[channel] = channel;
        }
    }
    bool start(WizardMode mode, int value) {
        return nri.startWizard(
            {.mode = mode, .channel = 5, .coinValue = value, .outputLine = 3, .inhibitLine = 6});
    }
};

TEST(NriWizards, CoinValuesMustFitTheMech) {
    struct Case {
        const char* model;
        const char* values;  ///< block that holds the multiplier
        int value;
        const char* told;
    };
    for (const Case& c :
         {Case{"G13-6000", "0A0102030405060708090A0B0C", 25,
               "Error: Invalid Coin Value has been Set\r\n\r\nMust be a multiple of:  10\n"},
          Case{"G13-6000", "0A0102030405060708090A0B0C", 30, ""},
          Case{"G13-6000", "400102030405060708090A0B0C", 7, ""},
          Case{"G13-6000", "0A0102030405060708090A0B0C", 2560,
               "Error: Invalid Coin Value has been Set\r\n\r\n0 - 2550\n"}}) {
        NriWizard world(c.model);
        world.mech.answers["X10"] = c.values;
        EXPECT_EQ(world.start(WizardMode::addReplace, c.value), *c.told == '\0') << c.value;
        EXPECT_EQ(world.prompts.texts(), c.told);
    }
    NriWizard tubes("G10-4000");
    EXPECT_TRUE(tubes.start(WizardMode::addReplace, 200));
    EXPECT_EQ(tubes.state.nri.next.coinValues[5], 200);
    EXPECT_EQ(tubes.state.nri.next.coinValues[13], 1) << "tube values stay";
}

}  // namespace
}  // namespace vantor
