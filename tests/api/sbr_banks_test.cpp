// The QMF banks of SBR, floating and fixed, against their formulas, in chains, cut into calls, and
// through their life; the fixed ones at their limits.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <random>

#include "support/differences.h"
#include "support/failing_allocator.h"
#include "support/guarded.h"
#include "support/qmf_banks.h"

namespace zetac::test {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr int kAll = 32;  // kx
constexpr bool kModes[] = {false, true};

Kind fixedKind(bool real) {
    return real ? Kind::kFixedReal : Kind::kFixedComplex;
}

// Whole numbers of so many bits, which every bank takes without rounding up to 24.
Samples noise(size_t count, int bits, uint32_t seed) {
    std::mt19937 random(seed);
    Samples samples(count);
    for (double& x : samples) x = static_cast<Zet32s>(random()) >> (32 - bits);
    return samples;
}
Slots noiseSlots(size_t count, int bands, int bits, uint32_t seed) {
    const auto width = static_cast<size_t>(bands);
    const Samples values = noise(2 * count * width, bits, seed);
    Slots slots(count, Slot(width));
    for (size_t i = 0; i < count * width; ++i)
        slots[i / width][i % width] = {values[2 * i], values[2 * i + 1]};
    return slots;
}

Samples flat(const Slots& slots) {
    Samples values;
    for (const Slot& slot : slots)
        for (const auto& x : slot) values.insert(values.end(), {x.real(), x.imag()});
    return values;
}
Samples flat(const Samples& samples) {
    return samples;
}

template <class Result>
Differences differences(const Result& result, const Result& model) {
    const Samples a = flat(result), b = flat(model);
    Differences errors;
    for (size_t i = 0; i < a.size(); ++i) errors.add(a[i] - b.at(i));
    return errors;
}

// Of 16-bit inputs. Floating banks: relative RMS errors, measured with these inputs, of 1.06e-7 to
// 1.26e-7. Fixed ones: outputs are rounded, 0.5 at most and 0.289 RMS; u in Q6 and the transform
// add little in the analysis, measured 0.69 and 0.292; ten v in half units add 0.25 * 1.75 in the
// synthesis, measured 0.83 and 0.324.
template <class Result>
void expectFormula(Kind kind, const Result& result, const Result& model, double limit, double rms) {
    const Differences errors = differences(result, model);
    double power = 0;
    for (const double x : flat(model)) power += x * x;
    if (isFixed(kind)) {
        EXPECT_LT(errors.largest, limit) << static_cast<int>(kind);
        EXPECT_LT(errors.rms(), rms) << static_cast<int>(kind);
    } else {
        EXPECT_LT(std::sqrt(errors.squares / power), 2e-7) << static_cast<int>(kind);
    }
}

TEST(SbrBanks, followTheirFormulas) {
    const Samples samples = noise(32 * 100, 16, 1);
    for (const Kind kind : kKinds) {
        expectFormula(kind, analysisBank(kind).analyze(samples, kAll),
                      modelAnalysis(samples, isReal(kind)), 0.75, 0.3);
        for (const int bands : {32, 64}) {
            const Slots slots = noiseSlots(100, bands, 16, 2);
            expectFormula(kind, synthesisBank(kind, bands).synthesize(slots),
                          modelSynthesis(slots, bands, isReal(kind)), 0.95, 0.33);
        }
    }
}

// Tones below the transition band that the two rates share, sampled at rate times 32 a slot. With
// this amplitude they have 20 bits.
Samples tones(size_t slots, int rate) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> uniform(0, 1);
    Samples sum(32 * slots * static_cast<size_t>(rate));
    for (int tone = 0; tone < 100; ++tone) {
        const double frequency = 0.96 * kPi * uniform(random);
        const double phase = 7 * uniform(random);
        const double amplitude = 8192 * uniform(random);
        for (size_t i = 0; i < sum.size(); ++i)
            sum[i] += amplitude * std::sin(frequency / rate * static_cast<double>(i) + phase);
    }
    for (double& x : sum) x = std::round(x);
    return sum;
}

