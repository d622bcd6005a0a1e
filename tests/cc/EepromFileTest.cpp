#include <gtest/gtest.h>

#include "CcWorld.h"
#include "cc/EepromFile.h"
#include "platform/Files.h"

namespace vantor {
namespace {

using test::CcWorld;
using test::leaving;
using test::opening;
using test::readPackets;

TEST(EepromFile, LinesAreWordsAndEverythingElseIsCounted) {
    struct Case {
        const char* what;
        std::string text;
        int given, skipped;
        std::vector<std::pair<int, int>> words;
    };
    const Case cases[] = {
        {"plain", "0,1\r\n5,4660\r\n", 2, 0, {{0, 1}, {5, 4660}, {6, 0}}},
        {"other ends and blanks", "0,1\n\n 5 , 4660 ,x\n\r\n7,\"9\"", 3, 0, {{5, 4660}, {7, 9}}},
        {"the last line of an index", "5,1\r\n5,2\r\n", 1, 0, {{5, 2}}},
        {"no number of 16 bits", "1,65536\r\n2,-1\r\n3,65535", 1, 2, {{1, 0}, {2, 0}, {3, 65535}}},
        {"beyond the memory", "200,7\r\n512,8\r\n513,9\r\n", 0, 1, {{200, 7}, {512, 8}}},
        {"no words", "x,1\r\n1\r\n1,\r\n1,x\r\n-1,5\r\n1.5,2\r\n1,2y\r\n,\r\n", 0, 8, {{1, 0}}},
        {"a number too large for any word", "1,99999999999999999999\r\n", 0, 1, {{1, 0}}},
        {"nothing", "", 0, 0, {{0, 0}}}};
    for (const Case& c : cases) {
        const EepromFile file = parseEepromFile(c.text, 128);
        EXPECT_EQ(file.given, c.given) << c.what;
        EXPECT_EQ(file.skipped, c.skipped) << c.what;
        for (const auto& [word, value] : c.words) EXPECT_EQ(file.image[word], value) << c.what;
    }
}

TEST(EepromFile, WhatIsSavedIsReadBack) {
    MechImage image{};
    for (int i = 0; i < 64; ++i) image[i] = (i * 40503) % 65536;
    const std::string text = eepromFileText(image, 64);
    EXPECT_TRUE(text.starts_with("0,0\r\n1,40503\r\n"));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 64);
    EXPECT_EQ(parseEepromFile(text, 64).image, image);
}

TEST(SaveToFile, OverwritesOnRequestAndTellsWhatCannotBeWritten) {
    CcWorld world("Sentinel");
    world.takeMemoryAsRead();
    const auto file = world.folder / "coins.txt";
    writeFileWhole(file, "old");
    world.prompts.chooseFile(world.folder / "coins.dat");
    world.prompts.expect("Overwrite Existing File", Answer::ok);
    world.cc.utilities().saveToFile();
    EXPECT_EQ(readFile(file), eepromFileText(world.state.images.old, 64));
    EXPECT_EQ(world.prompts.fileQuestions[0].title, "File Save");
    EXPECT_EQ(world.prompts.fileQuestions[0].startFolder, world.folder / "CoinSets");
    EXPECT_TRUE(world.prompts.fileQuestions[0].saving);
    world.prompts.chooseFile(std::nullopt);
    world.cc.utilities().saveToFile();
    world.prompts.chooseFile(world.folder / "no such folder" / "coins.txt");
    world.cc.utilities().saveToFile();
    EXPECT_TRUE(world.prompts.told(" 720 Error Programming EEPROM routine : "));
}

/// A file for the selected mech: its memory with word 20 changed.
std::filesystem::path changedFile(CcWorld& world) {
    MechImage image{};
    for (const auto& [address, word] : world.box.words) image[address] = word;
    image[20] = 0x0A0B;
    const auto path = world.folder / "saved.txt";
    writeFileWhole(path, eepromFileText(image, world.state.mech.info.memorySize));
    return path;
}

TEST(ProgrammeFromFile, RescuesAMechThatWasNotRead) {
    CcWorld world("Sentinel");
    writeFileWhole(world.folder / "some.txt", "3,4660\r\nrubbish\r\n63,1\r\n");
    world.prompts.chooseFile(world.folder / "some.txt");
    world.prompts.expect("Sentinel: 2 of 64 words", Answer::ok);
    // The memory holds other things where the file has zeros, which look unchanged.
    EXPECT_FALSE(world.cc.utilities().eeProgramme());
    EXPECT_EQ(world.box.words[3], 4660);
    EXPECT_EQ(world.box.words[63], 0xBA) << "the check word is the program's business";
    ASSERT_EQ(world.prompts.notices.size(), 1U);
    EXPECT_EQ(world.prompts.notices[0].text.substr(0, 11), "some.txt: 1");
    EXPECT_TRUE(world.prompts.told("EEPROM Verify FAIL"));
    // Now it is read, and the same file makes it whole.
    world.prompts.chooseFile(world.folder / "some.txt");
    world.prompts.expect("Sentinel: 2 of 64 words", Answer::ok);
    EXPECT_TRUE(world.cc.utilities().eeProgramme());
}

TEST(Clone, ReadsTheMechFirstAndStopsWhereAnythingFails) {
    struct Case {
        const char* what;
        std::function<void(CcWorld&)> arrange;
        bool good, sends;
        const char* told;
    };
    const auto choose = [](CcWorld& w, Answer answer) {
        w.prompts.chooseFile(changedFile(w));
        w.prompts.expect("450: 128 words", answer);
    };
    const Case cases[] = {
        {"good", [&](CcWorld& w) { choose(w, Answer::ok); }, true, true, "EEPROM Verified OK"},
        {"unread", [](CcWorld& w) { w.box.brokenSum = 127; }, false, false, "Checksum Error"},
        {"no file chosen", [](CcWorld& w) { w.prompts.chooseFile(std::nullopt); }, false, false,
         ""},
        {"no such file", [](CcWorld& w) { w.prompts.chooseFile(w.folder / "none.txt"); }, false,
         false, "Invalid Filename"},
        {"declined", [&](CcWorld& w) { choose(w, Answer::cancel); }, false, false, ""},
        {"not verified",
         [&](CcWorld& w) {
             w.box.stuckWord = 20;
             choose(w, Answer::ok);
         },
         false, true, "EEPROM Verify FAIL"}};
    for (const Case& c : cases) {
        CcWorld world("450");
        c.arrange(world);
        EXPECT_EQ(world.cc.programmeFromFile(), c.good) << c.what;
        const std::string read =
            "J" + opening("C08") + readPackets(0, 127) + "yy" + leaving() + "W";
        EXPECT_TRUE(world.port.sent.starts_with(read)) << c.what;
        EXPECT_EQ(world.port.sent.size() > read.size(), c.sends) << c.what;
        EXPECT_EQ(world.box.wordWrites, c.sends ? 1 : 0) << c.what;
        EXPECT_TRUE(world.prompts.asked.empty() || world.prompts.told(c.told)) << c.what;
        EXPECT_TRUE(world.prompts.scriptDone()) << c.what;
        EXPECT_TRUE(world.inCommandMode()) << c.what;
    }
}

}  // namespace
}  // namespace vantor
