#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <vector>

#include "ScriptedPrompts.h"
#include "catalogue/LanguageFile.h"
#include "catalogue/Text.h"
#include "platform/Files.h"

namespace vantor {
namespace {

struct Range {
    int first;
    int last;
};

/// Captions of buttons, frames, labels and list entries.
constexpr auto kCaptions = std::to_array<Range>({{411, 411},
                                                 {425, 428},
                                                 {433, 434},
                                                 {436, 437},
                                                 {444, 446},
                                                 {471, 472},
                                                 {510, 549},
                                                 {750, 768},
                                                 {850, 876},
                                                 {970, 977},
                                                 {1226, 1233},
                                                 {1237, 1238},
                                                 {1250, 1284},
                                                 {1306, 1312},
                                                 {1350, 1356},
                                                 {1420, 1448}});

/// Abbreviations of the makers, legends of codes and names that no language translates.
constexpr auto kCodes = std::to_array<Range>({{144, 144},
                                              {151, 152},
                                              {235, 255},
                                              {479, 479},
                                              {812, 812},
                                              {852, 855},
                                              {911, 911},
                                              {929, 934},
                                              {936, 941},
                                              {1214, 1214},
                                              {1279, 1279}});

/// Texts of more than one word that may read the same in another language.
constexpr auto kCognates = std::to_array<Range>({{518, 523}, {1445, 1447}});

/// Texts that stand above or beside figures in fixed-pitch panes: '?' is any character, '#' any
/// but a blank, everything else stands for itself. The pattern has the length of the text.
struct Columns {
    std::string_view pattern;
    std::vector<int> numbers;
};
const std::vector<Columns> kColumns = {
    {"     #???????? #???????? #???????", {108, 109}},
    {"#??? --------- --------- ---------", {110, 111}},
    {"#?????? A   B   C   D   E   F", {112, 113}},
    {"#?????????   ", {413, 414}},
    {"#??? ", {727, 730, 927, 935, 943, 946, 950, 956, 1233}},
    {"??????????????????", {733}},
    {"#???????? ", {928}},
    {"#???#?????? ?????#?????? ??????#??? ?????#??", {942}},
    {"#???#?????? ?????#?????? ??????#??? ?????#?? ????#??", {977}},
    {"#???????????????? ", {944, 951, 952, 953, 954, 957, 958}},
    {"?###?", {945, 947, 955}},
    {"###", {948}},
};

/// The parameter names head columns of twelve characters; a digit follows the general one.
constexpr int kGeneralName = 231;
constexpr int kLastName = 255;
constexpr std::size_t kNameColumn = 12;

template <std::size_t N>
bool contains(const std::array<Range, N>& ranges, int id) {
    return std::any_of(ranges.begin(), ranges.end(),
                       [id](Range r) { return id >= r.first && id <= r.last; });
}

std::string_view patternOf(int id) {
    for (const Columns& columns : kColumns) {
        if (std::find(columns.numbers.begin(), columns.numbers.end(), id) != columns.numbers.end())
            return columns.pattern;
    }
    return {};
}

bool fits(std::string_view text, std::string_view pattern) {
    return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                      [](char c, char p) { return p == '?' || (p == '#' ? c != ' ' : c == p); });
}

std::size_t leadingBlanks(std::string_view text) {
    return std::min(text.find_first_not_of(' '), text.size());
}

std::size_t trailingBlanks(std::string_view text) {
    return text.size() - (text.find_last_not_of(' ') + 1);
}

/// A byte that Windows-1252 leaves without a character, or a control character.
bool unprintable(char c) {
    const auto byte = static_cast<unsigned char>(c);
    constexpr std::array<unsigned char, 5> kUnassigned = {0x81, 0x8D, 0x8F, 0x90, 0x9D};
    return byte < 0x20 || byte == 0x7F ||
           std::find(kUnassigned.begin(), kUnassigned.end(), byte) != kUnassigned.end();
}

class LanguageFiles : public ::testing::TestWithParam<Language> {
  protected:
    std::filesystem::path folder_ = std::filesystem::path(VANTOR_SOURCE_DIR) / "data";
};

TEST_P(LanguageFiles, TranslatesEveryTextInItsForm) {
    MessageTable messages;
    test::ScriptedPrompts prompts;
    ErrorReporter errors(messages, prompts);
    messages.language = GetParam().name;
    loadLanguage(messages, folder_, prompts, errors);
    ASSERT_TRUE(messages.languageTableLoaded);
    ASSERT_TRUE(prompts.asked.empty()) << prompts.asked.front().text;

    for (const EnglishText& row : englishMessages()) {
        const std::string_view english = row.text;
        const std::string text = messages.msgText(row.id);
        SCOPED_TRACE(std::to_string(row.id) + " '" + toUtf8(text) + "'");
        EXPECT_NE(trimmed(text), "");
        if (const std::string_view pattern = patternOf(row.id); !pattern.empty()) {
            EXPECT_TRUE(fits(english, pattern));
            EXPECT_TRUE(fits(text, pattern)) << "wants '" << pattern << "'";
        } else {
            EXPECT_EQ(leadingBlanks(text), leadingBlanks(english));
            EXPECT_EQ(trailingBlanks(text), trailingBlanks(english));
        }
        if (english.ends_with(" : ")) {
            EXPECT_TRUE(text.ends_with(" : "));
        }
        if (contains(kCaptions, row.id)) {
            EXPECT_LE(text.size(), english.size() * 3 / 2 + 6);
        }
        if (contains(kCodes, row.id)) {
            EXPECT_EQ(text, english);
        } else if (trimmed(english).find(' ') != std::string_view::npos &&
                   !contains(kCognates, row.id)) {
            EXPECT_NE(text, english) << "left in English";
        }
        if (row.id >= kGeneralName && row.id <= kLastName) {
            EXPECT_LT(text.size() + (row.id == kGeneralName ? 1 : 0), kNameColumn);
        }
    }
}

TEST_P(LanguageFiles, HoldsOneCleanLineForEveryNumberOfTheProduct) {
    const auto bytes = readFile(folder_ / GetParam().file);
    ASSERT_TRUE(bytes);
    std::string_view rest = *bytes;
    const auto english = englishMessages();
    std::size_t row = 0;
    while (!rest.empty()) {
        const std::size_t end = rest.find("\r\n");
        ASSERT_NE(end, std::string_view::npos) << "last line without CR LF";
        const std::string_view line = rest.substr(0, end);
        rest.remove_prefix(end + 2);
        SCOPED_TRACE(toUtf8(line));
        ASSERT_LT(row, english.size()) << "more lines than texts";
        const std::string number = std::to_string(english[row].id);
        ASSERT_TRUE(line.starts_with(number + ",")) << "expected number " << number;
        EXPECT_EQ(std::count(line.begin(), line.end(), ','), 1);
        EXPECT_EQ(line.find('"'), std::string_view::npos);
        EXPECT_TRUE(std::none_of(line.begin(), line.end(), unprintable));
        ++row;
    }
    EXPECT_EQ(row, english.size());
}

std::string fileStem(const ::testing::TestParamInfo<Language>& info) {
    return std::string(info.param.file.substr(0, info.param.file.find('.')));
}

INSTANTIATE_TEST_SUITE_P(Shipped, LanguageFiles,
                         ::testing::Values(kLanguages[1], kLanguages[2], kLanguages[3]), fileStem);

}  // namespace
}  // namespace vantor
