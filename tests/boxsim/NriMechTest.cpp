#include "MechBench.h"

namespace vantor::boxsim::test {
namespace {

const std::string kAck = "\x06";

struct NriBench : MechBench {
    explicit NriBench(std::string_view model, std::string_view mode = "$05")
        : MechBench("NRI", model) {
        enter("C00", mode);
    }
};

TEST(NriMechs, SayWhoTheyAreOnlyUnderTheirOwnModeCommand) {
    struct Case {
        const char* model;
        const char* mode;
        const char* identity;
    };
    const Case cases[] = {{"G13-0000", "$01", "0\r"},   {"G18-0000", "$01", "?\r"},
                          {"G13-6000", "$05", "07\r"},  {"G18-3000", "$05", "05\r"},
                          {"G40-0000", "$05", "02\r"},  {"G10-4000", "$23", "?\r"},
                          {"G10-4000/5", "$23", "06\r"}};
    for (const Case& c : cases) {
        for (const std::string mode : {"$01", "$05", "$23", "$25"}) {
            NriBench bench(c.model, mode);
            EXPECT_EQ(bench.ask("I"), mode == c.mode ? c.identity : "") << c.model << mode;
        }
        MechBench elsewhere("NRI", c.model);
        elsewhere.enter("C08", c.mode);
        EXPECT_EQ(elsewhere.ask("I"), "") << c.model;
    }
    NriBench late("G10-4000/5", "$23");
    late.bench("option mode $25");
    EXPECT_EQ(late.ask("I"), "");
    late.leave();
    late.enter("C00", "$25");
    late.bench("option identity 08");
    EXPECT_EQ(late.ask("I"), "08\r");
    EXPECT_FALSE(runBenchLine(late.box, "option mode $06").ok());
}

TEST(NriMechs, ABarredSessionStaysSilentUntilSerialModeIsLeft) {
    NriBench bench("G13-6000");
    bench.bench("fault no-session");
    EXPECT_EQ(bench.ask("I"), "");
    EXPECT_EQ(bench.ask("X00I"), "");
    bench.leave();
    bench.enter("C00", "$05");
    EXPECT_EQ(bench.ask("I"), "07\r");
}

TEST(NriHandshake, WritesStepByStepAndNeverBeyondTheBlock) {
    NriBench bench("G13-6000");
    EXPECT_EQ(bench.ask("X1C"), kAck + "?\r");
    EXPECT_EQ(bench.ask("Z"), kAck);
    EXPECT_EQ(bench.ask("02"), "");
    EXPECT_EQ(bench.ask("07"), kAck);
    EXPECT_EQ(bench.ask("0309"), kAck + kAck);
    EXPECT_EQ(bench.cell(3), "070309");
    EXPECT_EQ(bench.ask("FF"), "");  // the block is full
    EXPECT_EQ(bench.cell(3), "070309");
    // A letter that is no hexadecimal digit begins a new command, wherever it comes.
    EXPECT_EQ(bench.ask("Z021"), kAck);
    EXPECT_EQ(bench.ask("Z02AAX1"), kAck + kAck + kAck);
    EXPECT_EQ(bench.ask("I"), "07\r");
    EXPECT_EQ(bench.cell(3), "AA0309");
    EXPECT_EQ(bench.ask("Z1C00"), kAck + "?");
    EXPECT_EQ(bench.ask("\x1B\x1B"
                        "C00W$05"),
              "");
    EXPECT_EQ(bench.ask("I"), "07\r");
}

TEST(NriPlain, StoresWhatEndsAsItShould) {
    NriBench six("G18-0000", "$01");
    EXPECT_EQ(six.ask("D2101102103104\r"), "");
    const std::string before = six.cell(2);
    EXPECT_EQ(six.ask("001002003004"), "");
    EXPECT_EQ(six.cell(2), before);  // still in the middle
    EXPECT_EQ(six.ask("\r"), "");
    EXPECT_EQ(six.cell(2), "101102103104001002003004");
    EXPECT_EQ(six.ask("B010060050040030020010\r"), "");
    EXPECT_EQ(six.cell(7), "010060050040030020010");
    EXPECT_EQ(six.ask("E07/03/09\r"), "");
    EXPECT_EQ(six.ask("Z").substr(28, 8), "07/03/09");
    // Not of the form: nothing is stored, and the next command is understood.
    for (const char* line :
         {"D2101102103\r001002003\r", "D7101102103104\r001002003004\r",
          "D2101102103X04\r001002003004\r", "B01006\r", "E7/3/2009\r", "FG10-4000 R2::\r"}) {
        EXPECT_EQ(six.ask(line), "") << line;
    }
    EXPECT_EQ(six.ask("I"), "?\r");
    EXPECT_EQ(six.cell(2), "101102103104001002003004");
    EXPECT_EQ(six.cell(7), "010060050040030020010");
    EXPECT_EQ(six.cell(8), "07/03/09");

    NriBench eight("G10-4000", "$23");
    const std::string list =
        "G10-4000 R9"
        "0001000200030004"
        "00110012001300140015001600170018";
    eight.ask("F" + list + "\r");
    EXPECT_NE(eight.cell(9), list);  // two colons end it
    eight.ask(
        "\x1B"
        "::\r");
    EXPECT_NE(eight.cell(9), list);  // a CR more than there should be
    eight.ask("F" + list + "::\r");
    EXPECT_EQ(eight.cell(9), list);
}

TEST(NriMechs, GoWrongAsTheBenchSays) {
    struct Case {
        const char* model;
        const char* mode;
        const char* fault;
        const char* request;
        std::string first, second;
    };
    const std::string date = "110605\r";
    const Case cases[] = {
        {"G13-6000", "$05", "fault mech-silent after 1", "X02", kAck, kAck + date},
        {"G13-6000", "$05", "fault mech-silent", "X02", date, kAck + date},
        {"G13-6000", "$05", "fault refuse", "X02", kAck + "?\r", kAck + date},
        {"G13-6000", "$05", "fault refuse after 1", "Z02110605", kAck + kAck + "?",
         kAck + kAck + kAck + kAck},
        {"G13-6000", "$05", "fault mech-cut after 1 value 3", "X02", kAck + "110\r", kAck + date},
        {"G13-6000", "$05", "fault mech-late after 1 value 5000", "X02", kAck, kAck + date + date},
        {"G10-4000", "$23", "fault refuse", "Z", "?\r",
         "SERIES 05 NO 0042719 ADJUST 23/09/06 OK\r"},
        {"G18-0000", "$01", "fault mech-cut value 10", "V6", "000\r000\r00\r",
         "000\r000\r000\r000\r000\r000\r000\r000\r"},
    };
    for (const Case& c : cases) {
        NriBench bench(c.model, c.mode);
        bench.bench(c.fault);
        EXPECT_EQ(bench.ask(c.request), c.first) << c.fault;
        EXPECT_EQ(bench.ask(c.request), c.second) << c.fault;
    }
    NriBench handshake("G40-0000");
    handshake.bench("fault stuck value 3");
    EXPECT_EQ(handshake.ask("Z02010203"), kAck + kAck + kAck + kAck);
    EXPECT_EQ(handshake.cell(3), "1C0B06");
    handshake.ask("Z02010203");
    EXPECT_EQ(handshake.cell(3), "010203");
    NriBench plain("G13-0000", "$01");
    plain.bench("fault stuck value 8");
    plain.ask("E01/02/03\r");
    EXPECT_EQ(plain.cell(8), "14/02/05");
    plain.ask("E01/02/03\r");
    EXPECT_EQ(plain.cell(8), "01/02/03");
}

}  // namespace
}  // namespace vantor::boxsim::test
