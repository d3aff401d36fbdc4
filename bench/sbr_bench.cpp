// The floating QMF banks, slots per second in calls of 32 and, named "alone", in calls of one; the
// encoder's bank, slots per second; the predictors, bands per second for 38 slots, one SBR frame.
// The argument of every benchmark is the level; a level above the processor's is skipped.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "sbr/predict_float_kernels.h"
#include "sbr/qmf_encoder_kernels.h"
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

bool isMissing(benchmark::State& state) {
    if (state.range(0) <= static_cast<int>(core::currentLevel())) return false;
    state.SkipWithError("not on this processor");
    return true;
}

// run(kernels, first, count) over slots of a call, again and again.
template <class Run>
void measure(benchmark::State& state, int slots, Run run) {
    if (isMissing(state)) return;
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

void encode(benchmark::State& state) {
    if (isMissing(state)) return;
    const auto level = static_cast<size_t>(state.range(0));
    Setting setting;
    const transform::FftPlan& plan = setting.fft(6);
    alignas(64) Zet32f re[64], im[64];
    Zet32fc bands[64];
    for (auto _ : state) {
        kQmfEncoderKernels[level].toPoints(setting.samples.data(), re, im);
        transform::kFftKernels[level].forwardSplit(plan, re, im, re, im, 1, nullptr);
        kQmfEncoderKernels[level].toBands(re, im, bands);
        benchmark::DoNotOptimize(bands);
    }
    state.SetItemsProcessed(state.iterations());
}

constexpr PredictorBlock kFrame = {32, 38};

template <class Predict>
void predict(benchmark::State& state, Predict run) {
    if (isMissing(state)) return;
    const auto values = randomValues(static_cast<size_t>(kFrame.len) * 2);
    std::vector<const Zet32f*> rows(40, values.data());
    Zet32f alpha[128];
    for (auto _ : state) {
        run(kPredictFloatKernels[static_cast<size_t>(state.range(0))], rows.data(), alpha);
        benchmark::DoNotOptimize(alpha);
    }
    state.SetItemsProcessed(state.iterations() * kFrame.len);
}
void predictReal(benchmark::State& state) {
    predict(state, [](const PredictFloatKernels& kernels, const Zet32f* const* rows,
                      Zet32f* alpha) { kernels.real(rows, alpha, alpha + 32, kFrame); });
}
void predictParts(benchmark::State& state) {
    predict(state,
            [](const PredictFloatKernels& kernels, const Zet32f* const* rows, Zet32f* alpha) {
                kernels.parts({rows, rows}, {alpha, alpha + 32}, {alpha + 64, alpha + 96}, kFrame);
            });
}

BENCHMARK(encode)->DenseRange(0, core::kNumLevels - 1);
BENCHMARK(predictReal)->DenseRange(0, core::kNumLevels - 1);
BENCHMARK(predictParts)->DenseRange(0, core::kNumLevels - 1);
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
