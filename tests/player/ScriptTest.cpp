#include "player/Script.h"

#include <gtest/gtest.h>

#include <sstream>

namespace vantor::player {
namespace {

using Words = std::vector<std::string>;

TEST(SplitWords, TakesQuotesAsAShellDoes) {
    const struct {
        std::string line;
        Words words;
    } cases[] = {
        {"", {}},
        {"click frmMain.cmdMars", {"click", "frmMain.cmdMars"}},
        {R"(a "b c" 'd e')", {"a", "b c", "d e"}},
        {R"(a"b c"'d'e)", {"ab cde"}},
        {R"("say \"x\" \\ \n" '\"')", {R"(say "x" \ \n)", R"(\")"}},
        {R"(a\ b \"c\")", {"a b", "\"c\""}},
        {R"($'one\ntwo\'s\\')", {"one\ntwo's\\"}},
        {"'' \"\"", {"", ""}},
        {"  #all of it", {}},
        {"a #ff0000 b#c '#' d", {"a", "#ff0000", "b#c", "#", "d"}},
        {"type W.C $5", {"type", "W.C", "$5"}},
    };
    for (const auto& c : cases) {
        const auto split = splitWords(c.line);
        ASSERT_TRUE(std::holds_alternative<Words>(split)) << c.line;
        EXPECT_EQ(std::get<Words>(split), c.words) << c.line;
    }
}

TEST(SplitWords, NamesWhatIsUnfinished) {
    const struct {
        std::string line;
        std::string problem;
    } cases[] = {
        {"a 'b", "a ' is not closed"},           {"a \"b\\\"", "a \" is not closed"},
        {"a $'b\\", "a $' is not closed"},       {"a $'b\\x'", "an unknown \\ in $'...'"},
        {"a\\", "the line ends in a backslash"},
    };
    for (const auto& c : cases) {
        const auto split = splitWords(c.line);
        ASSERT_TRUE(std::holds_alternative<std::string>(split)) << c.line;
        EXPECT_EQ(std::get<std::string>(split), c.problem) << c.line;
    }
}

TEST(ParseLine, ChecksNumberAndFormOfArguments) {
    const struct {
        std::string line;
        Verb verb;
        Words words;
    } good[] = {
        {"click frmMain.cmdMars", Verb::click, {"frmMain.cmdMars"}},
        {"expect-colour frmPROM.txtProm_3 #ffff00 # yellow\r\n",
         Verb::expectColour,
         {"frmPROM.txtProm_3", "#ffff00"}},
        {"answer yes ''", Verb::answer, {"yes", ""}},
        {"shot frmMain 'my pictures/a.png'", Verb::shot, {"frmMain", "my pictures/a.png"}},
        {"include a.vps A=1 'B_2=x = y' C=", Verb::include, {"a.vps", "A=1", "B_2=x = y", "C="}},
        {"bench fault drop-byte 3", Verb::bench, {"fault", "drop-byte", "3"}},
    };
    for (const auto& c : good) {
        const ParsedLine parsed = parseLine(c.line, 7);
        const auto* command = std::get_if<Command>(&parsed);
        ASSERT_NE(command, nullptr) << c.line << ": " << std::get<ScriptError>(parsed).text;
        EXPECT_EQ(command->verb, c.verb) << c.line;
        EXPECT_EQ(command->words, c.words) << c.line;
        EXPECT_EQ(command->line, 7);
    }

    // Separated by strokes.
    std::istringstream bad(
        "jump W.C|Click W.C|click|click W|click W.C.D|click W.|click .C|click W.C D|"
        "tick W.C yes|expect W.C|expect W.C a b|expect-enabled W.C on|await W.C x|"
        "await W.C x soon|await W.C x -1|sleep 1e3|sleep 86400001|"
        "sleep 99999999999999999999|answer maybe text|answer ok|expect-colour W.C red|"
        "bench|await-visible W.C|expect-colour W.C #12345g|shot ''|file|"
        "click W\xC3\xA4.C|sleep 1\x01|await-idle ' 5'|shot a b c|include|"
        "include a.vps A|include a.vps A.B=1|# ${NOBODY_GAVE_IT}");
    for (std::string line; std::getline(bad, line, '|');) {
        const ParsedLine parsed = parseLine(line, 3);
        ASSERT_TRUE(std::holds_alternative<ScriptError>(parsed)) << line;
        EXPECT_EQ(std::get<ScriptError>(parsed).line, 3);
        EXPECT_FALSE(std::get<ScriptError>(parsed).text.empty());
    }
}

TEST(ParseScript, ReportsEveryMistakeWithItsLine) {
    const ParsedScript parsed = parseScript("\xEF\xBB\xBF# start\r\nsleep 5\r\nhop\n\nclick 'W.C");
    const auto* errors = std::get_if<std::vector<ScriptError>>(&parsed);
    ASSERT_NE(errors, nullptr);
    ASSERT_EQ(errors->size(), 2u);
    EXPECT_EQ(errors->at(0).line, 3);
    EXPECT_EQ(errors->at(1).line, 5);

    const ParsedScript fine = parseScript(" # only\n\nsleep 5\nsleep 6");
    const auto* commands = std::get_if<std::vector<Command>>(&fine);
    ASSERT_NE(commands, nullptr);
    ASSERT_EQ(commands->size(), 3u);
    EXPECT_EQ(commands->at(0).verb, Verb::remark);
    EXPECT_EQ(commands->at(0).written, "# only");
    EXPECT_EQ(commands->at(2).line, 4);
}

/// A folder of scripts to include.
ScriptPlace among(std::map<std::string, std::string> files) {
    return {.read =
                [files = std::move(files)](const std::string& path) {
                    const auto file = files.find(path);
                    return file == files.end() ? std::nullopt : std::optional(file->second);
                },
            .files = {"demo/main.vps"}};
}

TEST(Include, PutsTheLinesOfAnotherScriptInItsPlace) {
    const ParsedScript good = parseScript("include parts/coin.vps COIN='5 Pell' COUNT=3\nsleep 9",
                                          among({{"demo/parts/coin.vps",
                                                  "\xEF\xBB\xBF# ${COIN}\n\nbench drop \"${COIN}\" "
                                                  "${COUNT}\ninclude ../b.vps A=${COUNT}"},
                                                 {"demo/b.vps", "sleep ${A}0${A}\nsleep 5"}}));
    std::string seen;
    for (const Command& command : std::get<std::vector<Command>>(good)) {
        seen += command.place() + ' ' + command.written + '|';
    }
    EXPECT_EQ(seen,
              "1 include parts/coin.vps COIN='5 Pell' COUNT=3|coin.vps:1 # 5 Pell|"
              "coin.vps:3 bench drop \"5 Pell\" 3|coin.vps:4 include ../b.vps A=3|"
              "b.vps:1 sleep 303|b.vps:2 sleep 5|2 sleep 9|");
}

TEST(Include, NamesWhatCannotBeIncluded) {
    const struct {
        std::string text, error;
    } cases[] = {
        {"\ninclude nothing.vps", ":2: cannot read demo/nothing.vps"},
        {"include a.vps", "demo/b.vps:1: demo/a.vps includes itself"},
        {"include needs.vps B=1", "demo/needs.vps:2: nothing is given for ${A}"},
    };
    const auto place = among({{"demo/a.vps", "include b.vps"},
                              {"demo/b.vps", "include ./a.vps"},
                              {"demo/needs.vps", "sleep ${B}\nsleep ${A}"}});
    for (const auto& c : cases) {
        const ParsedScript parsed = parseScript(c.text, place);
        const auto* errors = std::get_if<std::vector<ScriptError>>(&parsed);
        ASSERT_TRUE(errors && errors->size() == 1) << c.text;
        const ScriptError& error = errors->front();
        EXPECT_EQ(error.file + ':' + std::to_string(error.line) + ": " + error.text, c.error);
    }
}

}  // namespace
}  // namespace vantor::player
