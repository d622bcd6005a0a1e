#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "ScratchFolder.h"
#include "ScriptedPrompts.h"
#include "catalogue/ErrorReporter.h"
#include "catalogue/LanguageFile.h"
#include "catalogue/MechCatalogue.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

TEST(MechCatalogue, EveryModelHasItsAttributes) {
    struct Row {
        std::string_view maker, code;
        int params, channels, perSegment, segments, memory;
        std::string firstName;
    };
    const Row rows[] = {
        {kMars, "ME111", 3, 6, 6, 4, 512, "Thickness"},
        {kMars, "ME115", 3, 6, 6, 4, 512, "Thickness"},
        {kMars, "unheard of", 3, 6, 6, 4, 512, "Thickness"},
        {kCoinControls, "C120", 3, 12, 6, 2, 128, "Parameter1"},
        {kCoinControls, "Sentinel", 3, 8, 8, 1, 64, "Parameter1"},
        {kCoinControls, "220B", 3, 8, 8, 1, 128, "Parameter1"},
        {kCoinControls, "335", 3, 16, 8, 2, 128, "Parameter1"},
        {kCoinControls, "435", 5, 16, 8, 2, 256, "Parameter1"},
        {kCoinControls, "450", 4, 12, 6, 2, 128, "Parameter1"},
        {kNri, "G13-0000", 4, 6, 6, 1, 128, "NFP"},
        {kNri, "G13-6000", 6, 12, 6, 2, 128, "Parameter1"},
        {kNri, "G40-0000", 6, 12, 6, 2, 128, "Parameter1"},
        {kNri, "G18-0000", 4, 6, 6, 1, 128, "NFP"},
        {kNri, "G18-3000", 6, 12, 6, 2, 128, "NFP"},
        {kNri, "G10-4000", 4, 8, 8, 1, 128, "MNF"},
        {kNri, "G10-4000/5", 6, 12, 6, 2, 128, "NFP"},
    };
    const MessageTable english;
    for (const Row& row : rows) {
        MechSelection mech;
        mech.manufacturer = row.maker;
        mech.mechType = row.code;
        applyMechType(mech, english);
        const MechTypeInfo& info = mech.info;
        EXPECT_EQ(info.paramCount, row.params) << row.code;
        EXPECT_EQ(info.channelCount, row.channels) << row.code;
        EXPECT_EQ(info.channelsPerSegment, row.perSegment) << row.code;
        EXPECT_EQ(info.segmentCount, row.segments) << row.code;
        EXPECT_EQ(info.memorySize, row.memory) << row.code;
        EXPECT_EQ(info.paramNames[0], row.firstName) << row.code;
        EXPECT_EQ(info.paramNames[6], "") << row.code;
    }
}

TEST(MechCatalogue, AnUnknownModelKeepsTheNumbersAndGetsTheDefaultNames) {
    const MessageTable english;
    MechSelection mech;
    mech.manufacturer = kNri;
    mech.mechType = "G18-3000";
    applyMechType(mech, english);
    mech.mechType = "g18-3000";
    applyMechType(mech, english);
    EXPECT_EQ(mech.info.channelCount, 12);
    EXPECT_EQ(mech.info.paramNames[0], "Parameter1");
}

TEST(MechCatalogue, ListsOfferTheModelsInOrder) {
    EXPECT_EQ(listedModels(kMars), (std::vector<std::string_view>{"MS1000", "ME111", "ME181",
                                                                  "MS130B1", "MS111", "MS1400"}));
    EXPECT_EQ(listedModels(kCoinControls).size(), 6U);
    EXPECT_EQ(listedModels(kNri).front(), "G13-6000");
    EXPECT_EQ(listedModels(kNri).back(), "G40-0000");
    EXPECT_EQ(listedModels(kMars)[static_cast<std::size_t>(preselectedModel(kMars))], "ME111");
}

