#pragma once

#include "Plan.h"
#include "platform/EventLoop.h"

namespace vantor::campaign {

/// How long a step of a job may take at most: the sum of its time-outs over its exchanges, with
/// every answer as late as the program waits for it and every question answered by the hand at the
/// bench. See the source for the sums.
[[nodiscard]] Micros worstCase(const Plan& plan, int step);
/// The longest that any action of the selected mech can take: what a stray press may begin.
[[nodiscard]] Micros longestAction(const Plan& plan);
/// After so long without the end of a measurement the technician gives up.
[[nodiscard]] Micros patience();

}  // namespace vantor::campaign
