#include "player/Session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "ScratchFolder.h"

namespace vantor::player {
namespace {

namespace fs = std::filesystem;

const std::string kDemo = VANTOR_SOURCE_DIR "/docs/demo/";

TEST(SessionOptions, KnowTheirWordsAndTheProgramsOwn) {
    const struct {
        std::vector<std::string> arguments;
        std::string script;
        bool virtualTime;
        std::string error;  ///< how it begins
    } cases[] = {
        {{"--simulate", "a.vps"}, "a.vps", false, ""},
        {{"--simulate", "ME181", "--virtual-time", "-"}, "-", true, ""},
        {{"--port", "3=/dev/ttyX", "--folder", "d", "a.vps"}, "a.vps", false, ""},
        {{}, "", false, "which script?"},
        {{"--virtual-time", "a.vps"}, "a.vps", true, "--virtual-time goes with --simulate only"},
        {{"--simulate", "a.vps", "b.vps"}, "a.vps", false, "one script at a time"},
        {{"--fast", "a.vps"}, "a.vps", false, "unknown option --fast"},
        {{"--port", "x", "a.vps"}, "", false, "--port wants"},
    };
    for (const auto& c : cases) {
        const SessionOptions options = parseSessionOptions(c.arguments);
        EXPECT_EQ(options.script, c.script);
        EXPECT_EQ(options.virtualTime, c.virtualTime);
        EXPECT_TRUE(c.error.empty() ? options.error.empty() : options.error.starts_with(c.error))
            << options.error;
    }
}

/// Plays in an empty folder of its own, on the simulated box, in virtual time.
class SessionTest : public testing::Test {
  protected:
    SessionTest() : before_(fs::current_path()) { fs::current_path(folder_.path); }
    ~SessionTest() override {
        std::error_code ignored;
        fs::current_path(before_, ignored);
    }

    int play(const std::string& script) {
        const std::vector<std::string> arguments = {"--simulate", "ME111",  "--virtual-time",
                                                    "--folder",   "folder", script};
        const SessionOptions options = parseSessionOptions(arguments);
        EXPECT_EQ(options.error, "");
        out.str({});
        err.str({});
        return playSession(options, out, err);
    }

    int playText(const std::string& text) {
        std::ofstream("session.vps") << text;
        return play("session.vps");
    }

    [[nodiscard]] bool said(const std::string& part) const {
        return out.str().find(part) != std::string::npos;
    }

    std::ostringstream out, err;

  private:
    fs::path before_;
    vantor::test::ScratchFolder folder_;
};

/// The scripts of a folder below docs/demo, by their names.
std::vector<std::string> scriptsOf(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& file : fs::directory_iterator(kDemo + folder)) {
        if (file.path().extension() == ".vps")
            names.push_back(folder + file.path().stem().string());
    }
    std::ranges::sort(names);
    return names;
}

std::string asTestName(const testing::TestParamInfo<std::string>& script) {
    std::string name = script.param;
    std::ranges::replace_if(
        name, [](char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

/// What a script must leave behind besides being as expected.
const std::multimap<std::string, std::string> kLeft = {
    {"guided-demo", "01-opening.png"},     {"guided-demo", "ME111-09-programming.png"},
    {"guided-demo", "ME111.csv"},          {"guided-demo", "ME181.prom"},
    {"coin-controls", "435.csv"},          {"nri", "nri-10-other.png"},
    {"models/C120", "C120-3-outputs.png"},
};

class EveryScript : public SessionTest, public testing::WithParamInterface<std::string> {};

TEST_P(EveryScript, IsAsExpected) {
    const bool tour = GetParam() == "windows-tour";
    if (tour) {
        // It says no word of any language, so it is played in another one.
        fs::create_directories("folder");
        fs::copy(VANTOR_SOURCE_DIR "/data", "folder", fs::copy_options::recursive);
        std::ofstream("folder/config0000.txt") << "\" 1\",\"Deutsch\",\" 0\",\" 0\",\"\"\r\n";
    }
    EXPECT_EQ(play(kDemo + GetParam() + ".vps"), kAllHeld) << err.str() << out.str();
    EXPECT_EQ(said("Programmierkabel abziehen"), tour);
    const auto [first, end] = kLeft.equal_range(GetParam());
    for (auto left = first; left != end; ++left) {
        const std::string& file = left->second;
        EXPECT_TRUE(fs::exists(file) && fs::file_size(file) > 500) << file;
    }
}

INSTANTIATE_TEST_SUITE_P(Demo, EveryScript, testing::ValuesIn(scriptsOf("")), asTestName);
INSTANTIATE_TEST_SUITE_P(Demo_models, EveryScript, testing::ValuesIn(scriptsOf("models/")),
                         asTestName);

TEST_F(SessionTest, TheStatusSaysHowItWent) {
    EXPECT_EQ(playText("expect frmMain.cmbMarsMech ME111"), kAllHeld) << out.str();
    EXPECT_EQ(playText("expect frmMain.cmbMarsMech ME181"), kNotAsExpected);
    EXPECT_EQ(playText("bench expect-prom 000 0"), kAllHeld);
    EXPECT_EQ(playText("bench expect-prom 000 F"), kNotAsExpected);
    EXPECT_TRUE(said("NOT AS EXPECTED: cell 000 holds 0, not F")) << out.str();
    EXPECT_EQ(playText("sleep\n"), kNotStarted);
    EXPECT_EQ(err.str(), "session.vps:1: 1 argument(s) wanted, 0 given: sleep MS\n");
    EXPECT_EQ(play("nothing-there.vps"), kNotStarted);
}

TEST_F(SessionTest, TheBenchWorksByHand) {
    EXPECT_EQ(playText(R"(
choose frmBench.cmbMech ME181
click frmBench.cmdPlugIn
expect frmBench.lblMech "Plugged in: ME181"
click frmBench.optBipolar
choose frmBench.cmbPromSize 2K
click frmBench.cmdInsert
expect frmBench.lblProm "Inserted: Bipolar 2K"
tick frmBench.chkSwitch_1 on
sleep 500
expect frmBench.chkSwitch_1 on
type frmBench.txtVersion V2.00
click frmBench.cmdVersion
choose frmMain.cmbMarsMech ME181
click frmMain.cmdMars
await-visible frmCoinMeasure1 9000
await-idle 9000
expect frmMain.lblProgrammer V2.00
file ME181-Dorin.cst
answer yes "Press YES"
click frmCoinMeasure1.cmdRunCoinset
sleep 5000
choose frmBench.cmbCoin "10 Pell"
type frmBench.txtCount 3
type frmBench.txtEvery 100
click frmBench.cmdDrop
await frmCoinMeasure1.lblNumber " 9" 1000
type frmBench.txtRaw_0 321
click frmBench.cmdDropRaw
await frmCoinMeasure1.lblReading_0 " 321" 1000
choose frmBench.cmbFault "Drop a byte"
type frmBench.txtFaultTimes -1
click frmBench.cmdAddFault
click frmBench.cmdDrop
sleep 1000
expect frmCoinMeasure1.lblNumber " 8"
click frmBench.cmdClearFaults
click frmBench.cmdDrop
await frmCoinMeasure1.lblNumber " 5" 1000
tick frmBench.chkSilent on
click frmBench.cmdDrop
sleep 1000
expect frmCoinMeasure1.lblNumber " 5"
close frmBench
click frmCoinMeasure1.cmdBack
await-idle 20000
)"),
              kAllHeld)
        << out.str();
}

}  // namespace
}  // namespace vantor::player
