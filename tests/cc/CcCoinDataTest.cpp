#include <gtest/gtest.h>

#include "CcWorld.h"

namespace vantor {
namespace {

using test::bytes;
using test::CcWorld;
using test::escapes;
using test::leaving;
using test::opening;

/// A gather of some coins with sinks that take readings as the measurement session does.
struct Gathering : CcWorld {
    std::string events;

    explicit Gathering(std::string_view model, int coins = 2) : CcWorld(model) {
        state.gather.runActive = true;
        state.gather.coinsRemaining = coins;
        receiver.sinks.logReading = [this] { events += "log "; };
        receiver.sinks.reading = [this] {
            for (int p = 0; p < state.n(); ++p) {
                events += std::to_string(state.gather.latestReading[p]) + " ";
            }
            events += "left " + std::to_string(state.gather.coinsRemaining) + ". ";
            if (state.gather.gatherActive) --state.gather.coinsRemaining;
        };
        receiver.sinks.makeSound = [this](int kind) { events += "sound " + std::to_string(kind); };
        cc.coinData().sessionOpened = [this](bool open) { events += open ? "open " : "closed "; };
    }
    void enable() {
        port.sent.clear();
        cc.enableCoinData(1);
        state.gather.gatherActive = true;
    }
};

TEST(CcCoinData, I2cModelsAreAskedForOneCoinAfterTheOther) {
    struct Case {
        const char* model;
        const char* setUp;
        std::string request;
        std::string frame;
        const char* reading;
    };
    const std::string pair = "\xFF\xFF";
    const std::string frameRequest = bytes({0x7F, 0x1F, 0x9E});
    const Case cases[] = {
        {"C120", "C00", frameRequest, bytes({0x3F, 1, 2, 3, 4, 5, 0x4E}), "1 2 3 "},
        {"220B", "C08", pair, bytes({0x3F, 10, 20, 30, 0x7B}), "10 20 30 "},
        {"335", "C08", pair, bytes({0x3F, 200, 201, 202, 0x9A}), "200 201 202 "},
        {"435", "C08", frameRequest, bytes({0x3F, 1, 2, 3, 4, 5, 0, 0x4E}), "1 2 3 4 5 "},
        {"450", "C08", frameRequest, bytes({0x3F, 1, 2, 3, 4, 5, 6, 7, 8, 0x63}), "1 2 3 4 "}};
    for (const Case& c : cases) {
        Gathering world(c.model);
        world.enable();
        EXPECT_EQ(world.port.sent, opening(c.setUp) + c.request) << c.model;
        world.port.sent.clear();

        world.feed(c.frame);
        EXPECT_EQ(world.port.sent, c.request) << c.model;
        world.feed(c.frame);
        EXPECT_EQ(world.port.sent, c.request) << c.model << " no coin is left to ask for";
        const std::string r = c.reading;
        EXPECT_EQ(world.events, "open log " + r + "left 2. log " + r + "left 1. ") << c.model;

        world.port.sent.clear();
        world.cc.disableCoinData();
        EXPECT_EQ(world.port.sent, "yy" + leaving()) << c.model;
        EXPECT_TRUE(world.inCommandMode()) << c.model;
        EXPECT_FALSE(world.state.link.keepAliveOn) << c.model;
    }
}

TEST(CcCoinData, ASpoiltFrameAndARefusalAreAskedForAgain) {
    Gathering world("220B");
    world.enable();
    world.port.sent.clear();
    world.feed(bytes({0x3F, 10, 20, 30, 0x7C}));
    world.feed("\x06");
    EXPECT_EQ(world.port.sent, "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(world.events, "open ");
    EXPECT_EQ(world.state.gather.coinsRemaining, 2);
}

TEST(CcCoinData, TheKeepAliveRunsWhileNoCoinFalls) {
    Gathering world("335");
    world.enable();
    EXPECT_TRUE(world.state.link.keepAliveOn);
    world.port.sent.clear();
    world.loop.advance(std::chrono::milliseconds(10900));
    EXPECT_EQ(world.port.sent, "");
    world.loop.advance(std::chrono::milliseconds(200));
    EXPECT_EQ(world.port.sent, "\xFF\xFF");
    world.loop.advance(std::chrono::milliseconds(6000));
    EXPECT_EQ(world.port.sent, "\xFF\xFF\xFF\xFF");
    world.port.receive(bytes({0x3F, 10, 20, 30, 0}), 2);  // spoilt, while the session closes
    world.cc.disableCoinData();
    world.port.sent.clear();
    world.loop.advance(std::chrono::milliseconds(20000));
    EXPECT_EQ(world.port.sent, "");

    Gathering other("435");
    other.enable();
    EXPECT_FALSE(other.state.link.keepAliveOn);
}

TEST(CcCoinData, ASentinelIsAskedUntilEveryCoinFell) {
    Gathering world("Sentinel", 2);
    world.box.coins = {"102030\r",
                       "FF2030\r",    // no reading of the first parameter
                       "100030\r",    // nothing at the second
                       "0020FF\r",    // nothing at the first: no coin at all
                       "10203\r",     // cut short
                       "4142FE9\r"};  // more than asked for
    world.enable();
    const std::string request = "M02070306\r";
    EXPECT_EQ(world.port.sent, "C00" + escapes(25) + "$06\r#TKI" + request + request + request +
                                   request + request + request);
    EXPECT_EQ(world.events,
              "open log 16 32 48 left 1. sound 1sound 1sound 1log 65 66 254 left 0. ");
    world.port.sent.clear();
    world.cc.disableCoinData();
    EXPECT_EQ(world.port.sent, "\r#" + leaving());
    EXPECT_TRUE(world.inCommandMode());
}

TEST(CcCoinData, ASentinelWithoutACoinIsAskedAgainEvery15Seconds) {
    Gathering world("Sentinel", 1);
    world.loop.callAfter(std::chrono::seconds(32), [&] { world.box.coins = {"102030\r"}; });
    world.enable();
    EXPECT_EQ(world.state.gather.coinsRemaining, 0);
    EXPECT_EQ(world.box.commands.size(), 4U);
    EXPECT_NEAR(world.ms(), 45500, 1500);
}

}  // namespace
}  // namespace vantor
