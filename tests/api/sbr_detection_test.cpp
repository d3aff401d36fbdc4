// What an SBR encoder measures: transients, tonality, and its own analysis bank.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <random>

#include "support/failing_allocator.h"
#include "support/guarded.h"
#include "support/reference_fft.h"

namespace zetac::test {
namespace {

constexpr int kSlots = 32;
constexpr int kBands = 37;

// Energies of complex noise, slot after slot, with gains by slot and band.
template <class Gain>
std::vector<Zet32f> noise(int slots, uint32_t seed, Gain gain) {
    std::mt19937 random(seed);
    std::exponential_distribution<float> energy(1);
    std::vector<Zet32f> energies;
    for (int n = 0; n < slots; ++n)
        for (int k = 0; k < kBands; ++k) energies.push_back(gain(n, k) * energy(random));
    return energies;
}

struct Detected {
    int slot;
    std::vector<Zet32f> strengths;
};

Detected detect(const std::vector<Zet32f>& energies, std::vector<Zet32f>& history,
                Zet32f floor = 1e-3f) {
    Guarded<Zet32f> strengths(kSlots, 4);
    int slot = 99;
    EXPECT_EQ(zetStsOk,
              zetsDetectTransient_SBR_32f(energies.data(), history.data(), strengths.data(), &slot,
                                          kBands, kSlots, 0.5f, floor));
    EXPECT_TRUE(strengths.intact());
    return {slot, {strengths.data(), strengths.data() + kSlots}};
}

TEST(SbrTransient, isTheSlotInWhichTheBandsRise) {
    for (const int onset : {0, 1, 13, 31}) {
        std::vector<Zet32f> history(kBands);
        const auto steady = [](int, int k) { return std::exp2(static_cast<float>(k % 9)); };
        detect(noise(kSlots, 1, steady), history);
        const Detected before = detect(noise(kSlots, 2, steady), history);
        EXPECT_EQ(-1, before.slot);
        const auto attack = [&](int n, int k) { return steady(n, k) * (n < onset ? 1 : 10); };
        EXPECT_EQ(onset, detect(noise(kSlots, 3, attack), history).slot);
    }
}

// A decay, a rise of a few bands, and noise below the floor are none.
TEST(SbrTransient, isNotSeenElsewhere) {
    std::vector<Zet32f> history(kBands);
    detect(noise(kSlots, 1, [](int, int) { return 100.0f; }), history);
    EXPECT_EQ(
        -1,
        detect(noise(kSlots, 2, [](int n, int) { return n < 9 ? 100.0f : 1.0f; }), history).slot);
    EXPECT_EQ(
        -1,
        detect(noise(kSlots, 3, [](int n, int k) { return n > 9 && k < 9 ? 1e4f : 1.0f; }), history)
            .slot);
    std::vector<Zet32f> silent(kBands);
    EXPECT_EQ(-1,
              detect(noise(kSlots, 4, [](int n, int) { return n < 9 ? 0 : 1e-9f; }), silent).slot);
    EXPECT_EQ(-1, detect(std::vector<Zet32f>(kSlots * kBands), silent, 0).slot);  // not 0/0
}

// By hand: energies 1, 3 above a past of 0 and a floor of 1 rise by 1/2 and, against the quarter
// that the past has followed, by (3 - 1/4) / (3 + 1/4 + 1).
TEST(SbrTransient, hasTheStrengthOfItsFormula) {
    const std::vector<Zet32f> energies = {1, 3};
    Zet32f history = 0;
    Zet32f strengths[2];
    int slot = 0;
    ASSERT_EQ(zetStsOk, zetsDetectTransient_SBR_32f(energies.data(), &history, strengths, &slot, 1,
                                                    2, 0.6f, 1));
    EXPECT_EQ(0.5f, strengths[0]);
    EXPECT_FLOAT_EQ(2.75f / 4.25f, strengths[1]);
    EXPECT_EQ(1, slot);
    EXPECT_EQ(0.9375f, history);
    // Half of the bands at the greatest strength, the rest at none.
    const std::vector<Zet32f> half(kBands, 0);
    std::vector<Zet32f> mixed = half;
    for (size_t k = 0; k < kBands; k += 2) mixed[k] = 5;
    std::vector<Zet32f> past(kBands);
    ASSERT_EQ(zetStsOk, zetsDetectTransient_SBR_32f(mixed.data(), past.data(), strengths, &slot,
                                                    kBands, 1, 1, 0));
    EXPECT_FLOAT_EQ(19.0f / 37, strengths[0]);
}

std::vector<Zet32f> tonality(const std::vector<std::complex<float>>& matrix, int slots) {
    std::vector<Zet32f> re, im;
    for (const auto& x : matrix) {
        re.push_back(x.real());
        im.push_back(x.imag());
    }
    Guarded<Zet32f> ratios(kBands, 8);
    EXPECT_EQ(zetStsOk,
              zetsEstimateTNR_SBR_32f(re.data(), im.data(), ratios.data(), kBands, slots));
    EXPECT_TRUE(ratios.intact());
    return {ratios.data(), ratios.data() + kBands};
}

std::vector<std::complex<float>> tonesInNoise(float tone, float noiseLevel, int slots) {
    std::mt19937 random(5);
    std::normal_distribution<float> normal(0, std::sqrt(0.5f));
    std::vector<std::complex<float>> matrix;
    for (int n = 0; n < slots + 2; ++n) {
        for (int k = 0; k < kBands; ++k) {
            const auto angle = static_cast<float>(n * (k + 1)) * 0.0837f;
            matrix.push_back(std::polar(tone, angle) +
                             noiseLevel * std::complex<float>(normal(random), normal(random)));
        }
    }
    return matrix;
}

double mean(const std::vector<Zet32f>& values) {
    double sum = 0;
    for (const Zet32f value : values) sum += value;
    return sum / static_cast<double>(values.size());
}

TEST(SbrTonality, tellsTonesFromNoise) {
    EXPECT_EQ(std::vector<Zet32f>(kBands), tonality(tonesInNoise(0, 0, 16), 16));
    for (const Zet32f ratio : tonality(tonesInNoise(1000, 0, 16), 16)) {
        EXPECT_GT(ratio, 1e5);
        EXPECT_LE(ratio, 0x1p20 - 1);
    }
    // Noise alone: two of n degrees of freedom are explained, whatever its level.
    for (const float level : {1e-3f, 1e4f}) {
        EXPECT_NEAR(2.0 / 30, mean(tonality(tonesInNoise(0, level, 32), 32)), 0.03);
    }
    // Of a tone in noise, a predictor of order 2 takes the mean of two estimates: it leaves one and
    // a half times the noise.
    for (const float power : {3.0f, 30.0f, 300.0f})
        EXPECT_NEAR(2.0 / 3, mean(tonality(tonesInNoise(std::sqrt(power), 1, 64), 64)) / power,
                    0.05);
}

// X[k] = sum of u[n] exp(i pi/128 (k + 1/2)(2n + 1)).
std::vector<std::complex<double>> encoderModel(const std::vector<float>& samples) {
    double u[128] = {};
    for (size_t i = 0; i < 640; ++i)
        u[i % 128] += double{SBR_TAB_QMF_WINDOW_640_FP[i]} * samples[639 - i];
    std::vector<std::complex<double>> bands(64);
    for (int k = 0; k < 64; ++k)
        for (int n = 0; n < 128; ++n)
            bands[static_cast<size_t>(k)] +=
                std::polar(u[n], std::numbers::pi / 128 * (k + 0.5) * (2 * n + 1));
    return bands;
}

int encoderSize() {
    int size = 0, sizeInit = -1, fftSize = 0, fftInit = 0, fftWork = 0;
    EXPECT_EQ(zetStsOk, zetsAnalysisFilterEncGetSize_SBR_32f(&size, &sizeInit));
    EXPECT_EQ(zetStsOk, zetsFFTGetSize_C_32fc(6, zetFftNoDiv, zetAlgHintAccurate, &fftSize,
                                              &fftInit, &fftWork));
    const auto round16 = [](int x) { return (x + 15) / 16 * 16; };
    EXPECT_EQ(round16(fftSize + 4) + round16(fftWork + 4) + 63, size);
    EXPECT_EQ(fftInit, sizeInit);
    return size;
}

// Relative RMS error of single precision, measured: 1.04e-7.
TEST(SbrEncoderBank, isItsFormulaAtAnyAlignment) {
    const auto samples = randomSingles(640, 6);
    const auto model = encoderModel(samples);
    std::vector<Zet32f> first;
    for (const size_t alignment : {0, 4, 20, 60}) {
        Guarded<Zet8u> memory(encoderSize(), alignment + 1);
        Zet8u init[4];
        ASSERT_EQ(zetStsOk, zetsAnalysisFilterEncInit_SBR_32f(memory.data(), init));
        Guarded<Zet32f> src(640, alignment);
        std::copy(samples.begin(), samples.end(), src.data());
        Guarded<Zet32f> dst(128, alignment);
        ASSERT_EQ(zetStsOk, zetsAnalysisFilterEnc_SBR_32f32fc(
                                src.data(), reinterpret_cast<Zet32fc*>(dst.data()), memory.data()));
        EXPECT_TRUE(memory.intact() && dst.intact());
        const std::vector<Zet32f> bands(dst.data(), dst.data() + 128);
        double error = 0, power = 0;
        for (size_t k = 0; k < 64; ++k) {
            error += std::norm(std::complex<double>(bands[2 * k], bands[2 * k + 1]) - model[k]);
            power += std::norm(model[k]);
        }
        EXPECT_LT(std::sqrt(error / power), 2e-7);
        if (first.empty()) first = bands;
        EXPECT_EQ(first, bands);
        EXPECT_EQ(zetStsOk, zetsAnalysisFilterEncFree_SBR_32f(memory.data()));  // not owned: kept
        EXPECT_EQ(zetStsOk, zetsAnalysisFilterEnc_SBR_32f32fc(
                                src.data(), reinterpret_cast<Zet32fc*>(dst.data()), memory.data()));
    }
}

TEST(SbrEncoderBank, keepsItsBlockWhenInitGetsNoMemory) {
    Zet8u other = 0;
    {
        FailingAllocator allocator(0);
        Zet8u* state = &other;
        EXPECT_EQ(zetStsNoMemory, zetsAnalysisFilterEncInitAlloc_SBR_32f(&state));
        EXPECT_EQ(nullptr, state);
        EXPECT_EQ(0, allocator.live());
    }
    {
        FailingAllocator allocator(1);
        Zet8u* state = nullptr;
        EXPECT_EQ(zetStsNoMemory, zetsAnalysisFilterEncInitAlloc_SBR_32f(&state));
        ASSERT_NE(nullptr, state);
        EXPECT_EQ(1, allocator.live());
        zetsFree(state);
        EXPECT_EQ(0, allocator.live());
    }
    FailingAllocator allocator(-1);
    Zet8u* state = nullptr;
    ASSERT_EQ(zetStsOk, zetsAnalysisFilterEncInitAlloc_SBR_32f(&state));
    EXPECT_EQ(1, allocator.live());
    EXPECT_EQ(zetStsOk, zetsAnalysisFilterEncFree_SBR_32f(state));
    EXPECT_EQ(0, allocator.live());
}

}  // namespace
}  // namespace zetac::test