// With unit gain: the measured ratios are 59.0 to 59.7 dB, which is the prototype's own limit. A
// gain off by 1 % would leave 40 dB, a sample of delay more or less hardly anything.
TEST(SbrBanks, reconstructWithTheirDelay) {
    const Samples samples = tones(100, 1);
    for (const Kind kind : kKinds) {
        const Slots analyzed = analysisBank(kind).analyze(samples, kAll);
        for (const int bands : {32, 64}) {
            Slots slots = analyzed;
            for (Slot& slot : slots) slot.resize(static_cast<size_t>(bands));
            const Samples output = synthesisBank(kind, bands).synthesize(slots);
            const Samples expected = tones(100, bands / 32);
            const size_t delay = bands == 64 ? 578 : 289;
            double error = 0, power = 0;
            for (size_t i = 640; i + delay < output.size(); ++i) {
                error += std::pow(output[i + delay] - expected[i], 2);
                power += std::pow(expected[i], 2);
            }
            EXPECT_GT(10 * std::log10(power / error), 58.5)
                << bands << " bands, " << static_cast<int>(kind);
        }
    }
}

// Lengths of calls around those of vectors.
constexpr int kCalls[] = {1, 2, 3, 4, 5, 7, 8, 9, 16, 17, 31, 32};

TEST(SbrBanks, giveTheSameBitsInAnyCallsAtAnyAlignmentAndAnew) {
    const Samples samples = noise(32 * 135, 20, 4);
    for (const Kind kind : kKinds) {
        const Slots whole = analysisBank(kind, 0).analyze(samples, kAll);
        for (const size_t alignment : {1, 3, 7, 12, 31}) {
            if (!isFixed(kind) && alignment % 4) continue;  // rows of singles
            const QmfBank bank = analysisBank(kind, alignment);
            bank.analyze({samples.begin(), samples.begin() + 96}, kAll);
            bank.restart();
            auto next = samples.begin();
            Slots joined;
            for (const int count : kCalls) {
                for (const Slot& slot : bank.analyze({next, next + 32 * count}, kAll))
                    joined.push_back(slot);
                next += 32 * count;
            }
            EXPECT_EQ(joined, whole) << static_cast<int>(kind) << " at " << alignment;
        }
        for (const int bands : {32, 64}) {
            const Slots slots = noiseSlots(135, bands, 20, 5);
            const Samples pcm = synthesisBank(kind, bands, 0).synthesize(slots);
            const QmfBank bank = synthesisBank(kind, bands, 12);
            bank.synthesize({slots.begin(), slots.begin() + 3});
            bank.restart();
            Samples joined;
            auto next = slots.begin();
            for (const int count : kCalls) {
                const Samples part = bank.synthesize({next, next + count});
                joined.insert(joined.end(), part.begin(), part.end());
                next += count;
            }
            EXPECT_EQ(joined, pcm) << bands << static_cast<int>(kind);
        }
    }
}

TEST(SbrBanks, clearTheBandsFromKxOnAndGoOn) {
    const Samples samples = noise(32 * 20, 20, 6);
    for (const Kind kind : kKinds) {
        Slots expected = analysisBank(kind).analyze(samples, kAll);
        for (const int kx : {31, 17, 1, 0}) {
            const QmfBank bank = analysisBank(kind);
            const auto middle = samples.begin() + 32 * 6;
            Slots slots = bank.analyze({samples.begin(), middle}, kx);
            for (const Slot& slot : bank.analyze({middle, samples.end()}, kAll))
                slots.push_back(slot);
            for (size_t l = 0; l < 6; ++l)
                std::fill(expected[l].begin() + kx, expected[l].end(), 0);
            EXPECT_EQ(slots, expected) << kx << static_cast<int>(kind);
        }
    }
}

// What stands at the beginning of a floating bank's state.
struct Front {
    Zet32s id;
    const Zet32f* line;
    Zet32s position;
    const void* transform;
};

