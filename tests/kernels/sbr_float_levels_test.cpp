// Every level of the floating SBR kernels gives the bits of level 0.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <vector>

#include "sbr/predict_float_kernels.h"
#include "sbr/qmf_encoder_kernels.h"
#include "sbr/qmf_float_bank.h"
#include "support/guarded.h"
#include "support/reference_fft.h"
#include "transform/fft_spec.h"

namespace zetac::sbr {
namespace {

using test::Guarded;

constexpr int kSlots = 39;  // leaves a part of a batch at every width

// run(level, out) fills out at every level; the results must be the same.
void expectEqualLevels(const char* what, size_t count,
                       const std::function<void(size_t level, Zet32f* out)>& run) {
    Guarded<Zet32f> expected(count, 4);
    run(0, expected.data());
    for (size_t level = 1; level <= static_cast<size_t>(core::currentLevel()); ++level) {
        Guarded<Zet32f> result(count, 4);
        run(level, result.data());
        EXPECT_EQ(0, std::memcmp(expected.data(), result.data(), result.size()))
            << what << ", level " << level;
        EXPECT_TRUE(result.intact());
    }
    EXPECT_TRUE(expected.intact());
}

// The transforms of the banks.
struct Transforms {
    std::vector<Zet8u> memory[4] = {std::vector<Zet8u>(16384), std::vector<Zet8u>(16384),
                                    std::vector<Zet8u>(16384), std::vector<Zet8u>(16384)};

