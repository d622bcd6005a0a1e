#include <gtest/gtest.h>

#include "BoxWorld.h"
#include "mars/MarsFamily.h"

namespace vantor {
namespace {

struct Bench : test::BoxWorld {
    MarsFamily mars{state, link, prompts, errors, progress};

    explicit Bench(std::string_view model) {
        receiver.sinks.promLine = [this](std::string_view line) { mars.parsePromLine(line); };
        plugIn(mars, model);
        state.prom.promSizeCode = 1;
        state.prom.segmentSelected[0] = state.prom.segmentSelected[1] = true;
        for (int channel = 1; channel <= 12; ++channel) {
            for (int column = 1; column <= 6; ++column) {
                state.limits.channelLimits[channel][column] = 331 * channel + 17 * column;
            }
            state.nriNew.newCoinValue[channel] = 20 * channel;
        }
        state.coinset.referenceCode = "GBP01";
        state.coinset.version = "1.2";
        mars.rebuildImage();
    }
    bool programE1() {
        box.insertProm(boxsim::PromKind::e1, 512);
        prompts.expect("BOTH SWITCHES ON", Answer::ok, [this] {
            box.setSwitch(1, true);
            box.setSwitch(2, true);
        });
        prompts.expect("TURN SWITCH 2 OFF", Answer::ok, [this] { box.setSwitch(2, false); });
        return mars.programAndVerify();
    }
};

using boxsim::Fault;

TEST(MarsOnTheBox, NoDamageOfTheLineMakesABadPromGood) {
    // Cell 1 is wrong; the fault then walks over the line that would say so.
    constexpr int kAcknowledgedBytes = 2 * 16;
    constexpr int kLineBytes = 40;
    for (const Fault::Kind kind : {Fault::Kind::dropByte, Fault::Kind::repeatByte,
                                   Fault::Kind::insertByte, Fault::Kind::cutLine}) {
        for (int at = 0; at < kLineBytes; ++at) {
            Bench bench("ME111");
            bench.box.addFault({.kind = Fault::Kind::stuckCell, .times = -1, .value = 1});
            bench.box.addFault({.kind = kind, .after = kAcknowledgedBytes + at, .value = '1'});
            EXPECT_FALSE(bench.programE1()) << static_cast<int>(kind) << " at " << at;
        }
    }
}

}  // namespace
}  // namespace vantor
