// The fixed-point QMF banks, one slot a call, and the predictors, one band a call. The argument of
// a bank is the level; a level above the processor's is skipped.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "sbr/qmf_fixed_kernels.h"

namespace zetac::sbr {
namespace {

std::vector<Zet32sc> randomPairs(size_t count) {
    std::mt19937 random(1);
    std::vector<Zet32sc> values(count);
    for (Zet32sc& x : values)
        x = {static_cast<Zet32s>(random()) >> 8, static_cast<Zet32s>(random()) >> 8};
    return values;
}

template <class Source, class Result>
void measure(benchmark::State& state,
             void (*QmfFixedKernels::*kernel)(const Source*, Result*, Zet32s*, int),
             int slotLength) {
    if (state.range(0) > static_cast<int>(core::currentLevel())) {
        state.SkipWithError("not on this processor");
        return;
    }
    const QmfFixedKernels& kernels = kQmfFixedKernels[static_cast<size_t>(state.range(0))];
    const std::vector<Zet32sc> source = randomPairs(64);
    std::vector<Result> result(64);
    std::vector<Zet32s> line(static_cast<size_t>(kQmfSlots * slotLength));
    int position = 0;
    for (auto _ : state) {
        (kernels.*kernel)(reinterpret_cast<const Source*>(source.data()), result.data(),
                          line.data(), position);
        position = (position > 0 ? position : kQmfSlots * slotLength) - slotLength;
        benchmark::ClobberMemory();
    }
}

#define ZETAC_BENCH(kernel, slotLength)                       \
    void kernel(benchmark::State& state) {                    \
        measure(state, &QmfFixedKernels::kernel, slotLength); \
    }                                                         \
    BENCHMARK(kernel)->DenseRange(0, core::kNumLevels - 1)

ZETAC_BENCH(analysisHQ, 32);
ZETAC_BENCH(analysisLP, 32);
ZETAC_BENCH(synthesisHQ, 128);
ZETAC_BENCH(synthesisLP, 128);
ZETAC_BENCH(synthesisDownHQ, 64);
ZETAC_BENCH(synthesisDownLP, 64);

// A block of 32 slots.
void predictHQ(benchmark::State& state) {
    const std::vector<Zet32sc> source = randomPairs(64 * 34);
    std::vector<const Zet32sc*> rows;
    for (size_t n = 0; n < 34; ++n) rows.push_back(source.data() + 64 * n);
    Zet32sc alpha0, alpha1;
    for (auto _ : state) {
        zetsPredictOneCoef_SBRHQ_32sc_D2L(rows.data(), &alpha0, &alpha1, 5, 32);
        benchmark::DoNotOptimize(alpha0);
        benchmark::DoNotOptimize(alpha1);
    }
}
BENCHMARK(predictHQ);

}  // namespace
}  // namespace zetac::sbr
