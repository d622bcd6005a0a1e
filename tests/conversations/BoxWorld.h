#pragma once

#include "LinkWorld.h"
#include "RecordedProgress.h"
#include "boxsim/SimulatedBox.h"

namespace vantor::test {

struct BoxLine {
    VirtualEventLoop loop;
    boxsim::SimulatedBox box{loop, 1};
    boxsim::SimulatedPort port{loop, box};
};

/// The link floor against the simulated box, which knows none of the families' encoders.
struct BoxWorld : LinkOn<BoxLine> {
    RecordedProgress progress;

    /// The mech of this family, behind the box and selected.
    void plugIn(MechFamily& family, std::string_view model) {
        families.add(family);
        select(family.code(), model);
        EXPECT_TRUE(box.plugValidator(family.code(), model)) << model;
        link.startupPort();
    }
};

}  // namespace vantor::test
