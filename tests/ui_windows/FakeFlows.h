#pragma once

#include <functional>
#include <string>
#include <vector>

#include "limits/LimitsReview.h"
#include "measure/MeasureFlows.h"

namespace vantor::test {

/// What the windows called, in order, in place of the flows behind them.
struct FlowCalls {
    std::vector<std::string> made;
    std::function<void()> duringCall;  ///< runs inside every call
    void add(std::string call);
    std::string take();  ///< the calls so far, joined by blanks; forgets them
};

FlowCalls& flowCalls();

}  // namespace vantor::test
