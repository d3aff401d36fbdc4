// Psychoacoustic model two below its interface: tables, arithmetic, spectra and predictions.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <random>

#include "mp3/psycho/arithmetic.h"
#include "mp3/psycho/kernels.h"
#include "support/reference_fft.h"
#include "support/vectors.h"
#include "tables/mp3/psycho_spectrum.h"

namespace zetac::mp3 {
namespace {

constexpr double kQ31 = 0x1p-31;

// All tables, as tests/support/vectors/mp3_psycho.py computes them, and one value of each kind.
TEST(Mp3PsyTables, areAsComputedElsewhere) {
    std::vector<int64_t> values;
    const auto add = [&](const auto* table, int count) {
        values.insert(values.end(), table, table + count);
    };
    for (const PsyTables& t : tables::_zet_pPsyTables_MP3) {
        for (const bool isLong : {true, false}) {
            const int count = isLong ? t.numLong : t.numShort;
            const int bands = (isLong ? kPsySfbLong : kPsySfbShort) + 1;
            const uint32_t* bounds = isLong ? t.pSprdngBoundLong : t.pSprdngBoundShort;
            int packed = 0;
            for (int b = 0; b < count; ++b)
                packed += static_cast<int>((bounds[b] >> 16) - (bounds[b] & 0xffff)) + 1;
            add(isLong ? t.pPsyPartitionTableLong : t.pPsyPartitionTableShort, count + 1);
            values.push_back(count);
            add(bounds, count);
            add(isLong ? t.pSprdngPackedLong : t.pSprdngPackedShort, packed);
            add(isLong ? t.pBMLDRatioLong : t.pBMLDRatioShort, count);
            add(isLong ? t.pQuietThresholdLong : t.pQuietThresholdShort, count);
            add(isLong ? t.pPartToSfbBuoLong : t.pPartToSfbBuoShort, bands);
            add(isLong ? t.pPartToSfbWeightLong : t.pPartToSfbWeightShort, bands);
            if (!isLong) add(t.pSMRShort, count);
        }
    }
    EXPECT_EQ(values, test::readVector<int64_t>("mp3_psycho_tables"));

    const PsyTables& t = tables::_zet_pPsyTables_MP3[0];
    EXPECT_EQ(t.pPsyPartitionTableLong[18], 21);
    EXPECT_EQ(t.pSprdngBoundLong[2], 8U << 16);
    EXPECT_EQ(t.pBMLDRatioLong[2], 2260205);
    EXPECT_EQ(t.pQuietThresholdLong[4], 2742U);
    EXPECT_EQ(t.pPartToSfbWeightLong[2], 835371139);
    EXPECT_EQ(tables::pHannWinLong_MP3[511], 32767);
    EXPECT_EQ(tables::pHannWinShort_MP3[128], 32767);
}

// Tolerances are those that the routines promise.
TEST(Mp3PsyArithmetic, isAsExactAsItSays) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 200000; ++i) {
        const uint64_t a = random() >> (random() % 64);
        const uint64_t b = std::max<uint64_t>(random() >> (random() % 64), 1);
        const double quotientOf = static_cast<double>(a) / static_cast<double>(b);
        const double expected = std::min(quotientOf * 0x1p31, 0x1p31 - 1);
        ASSERT_NEAR(ratioQ31(a, b), expected, 1 + expected * 0x1p-28) << a << " / " << b;
        ASSERT_NEAR(squareRoot64(a), std::sqrt(static_cast<double>(a)),
                    1 + std::sqrt(static_cast<double>(a)) * 0x1p-28);
        const uint64_t energy = a >> 12;
        const auto factor = static_cast<Zet32s>(b & 0x7fffffff);
        ASSERT_EQ(scaleQ31(energy, factor),
                  static_cast<uint64_t>((static_cast<long double>(energy >> 32) * factor) * 2) +
                      (((energy & 0xffffffff) * static_cast<uint64_t>(factor)) >> 31));
        const auto x = static_cast<Zet32s>(std::max<uint64_t>(b & 0x7fffffff, 1));
        ASSERT_NEAR(ownsLog2_Audio_32s16s(x), std::log2(x) * 1024, 1.02);
        const Zet32s tonality = x | 1 << 26;  // 1/32 and more
        const double power = std::pow(tonality * kQ31, 1.18813);
        ASSERT_NEAR(ownsPow118813_Audio_32s(tonality) * kQ31, power, power * 0x1p-19);
    }
    EXPECT_EQ(ratioQ31(0, 0), 0);
    EXPECT_EQ(ratioQ31(1, 0), kMax32s);  // a divisor of 0 is taken as 1
    EXPECT_EQ(ratioQ31(UINT64_MAX, 1), kMax32s);
    EXPECT_EQ(ratioQ31(1, UINT64_MAX), 0);
    int shift;
    EXPECT_EQ(ownsNorm64To32_Audio(0x123456789ab, &shift), 0x91a2b3c4u);
    EXPECT_EQ(shift, 9);
}

