#include <gtest/gtest.h>

#include "RecordedProgress.h"
#include "ValtestWorld.h"
#include "mars/MarsFamily.h"

namespace vantor {
namespace {

using test::escapes;
using test::ValtestWorld;

constexpr const char* kAbsent = "N00030 00020 00150 00100 00 V1.95\r";
constexpr const char* kPresent = "C00030 00020 00150 00100 00 V1.95\r";

// --- positions of every model

struct Shown {
    std::string_view maker, model;
    std::string boxVersion, variant;
    bool answersBinary;
    std::string captions;
    bool outputOffered;
    int tubeCount;
    std::string binaryCaptions;  ///< after Binary was chosen; empty = not offered
};

const std::string kSix = "Coin A|Coin B|Coin C|Coin D|Coin E|Coin F|";
const std::string kFive = "Coin A|Coin B|Coin C|Coin D|Coin E|";
const std::string kFour = "Coin A|Coin B|Coin C|Coin D|";
const std::string kEightCodes = "Coin 01|Coin 02|Coin 03|Coin 04|Coin 05|Coin 06|Coin 07|Coin 08|";
const std::string kSixteenCodes = kEightCodes +
                                  "Coin 09|Coin 10|Coin 11|Coin 12|Coin 13|Coin 14|Coin 15|"
                                  "Coin 16|";
const std::string kRecords = kEightCodes + "Tube L|Tube M|Tube R|Cashbox|";
const std::string kTen = kSix + "Coin G|Coin H|Coin I|Rejected|";

const Shown kShown[] = {
    {kMars, "ME111", "V1.95", "", true, kSix + "Rejected|", false, 7, ""},
    {kMars, "ME181", "V1.91", "", true, kSix + "Rejected|", false, 7, ""},
    {kMars, "MS100", "V1.95", "", true, kSix + "Rejected|", false, 7, ""},
    {kMars, "MS1000", "V1.95", "", true, kTen, false, 10, ""},
    {kMars, "MS1400", "V1.90", "", true, kSix, false, 0, ""},
    {kMars, "MS1000", "V1.9", "", true, kSix, false, 0, ""},
    {kMars, "ME111", "", "", true, kSix, false, 0, ""},
    {kCoinControls, "C120", "V1.95", "", true, kSix, false, 0, ""},
    {kCoinControls, "Sentinel", "V1.95", "", true, kFour, false, 0, ""},
    {kCoinControls, "220B", "V1.95", "", true, kFour, true, 0, kEightCodes},
    {kCoinControls, "220B", "V1.95", "", false, kFour, false, 0, ""},
    {kCoinControls, "335", "V1.00", "", true, kFive, true, 0, kSixteenCodes},
    {kCoinControls, "435", "V1.95", "", true, kFive, true, 0, kSixteenCodes},
    {kCoinControls, "450", "V1.95", "", true, kSix, false, 0, ""},
    {kNri, "G10-4000", "V1.95", "", true, kRecords, false, 0, ""},
    {kNri, "G10-4000/5", "V1.95", "", true, kRecords, false, 0, ""},
    {kNri, "G13-6000", "V1.95", "", true, kSix, false, 0, ""},
    {kNri, "G18-3000", "V1.95", "", true, kSix, false, 0, ""},
    {kNri, "G40-0000", "V1.95", "G40-x0xx", true, kSix, false, 0, ""},
    {kNri, "G40-0000", "V1.95", "G40-x3xx", true, kFive, true, 0, kSixteenCodes},
    {kNri, "G40-0000", "V1.95", "G40-x4xx", true, kFive, true, 0, kSixteenCodes},
    {kNri, "G40-0000", "V1.95", "G40-x5xx", true, kSix, false, 0, ""},
    {kNri, "G40-0000", "V1.95", "G40-x6xx", true, kSix, false, 0, ""},
};

TEST(ValidatorTest, EveryMechShowsItsPositions) {
    for (const Shown& row : kShown) {
        SCOPED_TRACE(std::string(row.model) + " " + row.variant + " " + row.boxVersion);
        ValtestWorld world(row.maker, row.model);
        world.state.box.boxVersion = row.boxVersion;
        if (row.answersBinary) world.port.answer("*", "D\r");
        world.openFromMain();
        if (!row.variant.empty()) world.test.chooseVariant(row.variant);

        EXPECT_EQ(world.captions(), row.captions);
        EXPECT_EQ(world.window.outputOffered, row.outputOffered);
        EXPECT_EQ(world.state.valtest.tubeCount, row.tubeCount);
        EXPECT_EQ(world.window.variantsShown, !row.variant.empty());
        EXPECT_EQ(world.window.mechType, row.model);
        EXPECT_FALSE(world.window.bitsShown);
        EXPECT_TRUE(world.window.visible);
        if (row.binaryCaptions.empty()) continue;

        world.test.chooseBinary();
        EXPECT_EQ(world.captions(), row.binaryCaptions);
        EXPECT_TRUE(world.window.bitsShown);
        world.test.chooseSingle();
        EXPECT_EQ(world.captions(), row.captions);
        EXPECT_FALSE(world.window.bitsShown);
    }
}

// --- what is sent

TEST(ValidatorTest, OpeningPutsTheBoxIntoTheModesOfTheMech) {
    struct Row {
        std::string_view maker, model;
        std::string sent;
    };
    const Row rows[] = {
        {kMars, "ME111", "OJV<family>VJN"},  {kMars, "ME181", "OJV<family>VJNC01C00"},
        {kCoinControls, "C120", "OJC01OJN"}, {kCoinControls, "450", "OJC09OJN"},
        {kCoinControls, "335", "OJC01*OJN"}, {kNri, "G13-0000", "OJC00OJN"},
        {kNri, "G18-0000", "OJC08OJN"},      {kNri, "G40-0000", "OJC08OC08JN"},
        {kNri, "G10-4000", "OJ<family>"},
    };
    for (const Row& row : rows) {
        ValtestWorld world(row.maker, row.model);
        world.openFromMain();
        EXPECT_TRUE(world.port.sent.starts_with("<break></break>" + escapes(25))) << row.model;
        EXPECT_EQ(world.sent(), row.sent) << row.model;
        EXPECT_EQ(world.callers.log, "main hidden, ") << row.model;
        world.port.answer("\x1B", "*R\r");
        world.test.back();
        EXPECT_TRUE(world.sent().ends_with("W")) << row.model;
    }
}

TEST(ValidatorTest, AMarsMechGetsItsSensorTimings) {
    ValtestWorld world;
    test::RecordedProgress progress;
    MarsFamily family(world.state, world.link, world.prompts, world.errors, progress);
    Families families(world.state);
    families.add(family);
    ValidatorTest test({.state = world.state,
                        .link = world.link,
                        .check = world.check,
                        .families = families,
                        .receiver = world.receiver,
                        .prompts = world.prompts,
                        .errors = world.errors,
                        .window = world.window,
                        .callers = world.callers});
    world.select(kMars, "MS1400");
    world.port.answer("S", "C00150 00150 00150 00425 00 V1.90\r");
    test.openFromMain(808);
    EXPECT_EQ(world.sent(), "OJVC02Z150150150425\rSVJN");
    EXPECT_EQ(world.captions(), kSix) << "the version is the one that the box has just told";
}

TEST(ValidatorTest, TheProgrammingLoomComesOffBeforeTheBoxIsSwitched) {
    ValtestWorld world(kCoinControls, "435");
    world.port.answer("*", "D\r");
    world.openFromMain();
    world.sent();
    std::string sentBefore;
    world.prompts.expect("Remove Programming Loom", Answer::ok, [&] { sentBefore = world.sent(); });
    world.test.chooseBinary();
    EXPECT_EQ(sentBefore, "*O*");
    EXPECT_EQ(world.sent(), "C00");
    ASSERT_EQ(world.prompts.asked.size(), 1u);
    EXPECT_EQ(world.prompts.asked[0].title, "");
}

TEST(ValidatorTest, ABoxThatStopsAnsweringFallsBackToSingle) {
    ValtestWorld world(kCoinControls, "220B");
    world.port.answer("*", "D\r");
    world.port.answer("*", "");
    world.openFromMain();
    EXPECT_TRUE(world.window.outputOffered);
    world.sent();
    world.test.chooseBinary();
    EXPECT_EQ(world.sent(), "*O");
    EXPECT_FALSE(world.window.binary);
    EXPECT_FALSE(world.window.outputOffered);
    EXPECT_EQ(world.captions(), kFour);
}

TEST(ValidatorTest, AVariantIsToldToTheBoxAndKeepsBinaryWhereItIsOffered) {
    ValtestWorld world(kNri, "G40-0000");
    world.port.answer("*", "D\r");
    world.openFromMain();
    EXPECT_EQ(world.window.variants, (std::vector<std::string>{"G40-x0xx", "G40-x3xx", "G40-x4xx",
                                                               "G40-x5xx", "G40-x6xx"}));
    EXPECT_EQ(world.window.chosenVariant, 0);
    world.sent();
    world.test.chooseVariant("G40-x3xx");
    EXPECT_EQ(world.sent(), "*OC01");
    world.test.chooseBinary();
    EXPECT_EQ(world.sent(), "*OC01*C00");
    world.test.chooseVariant("G40-x4xx");
    EXPECT_EQ(world.sent(), "*OC08*C00");
    EXPECT_EQ(world.captions(), kSixteenCodes);
    EXPECT_TRUE(world.window.bitsShown);
    world.test.chooseVariant("G40-x5xx");
    EXPECT_EQ(world.sent(), "OC08");
    EXPECT_EQ(world.captions(), kSix);
    EXPECT_FALSE(world.window.binary);
    EXPECT_FALSE(world.window.bitsShown);
}

// --- coins

TEST(ValidatorTest, CoinsLightAndCountTheirPositions) {
    ValtestWorld world(kMars, "ME111");
    int accepted = 0, rejected = 0;
    world.receiver.sinks.makeSound = [&](int kind) { ++(kind == 0 ? accepted : rejected); };
    world.openFromMain();
    EXPECT_EQ(world.window.counts[2], " 0");
    world.feed("V C\rV C\r");
    EXPECT_EQ(world.window.counts[2], " 2");
    EXPECT_EQ(world.window.lit(), "+2 ");
    world.feed("V R\r");
    EXPECT_EQ(world.window.counts[6], " 1");
    EXPECT_EQ(world.window.lit(), "-6 ");
    EXPECT_EQ(accepted, 2);
    EXPECT_EQ(rejected, 1);

    const double before = world.ms();
    world.link.waitUntil([&] { return world.window.lit().empty(); });
    EXPECT_NEAR(world.ms() - before, 350, 50);
    EXPECT_EQ(world.window.counts[2], " 2") << "the counts stay";
    world.test.clearValtestCounts();
    EXPECT_EQ(world.window.counts[2], " 0");
    world.feed("V C\r");
    EXPECT_EQ(world.window.counts[2], " 1");
    world.feed("V I\r");
    EXPECT_EQ(world.window.lit(), "+8 ") << "a position that is not shown";
}

TEST(ValidatorTest, CoinsAfterBackSoundAndMarkNothing) {
    ValtestWorld world(kMars, "ME111");
    int sounds = 0;
    world.receiver.sinks.makeSound = [&](int) { ++sounds; };
    world.openFromMain();
    world.feed("V A\r");
    world.test.back();
    EXPECT_EQ(world.state.link.coinDisplayHold, 0);
    world.test.resetValtestDisplay();
    world.feed("V A\rV R\r");
    EXPECT_EQ(sounds, 2) << "no reject position any more";
    EXPECT_EQ(world.window.lit(), "");
    EXPECT_EQ(world.window.counts[0], " 1");
}

// --- opening, failing and going back

TEST(ValidatorTest, WithoutAValidatorTheTestDoesNotOpen) {
    struct Row {
        std::string_view maker, model;
        std::string sent;
    };
    const Row rows[] = {
        {kMars, "ME111", "OJV<family>VJNW"},
        {kCoinControls, "C120", "OJC01OJNSW"},
        {kNri, "G10-4000", "OJ<family><break></break>" + escapes(20) + "W"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.model);
        ValtestWorld world(row.maker, row.model);
        world.state.box.mechPresent = false;
        world.nri.answers = false;
        world.port.answer("S", kAbsent);
        world.port.answer("\x1B", "*R\r");
        world.openFromMain();
        EXPECT_EQ(world.sent(), row.sent);
        ASSERT_EQ(world.prompts.asked.size(), 1u);
        EXPECT_EQ(world.prompts.asked[0].text, "Validator NOT DETECTED");
        EXPECT_EQ(world.prompts.asked[0].title, "Validator Check");
        EXPECT_FALSE(world.window.visible);
        EXPECT_EQ(world.callers.log, "buttons on, ");
        EXPECT_FALSE(world.state.box.nriG10Mode);
        EXPECT_EQ(world.receiver.sinks.valtest, nullptr);
    }
}

TEST(ValidatorTest, AValidatorPutInSinceTheLastStatusIsFound) {
    ValtestWorld world(kCoinControls, "C120");
    world.state.box.mechPresent = false;
    world.port.answer("S", kPresent);
    world.openFromMain();
    EXPECT_EQ(world.callers.log, "main hidden, ");
    EXPECT_TRUE(world.window.visible);
}

TEST(ValidatorTest, CoinRecordsAreHeardUntilBack) {
    ValtestWorld world(kNri, "G10-4000");
    world.state.box.mechPresent = false;
    world.state.box.replyText = "left over";
    world.openFromMain();
    EXPECT_TRUE(world.window.visible) << "a mech that answered is there";
    EXPECT_EQ(world.state.box.replyText, "");
    world.state.box.serialModeFlag = true;
    world.feed("\r\x80\x0A\r");
    EXPECT_EQ(world.window.lit(), "+0 +9 ");
    EXPECT_EQ(world.window.counts[9], " 1");
    world.sent();
    world.port.answer("\x1B", "*R\r");
    world.test.back();
    EXPECT_EQ(world.sent(), "<break></break>" + escapes(20) + "W");
    EXPECT_FALSE(world.state.box.nriG10Mode);
    EXPECT_FALSE(world.state.box.serialModeFlag);
}

TEST(ValidatorTest, AFailedRecordModeBeepsAndStillOpens) {
    ValtestWorld world(kNri, "G10-4000/5");
    world.nri.answers = false;
    world.openFromMain();
    EXPECT_EQ(world.prompts.beeps, 1);
    EXPECT_TRUE(world.window.visible);
    EXPECT_EQ(world.sent(), "OJ<family>");
    EXPECT_TRUE(world.state.box.nriG10Mode) << "Back must leave serial mode";
}

}  // namespace
}  // namespace vantor
