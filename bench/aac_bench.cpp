// The kernels of the AAC decoder that have more than one instruction-set level. The argument of
// every benchmark is the level; a level above the processor's is skipped.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "aac/filter_bank_kernels.h"
#include "aac/inverse_quantization.h"
#include "tables/aac_windows.h"

namespace zetac::aac {
namespace {

using Values = std::vector<Zet32s>;

// A spectrum that falls off towards high frequencies, as music does.
Values spectrum(double amplitude) {
    std::mt19937 random(1);
    std::exponential_distribution<double> magnitude(1);
    Values values(1024);
    for (int k = 0; k < 1024; ++k) {
        const double value = amplitude * magnitude(random) / (1 + k / 64.0);
        values[k] = static_cast<Zet32s>(random() & 1 ? value : -value);
    }
    return values;
}

bool isMissing(benchmark::State& state) {
    if (state.range(0) <= static_cast<int>(core::currentLevel())) return false;
    state.SkipWithError("not on this processor");
    return true;
}

// The work includes the copy that restores the input.
template <class Work>
void run(benchmark::State& state, const Values& input, Work work) {
    if (isMissing(state)) return;
    Values values(input.size());
    for (auto _ : state) {
        std::copy(input.begin(), input.end(), values.begin());
        work(static_cast<size_t>(state.range(0)), values.data());
        benchmark::DoNotOptimize(values.data());
        benchmark::ClobberMemory();
    }
}

void inverseTransformLong(benchmark::State& state) {
    run(state, spectrum(1e8),
        [](size_t level, Zet32s* x) { kFilterBankKernels[level].inverseTransformLong(x); });
}

void inverseTransformShort(benchmark::State& state) {
    run(state, spectrum(1e8),
        [](size_t level, Zet32s* x) { kFilterBankKernels[level].inverseTransformShort(x); });
}

void overlapAddLong(benchmark::State& state) {
    Values overlap(1024);
    run(state, spectrum(1e5), [&](size_t level, Zet32s* x) {
        kFilterBankKernels[level].overlapAddLong(x, overlap.data(), tables::pWinKBDLong,
                                                 tables::pWinSINLong);
    });
}

void storePcm(benchmark::State& state) {
    std::vector<Zet16s> pcm(2048);
    run(state, spectrum(1e4), [&](size_t level, Zet32s* x) {
        kFilterBankKernels[level].storePcm(x, pcm.data(), 2);
        benchmark::DoNotOptimize(pcm.data());
    });
}

void inverseQuantization(benchmark::State& state) {
    run(state, spectrum(6), [](size_t level, Zet32s* x) {
        for (int line = 0; line < 1024; line += 16) kQuantInvLines[level](x + line, 16, 130);
    });
}

BENCHMARK(inverseTransformLong)->DenseRange(0, core::kNumLevels - 1);
BENCHMARK(inverseTransformShort)->DenseRange(0, core::kNumLevels - 1);
BENCHMARK(overlapAddLong)->DenseRange(0, core::kNumLevels - 1);
BENCHMARK(storePcm)->DenseRange(0, core::kNumLevels - 1);
BENCHMARK(inverseQuantization)->DenseRange(0, core::kNumLevels - 1);

}  // namespace
}  // namespace zetac::aac
