#pragma once

#include <cstdint>
#include <functional>

namespace vantor::campaign {

/// What is to be run.
struct Order {
    std::uint64_t first = 1;
    int sessions = 1000;
    int processes = 1;
};

/// Runs the sessions of an order in processes of their own, so that a session that crashes or
/// hangs is a violation like any other. Prints the table and the violating seeds; the result is
/// their number. `enter` is called in every process before its first session.
[[nodiscard]] int runCampaign(const Order& order, const std::function<void()>& enter);

/// One seed in this process, told in full; the result is the number of violations.
[[nodiscard]] int runOne(std::uint64_t seed, bool verbose);

}  // namespace vantor::campaign
