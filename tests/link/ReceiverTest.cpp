#include <gtest/gtest.h>

#include "LinkWorld.h"

namespace vantor {
namespace {

using test::LinkWorld;

struct Marks final : ValtestDisplay {
    std::string log;
    void resetValtestDisplay() override { log += "reset "; }
    void markAccepted(int p) override { log += "+" + std::to_string(p) + " "; }
    void markRejected(int p) override { log += "-" + std::to_string(p) + " "; }
    void markPosition(int p) override { log += "p" + std::to_string(p) + " "; }
    void countPosition(int p) override { log += "c" + std::to_string(p) + " "; }
    void markBinary(int b) override { log += "b" + std::to_string(b) + " "; }
};

TEST(Receiver, StatusLinesGiveTimingsVersionAndPresence) {
    struct Row {
        std::string line;
        bool present;
        int t1, t4;
        std::string version;
    };
    const Row rows[] = {
        {"C00030 00020 00150 00100 00 V1.95", true, 30, 100, "V1.95"},
        {"N  150   150   150   425 3F V1.9", false, 150, 425, "V1.9"},
        {"C", true, 0, 0, ""},
        {"C12x45", true, 12, 0, ""},
    };
    for (const Row& row : rows) {
        LinkWorld world;
        world.state.box.mechPresent = !row.present;
        world.feed(row.line + "\r");
        EXPECT_TRUE(world.state.box.statusReceived) << row.line;
        EXPECT_EQ(world.state.box.mechPresent, row.present) << row.line;
        EXPECT_EQ(world.state.box.timing1, row.t1) << row.line;
        EXPECT_EQ(world.state.box.timing4, row.t4) << row.line;
        EXPECT_EQ(world.state.box.boxVersion, row.version) << row.line;
    }
}

TEST(Receiver, LinesGoWhereTheirFirstCharacterSays) {
    LinkWorld world;
    std::string handed;
    world.receiver.sinks.promLine = [&](std::string_view line) {
        handed += "R:" + std::string(line) + ";";
    };
    world.receiver.sinks.marsMeasurement = [&](std::string_view line) {
        handed += "M:" + std::string(line) + ";";
    };

    world.feed("Mfirst\rT1\rD\rR000\rZ\r");
    EXPECT_EQ(handed, "R:R000;");
    EXPECT_TRUE(world.state.box.promLineAck);
    world.state.gather.gatherActive = true;
    world.feed("M 1\r");
    EXPECT_EQ(handed, "R:R000;M:M 1;");

    world.feed("Y 00012 00345 -0007\r");
    EXPECT_EQ(world.state.gather.idleReading[0], 12);
    EXPECT_EQ(world.state.gather.idleReading[1], 345);
    EXPECT_EQ(world.state.gather.idleReading[2], -7);

    world.feed("Battery\r");
    EXPECT_TRUE(world.prompts.told("Battery Low"));
    EXPECT_TRUE(world.prompts.asked.empty()) << "a flow must not wait for this box";

    world.feed("*Ready\r");
    EXPECT_TRUE(world.state.box.commandModeFlag);
    world.feed("*S\rC\r");
    EXPECT_TRUE(world.state.box.serialModeFlag);
    EXPECT_FALSE(world.state.box.statusReceived) << "serial mode assembles no lines";
}

TEST(Receiver, CoinEventsMarkThePositionsOfTheModel) {
    struct Row {
        std::string_view maker, model;
        std::string variant, line, marks;
    };
    const Row rows[] = {
        {kMars, "ME111", "", "V A", "reset +0 "},
        {kMars, "ME111", "", "V I", "reset +8 "},
        {kMars, "ME111", "", "V R", "reset -6 "},
        {kMars, "ME111", "", "V X21", "reset p0 b0 p5 "},
        {kMars, "ME111", "", "*EV", "reset "},
        {kMars, "ME111", "", "V Q", "reset "},
        {kMars, "ME111", "", "V", "reset "},
        {kCoinControls, "450", "", "V B", "reset +2 "},
        {kCoinControls, "450", "", "V D", "reset +1 "},
        {kCoinControls, "435", "", "V D", "reset +3 "},
        {kCoinControls, "335", "", "V X0D", "reset p13 b1 b0 b2 b4 c13 "},
        {kCoinControls, "335", "", "V XFF", "reset b1 b0 b2 b3 b4 "},
        {kNri, "G18-3000", "", "V C", "reset +3 "},
        {kNri, "G40-0000", "G40-x0xx", "V D", "reset +1 "},
        {kNri, "G40-0000", "G40-x3xx", "V D", "reset +3 "},
        {kNri, "G40-0000", "G40-x0xx", "V X02", "reset p2 b1 b3 c2 "},
    };
    for (const Row& row : rows) {
        LinkWorld world;
        Marks marks;
        world.receiver.sinks.valtest = &marks;
        world.select(row.maker, row.model);
        world.state.valtest.tubeCount = 7;
        world.state.valtest.g40Variant = row.variant;
        world.feed(row.line + "\r");
        EXPECT_EQ(marks.log, row.marks) << row.model << " " << row.line;
    }
}

TEST(Receiver, ARejectWithoutARejectPositionMarksAndPlaysNothing) {
    LinkWorld world;
    int sounds = 0;
    world.receiver.sinks.makeSound = [&](int) { ++sounds; };
    world.feed("V R\r");
    EXPECT_EQ(sounds, 0);
    world.feed("V A\r");
    EXPECT_EQ(sounds, 1) << "without a test window the sound still plays";
}

TEST(Receiver, G10RecordsMarkChannelAndRoute) {
    struct Row {
        std::string record, marks;
    };
    for (const Row& row :
         {Row{"\x01", "reset +10 "}, Row{"\x0A", "reset +0 +9 "}, Row{"\x7C", "reset +14 +8 "},
          Row{"\x18", "reset +2 +11 "}, Row{"", ""}}) {
        LinkWorld world;
        Marks marks;
        world.receiver.sinks.valtest = &marks;
        world.select(kNri, "G10-4000");
        world.state.box.serialModeFlag = true;
        world.state.box.nriG10Mode = true;
        world.feed("junk\x80" + row.record + "\r");
        EXPECT_EQ(marks.log, row.marks);
    }
}

TEST(Receiver, NriTextCollectsLinesAndAcknowledgements) {
    LinkWorld world;
    world.select(kNri, "G13-6000");
    world.state.box.serialModeFlag = true;
    world.state.box.linesExpected = 2;
    world.feed("07\r");
    EXPECT_FALSE(world.state.box.linesComplete);
    world.feed("\x06?x\r");
    EXPECT_TRUE(world.state.box.linesComplete);
    EXPECT_TRUE(world.state.box.nriAckFlag);
    EXPECT_TRUE(world.state.box.nriQueryFlag);
    EXPECT_EQ(world.state.box.replyText, "07?x");
}

TEST(Receiver, SentinelCharactersAreCollectedWhole) {
    LinkWorld world;
    world.select(kCoinControls, "Sentinel");
    world.state.box.serialModeFlag = true;
    world.state.box.sentinelOpen = true;
    world.state.box.linesExpected = 1;
    world.feed("I1.2\r%");
    EXPECT_EQ(world.state.box.sentinelBuffer, "I1.2\r%");
    EXPECT_TRUE(world.state.box.linesComplete);
    EXPECT_FALSE(world.state.box.sentinelOpen);
}

/// "?" and data with the closing sum.
std::string coinFrame(std::string data) {
    data.insert(0, "?");
    int sum = 0;
    for (const char c : data) sum += static_cast<unsigned char>(c);
    return data + static_cast<char>(static_cast<unsigned char>(sum % 256));
}

TEST(Receiver, WordRepliesAreCheckedAgainstTheirSum) {
    LinkWorld world;
    world.select(kCoinControls, "C120");
    world.state.box.serialModeFlag = true;
    world.feed("zz;\x12\x34\x81");  // 0x3B + 0x12 + 0x34 = 0x81
    EXPECT_TRUE(world.state.box.wordReadyFlag);
    EXPECT_EQ(world.state.box.wordValue, 0x1234);
    EXPECT_FALSE(world.state.box.wordChecksumError);
    world.state.box.wordReadyFlag = false;
    world.feed(";;?\x05");
    EXPECT_TRUE(world.state.box.wordReadyFlag);
    EXPECT_EQ(world.state.box.wordValue, -1);
    EXPECT_TRUE(world.state.box.wordChecksumError);
    EXPECT_FALSE(world.state.box.i2cAckFlag) << "05 inside a frame is data";
}

TEST(Receiver, CoinFramesCloseAtTheLengthOfTheModel) {
    struct Row {
        std::string_view model;
        std::string data;
        bool sumBroken;
        std::string events;
        bool gathering = true;
    };
    const Row rows[] = {
        {"335", "\x01\x02\x03", false, "log read ask "},
        {"220B", "?;\x03", false, "log read ask "},
        {"220B", "abc", true, "ask "},
        {"450", "12345678", false, "log read ask "},
        {"C120", "12345", false, "log read ask "},
        {"435", "123456", false, "log read ask "},
        {"435", "123456", false, "", false},
        {"220B", "abc", true, "", false},
    };
    for (const Row& row : rows) {
        LinkWorld world;
        std::string events;
        world.receiver.sinks.logReading = [&] { events += "log "; };
        world.receiver.sinks.reading = [&] { events += "read "; };
        world.receiver.sinks.requestCoinData = [&] { events += "ask "; };
        world.select(kCoinControls, row.model);
        world.state.box.serialModeFlag = true;
        world.state.gather.coinsRemaining = 1;
        world.state.gather.gatherActive = row.gathering;
        std::string frame = coinFrame(row.data);
        if (row.sumBroken) frame.back() = static_cast<char>(frame.back() + 1);
        world.feed(std::string_view(frame).substr(0, frame.size() - 1));
        EXPECT_EQ(events, "") << row.model;
        world.feed(frame.substr(frame.size() - 1));
        EXPECT_EQ(events, row.events) << row.model;
        if (!row.sumBroken) {
            EXPECT_EQ(world.state.gather.latestReading[0], row.data[0]) << row.model;
            EXPECT_EQ(world.state.gather.latestReading[2], row.data[2]) << row.model;
        }
        EXPECT_EQ(world.state.link.frameCount, 0) << row.model;
    }
}

TEST(Receiver, ARefusalAsksAgainOnlyWhileCoinsAreGathered) {
    LinkWorld world;
    int asked = 0;
    world.receiver.sinks.requestCoinData = [&] { ++asked; };
    world.select(kCoinControls, "C120");
    world.state.box.serialModeFlag = true;
    world.feed("\x06\x05");
    EXPECT_TRUE(world.state.box.i2cNakFlag);
    EXPECT_TRUE(world.state.box.i2cAckFlag);
    world.state.gather.gatherActive = true;
    world.feed("\x06");
    EXPECT_EQ(asked, 1);
}

}  // namespace
}  // namespace vantor