// A bank whose transform has such sizes; block is by how much the position goes back.
template <class Run>
void expectLayout(const QmfBank& bank, const int (&transform)[3], Zet32s id, int room, int line,
                  int block, Run run) {
    const int t = (transform[0] + 15) / 16 * 16;
    EXPECT_EQ(t + room, bank.sizes[0]);
    EXPECT_EQ(transform[1] + 4, bank.sizes[1]);
    EXPECT_EQ(transform[2] + 4, bank.sizes[2]);
    EXPECT_EQ(bank.memory + (-reinterpret_cast<uintptr_t>(bank.memory) & 15) + t, bank.state);
    Front front;
    const auto look = [&] { std::memcpy(&front, bank.state, sizeof front); };
    const auto zeros = [&] { return std::count(front.line, front.line + line, 0.0f); };
    look();
    EXPECT_EQ(id, front.id);
    EXPECT_EQ(bank.state + 32, reinterpret_cast<const Zet8u*>(front.line));
    EXPECT_EQ(line, zeros());
    for (int slot = 0, place = 0; slot < 12; ++slot, place = (place + 9 * block) % (10 * block)) {
        EXPECT_EQ(place, front.position);
        run(0);  // moves nothing
        run(1);
        look();
    }
    EXPECT_NE(line, zeros());
    bank.restart();
    look();
    EXPECT_EQ(0, front.position);
    EXPECT_EQ(line, zeros());
}

template <class Size>
void sizesOfFft(Size getSize, int order, int (&sizes)[3]) {
    EXPECT_EQ(zetStsOk,
              getSize(order, zetFftNoDiv, zetAlgHintAccurate, &sizes[0], &sizes[1], &sizes[2]));
}
template <class Size>
void sizesOfDct(Size getSize, int len, int (&sizes)[3]) {
    EXPECT_EQ(zetStsOk, getSize(len, zetAlgHintFast, &sizes[0], &sizes[1], &sizes[2]));
}

TEST(SbrFloatBanks, layTheirStatesOut) {
    for (const Kind kind : {Kind::kPairs, Kind::kParts, Kind::kReal}) {
        const int which = kind == Kind::kPairs ? 0 : kind == Kind::kParts ? 1 : 2;
        for (const size_t alignment : {0, 4, 16, 28}) {
            int sizes[3];
            kind == Kind::kReal ? sizesOfDct(zetsDCTInvGetSize_32f, 32, sizes)
                                : sizesOfFft(zetsFFTGetSize_C_32f, 5, sizes);
            const QmfBank analysis = analysisBank(kind, alignment);
            expectLayout(analysis, sizes, 0x434D4156 + which, 1327, 320, 32,
                         [&](size_t count) { analysis.analyze(Samples(32 * count, 1), kAll); });
            for (const int bands : {64, 32}) {
                const bool down = bands == 32;
                kind == Kind::kReal ? sizesOfDct(zetsDCTFwdGetSize_32f, bands, sizes)
                                    : sizesOfFft(zetsFFTGetSize_C_32fc, 5 + down, sizes);
                const int room = down ? 2607 : kind == Kind::kReal ? 5183 : 5167;
                const QmfBank bank = synthesisBank(kind, bands, alignment);
                expectLayout(bank, sizes, 0x434D4159 + 3 * down + which, room, 20 * bands,
                             2 * bands, [&](size_t count) {
                                 bank.synthesize(Slots(count, Slot(static_cast<size_t>(bands), 1)));
                             });
            }
        }
    }
}

// All samples at the limit, with the signs of a band's response: the largest output there is.
TEST(SbrFixedBanks, doNotOverflowInTheAnalysis) {
    const std::vector<Zet32f> window = qmfWindow(32);
    for (const bool real : kModes) {
        for (size_t k = 0; k < 32; ++k) {
            for (const double phase : {0.0, 0.5}) {  // for the real and the imaginary part
                if (real && phase != 0) continue;
                Samples samples(320);
                for (size_t i = 0; i < 320; ++i) {
                    const double place = 2.0 * static_cast<double>(i % 64) - (real ? 96 : 0.5);
                    const double angle = (static_cast<double>(k) + 0.5) / 64 * place + phase;
                    samples[319 - i] =
                        std::copysign(ZETAC_SBR_ANALYSIS_MAX, window[i] * std::cos(kPi * angle));
                }
                const Slots slots = analysisBank(fixedKind(real)).analyze(samples, kAll);
                const Slots model = modelAnalysis(samples, real);
                // Single precision in the model's window: 2^-25 of the sum.
                EXPECT_LT(differences(slots, model).largest, 36) << k;
                EXPECT_GT(std::abs(model[9][k]), 65 * 0x1p24) << k;
                EXPECT_LT(std::abs(model[9][k]), 72.1 * 0x1p24) << k;
            }
        }
    }
}

