#pragma once

#include <vector>

#include "Plan.h"
#include "platform/EventLoop.h"

namespace vantor::campaign {

/// What a job does when nobody disturbs it: so that a fault is put where it can strike, and a
/// press where something is going on.
class Rehearsal {
  public:
    struct Step {
        Micros length{};
        std::vector<int> chances;  ///< of each row of `faultRows`, on the way from the box
        std::vector<int> fromPc;   ///< the same on the way to the box
        std::vector<int> changed;  ///< numbers of the cells that have another content afterwards
    };

    /// Plays the job of the plan, without its fault, its presses and its other whims.
    explicit Rehearsal(const Plan& plan);

    [[nodiscard]] bool done() const { return done_; }
    [[nodiscard]] Micros length() const;
    /// Puts the fault and the presses of the plan at their moments.
    void place(Plan& plan) const;

  private:
    [[nodiscard]] int chances(const Plan& plan, int step) const;

    std::vector<Step> steps_;
    bool done_ = false;
};

/// The rehearsal of such a job; each is played once.
[[nodiscard]] const Rehearsal& rehearsalOf(const Plan& plan);

}  // namespace vantor::campaign
