#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "MechBench.h"
#include "catalogue/MechCatalogue.h"

namespace vantor::boxsim::test {
namespace {

/// Sensors that a mech's parameters are, where it has more of them.
std::vector<std::size_t> measuredSensors(const MechModel& model) {
    if (model.code == "G13-6000") return {4, 1, 2, 0, 5, 6};
    if (model.code == "G40-0000") return {0, 1, 3, 6, 8, 10};
    std::vector<std::size_t> all;
    for (int p = 0; p < model.paramCount; ++p) all.push_back(static_cast<std::size_t>(p));
    return all;
}

struct Spread {
    double mean = 0;
    double deviation = 0;
};

std::vector<Spread> measured(const SimulatedMech& mech, const MechModel& model,
                             const std::string& coin) {
    constexpr int kDraws = 300;
    Random random(5);
    std::map<std::size_t, std::pair<double, double>> sums;
    for (int i = 0; i < kDraws; ++i) {
        const auto reading = mech.draw(coin, random).value_or(CoinReading{});
        for (const std::size_t sensor : measuredSensors(model)) {
            const int value = reading.at(sensor);
            EXPECT_TRUE(value > 2 && value < 253) << model.code << coin << sensor;
            sums[sensor].first += value;
            sums[sensor].second += value * value;
        }
    }
    std::vector<Spread> spreads;
    for (const std::size_t sensor : measuredSensors(model)) {
        const double mean = sums[sensor].first / kDraws;
        spreads.push_back({mean, std::sqrt(sums[sensor].second / kDraws - mean * mean)});
    }
    return spreads;
}

TEST(Coins, EachSerialModelTellsThemApart) {
    const std::set<std::set<std::string>> alike = {{"1 Dorin", "Old 1 Dorin"},
                                                   {"50 Pell", "Plated Disc"}};
    for (const MechModel& model : mechModels()) {
        if (model.maker == kMars) continue;
        MechBench bench(model.maker, model.code);
        std::map<std::string, std::vector<Spread>> coins;
        for (const std::string& coin : bench.box.coins()) {
            coins[coin] = measured(*bench.box.mech(), model, coin);
        }
        for (const auto& [a, pa] : coins) {
            for (const auto& [b, pb] : coins) {
                if (a == b) continue;
                bool apart = false;
                for (std::size_t p = 0; p < pa.size(); ++p) {
                    apart = apart || std::abs(pa[p].mean - pb[p].mean) >
                                         3 * (pa[p].deviation + pb[p].deviation) + 5;
                }
                EXPECT_EQ(apart, !alike.contains({a, b})) << model.code << ": " << a << ", " << b;
            }
        }
    }
}

}  // namespace
}  // namespace vantor::boxsim::test
