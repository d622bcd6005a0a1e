#include "BoxBench.h"

namespace vantor::boxsim::test {
namespace {

using Kind = Fault::Kind;
constexpr auto kBox = Fault::Where::fromBox;
constexpr auto kPc = Fault::Where::fromPc;

constexpr const char* kIdle = "Y 00304 00212 00498\r";

TEST(Faults, OfBytesOnTheLine) {
    struct Case {
        Fault fault;
        const char* first;   // answer to "Y"
        const char* second;  // answer to "Y" once more
    };
    const Case cases[] = {
        {{Kind::dropByte, kBox, 2, 1, 0}, "Y 0304 00212 00498\r", kIdle},
        {{Kind::dropByte, kBox, 22, 2, 0}, kIdle, "Y 304 00212 00498\r"},
        {{Kind::dropByte, kPc, 0, 1, 0}, "", kIdle},
        {{Kind::dropByte, kPc, 1, -1, 0}, kIdle, ""},
        {{Kind::repeatByte, kBox, 3, 1, 0}, "Y 000304 00212 00498\r", kIdle},
        {{Kind::repeatByte, kPc, 1, 1, 0}, kIdle, "Y 00304 00212 00498\rY 00304 00212 00498\r"},
        {{Kind::flipBit, kBox, 0, 1, 1}, "[ 00304 00212 00498\r", kIdle},
        {{Kind::flipBit, kPc, 0, 1, 7}, "", kIdle},
        {{Kind::insertByte, kBox, 1, 1, 'x'}, "Yx 00304 00212 00498\r", kIdle},
        {{Kind::cutLine, kBox, 4, 1, 0}, "Y 00", kIdle},
        {{Kind::stall, kBox, 4, 1, 0}, "Y 00", ""},
        {{Kind::stall, kPc, 1, 1, 0}, kIdle, ""},
        {{Kind::silentBox, kBox, 1, 1, 0}, kIdle, ""},
        {{Kind::batteryLow, kBox, 0, 1, 0}, "Y 00304 00212 00498\rB\r", kIdle},
        {{Kind::previousReply, kBox, 0, 1, 0}, "", kIdle},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        BoxBench bench;
        bench.box.plugValidator("Mars", "ME111");
        bench.box.addFault(cases[i].fault);
        EXPECT_EQ(bench.ask("Y"), cases[i].first) << "case " << i;
        EXPECT_EQ(bench.ask("Y"), cases[i].second) << "case " << i;
        EXPECT_EQ(bench.box.sentByPc(), "YY") << "case " << i;
        bench.box.clearFaults();
        EXPECT_EQ(bench.ask("Y"), kIdle) << "case " << i;
    }
}

TEST(Faults, ALateByteHoldsUpWhatFollows) {
    BoxBench bench;
    bench.box.addFault({Kind::delayByte, kBox, 5, 1, 900});
    bench.send("S");
    bench.loop.advance(500ms);
    EXPECT_EQ(bench.received, "N0000");
    bench.loop.advance(1s);
    EXPECT_EQ(bench.received, "N00000 00000 00000 00000 00 V1.95\r");
    const auto& wire = bench.box.transcript();
    EXPECT_EQ((wire[6].at - wire[5].at) / 1ms, 901);
    EXPECT_LE(wire[7].at - wire[6].at, 1042us);
}

TEST(Faults, APreviousReplyIsTheOneBefore) {
    BoxBench bench;
    bench.box.plugValidator("Mars", "ME111");
    bench.box.addFault({Kind::previousReply, kBox, 1, 1, 0});
    EXPECT_EQ(bench.ask("Y"), kIdle);
    EXPECT_EQ(bench.ask("S"), kIdle);
    EXPECT_EQ(bench.ask("S").front(), 'C');
}

TEST(Faults, InProgramming) {
    BoxBench bench;
    bench.box.insertProm(PromKind::bipolar, 256);
    bench.box.addFault({Kind::lostAck, kBox, 1, 1, 0});
    bench.box.addFault({Kind::stuckCell, kBox, 0, 2, 3});
    EXPECT_EQ(bench.ask("P000FFFF\r"), "Z\r");
    EXPECT_EQ(bench.box.promCells()[3], 0);
    EXPECT_EQ(bench.ask("P000FFFF\r"), "");
    EXPECT_EQ(bench.box.promCells()[2], 15);
    EXPECT_EQ(bench.box.promCells()[3], 0);
    EXPECT_EQ(bench.ask("P000FFFF\r"), "Z\r");
    EXPECT_EQ(bench.box.promCells()[3], 15);  // stuck twice only
}

TEST(Faults, ASilentBoxNeitherHearsNorSpeaks) {
    BoxBench bench;
    bench.box.setSilent(true);
    EXPECT_EQ(bench.ask("Z030020150100\rS$05"), "");
    bench.box.setSilent(false);
    EXPECT_EQ(bench.ask("S"), "N00000 00000 00000 00000 00 V1.95\r");
}

TEST(Port, OpensItsOwnNumberAndNeverAnswersInsideAWrite) {
    VirtualEventLoop loop;
    SimulatedBox box(loop, 1);
    SimulatedPort port(loop, box, 3);
    std::string received;
    bool writing = false;
    port.setReceiver([&](std::span<const std::uint8_t> bytes) {
        EXPECT_FALSE(writing);
        received.append(bytes.begin(), bytes.end());
    });
    EXPECT_FALSE(port.open(1).open);
    EXPECT_FALSE(port.write({}));
    ASSERT_TRUE(port.open(3).open);
    EXPECT_TRUE(port.write({}));
    writing = true;
    const std::uint8_t status[] = {'S'};
    EXPECT_TRUE(port.write(status));
    port.setBreak(true);
    port.setBreak(false);
    writing = false;
    loop.advance(1s);
    EXPECT_EQ(received.size(), 34U);
    port.close();
    EXPECT_FALSE(port.write(status));
    loop.advance(1s);
    EXPECT_EQ(received.size(), 34U);
}

TEST(Port, ReportsAPulledPlugOnceAndOpensAgainAfterwards) {
    VirtualEventLoop loop;
    SimulatedBox box(loop, 1);
    SimulatedPort port(loop, box);
    int failures = 0;
    std::size_t received = 0;
    port.setReceiver([&](auto bytes) { received += bytes.size(); });
    port.setFailureHandler([&](const std::string& reason) {
        EXPECT_FALSE(reason.empty());
        ++failures;
    });
    const std::uint8_t status[] = {'S'};
    ASSERT_TRUE(port.open(1).open);
    box.addFault({Kind::unplug, kBox, 10, 1, 0});
    EXPECT_TRUE(port.write(status));
    loop.advance(1s);
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(received, 10U);
    EXPECT_FALSE(port.write(status));
    EXPECT_FALSE(port.open(1).open);
    box.replug();
    ASSERT_TRUE(port.open(1).open);
    EXPECT_TRUE(port.write(status));
    loop.advance(1s);
    EXPECT_EQ(received, 10U + 34U);
    EXPECT_EQ(failures, 1);
}

TEST(Determinism, TheSameSeedGivesTheSameConversation) {
    const auto conversation = [](std::uint64_t seed, bool noisy) {
        BoxBench bench(seed);
        bench.box.plugValidator("Mars", "MS1000");
        if (noisy) bench.box.addFault({Kind::insertByte, kBox, 30, 3, 0});
        bench.ask("NY");
        bench.box.drop("20 Pell", 10);
        bench.loop.advance(2s);
        bench.box.drop("Lead Blank", 5, 100);
        bench.loop.advance(5s);
        return bench.box.transcript();
    };
    const auto equal = [](const std::vector<WireByte>& a, const std::vector<WireByte>& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](auto& x, auto& y) {
            return x.at == y.at && x.fromBox == y.fromBox && x.byte == y.byte;
        });
    };
    EXPECT_TRUE(equal(conversation(7, false), conversation(7, false)));
    EXPECT_TRUE(equal(conversation(7, true), conversation(7, true)));
    EXPECT_FALSE(equal(conversation(7, false), conversation(8, false)));
}

}  // namespace
}  // namespace vantor::boxsim::test