class LanguageFiles : public ::testing::Test {
  protected:
    void load(const std::string& language, const std::string& file, const std::string& bytes) {
        if (!file.empty()) std::ofstream(folder_.path / file, std::ios::binary) << bytes;
        table_.language = language;
        loadLanguage(table_, folder_.path, prompts_, errors_);
    }

    test::ScratchFolder folder_;
    MessageTable table_;
    test::ScriptedPrompts prompts_;
    ErrorReporter errors_{table_, prompts_};
};

TEST_F(LanguageFiles, LinesAreReadLeniently) {
    load("Deutsch", "Deutsch.txt",
         "208, Fehler\r\n122,  zwei\r\n123,vor, nach\r\n\"124\",\"Pr\xFC"
         "fer\"\n208,sp\xE4ter\r\n");
    EXPECT_EQ(table_.msgText(208), "sp\xE4ter");
    EXPECT_EQ(table_.msgText(122), " zwei");
    EXPECT_EQ(table_.msgText(123), "vor");
    EXPECT_EQ(table_.msgText(124),
              "Pr\xFC"
              "fer");
    EXPECT_EQ(table_.msgText(1000), "") << "no fall-back to English";
}

TEST_F(LanguageFiles, ABadNumberIsReportedAndReadingGoesOn) {
    load("Deutsch", "Deutsch.txt", "2001,zu hoch\r\n208,Fehler\r\n");
    ASSERT_EQ(prompts_.asked.size(), 1U);
    EXPECT_TRUE(prompts_.asked[0].text.starts_with("Error Loading Language File routine : "));
    EXPECT_EQ(table_.msgText(208), "Fehler");
}

TEST_F(LanguageFiles, WhatIsWrongWithAFileIsToldInTheLanguageThatThereWas) {
    load("Deutsch", "Deutsch.txt", "208,Fehler\r\n");
    load("Francais", "Francais.txt", "2001,trop haut\r\n208,Erreur\r\n");
    ASSERT_EQ(prompts_.asked.size(), 1U);
    EXPECT_EQ(prompts_.asked[0].title, "Fehler");
    EXPECT_EQ(table_.msgText(208), "Erreur");
}

TEST_F(LanguageFiles, AMissingFileIsToldAndTheOldTableStays) {
    load("Deutsch", "Deutsch.txt", "208,Fehler\r\n");
    load("Francais", "", "");
    EXPECT_EQ(prompts_.asked.back().text, "Invalid Language Filename");
    EXPECT_EQ(prompts_.asked.back().icon, PromptIcon::critical);
    EXPECT_EQ(table_.msgText(208), "Fehler");
    load("English", "", "");
    EXPECT_EQ(table_.msgText(208), "Error detected");
}

TEST_F(LanguageFiles, TheTableIsClearedBeforeAnotherLanguageIsRead) {
    load("Deutsch", "Deutsch.txt", "208,Fehler\r\n");
    load("Espa\xF1ol", "Espanol.txt", "209,otro\r\n");
    EXPECT_EQ(table_.msgText(208), "");
}

TEST(ErrorReporter, ShowsNumberTextDescriptionAndErrorNumber) {
    const MessageTable english;
    test::ScriptedPrompts prompts;
    ErrorReporter errors(english, prompts);
    EXPECT_FALSE(errors.attempt(424, [] { throw std::out_of_range(std::string(60, 'x')); }));
    EXPECT_TRUE(errors.attempt(424, [] {}));
    ASSERT_EQ(prompts.asked.size(), 1U);
    EXPECT_EQ(prompts.asked[0].title, "Error detected");
    EXPECT_EQ(prompts.asked[0].text,
              " 424 Error Transferring PROM data :  \r\n" + std::string(50, 'x') + " - 9");
    EXPECT_THROW(errors.attempt(424, [] { throw ProgramEnded{}; }), ProgramEnded);
    const ErrorReporter::Quiet quiet(errors);
    errors.report(424, "inside the receive path", 5);
    EXPECT_EQ(prompts.asked.size(), 1U);
    EXPECT_EQ(prompts.notices.size(), 1U);
}

}  // namespace
}  // namespace vantor