TEST(SbrFixedBanks, limitLargerSamplesInTheAnalysis) {
    Samples loud = noise(32 * 20, 32, 3);
    loud[7] = INT32_MIN;
    loud[40] = INT32_MAX;
    Samples limited = loud;
    for (double& x : limited)
        x = std::clamp<double>(x, -ZETAC_SBR_ANALYSIS_MAX, ZETAC_SBR_ANALYSIS_MAX);
    for (const bool real : kModes) {
        const Kind kind = fixedKind(real);
        EXPECT_EQ(analysisBank(kind).analyze(loud, kAll),
                  analysisBank(kind).analyze(limited, kAll));
    }
}

// Ten slots with samples of one magnitude and such signs, or phases, that all they add to output n
// of the last slot is positive.
Slots worstSlots(bool real, int bands, int n, double amplitude) {
    const std::vector<Zet32f> window = qmfWindow(bands);
    Slots slots;
    for (int age = 9; age >= 0; --age) {
        const double size = std::copysign(amplitude, window[static_cast<size_t>(bands * age + n)]);
        const int place = age % 2 * bands + n;  // of v
        Slot slot;
        for (int k = 0; k < bands; ++k) {
            const double offset = real ? bands : bands == 64 ? 255 : 127.5;
            const double angle = kPi / (2 * bands) * (k + 0.5) * (2 * place - offset);
            const auto x =
                real ? std::copysign(size, size * std::cos(angle)) : size * std::polar(1.0, -angle);
            slot.emplace_back(std::trunc(x.real()), std::trunc(x.imag()));
        }
        slots.push_back(slot);
    }
    return slots;
}

// Below the limit of 2^30 (real: 2^29) nothing overflows. Beyond it v saturates at 2^30, and
// outputs keep their signs; in the real banks v[K/2 + K] is 0 whatever the samples are.
TEST(SbrFixedBanks, saturateInTheSynthesis) {
    for (const int bands : {64, 32}) {
        const std::vector<Zet32f> window = qmfWindow(bands);
        for (const bool real : kModes) {
            const Kind kind = fixedKind(real);
            double worst = 0;
            for (int n = 0; n < bands; ++n) {
                const Slots slots = worstSlots(real, bands, n, real ? 0x1p29 - 1 : 0x1p30 - 1);
                const Samples model = modelSynthesis(slots, bands, real);
                const Samples samples = synthesisBank(kind, bands).synthesize(slots);
                EXPECT_LT(differences(samples, model).largest, 64) << n;  // 2^-25 of the sum again
                worst = std::max(worst, std::abs(model[static_cast<size_t>(9 * bands + n)]));

                double sum = 0;
                for (int age = 0; age < 10; age += real && n == bands / 2 ? 2 : 1)
                    sum += std::abs(window[static_cast<size_t>(bands * age + n)]);
                const Samples loud =
                    synthesisBank(kind, bands).synthesize(worstSlots(real, bands, n, 0x1p31 - 1));
                EXPECT_NEAR(sum, loud[static_cast<size_t>(9 * bands + n)] * 0x1p-30, 1e-6) << n;
            }
            EXPECT_GT(worst, (real ? 1.23 : 1.748) * 0x1p30 * bands / 64);
        }
    }
}

