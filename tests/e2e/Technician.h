#pragma once

#include <gtest/gtest.h>

#include "BenchHand.h"
#include "Hands.h"

namespace vantor::test {

/// The bench's hand in a test: what it cannot do is a failure.
class Technician : public BenchHand {
  public:
    Technician(EventLoop& loop, boxsim::SimulatedBox& box) : BenchHand(loop, box) {
        complain = [](const std::string& what) { ADD_FAILURE() << what; };
    }
};

}  // namespace vantor::test