    const transform::FftPlan& fft(int order) {
        ZetsFFTSpec_C_32fc* spec = nullptr;
        zetsFFTInit_C_32fc(&spec, order, zetFftNoDiv, zetAlgHintNone,
                           memory[order == 5 ? 0 : 1].data(), nullptr);
        return spec->plan;
    }
    const transform::DctSpec& dct(int len) {
        ZetsDCTFwdSpec_32f* spec = nullptr;
        zetsDCTFwdInit_32f(&spec, len, zetAlgHintNone, memory[len == 32 ? 2 : 3].data(), nullptr);
        return *spec;
    }
};

// Rows of 128 values, with the imaginary parts in the second halves.
template <class Value, class Source>
QmfRows<Value> rowsOf(Source* values, int first, int count, bool parted) {
    QmfRows<Value> rows{};
    for (int i = 0; i < count; ++i) {
        rows.re[i] = values + 128 * (first + i);
        if (parted) rows.im[i] = rows.re[i] + 64;
    }
    return rows;
}

// All slots in batches of a level's own width; run(kernels, first, count).
template <class Run>
void inBatches(size_t level, Run run) {
    const QmfFloatKernels& kernels = kQmfFloatKernels[level];
    for (int first = 0; first < kSlots; first += kernels.lanes)
        run(kernels, first, std::min(kernels.lanes, kSlots - first));
}

template <class Kernel, class Transform>
void expectEqualAnalysis(const char* what, Kernel kernel, const Transform& transform, bool parted) {
    const auto src = test::randomSingles(32 * kSlots, 1);
    const auto window = test::randomSingles(320, 2);
    expectEqualLevels(what, 128 * kSlots, [&](size_t level, Zet32f* out) {
        std::fill_n(out, 128 * kSlots, 1.0f);
        Zet32f line[320] = {};
        Zet32s position = 0;
        inBatches(level, [&](const QmfFloatKernels& kernels, int first, int count) {
            (kernels.*kernel)({count,
                               27,
                               src.data() + 32 * first,
                               window.data(),
                               {line, &position},
                               rowsOf<Zet32f>(out, first, count, parted)},
                              transform);
        });
        EXPECT_EQ((10 - kSlots % 10) * 32, position);
    });
}

template <class Kernel, class Transform>
void expectEqualSynthesis(const char* what, Kernel kernel, const Transform& transform, int bands,
                          bool parted) {
    const auto src = test::randomSingles(128 * kSlots, 3);
    const auto window = test::randomSingles(640, 4);
    const auto count64 = static_cast<size_t>(bands * kSlots);
    expectEqualLevels(what, count64, [&](size_t level, Zet32f* out) {
        std::vector<Zet32f> line(static_cast<size_t>(20 * bands));
        Zet32s position = 0;
        inBatches(level, [&](const QmfFloatKernels& kernels, int first, int count) {
            (kernels.*kernel)({count,
                               out + bands * first,
                               window.data(),
                               {line.data(), &position},
                               rowsOf<const Zet32f>(src.data(), first, count, parted)},
                              transform);
        });
    });
}

TEST(SbrFloatLevels, giveTheBitsOfLevelZero) {
    using K = QmfFloatKernels;
    Transforms t;
    expectEqualAnalysis("analyzeReal", &K::analyzeReal, t.dct(32), false);
    expectEqualSynthesis("synthesizeReal", &K::synthesizeReal, t.dct(64), 64, false);
    expectEqualSynthesis("synthesizeDownReal", &K::synthesizeDownReal, t.dct(32), 32, false);
    for (const bool parted : {false, true}) {
        expectEqualAnalysis("analyzeComplex", &K::analyzeComplex, t.fft(5), parted);
        expectEqualAnalysis("analyzeComplex", &K::analyzeComplex, t.fft(6), parted);
        expectEqualSynthesis("synthesizeComplex", &K::synthesizeComplex, t.fft(5), 64, parted);
        expectEqualSynthesis("synthesizeDownComplex", &K::synthesizeDownComplex, t.fft(6), 32,
                             parted);
    }
}

TEST(SbrFloatLevels, encodeTheSameBits) {
    const auto src = test::randomSingles(640, 5);
    expectEqualLevels("toPoints", 128, [&](size_t level, Zet32f* out) {
        kQmfEncoderKernels[level].toPoints(src.data(), out, out + 64);
    });
    expectEqualLevels("toBands", 128, [&](size_t level, Zet32f* out) {
        kQmfEncoderKernels[level].toBands(src.data(), src.data() + 64,
                                          reinterpret_cast<Zet32fc*>(out));
    });
}

TEST(SbrFloatLevels, predictTheSameBits) {
    constexpr int kLen = 61;
    constexpr PredictorBlock kBlock = {kLen, kSlots - 2};
    auto src = test::randomSingles(2 * kLen * kSlots, 6);
    for (size_t i = 0; i < src.size(); i += kLen) src[i] = 0;      // a band without a signal
    for (size_t i = 1; i < src.size(); i += kLen) src[i] = 3e38f;  // one that overflows
    const Zet32f* rows[kSlots];
    const Zet32f* others[kSlots];
    const Zet32fc* pairs[kSlots];
    for (int n = 0; n < kSlots; ++n) {
        rows[n] = src.data() + kLen * n;
        others[n] = rows[n] + kLen;
        pairs[n] = reinterpret_cast<const Zet32fc*>(rows[n]);
    }
    expectEqualLevels("real", 2 * kLen, [&](size_t level, Zet32f* out) {
        kPredictFloatKernels[level].real(rows, out, out + kLen, kBlock);
    });
    expectEqualLevels("parts", 4 * kLen, [&](size_t level, Zet32f* out) {
        kPredictFloatKernels[level].parts({rows, others}, {out, out + kLen},
                                          {out + 2 * kLen, out + 3 * kLen}, kBlock);
    });
    expectEqualLevels("pairs", 4 * kLen, [&](size_t level, Zet32f* out) {
        auto* alpha = reinterpret_cast<Zet32fc*>(out);
        kPredictFloatKernels[level].pairs(pairs, alpha, alpha + kLen, kBlock);
    });
    expectEqualLevels("tonality", kLen, [&](size_t level, Zet32f* out) {
        kPredictFloatKernels[level].tonality(src.data(), src.data() + kLen * kSlots, out, kBlock);
    });
    auto energies = src;
    for (Zet32f& energy : energies) energy *= energy < 1 ? energy : 0;
    expectEqualLevels("rise", kLen + 1, [&](size_t level, Zet32f* out) {
        std::copy_n(energies.begin() + kLen, kLen, out);
        out[kLen] = kPredictFloatKernels[level].rise(energies.data(), out, kLen, 0.1f);
    });
}

}  // namespace
}  // namespace zetac::sbr
