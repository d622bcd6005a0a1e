#pragma once

#include "FakeLimitsDisplay.h"
#include "FakeMeasureDisplay.h"
#include "link/ProgressDisplay.h"

// The displays of a program that nobody looks at.

namespace vantor::test {

class NoProgress final : public ProgressDisplay {
  public:
    void openProgress(const std::string&, const std::string&, bool) override {}
    void showProgress(int) override {}
    void showSegment(int) override {}
    void closeProgress() override {}
};

}  // namespace vantor::test
