#include <gtest/gtest.h>

#include "LinkWorld.h"
#include "RecordedProgress.h"
#include "boxsim/SimulatedBox.h"
#include "mars/MarsFamily.h"

namespace vantor {
namespace {

struct BoxLine {
    VirtualEventLoop loop;
    boxsim::SimulatedBox box{loop, 1};
    boxsim::SimulatedPort port{loop, box};
};

/// The link floor against the simulated box, which knows none of the family's encoders.
struct Bench : test::LinkOn<BoxLine> {
    test::RecordedProgress progress;
    MarsFamily mars{state, link, prompts, errors, progress};

    explicit Bench(std::string_view model) {
        receiver.sinks.promLine = [this](std::string_view line) { mars.parsePromLine(line); };
        families.add(mars);
        select(kMars, model);
        EXPECT_TRUE(box.plugValidator(kMars, model)) << model;
        link.startupPort();
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