TEST(SbrFixedBanks, liveAndDie) {
    for (const auto& modes : kFixedLives) {
        for (const FixedLife& bank : modes) {
            int size = 0;
            EXPECT_EQ(zetStsOk, bank.getSize(&size));
            EXPECT_EQ(bank.size, size);
            Zet8u* state = nullptr;
            {
                FailingAllocator allocator(0);
                EXPECT_EQ(zetStsNoMemory, bank.initAlloc(&state));
                EXPECT_EQ(nullptr, state);
            }
            FailingAllocator allocator(-1);
            ASSERT_EQ(zetStsOk, bank.initAlloc(&state));
            EXPECT_EQ(0, std::memcmp(state, &bank.identifier, sizeof bank.identifier));
            for (const auto& others : kFixedLives)
                for (const FixedLife& other : others)
                    if (&other != &bank) {
                        EXPECT_EQ(zetStsSpecMismatch, other.free(state));
                    }
            EXPECT_EQ(1, allocator.live());
            EXPECT_EQ(zetStsOk, bank.free(state));
            EXPECT_EQ(0, allocator.live());

            Guarded<Zet8u> own(static_cast<size_t>(size), 4);  // memory of the caller stays alive
            EXPECT_EQ(zetStsOk, bank.init(own.data()));
            EXPECT_EQ(zetStsOk, bank.free(own.data()));
            EXPECT_EQ(zetStsOk, bank.free(own.data()));
            EXPECT_EQ(0, allocator.live());
            EXPECT_TRUE(own.intact());
        }
    }
}

// A state of the 64-band synthesis serves the down bank as its own does. Where both banks run on
// it by turns nothing is harmed, and ten slots later the one that went on has forgotten the other.
TEST(SbrFixedBanks, shareStatesOfSynthesis) {
    std::mt19937 random(9);
    for (const bool real : kModes) {
        Guarded<Zet8u> shared(5167, 4);
        const auto init = kFixedLives[1][real].init;
        EXPECT_EQ(zetStsOk, init(shared.data()));
        const auto run = [&](int bands, const Slots& slots) {
            return synthesizeOn(shared.data(), real, bands, slots);
        };
        for (int round = 0; round < 60; ++round) {
            const int bands = round % 2 == 0 ? 32 : 64;
            const bool fresh = round < 4;
            if (fresh) init(shared.data());
            const Slots slots = noiseSlots(10 + random() % 15, bands, 24, random());
            const Samples expected = synthesisBank(fixedKind(real), bands).synthesize(slots);
            const Samples result = run(bands, slots);
            for (auto i = static_cast<size_t>(fresh ? 0 : 9 * bands); i < result.size(); ++i)
                ASSERT_EQ(expected[i], result[i]) << round << " " << i;
            run(96 - bands, Slots(random() % 4, Slot(1)));
        }
        EXPECT_TRUE(shared.intact());
    }
}

// The prototype by what the standard says of it: its peak, its symmetry with two exceptions at the
// borders of blocks, and a checksum of all digits (the sum of (i + 1) c[i] of the literal table).
TEST(SbrPrototype, isTheStandardsInEveryForm) {
    const Zet32f* c = SBR_TAB_QMF_WINDOW_640_FP;
    EXPECT_EQ(0, c[0]);
    EXPECT_FLOAT_EQ(0.8537385f, c[320]);
    for (int i = 1; i < 640; ++i) EXPECT_EQ(i % 128 == 0 ? -c[i] : c[i], c[640 - i]) << i;
    int64_t sum31 = 0, sum30 = 0;
    for (int i = 0; i < 640; ++i) {
        const Zet32s q31 = SBR_TABLE_QMF_WINDOW_640_INT_Q31[i];
        const Zet32s q30 = SBR_TABLE_QMF_WINDOW_640_INT_Q30[i];
        sum31 += int64_t{i + 1} * q31;
        sum30 += int64_t{i + 1} * q30;
        EXPECT_NEAR(c[i] * 0x1p31, q31, 128 * std::abs(c[i]) + 0.5) << i;  // halves of both units
        if (i % 2 == 0) {
            EXPECT_EQ(q31, SBR_TABLE_QMF_WINDOW_320_INT_Q31[i / 2]);
            EXPECT_EQ(q30, SBR_TABLE_QMF_WINDOW_320_INT_Q30[i / 2]);
        }
    }
    EXPECT_EQ(56045675280493, sum31);
    EXPECT_EQ(28022837639957, sum30);
}

}  // namespace
}  // namespace zetac::test
