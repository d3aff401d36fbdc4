// The fixed-point predictors of SBR against the covariance method in long double, and
// zetsInvWrap_32s_Sf.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <complex>
#include <random>
#include <vector>

namespace zetac::test {
namespace {

using Value = std::complex<long double>;
using Signal = std::vector<std::complex<double>>;

struct Alphas {
    Value first, second;
};

// The rules, covariance by covariance. Real signals are complex ones without imaginary parts.
Alphas modelOf(const std::vector<Value>& x) {
    const auto phi = [&](size_t i, size_t j) {
        Value sum = 0;
        for (size_t n = 2; n < x.size(); ++n) sum += x[n - i] * std::conj(x[n - j]);
        return sum;
    };
    const long double phi11 = phi(1, 1).real();
    const long double d = phi(2, 2).real() * phi11 - 0.99999905F * std::norm(phi(1, 2));
    Alphas alphas{};
    if (d != 0) alphas.second = (phi(0, 1) * phi(1, 2) - phi(0, 2) * phi11) / d;
    if (phi11 > 0) alphas.first = -(phi(0, 1) + alphas.second * std::conj(phi(1, 2))) / phi11;
    if (std::norm(alphas.first) >= 16 || std::norm(alphas.second) >= 16) return {};
    return alphas;
}

constexpr size_t kBand = 2;  // of rows of three; the other bands hold other values
constexpr long double kUnit = 0x1p-29L;

Value valueOf(Zet32s x) {
    return static_cast<long double>(x);
}
Value valueOf(Zet32sc x) {
    return {static_cast<long double>(x.re), static_cast<long double>(x.im)};
}
void assign(Zet32s& x, std::complex<double> value) {
    x = static_cast<Zet32s>(value.real());
}
void assign(Zet32sc& x, std::complex<double> value) {
    x = {static_cast<Zet32s>(value.real()), static_cast<Zet32s>(value.imag())};
}
ZetStatus predict(const Zet32s* const rows[], Zet32s* a0, Zet32s* a1, int band, int numSlots) {
    return zetsPredictOneCoef_SBRLP_32s_D2L(rows, a0, a1, band, numSlots);
}
ZetStatus predict(const Zet32sc* const rows[], Zet32sc* a0, Zet32sc* a1, int band, int numSlots) {
    return zetsPredictOneCoef_SBRHQ_32sc_D2L(rows, a0, a1, band, numSlots);
}

template <class Sample>
struct Prediction {
    Alphas result, model;

