#include <gtest/gtest.h>

#include "BoxWorld.h"
#include "FixedCalendar.h"
#include "ScratchFolder.h"
#include "boxsim/SimulatedMech.h"
#include "nri/NriFamily.h"

namespace vantor {
namespace {

using boxsim::Fault;

struct Bench : test::BoxWorld {
    test::FixedCalendar calendar{{2026, 12, 31}};
    NriFamily nri{state, link, check, prompts, errors, progress, calendar, receiver.sinks, {}};
    test::ScratchFolder scratch;

    explicit Bench(std::string_view model) {
        state.app.folder = scratch.path;
        plugIn(nri, model);
    }

    /// As a coinset run ends: old memory, then limits of its own for two channels.
    void prepare() {
        for (int channel = 1; channel <= kChannels; ++channel) {
            state.coinset.oldChannelSource[channel] = channel;
        }
        nri.readOldMemory();
        for (const int channel : {2, 5}) {
            for (int column = 1; column <= 2 * state.n(); ++column) {
                state.limits.channelLimits[channel][column] = 20 * channel + column;
            }
            state.nri.next.coinValues[channel] = 5 * channel;
        }
    }
    [[nodiscard]] std::string memory() {
        std::string all;
        for (const auto& cell : box.mech()->memory()) all += cell.content + "\n";
        return all;
    }
};

// A fault at each of many places: whatever is said, serial mode is left, and a handshake mech is
// never said to be programmed when it is not.
TEST(NriOnTheBox, FaultsOfTheMechAtEveryStep) {
    for (const std::string_view model : {"G40-0000", "G10-4000/5", "G13-0000"}) {
        Bench good(model);
        good.prepare();
        ASSERT_TRUE(good.nri.programAndVerify());
        const std::string intended = good.memory();
        const bool handshake = nriModel(model).handshake;
        for (const Fault::Kind kind : {Fault::Kind::mechSilent, Fault::Kind::mechLate,
                                       Fault::Kind::mechCut, Fault::Kind::mechRefuses}) {
            for (int after = 0; after < 120; after += 19) {
                const std::string what = std::string(model) + " " +
                                         std::to_string(static_cast<int>(kind)) + " after " +
                                         std::to_string(after);
                const Fault fault{
                    .kind = kind, .after = after, .value = kind == Fault::Kind::mechLate ? 700 : 3};
                Bench bench(model);
                bench.prepare();
                ASSERT_TRUE(bench.state.oldImageWhole()) << what;
                bench.box.addFault(fault);
                const bool programmed = bench.nri.programAndVerify();
                EXPECT_EQ(bench.prompts.told("Programmed OK"), programmed) << what;
                if (programmed && handshake) {
                    EXPECT_EQ(bench.memory(), intended) << what;
                }
                bench.box.clearFaults();
                EXPECT_FALSE(bench.box.inSerialMode() || bench.progress.open) << what;

                bench.box.addFault(fault);
                const bool whole = bench.nri.readMemory();
                bench.box.clearFaults();
                if (whole) {
                    const NriFields read = bench.state.nri.old;
                    ASSERT_TRUE(bench.nri.readMemory()) << what;
                    EXPECT_EQ(read.limits, bench.state.nri.old.limits) << what;
                    EXPECT_EQ(read.coinValues, bench.state.nri.old.coinValues) << what;
                    EXPECT_EQ(read.parameterMap, bench.state.nri.old.parameterMap) << what;
                }
                EXPECT_FALSE(bench.box.inSerialMode() || bench.progress.open) << what;
            }
        }
    }
}

TEST(NriOnTheBox, AMechBehindALineThatFellSilentIsNotProgrammed) {
    for (const std::string_view model : {"G13-6000", "G13-0000", "G10-4000"}) {
        Bench good(model);
        good.prepare();
        ASSERT_TRUE(good.nri.programAndVerify());
        for (int after = 30; after < 200; after += 45) {
            Bench bench(model);
            bench.prepare();
            bench.box.addFault(
                {.kind = Fault::Kind::stall, .where = Fault::Where::fromPc, .after = after});
            for (int i = 0; i < 3; ++i) bench.prompts.expect("No Response", Answer::ok);
            EXPECT_FALSE(bench.nri.programAndVerify()) << model << after;
            EXPECT_NE(bench.memory(), good.memory()) << model << after;
            EXPECT_FALSE(bench.prompts.told("Programmed OK")) << model << after;
        }
    }
}

TEST(NriOnTheBox, BytesLostOnTheWayNeverMakeAReadWhole) {
    for (const std::string_view model : {"G18-3000", "G13-0000"}) {
        for (const Fault::Kind kind : {Fault::Kind::dropByte, Fault::Kind::repeatByte}) {
            for (int after = 4; after < 700; after += 53) {
                Bench bench(model);
                bench.nri.readMemory();
                const NriFields good = bench.state.nri.old;
                bench.box.addFault({.kind = kind, .after = after});
                const bool whole = bench.nri.readMemory();
                bench.box.clearFaults();
                EXPECT_FALSE(bench.box.inSerialMode());
                if (!whole) continue;
                EXPECT_EQ(bench.state.nri.old.limits, good.limits) << model << " after " << after;
                EXPECT_EQ(bench.state.nri.old.coinValues, good.coinValues) << model << after;
                EXPECT_EQ(bench.state.nri.old.outputs, good.outputs) << model << after;
            }
        }
    }
}

}  // namespace
}  // namespace vantor
