#include <gtest/gtest.h>

#include "CcWorld.h"
#include "platform/Files.h"

namespace vantor {
namespace {

using test::bytes;
using test::CcWorld;
using test::escapes;
using test::leaving;
using test::opening;
using test::readPackets;

const std::string kSentinelOpening = "C00" + escapes(25) + "$06\r#TKI";
const std::string kSentinelClosing = "\r#" + leaving();

/// The words that the image holds before its first 0.
int wordsStored(const MechImage& image) {
    int count = 0;
    while (count <= 512 && image[count] != 0) ++count;
    return count;
}

// --- reading -------------------------------------------------------------------------------

TEST(CcRead, BringsEveryWordOfASentinel) {
    CcWorld world("Sentinel");
    world.box.words[0] = 0x1234;
    world.box.words[7] = 0xABCD;
    world.box.replacedReply[7] = "ZZRCD  AB";  // the end of the line was lost
    EXPECT_TRUE(world.cc.readMemory());
    const std::string first = kSentinelOpening + "M00800102\rM00810102\r";
    EXPECT_EQ(world.port.sent.substr(0, first.size()), first);
    const std::string last = "M00BF0102\r" + kSentinelClosing;
    EXPECT_EQ(world.port.sent.substr(world.port.sent.size() - last.size()), last);
    EXPECT_EQ(world.box.commands.size(), 64U);
    EXPECT_EQ(world.state.images.old[0], 0x1234);
    for (int i = 0; i < 64; ++i) EXPECT_EQ(world.state.images.old[i], world.box.words[i]) << i;
    EXPECT_EQ(world.state.box.sentinelVersion, "I1.2");
    EXPECT_FALSE(world.state.box.sentinelOpen);
    EXPECT_TRUE(world.inCommandMode());
    EXPECT_EQ(world.told(), "");
    EXPECT_TRUE(readFile(world.folder / "Sentineltemp.txt")->starts_with("0,4660\r\n1,40503\r\n"));
}

struct ReadFault {
    const char* what;
    const char* model;
    std::function<void(CcWorld&)> spoil;
    int stored;
    std::string told;
};

TEST(CcRead, EndsAtTheFirstWordThatFailsAndSaysSo) {
    const ReadFault faults[] = {
        {"wrong sum", "435", [](CcWorld& w) { w.box.brokenSum = 200; }, 200,
         "! Error: Checksum Error reading Coin Mech EEPROM Address: 200\n"},
        {"silence", "C120", [](CcWorld& w) { w.box.silentRead = 5; }, 5,
         "! Error: Timeout reading Coin Mech EEPROM\n"},
        {"no channel", "335", [](CcWorld& w) { w.box.openingsIgnored = 99, w.box.silentRead = 0; },
         0, "! Error: Timeout reading Coin Mech EEPROM\n"},
        {"a Sentinel's silence", "Sentinel", [](CcWorld& w) { w.box.silentRead = 5; }, 5,
         "! Error: No ACK reading Coin Mech EEPROM\n"},
        {"a reply of another kind", "Sentinel",
         [](CcWorld& w) { w.box.replacedReply[7] = "ZZE34  12\r"; }, 7,
         "! Error: No ACK reading Coin Mech EEPROM\n"},
        {"a reply cut short", "Sentinel", [](CcWorld& w) { w.box.replacedReply[7] = "ZZR34\r"; }, 7,
         "! Error: No ACK reading Coin Mech EEPROM\n"},
        {"stuck lines", "Sentinel",
         [](CcWorld& w) { w.box.identity = "E7\r", w.box.silentRead = 0; }, 0,
         "! Error: Hardware error : I2C Clock and Data lines stuck\n"
         "! Error: No ACK reading Coin Mech EEPROM\n"}};
    for (const ReadFault& fault : faults) {
        CcWorld world(fault.model);
        world.box.words[0] = 1;  // 0 counts as not stored here
        fault.spoil(world);
        world.takeMemoryAsRead();
        EXPECT_FALSE(world.cc.readMemory()) << fault.what;
        EXPECT_FALSE(world.state.oldImageWhole()) << fault.what;
        EXPECT_EQ(wordsStored(world.state.images.old), fault.stored) << fault.what;
        EXPECT_EQ(world.told(), fault.told) << fault.what;
        EXPECT_TRUE(world.inCommandMode()) << fault.what;
        EXPECT_TRUE(world.port.sent.ends_with(leaving())) << fault.what;
        EXPECT_FALSE(world.progress.open) << fault.what;
        EXPECT_TRUE(exists(world.folder / (std::string(fault.model) + "temp.txt"))) << fault.what;
    }
}

TEST(CcRead, ThreeOpeningsAreTriedBeforeTheFirstWordTells) {
    CcWorld world("450");
    world.box.openingsIgnored = 2;
    world.state.images.old.fill(7);
    EXPECT_TRUE(world.cc.readMemory());
    EXPECT_TRUE(world.state.oldImageWhole());
    EXPECT_EQ(world.state.images.old[127], world.box.words[127]);
    EXPECT_EQ(world.state.images.old[128], 0) << "of a larger mech before it";
    EXPECT_EQ(world.progress.told.front(), "open EEPROM Read|READING EEPROM IN PROGRESS");
    std::string sent = opening("C08") + opening("C08") + opening("C08");
    EXPECT_TRUE(world.port.sent.starts_with(sent + readPackets(0, 1)));
    EXPECT_EQ(world.told(), "");

    CcWorld dead("450");
    dead.box.serialMode = false;
    dead.box.silentRead = 0;
    EXPECT_FALSE(dead.cc.readMemory());
    const std::string refused = "! Error: Serial Mode Not Set-up\n";
    EXPECT_EQ(dead.told(),
              refused + refused + refused + "! Error: Timeout reading Coin Mech EEPROM\n");
    EXPECT_TRUE(dead.port.sent.ends_with(readPackets(0, 0) + leaving()))
        << "no session, no closing";
    EXPECT_TRUE(dead.inCommandMode());
    EXPECT_TRUE(readFile(dead.folder / "450temp.txt")->ends_with("127,0\r\n"));
}

TEST(CcRead, ASentinelThatDoesNotOpenIsToldAndSentNothingFurther) {
    CcWorld world("Sentinel");
    world.box.openingsIgnored = 99;
    world.cc.memory().readCcEeprom();
    EXPECT_EQ(world.port.sent, kSentinelOpening);
    EXPECT_EQ(world.told(), "! Error: Incompatible CC Interface Board\n");
    EXPECT_FALSE(exists(world.folder / "Sentineltemp.txt"));
    EXPECT_FALSE(world.progress.open);
    // Whoever asked for the read ends with the box in command mode.
    world.cc.memory().settle();
    EXPECT_EQ(world.port.sent, kSentinelOpening + leaving());
    EXPECT_TRUE(world.inCommandMode());

    world.prompts.asked.clear();
    world.state.gather.abortFlag = true;
    world.cc.memory().readCcEeprom();
    EXPECT_EQ(world.told(), "") << "a cancelled opening says nothing about the box";
}

TEST(CcRead, AnythingElseThanTheWordsReplyIsWaitedPast) {
    CcWorld world("335");
    ASSERT_TRUE(world.cc.memory().openEepromSession());
    world.state.box.wordValue = 0x7777;
    world.state.box.wordChecksumError = true;
    world.port.forget("S");
    // A late coin frame comes first; its sum is right.
    world.port.answer(readPackets(9, 9), bytes({0x3F, 1, 2, 3, 0x45}) + bytes({0x3B, 1, 2, 0x3E}));
    EXPECT_EQ(world.cc.memory().readEepromWord(9), 0x0102);
    EXPECT_EQ(world.told(), "");

    // A spoilt one that nobody gathers is no wrong sum of the word.
    world.state.box.wordChecksumError = true;
    world.port.answer(readPackets(10, 10), bytes({0x3F, 1, 2, 3, 0x46}));
    EXPECT_EQ(world.cc.memory().readEepromWord(10), -1);
    EXPECT_EQ(world.told(), "! Error: Timeout reading Coin Mech EEPROM\n");
}

TEST(CcRead, ACancelledRunIsToldNothingAndEndsAtOnce) {
    for (const char* model : {"435", "Sentinel"}) {
        CcWorld world(model);
        world.box.silentRead = 3;
        double cancelled = 0;
        std::function<void()> watch = [&] {
            // The word that gets no answer is being waited for.
            if (wordsStored(world.state.images.old) < 1) {
                world.loop.callAfter(std::chrono::milliseconds(1), watch);
                return;
            }
            world.loop.callAfter(std::chrono::milliseconds(700), [&] {
                world.state.gather.abortFlag = true;
                cancelled = world.ms();
            });
        };
        world.box.words[0] = 1;
        world.box.words[1] = 0;
        watch();
        EXPECT_FALSE(world.cc.readMemory()) << model;
        EXPECT_GT(cancelled, 0) << model;
        // Only the way back to command mode is still waited for: a break of 150 ms and the answer.
        EXPECT_LT(world.ms() - cancelled, 700) << model;
        EXPECT_EQ(world.told(), "") << model;
        EXPECT_TRUE(world.inCommandMode()) << model;
    }
}

TEST(CcRead, ARunThatIsCancelledWhileTheSessionOpensReadsNothing) {
    CcWorld world("435");
    world.box.serialMode = false;
    world.loop.callAfter(std::chrono::milliseconds(100),
                         [&] { world.state.gather.abortFlag = true; });
    EXPECT_FALSE(world.cc.readMemory());
    EXPECT_EQ(world.port.sent.find('{'), std::string::npos) << "the box is in command mode";
    EXPECT_EQ(world.told(), "");
    EXPECT_TRUE(world.inCommandMode());
}

TEST(CcRead, TheProgramsEndClosesWithoutWaiting) {
    const std::pair<const char*, std::string> models[] = {{"220B", "yy"}, {"Sentinel", "\r#"}};
    for (const auto& [model, goodBye] : models) {
        CcWorld world(model);
        world.box.silentRead = 2;
        world.loop.callAfter(std::chrono::milliseconds(1000),
                             [&] { world.state.link.ending = true; });
        EXPECT_THROW((void)world.cc.readMemory(), ProgramEnded) << model;
        EXPECT_TRUE(world.port.sent.ends_with(goodBye)) << model;
        EXPECT_NEAR(world.ms(), 1000, 25) << model;
        EXPECT_FALSE(world.progress.open) << model;
        EXPECT_FALSE(world.state.oldImageWhole()) << model;
    }
}

// --- writing -------------------------------------------------------------------------------

TEST(CcWrite, SendsTheWordsThatDifferAndNoOthers) {
    CcWorld world("220B");
    world.takeMemoryAsRead();
    world.state.images.next = world.state.images.old;
    world.cc.memory().writeCcEeprom();
    EXPECT_EQ(world.port.sent, opening("C08") + "yy" + leaving());

    world.port.sent.clear();
    world.state.box.i2cNakFlag = true;  // of an earlier conversation
    world.state.images.next[0] = 0x1234;
    world.state.images.next[127] = 0xFFFE;
    world.cc.memory().writeCcEeprom();
    EXPECT_EQ(world.port.sent, opening("C08") + bytes({0x7A, 0x00, 0x12, 0x34, 0xC0}) +
                                   bytes({0x7A, 0x7F, 0xFF, 0xFE, 0xF6}) + "yy" + leaving());
    EXPECT_EQ(world.box.words[0], 0x1234);
    EXPECT_EQ(world.box.words[127], 0xFFFE);
    EXPECT_EQ(world.progress.told.front(), "open EEPROM Programming|WRITING EEPROM IN PROGRESS");
    EXPECT_EQ(world.progress.bar, 15);
    EXPECT_EQ(world.told(), "");
    EXPECT_TRUE(world.inCommandMode());
}

TEST(CcWrite, ASentinelGetsFourCommandsAWordAndItsCheckWord) {
    CcWorld world("Sentinel");
    for (int i = 0; i < 64; ++i) world.box.words[i] = 0;
    world.takeMemoryAsRead();
    world.state.images.next = world.state.images.old;
    world.state.images.next[3] = 0x1234;
    world.cc.memory().writeCcEeprom();
    EXPECT_EQ(world.port.sent, kSentinelOpening +
                                   "W0030\rW00C3\rW00433412\rW0000\r"
                                   "W0030\rW00FF\rW007FBA00\rW0000\r" +
                                   kSentinelClosing);
    EXPECT_EQ(world.state.images.next[63], 0xBA) << "256 - 0x46";
    EXPECT_EQ(world.box.words[3], 0x1234);

    // A sum of 0 makes a check word of 256, low byte first as all words.
    world.port.sent.clear();
    world.takeMemoryAsRead();
    world.state.images.next[3] = 0;
    world.cc.memory().writeCcEeprom();
    EXPECT_TRUE(world.port.sent.ends_with("W007F0001\rW0000\r" + kSentinelClosing));
    EXPECT_EQ(world.box.words[63], 256);
}

TEST(CcWrite, EndsAtTheFirstWordThatFailsAndSaysSo) {
    struct Fault {
        const char* what;
        const char* model;
        std::function<void(CcWorld&)> spoil;
        int written;
        std::string told;
    };
    const Fault faults[] = {
        {"refused", "C120", [](CcWorld& w) { w.box.refusedWrite = 7; }, 2,
         "! Error: error writing EEPROM address : 7\n"},
        {"silence", "435", [](CcWorld& w) { w.box.silentWrite = 7; }, 2,
         "! Error: error writing EEPROM address : 7\n"},
        {"no channel", "450", [](CcWorld& w) { w.box.openingsIgnored = 1; }, 0, ""},
        {"no serial mode", "450", [](CcWorld& w) { w.box.serialMode = false; }, 0,
         "! Error: Serial Mode Not Set-up\n"},
        {"a Sentinel's silence", "Sentinel", [](CcWorld& w) { w.box.silentWrite = 7; }, 3,
         "! Error: error writing EEPROM address : 7\n"}};
    for (const Fault& fault : faults) {
        CcWorld world(fault.model);
        world.takeMemoryAsRead();
        world.state.images.next = world.state.images.old;
        for (const int word : {5, 6, 7, 8}) world.state.images.next[word] ^= 0x0101;
        fault.spoil(world);
        world.cc.memory().writeCcEeprom();
        EXPECT_EQ(world.box.wordWrites, fault.written) << fault.what;
        EXPECT_EQ(world.told(), fault.told) << fault.what;
        EXPECT_TRUE(world.port.sent.ends_with(leaving())) << fault.what;
        EXPECT_TRUE(world.inCommandMode()) << fault.what;
        EXPECT_FALSE(world.progress.open) << fault.what;
    }
}

// --- programming and verifying -----------------------------------------------------------------

TEST(CcProgramme, WritesReadsAgainAndComparesBetweenJAndW) {
    CcWorld world("335");
    world.takeMemoryAsRead();
    world.state.images.next = world.state.images.old;
    world.state.images.next[9] = 0x1234;
    EXPECT_TRUE(world.cc.memory().programme());
    EXPECT_EQ(world.port.sent, "J" + opening("C08") + bytes({0x7A, 0x09, 0x12, 0x34, 0xC9}) + "yy" +
                                   leaving() + "J" + opening("C08") + readPackets(0, 127) + "yy" +
                                   leaving() + "WW");
    EXPECT_EQ(world.told(), "EEPROM VERIFY:    EEPROM Verified OK   \n");
    EXPECT_EQ(world.prompts.asked[0].icon, PromptIcon::none);
    EXPECT_TRUE(world.state.oldImageWhole());
}

TEST(CcProgramme, EveryPartOfItBeginsInCommandMode) {
    CcWorld world("Sentinel");
    world.box.openingsIgnored = 99;
    EXPECT_FALSE(world.cc.memory().programme());
    const std::string tried = "J" + kSentinelOpening + leaving();
    EXPECT_EQ(world.port.sent, tried + tried + "WW");
}

TEST(CcProgramme, AfterAFailureTheCheckByteIsReckonedFromASoundMemory) {
    struct Case {
        const char* what;
        std::function<void(CcWorld&)> happens;
        int highFrom;  ///< 0: the memory before, 1: what the mech holds
        int low;       ///< of the check word, the mech's own
    };
    static constexpr int kCheck = 127;
    const Case cases[] = {
        {"half written", [](CcWorld&) {}, 0, 0x82},
        {"the mech has changed its own byte",
         [](CcWorld& w) { w.box.words[kCheck] = w.box.words[kCheck] / 256 * 256 + 0x55; }, 0, 0x55},
        {"the check word is the spoilt one", [](CcWorld& w) { w.box.words[kCheck] = 0xEE11; }, 0,
         0x82},
        {"all was written, only the reading failed",
         [](CcWorld& w) {
             for (int i = 0; i <= kCheck; ++i) w.box.words[i] = w.state.images.next[i];
         },
         1, 0x77},
        {"a word that nobody wrote was misread", [](CcWorld& w) { w.box.words[60] = 0x4321; }, 0,
         0x82},
        {"misread, and all was written",
         [](CcWorld& w) {
             for (int i = 0; i <= kCheck; ++i) w.box.words[i] = w.state.images.next[i];
             w.box.words[60] = 0x4321;
         },
         1, 0x77},
        {"another mech", [](CcWorld& w) { w.box.words[3] = w.box.words[4] = 0x4321; }, 1, 0x82}};
    for (const Case& c : cases) {
        CcWorld world("435");
        world.box.words[kCheck] = 0x4482;
        world.takeMemoryAsRead();
        const MechImage before = world.state.images.old;
        MechImage& next = world.state.images.next;
        next = before;
        next[20] = 0x0102;
        next[40] = 0x0304;
        next[kCheck] = 0x9977;  // a file's, which nobody reckons
        world.box.refusedWrite = 40;
        EXPECT_FALSE(world.cc.memory().programme()) << c.what;
        world.box.refusedWrite = -1;
        c.happens(world);
        EXPECT_TRUE(world.cc.readMemory()) << c.what;
        const MechImage& base = c.highFrom == 0 ? before : world.state.images.old;
        EXPECT_EQ(world.cc.memory().soundImage()[kCheck], base[kCheck] / 256 * 256 + c.low)
            << c.what;
        EXPECT_EQ(world.cc.memory().soundImage()[20], base[20]) << c.what;
        EXPECT_EQ(world.cc.memory().soundImage()[60], world.box.words[60]) << c.what;
    }
}

TEST(CcProgramme, OnlyAWholeMemoryThatIsAsWantedIsVerified) {
    const std::string failed = "! EEPROM VERIFY:    EEPROM Verify FAIL   \n";
    struct Case {
        const char* what;
        const char* model;
        int changedWord;
        std::function<void(CcWorld&)> spoil;
        std::string told;
    };
    const Case cases[] = {
        {"a stuck cell", "C120", 20, [](CcWorld& w) { w.box.stuckWord = 20; }, failed},
        {"the last word compared", "435", 200, [](CcWorld& w) { w.box.stuckWord = 200; }, failed},
        {"beyond what is compared", "435", 201, [](CcWorld& w) { w.box.stuckWord = 201; },
         "EEPROM VERIFY:    EEPROM Verified OK   \n"},
        {"a Sentinel's stuck check word", "Sentinel", 5, [](CcWorld& w) { w.box.stuckWord = 63; },
         failed},
        {"a word refused", "450", 5, [](CcWorld& w) { w.box.refusedWrite = 5; },
         "! Error: error writing EEPROM address : 5\n" + failed},
        {"half a read of a memory of zeros", "220B", 5, [](CcWorld& w) { w.box.silentRead = 9; },
         "! Error: Timeout reading Coin Mech EEPROM\n" + failed},
        {"a wrong sum beyond what is compared", "435", 5, [](CcWorld& w) { w.box.brokenSum = 240; },
         "! Error: Checksum Error reading Coin Mech EEPROM Address: 240\n" + failed},
        {"a Sentinel that never opens", "Sentinel", 5,
         [](CcWorld& w) { w.box.openingsIgnored = 99; },
         "! Error: Incompatible CC Interface Board\n" + failed}};
    for (const Case& c : cases) {
        CcWorld world(c.model);
        // Zeros, so that what was not read looks like what is wanted.
        for (auto& [address, word] : world.box.words) word = 0;
        world.takeMemoryAsRead();
        world.state.images.next = world.state.images.old;
        world.state.images.next[c.changedWord] = 0x0102;
        c.spoil(world);
        const bool good = c.told.find("OK") != std::string::npos;
        EXPECT_EQ(world.cc.memory().programme(), good) << c.what;
        EXPECT_EQ(world.told(), c.told) << c.what;
        EXPECT_TRUE(world.inCommandMode()) << c.what;
        EXPECT_TRUE(world.port.sent.ends_with("WW")) << c.what;
    }
}

}  // namespace
}  // namespace vantor
