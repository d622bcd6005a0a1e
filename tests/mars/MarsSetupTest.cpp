#include <gtest/gtest.h>

#include "MarsWorld.h"

namespace vantor {
namespace {

using test::escapes;
using test::MarsWorld;

constexpr const char* kPresent = "C00030 00020 00150 00100 00 V1.95\r";
constexpr const char* kAbsent = "N00030 00020 00150 00100 00 V1.95\r";
constexpr const char* kWrong = "C00030 00020 00150 01000 00 V1.95\r";

TEST(MarsTimings, AreTriedSixTimesAndThenTold) {
    MarsWorld world("MS1400");
    world.port.answer("S", kWrong);
    world.mars.setupMarsTimings("MS1400");
    std::string six;
    for (int i = 0; i < 6; ++i) six += "C02Z150150150425\rS";
    EXPECT_EQ(world.port.sent, six);
    ASSERT_EQ(world.prompts.asked.size(), 1U);
    EXPECT_EQ(world.prompts.asked[0].text, "Failed to set up validator timings after 5 retries");
    EXPECT_EQ(world.prompts.asked[0].title, "Error");
    EXPECT_EQ(world.prompts.asked[0].icon, PromptIcon::information);
}

TEST(MarsTimings, AreJudgedByTheStatusThatFollowsThem) {
    // A third attempt succeeds; a stray line before the status is waited past.
    MarsWorld late;
    late.port.answer("S", kWrong);
    late.port.answer("S", kWrong);
    late.port.answer("S", "T something\r");
    late.port.receive(kPresent, 3000);
    late.mars.setupMarsTimings("ME111");
    EXPECT_EQ(late.port.sent, "Z030020150100\rSZ030020150100\rSZ030020150100\rS");
    EXPECT_TRUE(late.prompts.asked.empty()) << late.prompts.texts();

    // Timings of an earlier conversation are no answer.
    MarsWorld silent;
    silent.feed(kPresent);
    silent.mars.setupMarsTimings("ME111");
    EXPECT_TRUE(silent.prompts.told("Failed to set up validator timings"));
}

TEST(MarsCheck, AsksOnceMoreBeforeItGivesUpOnAValidator) {
    struct Case {
        const char* model;
        bool detect;
        const char* first;
        const char* second;
        bool goesOn;
        std::string sent;
        double ms;
    };
    const double once = 800 + 500;
    const double twice = once + 1000;
    for (const Case& c : {Case{"ME111", true, kPresent, kPresent, true, "MJSW", once},
                          Case{"ME111", false, kAbsent, kAbsent, true, "MJSW", once},
                          Case{"ME111", true, kAbsent, kPresent, true, "MJSSW", twice},
                          Case{"ME111", true, kAbsent, kAbsent, false, "MJSSW", twice},
                          Case{"ME181", true, kPresent, kPresent, true, "MJWCFDJSW", once}}) {
        MarsWorld world(c.model);
        world.port.answer("S", c.first);
        world.port.answer("S", c.second);
        EXPECT_EQ(world.check.checkMech(c.detect), c.goesOn);
        EXPECT_EQ(world.port.sent, escapes(25) + c.sent);
        EXPECT_EQ(world.prompts.told("Validator NOT DETECTED"), !c.goesOn);
        EXPECT_NEAR(world.ms(), c.ms, 60) << c.sent;
    }
}

TEST(MarsRun, CancelEndsEveryWaitOfItsBeginning) {
    struct Case {
        const char* name;
        bool status;
        int afterMs;
        const char* sent;
    };
    // Only the status is answered, so that every other wait lasts until it is cancelled.
    for (const Case& c :
         {Case{"the timing command", true, 100, "Z030020150100\r"},
          Case{"the status", false, 900, "Z030020150100\rS"},
          Case{"the timings refused", false, 2500, "Z030020150100\rSZ030020150100\rS"},
          Case{"the mode", true, 900, "Z030020150100\rSM"}}) {
        MarsWorld world;
        if (c.status) world.port.answer("S", kPresent);
        world.loop.callAfter(std::chrono::milliseconds(c.afterMs),
                             [&] { world.state.gather.abortFlag = true; });
        world.mars.startRun();
        EXPECT_EQ(world.port.sent, c.sent) << c.name;
        EXPECT_LE(world.ms(), c.afterMs + 20) << c.name;
        EXPECT_TRUE(world.prompts.asked.empty()) << c.name;
    }
}

TEST(MarsWizard, TakesTheCoinValueOfANewCoinOnly) {
    struct Case {
        const char* model;
        WizardMode mode;
        int value;
        bool allowed;
        int stored;
    };
    for (const Case& c : {Case{"ME181", WizardMode::addReplace, 255, true, 255},
                          Case{"ME181", WizardMode::addReplace, 256, false, 7},
                          Case{"ME181", WizardMode::addReplace, -1, false, 7},
                          Case{"ME181", WizardMode::slugFix, 256, true, 7},
                          Case{"ME181", WizardMode::editLimits, 10, true, 7},
                          Case{"ME111", WizardMode::addReplace, 256, true, 7}}) {
        MarsWorld world(c.model, 1);
        world.state.nriNew.newCoinValue[12] = 7;
        EXPECT_EQ(world.mars.startWizard({.mode = c.mode, .channel = 12, .coinValue = c.value}),
                  c.allowed);
        EXPECT_EQ(world.state.nriNew.newCoinValue[12], c.stored);
        EXPECT_EQ(world.prompts.texts(),
                  c.allowed ? "" : "Error: Invalid Coin Value has been Set\r\n\r\n0 - 255\n");
        EXPECT_EQ(world.mars.wizardPanel().coinValue, c.model == std::string_view("ME181"));
    }
}

TEST(MarsRun, ReadingsOutOfRangeAreRefused) {
    struct Case {
        std::array<int, 3> reading;
        bool valid;
    };
    for (const Case& c :
         {Case{{2, 2, 2}, true}, Case{{3000, 3000, 4000}, true}, Case{{1, 100, 100}, false},
          Case{{100, 3001, 100}, false}, Case{{100, 100, 4001}, false}}) {
        MarsWorld world;
        for (int p = 0; p < 3; ++p) {
            world.state.gather.latestReading[p] = c.reading.at(static_cast<std::size_t>(p));
        }
        EXPECT_EQ(world.mars.readingValid(), c.valid)
            << c.reading[0] << c.reading[1] << c.reading[2];
    }
}

}  // namespace
}  // namespace vantor
