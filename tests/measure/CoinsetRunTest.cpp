#include <gtest/gtest.h>

#include "MeasureWorld.h"
#include "platform/ProgramEnded.h"

namespace vantor::test {
namespace {

constexpr const char* kCoinA = "CD,Ten,A1,3,M,-1,M,1,20,M,-1,M,1,20,M,-1,M,1,20\r\n";

struct CoinsetRun : ::testing::Test, MeasureWorld {};

TEST_F(CoinsetRun, WholeRunSendsLogsAndHandsOver) {
    display.log = true;
    prompts.chooseFile(folder / "coins.txt");
    prompts.chooseFile(folder / "log.old.txt");
    file("log.csv", "the log before");
    file("coins.cst", std::string(kHead) + kCoinA + "S,Washer,2,2,20,3,20,4,20\r\n");
    prompts.expect("Overwrite Existing File", Answer::ok);
    prompts.expect("Press YES to PROGRAM new coin\r\n\r\nPress NO to KEEP existing coin",
                   Answer::yes, [this] { EXPECT_EQ(log(), "the log before"); });
    prompts.expect("Press YES", Answer::yes);
    port.answer("N", drop(1000, 1500, 2200) + drop(1001, 1500, 2200) + drop(1002, 1500, 2203));
    port.answer("N", drops(2, 900, 1400, 2100));
    flows.runCoinsetFile();

    EXPECT_TRUE(prompts.scriptDone());
    EXPECT_EQ(port.sent, "J<run>YNINIW");
    EXPECT_EQ(family.calls, (std::vector<std::string>{"enable 1", "enable 0", "rebuild"}));
    EXPECT_EQ(state.coinset.referenceCode + " " + state.coinset.version, "REF01 V12");
    EXPECT_EQ(log(),
              "\"Coins, new\",\"REF0123\",\"V123\"\r\n"
              "\"2K\",1,0,0,0\r\n"
              "\"\"\r\n"
              "\"Idles\",100,200,300\r\n"
              "\"Ten\",\"A1\"\r\n"
              "\"\",\"Thickness\",\"\",\"Diameter\",\"\",\"Material\",\"\",\"\"\r\n"
              "\"\",1000,\"\",1500,\"\",2200,\"\",\"\"\r\n"
              "\"\",1001,\"\",1500,\"\",2200,\"\",\"\"\r\n"
              "\"\",1002,\"\",1500,\"\",2203,\"\",\"\"\r\n"
              "\"Mean\",1001,\"\",\"\",\"\",1500,\"\",\"\",\"\",2201,\"\",\"\",\"\",\"\"\r\n"
              "\"SD Lower\",0.8164966,\"\",\"\",\"\",0.1,\"\",\"\",\"\",1,\"\",\"\",\"\","
              "\"\"\r\n"
              "\"SD Upper\",0.8164966,\"\",\"\",\"\",0.1,\"\",\"\",\"\",2,\"\",\"\",\"\","
              "\"\"\r\n"
              "\"Limits : \",1000,\"\",1002,\"\",1499,\"\",1501,\"\",2200,\"\",2202,\"\",\"\"\r\n"
              "\"\"\r\n"
              "\"Washer\",\"Slug\"\r\n"
              "\"\",\"Thickness\",\"\",\"Diameter\",\"\",\"Material\",\"\",\"\"\r\n"
              "\"\",900,\"\",1400,\"\",2100,\"\",\"\"\r\n"
              "\"\",900,\"\",1400,\"\",2100,\"\",\"\"\r\n"
              "\"Mean\",900,\"\",\"\",\"\",1400,\"\",\"\",\"\",2100,\"\",\"\",\"\",\"\"\r\n"
              "\"SD Lower\",0.1,\"\",\"\",\"\",0.1,\"\",\"\",\"\",0.1,\"\",\"\",\"\",\"\"\r\n"
              "\"SD Upper\",0.1,\"\",\"\",\"\",0.1,\"\",\"\",\"\",0.1,\"\",\"\",\"\",\"\"\r\n"
              "\"Limits : \",897,\"\",903,\"\",1396,\"\",1404,\"\",2095,\"\",2105,\"\",\"\"\r\n"
              "\"\"\r\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "log.csv.tmp"));
    EXPECT_TRUE(limitsDisplay.visible);
    EXPECT_FALSE(display.visible);
    EXPECT_EQ(limitsDisplay.firstRow(), "1000;1002;1499;1501;2200;2202;");
    EXPECT_EQ(limitsDisplay.firstSlug(), " 897; 903; 1396; 1404; 2095; 2105;");
    EXPECT_TRUE(prompts.told("Gathered Coin Ten"));
    EXPECT_EQ(prompts.asked.back().title, "Complete");
    EXPECT_EQ(state.coinTable.itemStats[0][5], 1.0F) << "lower spread of the third parameter";
    EXPECT_EQ(state.coinTable.itemStats[0][8], 2.0F) << "upper";
    EXPECT_EQ(state.coinTable.itemStats[1][0], 900.0F);
    EXPECT_EQ(state.prom.promSizeCode, 1);
    expectReady();
}

TEST_F(CoinsetRun, NoKeepsTheChannelAndCancelClearsIt) {
    prompts.expect("Press YES", Answer::no);
    prompts.expect("Press YES", Answer::cancel);
    run(std::string(kCoinA) + "CD,Two,B1,3\r\nCO,moved,C1,D2\r\nCO,bad,Z9,A1\r\nCO,bad,Y9,A1\r\n");
    EXPECT_EQ(port.sent, "J<run>YW");
    EXPECT_EQ(state.coinset.oldChannelSource[1], 1);
    EXPECT_EQ(state.coinset.oldChannelSource[2], 0);
    EXPECT_EQ(state.coinset.oldChannelSource[3], 10);
    EXPECT_EQ(state.item.nextItem, 0);
    EXPECT_EQ(family.called("read old"), 1);
    // Two bad records, one report, naming the first.
    const auto reports = std::ranges::count_if(
        prompts.asked, [](const Prompt& box) { return box.text.starts_with(" 455 "); });
    EXPECT_EQ(reports, 1);
    EXPECT_TRUE(prompts.told("Line 6: no channel \"Z9\""));
    expectReady();
}

TEST_F(CoinsetRun, ReferenceCoinsGiveTheirMeansToLinkedChannels) {
    answerItems(2);
    port.answer("N", drop(200, 300, 400) + drop(201, 300, 400));
    run("R,Ref,R05,2,20,20,20\r\n"
        "R,Far,R13,2,20,20,20\r\n"
        "CR,Linked,A1,R05,-6,R05,7,20,R05,0,R05,0,20,R05,-9000,R05,9000,20\r\n"
        "CR,Lost,B1,R07,0,R07,0,0,R07,0,R07,0,0,R07,0,R07,0,0\r\n"
        "CR,Lost,C1,R07,0,R07,0,0,R07,0,R07,0,0,R07,0,R07,0,0\r\n");
    EXPECT_EQ(limitsDisplay.firstRow(), "195;208;300;300;0;4095;");
    EXPECT_EQ(state.limits.channelLimits[2], state.limits.channelLimits[24]);
    EXPECT_TRUE(prompts.told("no channel \"R13\""));
    EXPECT_TRUE(prompts.told("Channel 2: reference coin was not measured"));
    EXPECT_FALSE(prompts.told("Channel 3: reference"));
    EXPECT_EQ(state.limits.channelCoins[5].count, 0);
}

TEST_F(CoinsetRun, ANewRunForgetsTheOneBefore) {
    answerItems(1);
    port.answer("N", drops(2));
    run("R,Ref,R05,2,20,20,20\r\nCO,x,A1,B1\r\nV,1,2\r\nD,435R,1\r\nD,120M,1\r\n");
    state.images.oldMemoryRead = true;
    state.gather.wizardRun = true;
    run("CR,Linked,A1,R05,0,R05,0,0,R05,0,R05,0,0,R05,0,R05,0,0\r\n");
    EXPECT_TRUE(prompts.told("Channel 1: reference coin was not measured"));
    EXPECT_FALSE(state.coinset.usesOldChannels || state.coinset.routingPresent ||
                 state.coinset.c120MapPresent || state.images.oldMemoryRead ||
                 state.gather.wizardRun);
    EXPECT_EQ(state.coinset.oldChannelSource[1] + state.nriNew.newCoinValue[1], 0);
    EXPECT_EQ(state.item.nextItem, 0);
    EXPECT_EQ(family.called("read old"), 1);
}

TEST_F(CoinsetRun, FliersAreDroppedAgainOrKeptAsTheTechnicianSays) {
    const std::string coin = "CD,Ten,A1,6,M,0,M,0,5,M,0,M,0,5,M,0,M,0,5\r\n";
    const std::string withFlier = drops(5) + drop(1300, 1500, 2200);
    const std::string box =
        " 1 Coin Fliers detected\r\nNeed to redrop  1 Coins\r\n\r\nPress OK to accept "
        "Elimination of Fliers\r\n\r\nPress CANCEL to Skip Elimination";
    for (const bool accept : {true, false}) {
        answerItems(1);
        prompts.expect(box, accept ? Answer::ok : Answer::cancel);
        port.answer("N", withFlier);
        port.answer("N", drops(1));
        run(coin);
        EXPECT_EQ(port.sent, accept ? "J<run>YNINIW" : "J<run>YNIW");
        EXPECT_EQ(limitsDisplay.firstRow().substr(0, 10), accept ? "1000;1000;" : "1050;1050;");
        EXPECT_TRUE(prompts.scriptDone());
        port.forget("N");
    }
}

TEST_F(CoinsetRun, CancelEndsEveryWaitAtOnce) {
    struct Case {
        const char* name;
        bool boxAnswersIdles;
        int idleWaitMs;
        const char* sent;
    };
    const Case cases[] = {
        {"before the idle request", true, 1000, "J<run>WM"},
        {"waiting for the idle values", false, 0, "J<run>YWM"},
        {"waiting for drops", true, 0, "J<run>YNIWM"},
    };
    // A second press while the window starts afresh is no way out of a run that has not ended.
    family.whileStarting = [this] { flows.backButton(); };
    for (const Case& c : cases) {
        family.rules.idleWaitMs = c.idleWaitMs;
        if (!c.boxAnswersIdles) port.forget("Y");
        if (std::string_view(c.name) == "waiting for drops") answerItems(1);
        const double start = ms();
        loop.callAfter(std::chrono::milliseconds(100), [this] { flows.backButton(); });
        run(kCoinA);
        EXPECT_EQ(port.sent, c.sent) << c.name;
        EXPECT_LE(ms() - start, 101) << c.name;
        EXPECT_FALSE(limitsDisplay.visible) << c.name;
        EXPECT_EQ(state.item.nextItem, 0) << c.name;
        EXPECT_TRUE(display.visible) << c.name;
        EXPECT_EQ(display.caption, "Capture Measurements : ") << c.name;
        EXPECT_TRUE(prompts.scriptDone()) << c.name;
        EXPECT_EQ(std::ranges::count(display.events, "main"), 0) << c.name;
        expectReady();
        port.answer("Y", "Y   100   200   300\r");
    }
}

TEST_F(CoinsetRun, IdlesOutOfLimitsEndTheRunBeforeAnyRecord) {
    port.forget("Y");
    port.answer("Y", "T stray\r", 5);
    port.receive("Y   111   200   289\r", 700);
    run(kCoinA);
    EXPECT_EQ(port.sent, "J<run>YW");
    ASSERT_FALSE(prompts.asked.empty());
    const Prompt& box = prompts.asked.back();
    const std::string gap(13, ' ');
    EXPECT_EQ(box.text,
              "Error: Sensor Idle readings out of Limits\r\n\r\n"
              "Idles:       Readings:     111" +
                  gap + " 200" + gap + " 289" + gap +
                  "\r\nIdles:       [ 90   110  ]  [ 190   210  ]  [ 290   310  ]  "
                  "\r\n\r\nCause:  Incorrect mech type selected or faulty validator");
    EXPECT_EQ(box.icon, PromptIcon::critical);
    EXPECT_FALSE(limitsDisplay.visible);
    expectReady();
    // Old values do not stand in for an answer that never comes.
    port.forget("Y");
    state.gather.idleReading[0] = 100;
    run(kCoinA);
    EXPECT_TRUE(prompts.told("Readings:     0" + gap + " 0" + gap + " 0" + gap));
}

TEST_F(CoinsetRun, IdlesOnTheirLimitsAndSegmentsThatAreOnePass) {
    const std::pair<const char*, bool> cases[] = {{"Y    90   190   290\r", true},
                                                  {"Y   110   210   310\r", true},
                                                  {"Y   111   210   310\r", false},
                                                  {"Y   110   210   311\r", false},
                                                  {"Y    89   190   290\r", false}};
    for (const auto& [answer, good] : cases) {
        port.forget("Y");
        port.answer("Y", answer);
        prompts.asked.clear();
        runText("Mars.ME111,t,r,v\r\n2K,2,1,0,1,90,110,190,210,290,310\r\n");
        EXPECT_EQ(!prompts.told("out of Limits"), good) << answer;
        EXPECT_EQ(state.prom.segmentSelected[0], false) << "a check value of 2";
        EXPECT_EQ(state.prom.segmentSelected[3], true);
    }
}

TEST_F(CoinsetRun, FilesThatAreNoCoinsetForThisMechAreRefused) {
    struct Case {
        std::string text;
        std::vector<std::string> boxes;
    };
    const std::string bytes("\x7f\0\x01\xff.\x02\n\0\0", 9);
    const Case cases[] = {
        {"", {"Invalid Coin Mech Type: ", "Invalid Coin Mech Manufacturer: "}},
        {bytes, {"Invalid Coin Mech Type: ?", "Invalid Coin Mech Manufacturer: "}},
        {"CC.435,t,r,v\r\nx\r\n",
         {"Invalid Coin Mech Type: 435", "Invalid Coin Mech Manufacturer: CC"}},
        {"Mars.ME115,t,r,v\r\n", {"Invalid Coin Mech Type: ME115"}},
        {"Mars.me111,t,r,v\r\n", {"Invalid Coin Mech Type: me111"}},
        {std::string(1'000'000, 'x'), {"Invalid Coin Mech Type: xxxx", "Manufacturer: "}},
    };
    for (const Case& c : cases) {
        prompts.asked.clear();
        runText(c.text);
        ASSERT_EQ(prompts.asked.size(), c.boxes.size());
        for (std::size_t i = 0; i < c.boxes.size(); ++i) {
            EXPECT_TRUE(prompts.asked[i].text.find(c.boxes[i]) != std::string::npos);
            EXPECT_LT(prompts.asked[i].text.size(), 100U);
            EXPECT_EQ(prompts.asked[i].title, "Warning");
        }
        EXPECT_EQ(port.sent, "JW");
        EXPECT_EQ(state.mech.mechType, "ME111");
        expectReady();
    }
}

TEST_F(CoinsetRun, TenMegabytesOfUnknownRecordsAreWalkedThrough) {
    std::string rubbish;
    while (rubbish.size() < 10'000'000) rubbish += "rubbish,\xff\x01,,\"\n";
    run(rubbish);
    EXPECT_EQ(port.sent, "J<run>YW");
    EXPECT_TRUE(limitsDisplay.visible);
}

TEST_F(CoinsetRun, AFileCutAnywhereEndsInAUsableWindow) {
    const std::string whole = std::string(kHead) +
                              "CD,T,A1,2,M,-1,M,1,20,M,-1,M,1,20,M,-1,M,1,20\r\n"
                              "S,W,2,2,20,3,20,4,20\r\nR,Ref,R05,2,20,20,20\r\n"
                              "CR,L,B1,R05,-6,R05,7,20,R05,0,R05,0,20,R05,-9,R05,9,20\r\n"
                              "CO,x,C1,D1\r\nV,1,2,3\r\nD,435R,1,2\r\n";
    port.answer("N", drops(2));
    answerItems(2000);
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        prompts.chooseFile(file("coins.cst", whole.substr(0, length)));
        port.sent.clear();
        flows.runCoinsetFile();
        ASSERT_TRUE(port.sent.ends_with("W")) << length;
        expectReady();
    }
    EXPECT_EQ(state.item.nextItem, 3);
}

TEST_F(CoinsetRun, AFileIsFoundWhereverItsExtensionIsInCapitals) {
    prompts.chooseFile(file("OLD.CST", std::string(kHead)));
    flows.runCoinsetFile();
    EXPECT_FALSE(prompts.told("Invalid Filename"));
    EXPECT_TRUE(port.sent.starts_with("J<run>")) << port.sent;
}

TEST_F(CoinsetRun, WhatIsRefusedBeforeTheRunSendsNothing) {
    file("coins.cst", std::string(kHead));
    file("qzany.cst", std::string(kHead));
    const auto expectNothingSent = [this](const char* part) {
        port.sent.clear();
        flows.runCoinsetFile();
        EXPECT_EQ(port.sent, "") << part;
        EXPECT_TRUE(part == nullptr || prompts.told(part)) << part;
        EXPECT_TRUE(prompts.scriptDone());
        EXPECT_FALSE(state.gather.runActive || state.gather.logEnabled);
        prompts.asked.clear();
    };
    prompts.chooseFile(std::nullopt);
    expectNothingSent(nullptr);
    prompts.chooseFile(folder / "missing.cst");
    expectNothingSent("Invalid Filename");
    prompts.chooseFile(folder);
    expectNothingSent("Invalid Filename");

    prompts.chooseFile(folder / "qzany.cst");
    prompts.expect("Important:\r\n\r\nDue to variations", Answer::cancel);
    expectNothingSent("application\r\n\r\nClick OK to proceed\r\n");

    display.log = true;
    prompts.chooseFile(folder / "coins.cst");
    prompts.chooseFile(std::nullopt);
    expectNothingSent(nullptr);
    prompts.chooseFile(folder / "coins.cst");
    prompts.chooseFile(folder / "missing" / "log.csv");
    expectNothingSent("log.csv\r\nNo such file");
    file("log.csv", "old");
    prompts.chooseFile(folder / "coins.cst");
    prompts.chooseFile(folder / "log");
    prompts.expect("Overwrite Existing File", Answer::cancel);
    expectNothingSent("Overwrite");
    EXPECT_EQ(log(), "old");

    display.log = false;
    display.duplicate = true;
    family.cloned = false;
    expectNothingSent(nullptr);
    EXPECT_EQ(family.called("clone"), 1);
}

TEST_F(CoinsetRun, AnErrorEndsTheRunWithOneReport) {
    family.throwInStartRun = true;
    run(kCoinA);
    ASSERT_EQ(prompts.asked.size(), 1U);
    EXPECT_EQ(prompts.asked[0].text,
              " 455 Error Parsing Data Records for transfer :  \r\nno timings - 51");
    EXPECT_EQ(port.sent, "JW");
    expectReady();
}

TEST_F(CoinsetRun, AFailedPortEndsTheGather) {
    answerItems(1);
    loop.callAfter(std::chrono::milliseconds(500), [this] { port.fail("pulled"); });
    run(kCoinA);
    EXPECT_TRUE(prompts.told("pulled"));
    EXPECT_FALSE(limitsDisplay.visible);
    expectReady();
}

TEST_F(CoinsetRun, TheProgramsEndInAGatherKeepsTheLog) {
    display.log = true;
    prompts.chooseFile(file("coins.cst", std::string(kHead) + kCoinA));
    prompts.chooseFile(folder / "log.csv");
    answerItems(1);
    port.answer("N", drops(1));
    loop.callAfter(std::chrono::milliseconds(500), [this] { link.endProgram(); });
    EXPECT_THROW(flows.runCoinsetFile(), ProgramEnded);
    EXPECT_TRUE(log().ends_with("\"\",1000,\"\",1500,\"\",2200,\"\",\"\"\r\n"));
    EXPECT_TRUE(port.sent.ends_with("N")) << "nothing is sent while the program ends";
    EXPECT_FALSE(state.gather.runActive || state.gather.gatherActive || state.gather.logEnabled);
}

TEST_F(CoinsetRun, SerialModeIsLeftAtTheEnd) {
    answerItems(1);
    port.answer("N", "*S\r");
    port.answer(std::string(1, '\x1B'), "*R\r");
    loop.callAfter(std::chrono::milliseconds(500), [this] { flows.backButton(); });
    run(kCoinA);
    EXPECT_TRUE(port.sent.ends_with("NI<break></break>" + escapes(20) + "WM"));
    EXPECT_FALSE(state.box.serialModeFlag);
}

}  // namespace
}  // namespace vantor::test
