// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "support/qmf_banks.h"

#include <numbers>

namespace zetac::test {
namespace {

using Memory = std::shared_ptr<Guarded<Zet8u>>;

// The singles of a number in a row, which are two for pairs.
size_t partsOf(Kind kind) {
    return kind == Kind::kPairs ? 2 : 1;
}

// One call of a floating analysis: call(rows, imaginaryRows, src, numSlots, offset).
template <class Call>
Slots analyzeFloat(Kind kind, size_t alignment, const Samples& samples, Call call) {
    constexpr int kOffset = 2;
    const size_t count = samples.size() / 32;
    Rows re(count + kOffset, 32 * partsOf(kind), alignment), im(count + kOffset, 32, alignment);
    Guarded<Zet32f> src(samples.size(), alignment);
    std::copy(samples.begin(), samples.end(), src.data());
    EXPECT_EQ(zetStsOk, call(re, im, src.data(), static_cast<int>(count), kOffset));
    Slots slots(count, Slot(32));
    for (size_t l = 0; l < count; ++l)
        for (size_t k = 0; k < 32; ++k) {
            const Zet32f* row = re[l + kOffset];
            if (kind == Kind::kReal) slots[l][k] = row[k];
            if (kind == Kind::kParts) slots[l][k] = {row[k], im[l + kOffset][k]};
            if (kind == Kind::kPairs) slots[l][k] = {row[2 * k], row[2 * k + 1]};
        }
    return slots;
}

template <class Call>
Samples synthesizeFloat(Kind kind, size_t bands, size_t alignment, const Slots& slots, Call call) {
    Rows re(slots.size(), bands * partsOf(kind), alignment), im(slots.size(), bands, alignment);
    for (size_t l = 0; l < slots.size(); ++l)
        for (size_t k = 0; k < bands; ++k) {
            re[l][partsOf(kind) * k] = static_cast<Zet32f>(slots[l][k].real());
            (kind == Kind::kPairs ? re[l][2 * k + 1] : im[l][k]) =
                kind == Kind::kReal ? 0 : static_cast<Zet32f>(slots[l][k].imag());
        }
    Guarded<Zet32f> dst(bands * slots.size(), alignment);
    EXPECT_EQ(zetStsOk, call(re, im, dst.data(), static_cast<int>(slots.size())));
    EXPECT_TRUE(dst.intact());
    return {dst.data(), dst.data() + bands * slots.size()};
}

// A floating bank without its calls, which are run(spec, work).
template <class Spec, class GetSize, class Init, class SetRun>
QmfBank floatBank(GetSize getSize, Init init, size_t alignment, SetRun setRun) {
    QmfBank bank{};
    EXPECT_EQ(zetStsOk, getSize(&bank.sizes[0], &bank.sizes[1], &bank.sizes[2]));
    Memory memory[3];
    for (int i = 0; i < 3; ++i)
        memory[i] = std::make_shared<Guarded<Zet8u>>(bank.sizes[i], alignment);
    auto spec = std::make_shared<Spec*>(nullptr);
    bank.restart = [=] {
        EXPECT_EQ(zetStsOk, init(spec.get(), memory[0]->data(), memory[1]->data()));
    };
    bank.restart();
    bank.memory = memory[0]->data();
    bank.state = reinterpret_cast<const Zet8u*>(*spec);
    setRun(bank, [=](auto call) {
        const auto result = call(*spec, memory[2]->data());
        for (const Memory& each : memory) EXPECT_TRUE(each->intact());
        return result;
    });
    return bank;
}

#define ZETAC_FLOAT_BANK(filter, types, setRun)                                  \
    floatBank<Zets##filter##Spec_SBR_##types>(zets##filter##GetSize_SBR_##types, \
                                              zets##filter##Init_SBR_##types, alignment, setRun)

#define ZETAC_ANALYSIS(types, ...)                                                               \
    ZETAC_FLOAT_BANK(AnalysisFilter, types, ([=](QmfBank& bank, auto run) {                      \
                         bank.analyze = [=](const Samples& samples, int kx) {                    \
                             return run([&](auto* spec, Zet8u* work) {                           \
                                 return analyzeFloat(                                            \
                                     kind, alignment, samples,                                   \
                                     [&](Rows& re, [[maybe_unused]] Rows& im, const Zet32f* src, \
                                         int count, int offset) {                                \
                                         return zetsAnalysisFilter_SBR_##types##_D2L(            \
                                             src, __VA_ARGS__, window.data(), count, offset, kx, \
                                             spec, work);                                        \
                                     });                                                         \
                             });                                                                 \
                         };                                                                      \
                     }))

#define ZETAC_SYNTHESIS(filter, types, ...)                                                \
    ZETAC_FLOAT_BANK(                                                                      \
        filter, types, ([=](QmfBank& bank, auto run) {                                     \
            bank.synthesize = [=](const Slots& slots) {                                    \
                return run([&](auto* spec, Zet8u* work) {                                  \
                    return synthesizeFloat(                                                \
                        kind, static_cast<size_t>(bands), alignment, slots,                \
                        [&](Rows& re, [[maybe_unused]] Rows& im, Zet32f* dst, int count) { \
                            return zets##filter##_SBR_##types##_D2L(                       \
                                __VA_ARGS__, dst, window.data(), count, spec, work);       \
                        });                                                                \
                });                                                                        \
            };                                                                             \
        }))

