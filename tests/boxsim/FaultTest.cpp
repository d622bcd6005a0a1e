#include "MechBench.h"

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

TEST(Faults, OfWritesThatAreNotDone) {
    struct Case {
        const char* maker;
        const char* model;
        const char* setUp;
        const char* mode;
        std::string session;
        std::string write;
        int cell;
        const char* before;
        const char* half;  // after half a write
        const char* done;
        std::string answer;  // to the write when nothing goes wrong
    };
    const Case cases[] = {
        {"CC", "C120", "#80C00", "$05", "xx", bytes({0x7A, 5, 0x12, 0x34, 0xC5}), 5, "1C1C", "121C",
         "1234", "\x05"},
        {"CC", "Sentinel", "C00", "$06", "TKIW0030\rW00C5\r", "W00453412\r", 5, "FFFF", "FFFF",
         "1234", "W00453412\rZZW\r"},
        {"NRI", "G13-6000", "C00", "$05", "I", "Z02010203", 3, "110605", "110605", "010203",
         "\x06\x06\x06\x06"},
        {"NRI", "G13-0000", "C00", "$01", "I", "E01/02/03\r", 8, "14/02/05", "01/02/05", "01/02/03",
         ""},
    };
    for (const Case& c : cases) {
        for (const char* fault : {"none", "lie always", "power-loss value 500"}) {
            MechBench bench(c.maker, c.model);
            bench.enter(c.setUp, c.mode);
            bench.ask(c.session);
            const bool sound = fault[0] == 'n';
            const bool lies = fault[0] == 'l';
            if (!sound) bench.bench(std::string("fault ") + fault);
            const std::string answer = bench.ask(c.write, 2s);
            EXPECT_EQ(answer == c.answer, sound || lies || c.answer.empty()) << c.model << fault;
            EXPECT_EQ(bench.cell(c.cell), sound  ? c.done
                                          : lies ? c.before
                                                 : c.half)
                << c.model << fault;
            EXPECT_EQ(bench.box.faultsStruck() > 0, !sound) << c.model << fault;
        }
    }
    for (const char* fault : {"lie", "power-loss", "refuse"}) {
        BoxBench bench;
        bench.box.insertProm(PromKind::e1, 256);
        bench.box.setSwitch(2, true);
        EXPECT_EQ(runBenchLine(bench.box, std::string("fault ") + fault).error, "");
        EXPECT_EQ(bench.ask("P0101234\r"), fault[0] == 'l' ? "Z\r" : "");
        const std::set<int> written = fault[0] == 'p' ? std::set<int>{0x10, 0x11} : std::set<int>{};
        EXPECT_EQ(bench.box.promChangedSinceRead(), written) << fault;
        bench.ask("EA");
        EXPECT_TRUE(bench.box.promChangedSinceRead().empty());
    }
}

TEST(Faults, OfAnAnswerTooLongAndABreakThatIsLost) {
    MechBench bench("CC", "C120");
    bench.enter("#80C00", "$05");
    bench.ask("xx");
    bench.bench("fault long value 2");
    EXPECT_EQ(bench.ask(bytes({0x7B, 0x05, 0x80})), bytes({0x3B, 0x1C, 0x1C, '7', '7', 0x73}));
    bench.bench("fault break-lost");
    EXPECT_EQ(bench.breakThen(150ms, 20), "");
    EXPECT_TRUE(bench.box.inSerialMode());
    bench.leave();
    bench.bench("fault long");
    bench.bench("fault clear");
    EXPECT_EQ(bench.box.faultsStruck(), 0);
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
    port.setReceiver(
        [&](std::span<const std::uint8_t> bytes) { received.append(bytes.begin(), bytes.end()); });
    const std::uint8_t status[] = {'S'};
    EXPECT_FALSE(port.open(1).open);
    EXPECT_FALSE(port.write(status));
    ASSERT_TRUE(port.open(3).open);
    EXPECT_TRUE(port.write(status));
    EXPECT_EQ(received, "");
    loop.advance(1s);
    EXPECT_EQ(received.size(), 34U);
    port.close();
    EXPECT_FALSE(port.write(status));
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
