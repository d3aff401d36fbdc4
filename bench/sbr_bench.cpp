// The floating QMF banks: the time of one slot in a call of 32, and, named "alone", in a call of
// one. The argument of every benchmark is the level; a level above the processor's is skipped.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "sbr/qmf_float_bank.h"
#include "transform/fft_spec.h"

namespace zetac::sbr {
namespace {

constexpr int kSlots = 32;

std::vector<Zet32f> randomValues(size_t count) {
    std::mt19937 random(1);
    std::vector<Zet32f> values(count);
    for (Zet32f& value : values) value = static_cast<Zet32f>(random()) * 0x1p-31f - 1;
    return values;
}

// Rows of 64 values, or of 64 pairs, and a bank's state.
struct Setting {
    std::vector<Zet32f> samples = randomValues(64 * kSlots);
    std::vector<Zet32f> values = randomValues(256 * kSlots);
    std::vector<Zet32f> window = randomValues(640);
    std::vector<Zet32f> delays = randomValues(1284);
    Zet32s position = 0;
    std::vector<Zet8u> memory = std::vector<Zet8u>(65536);

    DelayLine line() { return {delays.data(), &position}; }
    template <class Value>
    QmfRows<Value> rows(int first, int count, bool parted) {
        QmfRows<Value> result{};
        for (int i = 0; i < count; ++i) {
            result.re[i] = values.data() + 256 * (first + i);
            if (parted) result.im[i] = result.re[i] + 128;
        }
        return result;
    }
    const transform::FftPlan& fft(int order) {
        ZetsFFTSpec_C_32fc* spec = nullptr;
        zetsFFTInit_C_32fc(&spec, order, zetFftNoDiv, zetAlgHintNone, memory.data(), nullptr);
        return spec->plan;
    }
    const transform::DctSpec& dct(int len) {
        ZetsDCTFwdSpec_32f* spec = nullptr;
        zetsDCTFwdInit_32f(&spec, len, zetAlgHintNone, memory.data(), memory.data());
        return *spec;
    }
};

// run(kernels, first, count) over slots of a call, again and again.
template <class Run>
void measure(benchmark::State& state, int slots, Run run) {
    if (state.range(0) > static_cast<int>(core::currentLevel())) {
        state.SkipWithError("not on this processor");
        return;
    }
    const QmfFloatKernels& kernels = kQmfFloatKernels[static_cast<size_t>(state.range(0))];
    for (auto _ : state) {
        for (int first = 0; first < slots; first += kernels.lanes)
            run(kernels, first, std::min(kernels.lanes, slots - first));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * slots);
}

template <class Transform>
void analysis(benchmark::State& state,
              void (*QmfFloatKernels::*kernel)(const AnalysisBatch&, const Transform&),
              const Transform& transform, Setting& setting, bool parted, int slots) {
    measure(state, slots, [&](const QmfFloatKernels& kernels, int first, int count) {
        (kernels.*kernel)({count, 32, setting.samples.data() + 32 * first, setting.window.data(),
                           setting.line(), setting.rows<Zet32f>(first, count, parted)},
                          transform);
    });
}

template <class Transform>
void synthesis(benchmark::State& state,
               void (*QmfFloatKernels::*kernel)(const SynthesisBatch&, const Transform&),
               const Transform& transform, Setting& setting, bool parted, int slots) {
    measure(state, slots, [&](const QmfFloatKernels& kernels, int first, int count) {
        (kernels.*kernel)({count, setting.samples.data() + 64 * first, setting.window.data(),
                           setting.line(), setting.rows<const Zet32f>(first, count, parted)},
                          transform);
    });
}

void analyzeReal(benchmark::State& state) {
    Setting setting;
    analysis(state, &QmfFloatKernels::analyzeReal, setting.dct(32), setting, false, kSlots);
}
void analyzeParts(benchmark::State& state) {
    Setting setting;
    analysis(state, &QmfFloatKernels::analyzeComplex, setting.fft(5), setting, true, kSlots);
}
void analyzePairs(benchmark::State& state) {
    Setting setting;
    analysis(state, &QmfFloatKernels::analyzeComplex, setting.fft(5), setting, false, kSlots);
}
void analyzePairsAlone(benchmark::State& state) {
    Setting setting;
    analysis(state, &QmfFloatKernels::analyzeComplex, setting.fft(5), setting, false, 1);
}
void synthesizeReal(benchmark::State& state) {
    Setting setting;
    synthesis(state, &QmfFloatKernels::synthesizeReal, setting.dct(64), setting, false, kSlots);
}
void synthesizeParts(benchmark::State& state) {
    Setting setting;
    synthesis(state, &QmfFloatKernels::synthesizeComplex, setting.fft(5), setting, true, kSlots);
}
void synthesizePairs(benchmark::State& state) {
    Setting setting;
    synthesis(state, &QmfFloatKernels::synthesizeComplex, setting.fft(5), setting, false, kSlots);
}
void synthesizePairsAlone(benchmark::State& state) {
    Setting setting;
    synthesis(state, &QmfFloatKernels::synthesizeComplex, setting.fft(5), setting, false, 1);
}
void synthesizeDownReal(benchmark::State& state) {
    Setting setting;
    synthesis(state, &QmfFloatKernels::synthesizeDownReal, setting.dct(32), setting, false, kSlots);
}
void synthesizeDownPairs(benchmark::State& state) {
    Setting setting;
    synthesis(state, &QmfFloatKernels::synthesizeDownComplex, setting.fft(6), setting, false,
              kSlots);
}

BENCHMARK(analyzeReal)->DenseRange(0, core::kNumLevels - 1);
BENCHMARK(analyzeParts)->DenseRange(0, core::kNumLevels - 1);
BENCHMARK(analyzePairs)->DenseRange(0, core::kNumLevels - 1);
BENCHMARK(analyzePairsAlone)->DenseRange(0, core::kNumLevels - 1);
BENCHMARK(synthesizeReal)->DenseRange(0, core::kNumLevels - 1);
BENCHMARK(synthesizeParts)->DenseRange(0, core::kNumLevels - 1);
BENCHMARK(synthesizePairs)->DenseRange(0, core::kNumLevels - 1);
BENCHMARK(synthesizePairsAlone)->DenseRange(0, core::kNumLevels - 1);
BENCHMARK(synthesizeDownReal)->DenseRange(0, core::kNumLevels - 1);
BENCHMARK(synthesizeDownPairs)->DenseRange(0, core::kNumLevels - 1);

}  // namespace
}  // namespace zetac::sbr