// One slot of a fixed bank, with sources and results in either type.
Slot analyzeFixed(bool real, const double* samples, int kx, Zet8u* state) {
    Guarded<Zet32s> src(32, 4), singles(32, 4);
    Guarded<Zet32sc> pairs(32, 4);
    for (size_t i = 0; i < 32; ++i) src.data()[i] = static_cast<Zet32s>(samples[i]);
    EXPECT_EQ(zetStsOk,
              real ? zetsAnalysisFilter_SBRLP_32s(src.data(), singles.data(), kx, state)
                   : zetsAnalysisFilter_SBRHQ_32s32sc(src.data(), pairs.data(), kx, state));
    EXPECT_TRUE(src.intact() && pairs.intact() && singles.intact());
    Slot slot;
    for (size_t k = 0; k < 32; ++k)
        slot.emplace_back(real ? singles[k] : pairs[k].re, real ? 0 : pairs[k].im);
    return slot;
}

template <class ComplexBank, class RealBank>
void synthesizeFixed(ComplexBank complexBank, RealBank realBank, bool real, size_t count,
                     const Slot& slot, Zet8u* state, Samples& samples) {
    Guarded<Zet32sc> pairs(count, 4);
    Guarded<Zet32s> singles(count, 4), dst(count, 4);
    for (size_t k = 0; k < count; ++k) {
        const std::complex<double> x = k < slot.size() ? slot[k] : 0;
        pairs.data()[k] = {static_cast<Zet32s>(x.real()), static_cast<Zet32s>(x.imag())};
        singles.data()[k] = pairs[k].re;
    }
    EXPECT_EQ(zetStsOk, real ? realBank(singles.data(), dst.data(), state)
                             : complexBank(pairs.data(), dst.data(), state));
    EXPECT_TRUE(pairs.intact() && singles.intact() && dst.intact());
    samples.insert(samples.end(), dst.data(), dst.data() + count);
}

QmfBank fixedBank(const FixedLife& life, bool real, int bands, size_t alignment) {
    QmfBank bank{};
    EXPECT_EQ(zetStsOk, life.getSize(&bank.sizes[0]));
    const auto memory = std::make_shared<Guarded<Zet8u>>(bank.sizes[0], alignment);
    Zet8u* state = memory->data();
    bank.restart = [=] { EXPECT_EQ(zetStsOk, life.init(state)); };
    bank.restart();
    bank.memory = state;
    bank.state = state + (-reinterpret_cast<uintptr_t>(state) & 15);
    bank.analyze = [=](const Samples& samples, int kx) {
        Slots slots;
        for (size_t i = 0; i < samples.size(); i += 32)
            slots.push_back(analyzeFixed(real, &samples[i], kx, state));
        EXPECT_TRUE(memory->intact());
        return slots;
    };
    bank.synthesize = [=](const Slots& slots) {
        const Samples samples = synthesizeOn(state, real, bands, slots);
        EXPECT_TRUE(memory->intact());
        return samples;
    };
    return bank;
}

// exp(i pi / denominator (k + 1/2) (2 n - phase)) for the bands k of values n.
std::vector<Slot> kernels(size_t bands, size_t values, double phase, double denominator) {
    std::vector<Slot> rows(values, Slot(bands));
    for (size_t n = 0; n < values; ++n)
        for (size_t k = 0; k < bands; ++k) {
            const double multiple =
                (static_cast<double>(k) + 0.5) * (2.0 * static_cast<double>(n) - phase);
            rows[n][k] = std::polar(
                1.0, std::numbers::pi / denominator * std::fmod(multiple, 2 * denominator));
        }
    return rows;
}

}  // namespace

#define ZETAC_LIFE(filter, mode, identifier, size)                                 \
    {                                                                              \
        identifier, size, zets##filter##GetSize_##mode, zets##filter##Init_##mode, \
            zets##filter##InitAlloc_##mode, zets##filter##Free_##mode              \
    }
const FixedLife kFixedLives[3][2] = {
    {ZETAC_LIFE(AnalysisFilter, SBRHQ_32s32sc, 0x434D4161, 1327),
     ZETAC_LIFE(AnalysisFilter, SBRLP_32s, 0x434D4162, 1327)},
    {ZETAC_LIFE(SynthesisFilter, SBRHQ_32sc32s, 0x434D4163, 5167),
     ZETAC_LIFE(SynthesisFilter, SBRLP_32s, 0x434D4164, 5167)},
    {ZETAC_LIFE(SynthesisDownFilter, SBRHQ_32sc32s, 0x434D4165, 2607),
     ZETAC_LIFE(SynthesisDownFilter, SBRLP_32s, 0x434D4166, 2607)}};