    explicit Prediction(const Signal& signal) {
        std::vector<std::vector<Sample>> rows(signal.size(), std::vector<Sample>(3));
        std::vector<const Sample*> pointers;
        std::vector<Value> exact;
        for (size_t n = 0; n < signal.size(); ++n) {
            assign(rows[n][0], 77.0 + 13.0 * static_cast<double>(n * n % 7));
            assign(rows[n][kBand], signal[n]);
            exact.push_back(valueOf(rows[n][kBand]));
            pointers.push_back(rows[n].data());
        }
        Sample a0, a1;
        EXPECT_EQ(zetStsOk,
                  predict(pointers.data(), &a0, &a1, kBand, static_cast<int>(signal.size()) - 2));
        result = {valueOf(a0) * kUnit, valueOf(a1) * kUnit};
        model = modelOf(exact);
    }
    long double error() const {
        return std::max(std::abs(result.first - model.first),
                        std::abs(result.second - model.second));
    }
};

// A resonance in noise: x[n] = p x[n - 1] + q x[n - 2] + noise, the largest part at amplitude.
Signal resonance(size_t count, double radius, double angle, double noise, double amplitude,
                 std::mt19937& random) {
    std::normal_distribution<double> normal;
    const std::complex<double> pole = std::polar(radius, angle);
    Signal x(count);
    std::complex<double> old = normal(random), older = normal(random);
    double largest = 0;
    for (auto& value : x) {
        const std::complex<double> excitation(normal(random), normal(random));
        value = 2 * pole.real() * old - radius * radius * older + noise * excitation;
        older = old;
        old = value;
        largest = std::max({largest, std::abs(value.real()), std::abs(value.imag())});
    }
    for (auto& value : x) value *= amplitude / largest;
    return x;
}

// Exact covariances up to 2^27; above, samples are rounded to 27 bits.
TEST(SbrFixedPredict, followTheCovarianceMethod) {
    std::mt19937 random(1);
    for (int trial = 0; trial < 300; ++trial) {
        const double amplitude = std::exp2(8 + trial % 23);
        const Signal signal = resonance(3 + random() % 60, 0.5 + 0.0016 * trial,
                                        0.01 * static_cast<double>(random() % 314),
                                        trial % 5 == 0 ? 1e-4 : 0.5, amplitude, random);
        // Rounding of the result; and of loud samples, measured: at most 3.6 * 2^-27.
        const long double tolerance = amplitude >= 0x1p27 ? 0x1p-24L : 0.75L * kUnit;
        EXPECT_LE(Prediction<Zet32sc>(signal).error(), tolerance) << trial;
        EXPECT_LE(Prediction<Zet32s>(signal).error(), tolerance) << trial;
    }
}

TEST(SbrFixedPredict, doNotDependOnTheFormat) {
    std::mt19937 random(2);
    Signal signal = resonance(34, 0.97, 0.7, 0.2, 0x1p20, random);
    for (auto& x : signal) x = {std::floor(x.real()), std::floor(x.imag())};
    const Prediction<Zet32sc> reference(signal);
    for (int shift = 1; shift <= 10; ++shift) {
        for (auto& x : signal) x *= 2;
        const Prediction<Zet32sc> shifted(signal);
        EXPECT_EQ(reference.result.first, shifted.result.first);
        EXPECT_EQ(reference.result.second, shifted.result.second);
    }
}

TEST(SbrFixedPredict, keepTheirLimits) {
    // alpha0 = -X[2] conj(X[1]) / |X[1]|^2 where X[0] = 0 leaves alpha1 = 0: 4 is too much, the
    // next magnitude below it is not.
    for (const double x2 : {3999.0, 4000.0, -3999.0, -4000.0}) {
        const Prediction<Zet32s> real({0, 1000, x2});
        EXPECT_NEAR(std::abs(x2) < 4000 ? -x2 / 1000 : 0,
                    static_cast<double>(real.result.first.real()), 0x1p-30);
        const Prediction<Zet32sc> imaginary({0, {0, 1000}, {0, x2}});
        EXPECT_EQ(real.result.first, imaginary.result.first);
    }
    const Prediction<Zet32sc> rounded({0, 1 << 30, {-0x1p31, 0}});
    EXPECT_EQ(Value(2), rounded.result.first);
    // Either coefficient clears both.
    const Prediction<Zet32s> growing({1, 1, 100, 90});
    EXPECT_EQ(Value(0), growing.result.first);
    EXPECT_EQ(Value(0), growing.result.second);
    EXPECT_EQ(Value(0), Prediction<Zet32sc>(Signal(10)).result.first);
}

TEST(SbrFixedPredict, takeAnyAmplitude) {
    std::mt19937 random(3);
    for (const size_t count : {3, 40, 1000}) {
        Signal loud(count);
        for (auto& x : loud) {
            x = {random() % 2 != 0 ? 2147483647.0 : -2147483648.0,
                 random() % 2 != 0 ? 2147483647.0 : -2147483648.0};
        }
        // Samples are rounded to 25 bits at least.
        EXPECT_LE(Prediction<Zet32sc>(loud).error(), 0x1p-20L) << count;
        EXPECT_LE(Prediction<Zet32s>(loud).error(), 0x1p-20L) << count;
    }
}

TEST(SbrFixedPredict, writeNothingWithoutSlots) {
    const Zet32s row[1] = {5};
    const Zet32s* rows[2] = {row, row};
    Zet32s a0 = 11, a1 = 12;
    EXPECT_EQ(zetStsOk, zetsPredictOneCoef_SBRLP_32s_D2L(rows, &a0, &a1, 0, 0));
    EXPECT_EQ(zetStsOk, zetsPredictOneCoef_SBRLP_32s_D2L(rows, &a0, &a1, 0, -3));
    EXPECT_EQ(11, a0);
    EXPECT_EQ(12, a1);
}

TEST(SbrInvWrap, putsALineInOrder) {
    const Zet32s line[5] = {30, -41, INT32_MAX, 10, -22};
    const auto order = [&](int position, int scaleFactor) {
        std::vector<Zet32s> out(5);
        EXPECT_EQ(zetStsOk, zetsInvWrap_32s_Sf(line, out.data(), 5, position, scaleFactor));
        return out;
    };
    using Line = std::vector<Zet32s>;
    EXPECT_EQ(order(3, 0), (Line{10, -22, 30, -41, INT32_MAX}));
    EXPECT_EQ(order(0, 2), (Line{8, -10, 0x20000000, 3, -5}));  // 7.5, -10.25, .., 2.5, -5.5
    EXPECT_EQ(order(4, 31), (Line{0, 0, 0, 1, 0}));
    EXPECT_EQ(order(1, -1), (Line{-82, -2, 20, -44, 60}));
}

}  // namespace
}  // namespace zetac::test
