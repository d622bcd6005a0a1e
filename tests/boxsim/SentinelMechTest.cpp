#include "MechBench.h"

namespace vantor::boxsim::test {
namespace {

struct SentinelBench : MechBench {
    explicit SentinelBench(bool opened = true) : MechBench("CC", "Sentinel") {
        enter("C00", "$06");
        if (opened) {
            EXPECT_EQ(ask("\r#"), "\r#");
            EXPECT_EQ(ask("TKI"), "TKI1.2\r");
        }
    }
};

TEST(SentinelMech, EchoesEverythingButTheLetterThatOpensASession) {
    SentinelBench bench(false);
    EXPECT_EQ(bench.ask("\x1B\x1B$06"), "\x1B\x1B$06");
    EXPECT_EQ(bench.ask("M00800102\r"), "M00800102\r");  // no session yet
    EXPECT_EQ(bench.ask("\r#TKI"), "\r#TKI1.2\r");
    EXPECT_EQ(bench.ask("I"), "I");
    bench.bench("option end-mark on");
    EXPECT_EQ(bench.ask("\r#"), "\r#%");
    EXPECT_EQ(bench.ask("M00800102\r"), "M00800102\r");  // the session is over
    bench.bench("option version E1");
    EXPECT_EQ(bench.ask("\r#TKI"), "\r#%TKE1\r");
    EXPECT_EQ(bench.ask("M00800102\r"), "M00800102\r");
    bench.bench("option version I1.3");
    bench.bench("fault no-session");
    EXPECT_EQ(bench.ask("TKI"), "TK");
    EXPECT_EQ(bench.ask("\r#TKI"), "\r#%TKI1.3\r");

    MechBench elsewhere("CC", "Sentinel");
    elsewhere.enter("C00", "$05");
    EXPECT_EQ(elsewhere.ask("TKI"), "");
    elsewhere.leave();
    elsewhere.enter("C08", "$06");
    EXPECT_EQ(elsewhere.ask("TKI"), "");
}

TEST(SentinelMech, ReadsAndWritesItsSerialEeprom) {
    SentinelBench bench;
    ASSERT_TRUE(bench.box.mech()->setMemory(5, "1234"));
    const std::string written = "\rZZW\r";
    // Without the enabling, and after the disabling, the answer comes and nothing is changed.
    EXPECT_EQ(bench.ask("W00C5\r"), "W00C5" + written);
    EXPECT_EQ(bench.cell(5), "1234");
    EXPECT_EQ(bench.ask("W0030\r"), "W0030" + written);
    EXPECT_EQ(bench.ask("W00C5\r"), "W00C5" + written);
    EXPECT_EQ(bench.cell(5), "FFFF");
    EXPECT_EQ(bench.ask("W0045CDAB\r"), "W0045CDAB" + written);
    EXPECT_EQ(bench.cell(5), "ABCD");
    EXPECT_EQ(bench.ask("W0045FF0F\r"), "W0045FF0F" + written);  // not erased before
    EXPECT_EQ(bench.cell(5), "0BCD");
    EXPECT_EQ(bench.ask("W0000\r"), "W0000" + written);
    bench.ask("W00C5\r");
    EXPECT_EQ(bench.cell(5), "0BCD");
    EXPECT_EQ(bench.ask("M00C50102\r"), "M00C50102\rZZE\r");  // no read instruction
    EXPECT_EQ(bench.ask("M0085\r"), "M0085\r");
}

TEST(SentinelMech, GoesWrongAsTheBenchSays) {
    struct Case {
        const char* fault;
        const char* first;
        const char* second;  // answers to reading word 58
    };
    for (const Case& c : {Case{"fault refuse", "ZZE\r", "ZZRD0ZZD2\r"},
                          Case{"fault mech-silent after 1", "ZZRD0ZZD2\r", ""},
                          Case{"fault mech-cut value 4", "ZZRD\r", "ZZRD0ZZD2\r"}}) {
        SentinelBench bench;
        bench.bench(c.fault);
        EXPECT_EQ(bench.ask("M00BA0102\r").substr(10), c.first) << c.fault;
        EXPECT_EQ(bench.ask("M00BA0102\r").substr(10), c.second) << c.fault;
    }
    SentinelBench bench;
    bench.bench("fault stuck value 5");
    bench.bench("fault refuse after 3");
    for (const char* command : {"W0030\r", "W00C5\r", "W00453412\r", "W00C5\r", "W00453412\r"}) {
        bench.ask(command);
    }
    EXPECT_EQ(bench.cell(5), "0000");  // stuck, and then the erasing refused
    bench.ask("W00C5\rW00453412\r");
    EXPECT_EQ(bench.cell(5), "1234");
}

}  // namespace
}  // namespace vantor::boxsim::test