Samples synthesizeOn(Zet8u* state, bool real, int bands, const Slots& slots) {
    Samples samples;
    for (const Slot& slot : slots)
        bands == 64
            ? synthesizeFixed(zetsSynthesisFilter_SBRHQ_32sc32s, zetsSynthesisFilter_SBRLP_32s,
                              real, 64, slot, state, samples)
            : synthesizeFixed(zetsSynthesisDownFilter_SBRHQ_32sc32s,
                              zetsSynthesisDownFilter_SBRLP_32s, real, 32, slot, state, samples);
    return samples;
}

std::vector<Zet32f> qmfWindow(int bands) {
    const Zet32f* prototype = SBR_TAB_QMF_WINDOW_640_FP;
    std::vector<Zet32f> window(prototype, prototype + 640);
    if (bands == 64) return window;
    for (size_t i = 0; i < 320; ++i) window[i] = prototype[2 * i];
    window.resize(320);
    return window;
}

QmfBank analysisBank(Kind kind, size_t alignment) {
    const bool real = isReal(kind);
    if (isFixed(kind)) return fixedBank(kFixedLives[0][real], real, 32, alignment);
    const auto window = qmfWindow(32);
    if (real) return ZETAC_ANALYSIS(RToR_32f, re.singles());
    if (kind == Kind::kParts) return ZETAC_ANALYSIS(RToC_32f, re.singles(), im.singles());
    return ZETAC_ANALYSIS(RToC_32f32fc, re.pairs());
}

QmfBank synthesisBank(Kind kind, int bands, size_t alignment) {
    const bool real = isReal(kind), parts = kind == Kind::kParts, down = bands == 32;
    if (isFixed(kind)) return fixedBank(kFixedLives[1 + down][real], real, bands, alignment);
    const auto window = qmfWindow(bands);
    if (down) {
        if (real) return ZETAC_SYNTHESIS(SynthesisDownFilter, RToR_32f, re.constSingles());
        if (parts)
            return ZETAC_SYNTHESIS(SynthesisDownFilter, CToR_32f, re.constSingles(),
                                   im.constSingles());
        return ZETAC_SYNTHESIS(SynthesisDownFilter, CToR_32fc32f, re.constPairs());
    }
    if (real) return ZETAC_SYNTHESIS(SynthesisFilter, RToR_32f, re.constSingles());
    if (parts)
        return ZETAC_SYNTHESIS(SynthesisFilter, CToR_32f, re.constSingles(), im.constSingles());
    return ZETAC_SYNTHESIS(SynthesisFilter, CToR_32fc32f, re.constPairs());
}

Slots modelAnalysis(const Samples& samples, bool real) {
    Samples history(288);
    history.insert(history.end(), samples.begin(), samples.end());
    const std::vector<Zet32f> window = qmfWindow(32);
    const auto kernel = kernels(32, 64, real ? 96 : 0.5, 64);
    Slots slots;
    for (size_t l = 0; l < samples.size() / 32; ++l) {
        double u[64] = {};
        for (size_t i = 0; i < 320; ++i) u[i % 64] += window[i] * history[32 * l + 319 - i];
        slots.emplace_back(32);
        for (size_t k = 0; k < 32; ++k)
            for (size_t n = 0; n < 64; ++n)
                slots[l][k] += 2 * u[n] * (real ? kernel[n][k].real() : kernel[n][k]);
    }
    return slots;
}

Samples modelSynthesis(const Slots& slots, int bands, bool real) {
    const std::vector<Zet32f> window = qmfWindow(bands);
    const auto count = static_cast<size_t>(bands);
    const auto kernel = kernels(count, 2 * count,
                                real          ? bands
                                : bands == 64 ? 255
                                              : 127.5,
                                2 * bands);
    Samples v(20 * count), samples;
    for (const Slot& slot : slots) {
        Samples fresh;
        for (const Slot& row : kernel) {
            double sum = 0;
            for (size_t k = 0; k < count; ++k)
                sum += real ? slot[k].real() * row[k].real() / 32 : (slot[k] * row[k]).real() / 64;
            fresh.push_back(sum);
        }
        v.insert(v.begin(), fresh.begin(), fresh.end());
        v.resize(20 * count);
        for (size_t n = 0; n < count; ++n) {
            double sum = 0;
            for (size_t i = 0; i < 5; ++i)
                sum += v[4 * count * i + n] * window[2 * count * i + n] +
                       v[4 * count * i + 3 * count + n] * window[2 * count * i + count + n];
            samples.push_back(sum);
        }
    }
    return samples;
}

}  // namespace zetac::test
