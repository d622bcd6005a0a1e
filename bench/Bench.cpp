#include <benchmark/benchmark.h>

#include "catalogue/SessionState.h"
#include "limits/Estimate.h"
#include "limits/Overlap.h"
#include "mars/MarsImage.h"
#include "mars/MarsModels.h"
#include "measure/CoinsetFile.h"
#include "measure/Fliers.h"
#include "measure/Statistics.h"

// The computations that a technician waits for: after every drop, on every segment change, at
// the start and the end of a run.

namespace vantor {
namespace {

void fillReadings(MeasurementSession& item, int parameters) {
    item.readingCount = kMostReadings;
    for (int r = 1; r <= kMostReadings; ++r) {
        for (int p = 1; p <= parameters; ++p) item.readings[r][p] = 1000 + 37 * p + (r * 7919) % 41;
    }
    item.flierTolerance.fill(5);
}

void recomputeAfterADrop(benchmark::State& run) {
    auto item = std::make_unique<MeasurementSession>();
    fillReadings(*item, kMaxParameters);
    const StatisticsRules rules{.paramCount = kMaxParameters, .capacity = 4095};
    for (auto _ : run) {
        calcStats(*item, rules);
        benchmark::DoNotOptimize(item->limits);
    }
}
BENCHMARK(recomputeAfterADrop)->Unit(benchmark::kMicrosecond);

void eliminateFliers(benchmark::State& run) {
    auto item = std::make_unique<MeasurementSession>();
    fillReadings(*item, kMaxParameters);
    for (auto _ : run) benchmark::DoNotOptimize(findFliers(*item));
}
BENCHMARK(eliminateFliers)->Unit(benchmark::kMicrosecond);

/// Every channel with six coins, and six slugs.
std::unique_ptr<SessionState> fullTable(int parameters) {
    auto state = std::make_unique<SessionState>();
    for (int row = 0; row < 99; ++row) {
        for (int p = 0; p < parameters; ++p) {
            state->coinTable.itemStats[row][p] = static_cast<float>(100 + row);
            state->coinTable.itemStats[row][parameters + p] = 1.5F;
            state->coinTable.itemStats[row][2 * parameters + p] = 2.5F;
            state->coinTable.itemLimits[row][2 * p + 2] = 90 + row;
            state->coinTable.itemLimits[row][2 * p + 3] = 110 + row;
        }
    }
    for (int channel = 1; channel <= kChannels; ++channel) {
        auto& coins = state->limits.channelCoins[channel];
        coins.count = kMostCoinsPerChannel;
        for (int k = 1; k <= kMostCoinsPerChannel; ++k) coins.rows[k] = channel + k;
        for (int p = 0; p < parameters; ++p) {
            state->limits.channelLimits[channel][2 * p + 1] = 90 + 2 * channel;
            state->limits.channelLimits[channel][2 * p + 2] = 120 + 2 * channel;
        }
    }
    state->limits.slugCount = kMostSlugs;
    for (int slug = 1; slug <= kMostSlugs; ++slug) state->limits.slugList[slug] = 40 + slug;
    return state;
}

void judgeASegment(benchmark::State& run) {
    const auto state = fullTable(kMaxParameters);
    const SegmentView view{.paramCount = kMaxParameters,
                           .channelCount = 12,
                           .channelsPerSegment = 6,
                           .firstChannel = 1,
                           .rules = {}};
    for (auto _ : run) {
        benchmark::DoNotOptimize(findOverlaps(state->limits, state->coinTable, view));
        for (int channel = 1; channel <= kChannels; ++channel) {
            benchmark::DoNotOptimize(acceptanceOf(channel, state->limits, state->coinTable, view));
        }
        for (int slug = 1; slug <= kMostSlugs; ++slug) {
            benchmark::DoNotOptimize(
                rejectionOf(state->limits.slugList[slug], state->limits, state->coinTable, view));
        }
    }
}
BENCHMARK(judgeASegment)->Unit(benchmark::kMicrosecond);

void parseACoinset(benchmark::State& run) {
    const std::string record = "CD,Fifty,A1,12,2,-5,2,5,4,3,-8,3,8,4,M,-20,M,20,5";
    for (auto _ : run) {
        for (int line = 0; line < 100; ++line) {
            benchmark::DoNotOptimize(parseCoinsetRecord(record, 3, false));
        }
    }
}
BENCHMARK(parseACoinset)->Unit(benchmark::kMicrosecond);

void buildAnImage(benchmark::State& run) {
    const auto state = fullTable(3);
    const MarsLayout& layout = marsModel("ME111").layout;
    SegmentFlags selected;
    selected.fill(true);
    MechImage image;
    for (auto _ : run) {
        for (int segment = 0; segment < kMarsSegments; ++segment) {
            mapMarsSegment(image, state->limits.channelLimits, segment);
        }
        addCoinsetReference(image, layout, selected, "AB123", "1.0");
        setChangeFlag(image, layout, selected, false);
        benchmark::DoNotOptimize(image);
    }
}
BENCHMARK(buildAnImage)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vantor

BENCHMARK_MAIN();
