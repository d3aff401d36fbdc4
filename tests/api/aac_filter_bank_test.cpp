// The filter bank against the definitions of ISO/IEC 14496-3, 4.6.11, in double precision.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <array>
#include <cmath>
#include <cstring>
#include <numbers>
#include <random>
#include <vector>

namespace {

using Block = std::array<Zet32s, 1024>;
constexpr double kPi = std::numbers::pi;

double besselI0(double x) {
    double sum = 1;
    double term = 1;
    for (int k = 1; term > 1e-18 * sum; ++k) {
        term *= (x / 2 / k) * (x / 2 / k);
        sum += term;
    }
    return sum;
}

// Rising half of a window, by the standard's definition.
std::vector<double> risingHalf(int shape, int half) {
    std::vector<double> window(half);
    if (shape == zetAacSine) {
        for (int n = 0; n < half; ++n) window[n] = std::sin(kPi / (2 * half) * (n + 0.5));
        return window;
    }
    const double alpha = half == 1024 ? 4 : 6;
    std::vector<double> sums(half + 1);
    for (int p = 0; p <= half; ++p) {
        const double x = 2.0 * p / half - 1;
        sums[p] = (p > 0 ? sums[p - 1] : 0) + besselI0(kPi * alpha * std::sqrt(1 - x * x));
    }
    for (int n = 0; n < half; ++n) window[n] = std::sqrt(sums[n] / sums[half]);
    return window;
}

// The whole window of a frame: 2048 values, or for eight short windows the 256 of window `which`.
std::vector<double> frameWindow(int sequence, int shape, int prevShape, int which = 0) {
    const bool isShort = sequence == zetAacEightShort;
    const auto rising = [isShort](int itsShape, bool isSteep) {
        std::vector<double> half = risingHalf(itsShape, isSteep ? 128 : 1024);
        if (isSteep && !isShort) {
            half.insert(half.begin(), 448, 0);
            half.resize(1024, 1);
        }
        return half;
    };
    auto window = rising(which == 0 ? prevShape : shape, isShort || sequence == zetAacLongStop);
    const auto falling = rising(shape, isShort || sequence == zetAacLongStart);
    window.insert(window.end(), falling.rbegin(), falling.rend());
    return window;
}

double kernel(int length, int n, int k) {
    return std::cos(2 * kPi / length * (n + (length / 2 + 1) / 2.0) * (k + 0.5));
}

// x[n] = 2/N sum of X[k] cos(...), with the cosines of one length computed once.
std::vector<double> inverseTransform(const Zet32s* spectrum, int length) {
    static std::vector<double> tables[2];
    std::vector<double>& table = tables[length == 2048];
    const int half = length / 2;
    if (table.empty()) {
        for (int n = 0; n < length; ++n)
            for (int k = 0; k < half; ++k) table.push_back(kernel(length, n, k));
    }
    std::vector<double> x(length);
    for (int n = 0; n < length; ++n) {
        for (int k = 0; k < half; ++k) x[n] += table[n * half + k] * spectrum[k];
        x[n] *= 2.0 / length;
    }
    return x;
}

// One frame of windowed output, 2048 values in Q3, to be overlap-added.
std::vector<double> windowedFrame(const Block& spectrum, int sequence, int shape, int prevShape) {
    std::vector<double> frame(2048);
    const bool isShort = sequence == zetAacEightShort;
    for (int w = 0; w < (isShort ? 8 : 1); ++w) {
        const std::vector<double> z = inverseTransform(&spectrum[128 * w], isShort ? 256 : 2048);
        const std::vector<double> window = frameWindow(sequence, shape, prevShape, w);
        const int start = isShort ? 448 + 128 * w : 0;
        for (size_t n = 0; n < z.size(); ++n) frame[start + n] += z[n] * window[n];
    }
    return frame;
}

struct Frame {
    int sequence;
    int shape;
};
// Every legal succession of sequences, with all changes of shape.
const std::vector<Frame> kSuccession = {{0, 0}, {0, 1}, {0, 1}, {1, 0}, {2, 0}, {2, 1},
                                        {2, 1}, {3, 1}, {0, 0}, {1, 1}, {2, 0}, {3, 0},
                                        {1, 0}, {2, 1}, {3, 0}, {0, 0}};

Block randomSpectrum(std::mt19937& random, double amplitude) {
    std::normal_distribution<double> line(0, amplitude);
    Block spectrum;
    for (int k = 0; k < 1024; ++k)
        spectrum[k] = static_cast<Zet32s>(std::lround(line(random) / (1 + k / 32.0)));
    return spectrum;
}

Zet32s clipToPcm(double x) {
    return static_cast<Zet32s>(x < -32768 ? -32768 : x > 32767 ? 32767 : x);
}

TEST(AacFilterBank, SynthesisFollowsTheStandardThroughEverySuccession) {
    std::mt19937 random(1);
    Block overlap{};
    std::vector<double> kept(1024);
    int prevShape = zetAacSine;
    double squares = 0;
    double largest = 0;
    for (const Frame& frame : kSuccession) {
        const Block spectrum = randomSpectrum(random, 3e8);  // peaks near full scale of 16 bits
        const std::vector<double> exact =
            windowedFrame(spectrum, frame.sequence, frame.shape, prevShape);
        Block pcmSource = spectrum;
        Block inPlace = spectrum;
        Block overlapInPlace = overlap;
        std::vector<Zet16s> pcm(1024);
        ASSERT_EQ(zetStsOk, zetsMDCTInv_AAC_32s16s(pcmSource.data(), pcm.data(), overlap.data(),
                                                   frame.sequence, frame.shape, prevShape, 1));
        ASSERT_EQ(zetStsOk, zetsMDCTInv_AAC_32s_I(inPlace.data(), overlapInPlace.data(),
                                                  frame.sequence, frame.shape, prevShape, 1024));
        EXPECT_EQ(overlap, overlapInPlace);
        for (int n = 0; n < 1024; ++n) {
            const double error = inPlace[n] - (exact[n] + kept[n]) / 8;
            squares += error * error;
            largest = std::max(largest, std::abs(error));
            ASSERT_EQ(clipToPcm(inPlace[n]), pcm[n]);
            kept[n] = exact[1024 + n];
        }
        prevShape = frame.shape;
    }
    // Rounding to an integer gives 0.289 RMS and 0.5. The two truncated window products add a mean
    // of -1/8, so 0.315 RMS; the transforms add less than 0.1 Q3 units RMS at this level.
    EXPECT_LT(std::sqrt(squares / (1024.0 * kSuccession.size())), 0.33);
    EXPECT_LT(largest, 1.0);
}

TEST(AacFilterBank, AnalysisFollowsTheStandard) {
    std::mt19937 random(2);
    for (const double amplitude : {20.0, 3e4, 3e6}) {
        std::uniform_real_distribution<double> sample(-amplitude, amplitude);
        for (int sequence = 0; sequence < 4; ++sequence) {
            const int length = sequence == zetAacEightShort ? 256 : 2048;
            std::vector<Zet32s> x(2048);
            std::vector<Zet32s> work(2048);
            for (Zet32s& value : x) value = static_cast<Zet32s>(sample(random));
            std::vector<Zet32s> inPlace = x;
            std::vector<Zet32s> spectrum(length / 2);
            Zet32s reserved = 0;
            ASSERT_EQ(zetStsOk, zetsMDCTFwd_AAC_32s(x.data(), spectrum.data(), &reserved, sequence,
                                                    1, 0, work.data()));
            ASSERT_EQ(zetStsOk, zetsMDCTFwd_AAC_32s_I(inPlace.data(), &reserved, sequence, 1, 0,
                                                      work.data()));
            const std::vector<double> window = frameWindow(sequence, 1, 0);
            double squares = 0;
            double energy = 0;
            for (int k = 0; k < length / 2; ++k) {
                double exact = 0;
                for (int n = 0; n < length; ++n) exact += window[n] * x[n] * kernel(length, n, k);
                squares += std::pow(spectrum[k] - 2 * exact, 2);
                energy += std::pow(2 * exact, 2);
                ASSERT_EQ(spectrum[k], inPlace[k]);
            }
            // Window products truncate by 1/2 +- 0.289, which the transform turns into sqrt(N) at
            // most; block floating point leaves white noise a relative error of 4.9e-7 (measured).
            EXPECT_LT(std::sqrt(squares / (length / 2.0)),
                      std::sqrt(length) + 6e-7 * std::sqrt(energy / (length / 2.0)))
                << "sequence " << sequence << " amplitude " << amplitude;
        }
    }
}

TEST(AacFilterBank, ClippingAndPcmStep) {
    // A spectrum with DC-like content drives the output through both limits.
    Block spectrum{};
    spectrum[0] = 2000000000;
    Block overlap{};
    std::vector<Zet16s> pcm(2048, 77);
    ASSERT_EQ(zetStsOk,
              zetsMDCTInv_AAC_32s16s(spectrum.data(), pcm.data(), overlap.data(), 0, 0, 0, 2));
    bool clipped = false;
    for (int n = 0; n < 1024; ++n) {
        ASSERT_EQ(clipToPcm(spectrum[n]), pcm[2 * n]);
        ASSERT_EQ(77, pcm[2 * n + 1]);
        clipped = clipped || spectrum[n] < -32768 || spectrum[n] > 32767;
    }
    EXPECT_TRUE(clipped);
}

TEST(AacFilterBank, RoundsTheOverlapAwayFromSilence) {
    // With a silent spectrum the output is (overlap + 4) >> 3, saturated to 16 bits.
    Block spectrum{};
    Block overlap{};
    const std::array<Zet32s, 10> values = {
        0, 3, 4, -4, -5, -32767 * 8, -32768 * 8, 32767 * 8, 2147483647, -2147483647 - 1};
    std::copy(values.begin(), values.end(), overlap.begin());
    const std::array<Zet16s, 10> expected = {0, 0, 1, 0, -1, -32767, -32768, 32767, 32767, -32768};
    std::array<Zet16s, 1024> pcm;
    zetsMDCTInv_AAC_32s16s(spectrum.data(), pcm.data(), overlap.data(), 0, 1, 1, 1);
    for (size_t n = 0; n < expected.size(); ++n) EXPECT_EQ(expected[n], pcm[n]) << n;
    EXPECT_EQ(Block{}, overlap);
}

}  // namespace
