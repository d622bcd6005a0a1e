#include <cmath>
#include <filesystem>
#include <map>
#include <set>

#include "BoxBench.h"
#include "boxsim/Coins.h"
#include "boxsim/MarsMech.h"
#include "catalogue/MechCatalogue.h"
#include "platform/Files.h"

namespace vantor::boxsim::test {
namespace {

bool meantToBeAlike(std::string_view a, std::string_view b) {
    const std::set<std::string_view> pair = {a, b};
    return pair == std::set<std::string_view>{"1 Dorin", "Old 1 Dorin"} ||
           pair == std::set<std::string_view>{"50 Pell", "Plated Disc"};
}

TEST(Coins, EachMarsModelTellsThemApartAndReadsThemInRange) {
    constexpr std::array kHighest = {3000.0, 3000.0, 4000.0};
    for (const std::string_view model : listedModels(kMars)) {
        const MarsMech mech(model);
        for (const CoinPiece& a : coinBag()) {
            const MarsPopulation pa = mech.population(a);
            for (std::size_t p = 0; p < 3; ++p) {
                EXPECT_GT(pa[p].mean - 6 * pa[p].spread, 2) << model << " " << a.name;
                EXPECT_LT(pa[p].mean + 6 * pa[p].spread, kHighest[p]) << model << " " << a.name;
            }
            for (const CoinPiece& b : coinBag()) {
                if (&a == &b) continue;
                const MarsPopulation pb = mech.population(b);
                bool apart = false;
                for (std::size_t p = 0; p < 3; ++p) {
                    // Windows of three spreads on either side, with room for offsets.
                    apart = apart || std::abs(pa[p].mean - pb[p].mean) >
                                         3 * (pa[p].spread + pb[p].spread) + 12;
                }
                EXPECT_EQ(apart, !meantToBeAlike(a.name, b.name))
                    << model << ": " << a.name << " and " << b.name;
            }
        }
    }
}

TEST(Coins, DrawsFollowTheirPopulation) {
    const MarsMech mech("MS1400");
    const MarsPopulation population = mech.population(*findCoin("5 Dorin"));
    Random random(42);
    constexpr int kDraws = 4000;
    std::array<double, 3> sum{}, squares{};
    for (int i = 0; i < kDraws; ++i) {
        const auto reading = mech.draw("5 DORIN", random);
        ASSERT_TRUE(reading);
        for (std::size_t p = 0; p < 3; ++p) {
            const double off = reading->at(p) - population[p].mean;
            sum[p] += off;
            squares[p] += off * off;
        }
    }
    for (std::size_t p = 0; p < 3; ++p) {
        EXPECT_LT(std::abs(sum[p] / kDraws), 0.08 * population[p].spread);
        EXPECT_NEAR(std::sqrt(squares[p] / kDraws), population[p].spread,
                    0.05 * population[p].spread);
    }
}

}  // namespace
}  // namespace vantor::boxsim::test