// Of samples beyond what any window leaves. The lines are integers; measured, no part is off by
// more than 1.594.
TEST(Mp3PsySpectra, areThoseOfTheDefinition) {
    std::mt19937 random(2);
    const PsyKernels& kernels = core::select(kPsyKernels);
    for (const int length : {kLongBlockLen, kShortBlockLen}) {
        for (int signal = 0; signal < 3; ++signal) {
            std::vector<Zet16s> x(static_cast<size_t>(length));
            for (int i = 0; i < length; ++i)
                x[i] = static_cast<Zet16s>(signal == 0 ? -32768 : random() >> (12 + 6 * signal));
            const test::Values expected = test::referenceFft({x.begin(), x.end()}, false);
            Zet32sc lines[kLongSpectrum];
            if (length == kLongBlockLen)
                kernels.ownsFFTFwd1024_Audio_16s32sc(x.data(), lines);
            else
                kernels.ownsFFTFwd256_Audio_16s32sc(x.data(), lines);
            for (int k = 0; k <= length / 2; ++k) {
                ASSERT_NEAR(lines[k].re, expected[k].real(), 1.6) << signal << " line " << k;
                ASSERT_NEAR(lines[k].im, expected[k].imag(), 1.6) << signal << " line " << k;
            }
        }
    }
}

// Spectra at the limit of their range, in all directions and orders, against the measure in double
// precision: magnitudes are rounded down to 1/64, phases to 2^-30.
TEST(Mp3PsyUnpredictability, holdsTheLoudestLines) {
    constexpr Zet32s kFull = 1 << 24, kDiagonal = 11863283;  // full / sqrt(2)
    const Zet32sc lines[] = {{kFull, 0}, {-kFull, 0}, {0, kFull}, {kDiagonal, -kDiagonal},
                             {1, 0},     {-1, 1},     {0, 0},     {1000, -70000}};
    for (const Zet32sc& a : lines) {
        for (const Zet32sc& b : lines) {
            for (const Zet32sc& c : lines) {
                ZetMP3PsyChannelState state{};
                Zet32s measure[6];
                for (const Zet32sc& x : {a, b, c}) {
                    const Zet32sc spectrum[6] = {x, x, x, x, x, x};
                    ownsCalUnpredictMeasureCw06_Psy_MP3(spectrum, state, measure);
                }
                const auto value = [](Zet32sc x) { return std::complex<double>(x.re, x.im); };
                const auto phase = [&](Zet32sc x) {
                    return value(x) / std::max(std::abs(value(x)), 1e-9);
                };
                const double predicted = 2 * std::abs(value(b)) - std::abs(value(a));
                const auto deviation =
                    value(c) - predicted * phase(b) * phase(b) * std::conj(phase(a));
                const double sum = std::abs(value(c)) + std::abs(predicted);
                const double expected = sum == 0 ? 1 : std::abs(deviation) / sum;
                ASSERT_NEAR(measure[0] * kQ31, expected, sum == 0 ? 1e-9 : 1e-8 + 0.05 / sum)
                    << a.re << ' ' << a.im << ", " << b.re << ' ' << b.im << ", " << c.re << ' '
                    << c.im;
            }
        }
    }
}

}  // namespace
}  // namespace zetac::mp3
