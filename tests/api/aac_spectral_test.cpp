// The spectral tools of AAC against values worked out by hand and models written another way.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

namespace {

constexpr int kIndex44100 = 4;
constexpr int kNumBandsLong = 49;
constexpr int kMaxSfbShort = 12;  // of 14
constexpr int kShortOffset[] = {0, 4, 8, 12, 16, 20, 28, 36, 44, 56, 68, 80, 96, 112, 128};

using Spectrum = std::array<Zet32s, 1024>;

// A channel whose bands all look alike, in three groups of short windows unless said otherwise.
struct Channel {
    Channel(Zet8u codebook, Zet16s scaleFactor) {
        codebooks.fill(codebook);
        scaleFactors.fill(scaleFactor);
    }
    Spectrum spectrum{};
    std::array<Zet16s, ZETAC_AAC_GROUP_BANDS_MAX> scaleFactors;
    std::array<Zet8u, ZETAC_AAC_GROUP_BANDS_MAX> codebooks;
};

constexpr std::array<Zet32s, 3> kGroups = {1, 4, 3};
constexpr Zet32s kOneGroup[] = {1};

// The arguments numWinGrp, pWinGrpLen, maxSfb, and samplingFreqIndex, winLen of two layouts.
#define SHORT_BANDS 3, kGroups.data(), kMaxSfbShort
#define SHORT_TABLE kIndex44100, 128
#define LONG_BANDS 1, kOneGroup, kNumBandsLong
#define LONG_TABLE kIndex44100, 1024

// Calls visit(group, band, window of the frame, first line) for every band of every short window,
// in the interleaved order of the groups.
template <class Visit>
void forEachShortBand(Visit visit) {
    int firstWindow = 0;
    for (int group = 0; group < 3; ++group) {
        int line = firstWindow * 128;
        for (int band = 0; band < kMaxSfbShort; ++band) {
            for (int w = 0; w < kGroups[group]; ++w) {
                visit(group, band, firstWindow + w, line);
                line += kShortOffset[band + 1] - kShortOffset[band];
            }
        }
        firstWindow += kGroups[group];
    }
}

Spectrum randomSpectrum(Zet32s limit, int seed) {
    std::mt19937 generator(static_cast<unsigned>(seed));
    std::uniform_int_distribution<Zet32s> distribution(-limit, limit);
    Spectrum spectrum;
    for (Zet32s& line : spectrum) line = distribution(generator);
    return spectrum;
}

std::vector<Zet32s> pow43(const std::vector<Zet16s>& q, int scaleFactor) {
    std::vector<Zet32s> result(q.size());
    EXPECT_EQ(
        zetsPow43Scale_16s32s_Sf(q.data(), result.data(), scaleFactor, static_cast<int>(q.size())),
        zetStsOk);
    return result;
}

long double exactPow43(int q, int scaleFactor) {
    return powl(q, 4.0L / 3) * exp2l((scaleFactor - 100) / 4.0L + 3);
}

// ---- inverse quantisation

// Magnitudes up to 128 in 64 bits, cut to 32 only at the end.
Zet32s modelOfSmallPow43(int q, int scaleFactor) {
    const int s = scaleFactor - 100;
    const int e = static_cast<int>(std::floor((s + 3) / 4.0));
    const long double fraction = exp2l(-(4 * e - s) / 4.0L);
    const long double power = cbrtl(q) * q;
    const auto fixed = [](long double x, int bits) { return llroundl(ldexpl(x, bits)); };
    if (q < 16) {
        const int bits = q < 4 ? 28 : 25;
        return static_cast<Zet32s>(fixed(power * fraction, bits) >>
                                   std::clamp(bits - 3 - e, 0, 63));
    }
    const int bits = q < 64 ? 23 : 21;
    const int64_t factor = std::min<int64_t>(fixed(fraction, 31), 2147483647);
    const int64_t product = (factor * fixed(power, bits)) >> 32;
    const int shift = bits - 4 - e;
    if (shift >= 0) return static_cast<Zet32s>(product >> std::min(shift, 40));
    return shift > -32 ? static_cast<Zet32s>(
                             static_cast<uint32_t>(static_cast<uint64_t>(product) << -shift))
                       : 2147483647;
}

TEST(AacQuantInv, SmallMagnitudesFollowTheIntegerModel) {
    std::vector<Zet16s> q(257);
    std::iota(q.begin(), q.end(), Zet16s{-128});
    for (int scaleFactor = -300; scaleFactor <= 500; ++scaleFactor) {
        const std::vector<Zet32s> result = pow43(q, scaleFactor);
        for (int i = 1; i <= 128; ++i) {
            const Zet32s expected = modelOfSmallPow43(i, scaleFactor);
            ASSERT_EQ(result[128 + i], expected) << i << " at " << scaleFactor;
            ASSERT_EQ(static_cast<uint32_t>(result[128 - i]), 0u - static_cast<uint32_t>(expected));
        }
        ASSERT_EQ(result[128], 0);
    }
}

// The polynomial never gives less than the exact value and at most 2^-39.4 of it more, so that the
// truncated result is at most 1 below and 2^31 * 2^-39.4 = 0.003 above it.
TEST(AacQuantInv, LargeMagnitudesAreExactToOneUnit) {
    std::vector<Zet16s> q(8191 - 128);
    std::iota(q.begin(), q.end(), Zet16s{129});
    for (int scaleFactor = 0; scaleFactor <= 255; ++scaleFactor) {
        const std::vector<Zet32s> result = pow43(q, scaleFactor);
        for (size_t i = 0; i < q.size(); ++i) {
            const long double exact = exactPow43(q[i], scaleFactor);
            if (exact >= 0x1p31L) break;
            ASSERT_LE(result[i], exact + 0.003L) << q[i] << " at " << scaleFactor;
            ASSERT_GE(result[i], exact - 1) << q[i] << " at " << scaleFactor;
        }
    }
    for (int root = 6; root <= 20; ++root)  // cubes have whole powers
        EXPECT_EQ(pow43({static_cast<Zet16s>(root * root * root)}, 100)[0],
                  8 * root * root * root * root);
}

TEST(AacQuantInv, LargeMagnitudesWrapAndThenSaturate) {
    // 512^(4/3) = 2^12, in Q3 2^15: times 2^16 the top bit falls on the sign, times 2^17 out.
    EXPECT_EQ(pow43({512, -512}, 100 + 4 * 16), (std::vector<Zet32s>{INT32_MIN, INT32_MIN}));
    EXPECT_LT(pow43({512}, 100 + 4 * 17)[0], 1 << 8);
    const std::vector<Zet32s> saturated = {2147483647, -2147483647, 2147483647};
    for (const int scaleFactor : {400, 32767, 2147483647})
        EXPECT_EQ(pow43({16, -129, 8191}, scaleFactor), saturated);
    EXPECT_EQ(pow43({1, 16, 8191}, -2147483647 - 1), (std::vector<Zet32s>{0, 0, 0}));
}

TEST(AacQuantInv, WalksBandsOfGroups) {
    Channel channel(1, 100);
    const Zet8u codebooks[] = {0, 11, 13, 14, 15, 5};
    forEachShortBand([&](int group, int band, int, int line) {
        channel.codebooks[group * kMaxSfbShort + band] = codebooks[band % 6];
        channel.scaleFactors[group * kMaxSfbShort + band] = static_cast<Zet16s>(100 + 4 * group);
        for (int i = 0; i < kShortOffset[band + 1] - kShortOffset[band]; ++i)
            channel.spectrum[line + i] = i % 2 ? -1 : 8;
    });
    ASSERT_EQ(zetsQuantInv_AAC_32s_I(channel.spectrum.data(), channel.scaleFactors.data(),
                                     SHORT_BANDS, channel.codebooks.data(), SHORT_TABLE),
              zetStsOk);
    forEachShortBand([&](int group, int band, int, int line) {
        const bool converted = band % 6 == 1 || band % 6 == 5;
        EXPECT_EQ(channel.spectrum[line], converted ? 128 << group : 8) << group << ' ' << band;
        EXPECT_EQ(channel.spectrum[line + 1], converted ? -(8 << group) : -1);
    });
    EXPECT_EQ(channel.spectrum[127], 0);
}

TEST(AacQuantInv, StopsAtTheBandWithAValueOutOfRange) {
    for (const Zet32s outOfRange : {8192, -8192, INT32_MIN}) {
        Channel channel(1, 100);
        channel.spectrum.fill(1);
        channel.spectrum[5] = 8191;
        channel.spectrum[11] = outOfRange;
        Spectrum expected = channel.spectrum;
        std::fill_n(expected.begin(), 8, 8);
        expected[5] = static_cast<Zet32s>(exactPow43(8191, 100));
        EXPECT_EQ(zetsQuantInv_AAC_32s_I(channel.spectrum.data(), channel.scaleFactors.data(),
                                         LONG_BANDS, channel.codebooks.data(), LONG_TABLE),
                  zetStsAacCoefValErr);
        EXPECT_EQ(channel.spectrum, expected);
    }
    const Zet16s integers[] = {1, -2, 8191, 8192};
    Zet32s result[4];
    EXPECT_EQ(zetsPow43Scale_16s32s_Sf(integers, result, 100, 4), zetStsAacCoefValErr);
    EXPECT_TRUE(std::equal(integers, integers + 4, result));
}

// ---- stereo

TEST(AacMsStereo, MatrixesSelectedBandsAndTurnsIntensity) {
    for (const int mask : {1, 2}) {
        Channel left(1, 0), right(1, 0);
        left.spectrum.fill(INT32_MAX);
        right.spectrum.fill(-3);
        std::array<Zet8u, 8 * ZETAC_AAC_MS_ROW> used{};
        for (int group = 0; group < 3; ++group) {
            for (int band = 0; band < kMaxSfbShort; ++band) {
                used[group * ZETAC_AAC_MS_ROW + band] = band % 2;
                right.codebooks[group * kMaxSfbShort + band] =
                    static_cast<Zet8u>(12 + band / 2 % 4);
            }
        }
        ASSERT_EQ(zetsDecodeMsStereo_AAC_32s_I(left.spectrum.data(), right.spectrum.data(), mask,
                                               used.data(), right.codebooks.data(), SHORT_BANDS,
                                               SHORT_TABLE),
                  zetStsOk);
        forEachShortBand([&](int group, int band, int, int line) {
            const int book = 12 + band / 2 % 4;
            const bool matrixed = book == 12 && (mask == 2 || band % 2);
            EXPECT_EQ(left.spectrum[line], matrixed ? INT32_MAX - 3 : INT32_MAX);
            EXPECT_EQ(right.spectrum[line], matrixed ? INT32_MIN + 2 : -3);
            const bool turned = book >= 14 && mask == 1 && band % 2;
            EXPECT_EQ(right.codebooks[group * kMaxSfbShort + band], turned ? book ^ 1 : book);
        });
    }
}

Spectrum intensity(const Spectrum& left, Zet8u codebook, int position) {
    Channel right(codebook, static_cast<Zet16s>(position));
    EXPECT_EQ(
        zetsDecodeIsStereo_AAC_32s(left.data(), right.spectrum.data(), right.scaleFactors.data(),
                                   right.codebooks.data(), LONG_BANDS, LONG_TABLE),
        zetStsOk);
    return right.spectrum;
}

// One truncation, and the error of a factor of the table: 2^-32 of 0.148 at least.
TEST(AacIntensityStereo, PansByQuarterPowersOfTwo) {
    const Spectrum left = randomSpectrum(1 << 20, 1);
    for (int position = -32; position <= 200; ++position) {
        const Spectrum inPhase = intensity(left, 15, position);
        const Spectrum outOfPhase = intensity(left, 14, position);
        const double gain = std::exp2(-position / 4.0);
        for (size_t i = 0; i < left.size(); ++i) {
            ASSERT_NEAR(inPhase[i], left[i] * gain, 1 + std::abs(left[i]) * gain * 0x1p-29);
            ASSERT_EQ(outOfPhase[i], -inPhase[i]);
        }
    }
    const Spectrum loud = randomSpectrum(INT32_MAX, 2);
    EXPECT_EQ(intensity(loud, 15, 0), loud);
    EXPECT_EQ(intensity(loud, 9, 0), Spectrum{});
}

TEST(AacIntensityStereo, TakesAnyPosition) {
    Spectrum left{};
    left[0] = 3 << 26;  // what is shifted out is lost, and the shift itself counts modulo 32
    left[1] = -5;
    EXPECT_EQ(intensity(left, 15, -8)[0], -(1 << 28));
    EXPECT_EQ(intensity(left, 15, -8 - 4 * 32), intensity(left, 15, -8));
    EXPECT_EQ(intensity(left, 15, 32767)[1], -1);
    EXPECT_EQ(intensity(left, 15, 32767)[0], 0);
    left[0] = INT32_MAX;  // amplified by 2^(3/4) it saturates
    EXPECT_EQ(intensity(left, 15, -3)[0], INT32_MAX);
    EXPECT_EQ(intensity(left, 14, -3)[0], INT32_MIN);
    intensity(left, 15, -32768);
}

// ---- noise

double norm(const Zet32s* line, int count) {
    return std::sqrt(
        std::accumulate(line, line + count, 0.0, [](double sum, double x) { return sum + x * x; }));
}

// The scale is good to 2^-27; rounding adds at most half a unit per line, sqrt(width) / 2 in all.
TEST(AacNoise, MeetsTheEnergyOfEveryWindow) {
    for (int energy = -20; energy <= 100; ++energy) {
        Channel channel(13, static_cast<Zet16s>(energy));
        Zet32s state = energy;
        ASSERT_EQ(
            zetsDecodePNS_AAC_32s(channel.spectrum.data(), &state, channel.scaleFactors.data(),
                                  SHORT_BANDS, channel.codebooks.data(), SHORT_TABLE),
            zetStsOk);
        const double target = std::exp2(3 + energy / 4.0);
        forEachShortBand([&](int, int band, int, int line) {
            const int width = kShortOffset[band + 1] - kShortOffset[band];
            EXPECT_NEAR(norm(&channel.spectrum[line], width), target,
                        target * 0x1p-27 + std::sqrt(width) / 2)
                << energy;
        });
        EXPECT_NE(state, energy);
    }
}

TEST(AacNoise, TakesAnyEnergy) {
    const auto noise = [](Zet16s energy) {
        Channel channel(13, energy);
        channel.spectrum.fill(5);
        Zet32s state = 1;
        zetsDecodePNS_AAC_32s(channel.spectrum.data(), &state, channel.scaleFactors.data(), 1,
                              kOneGroup, 40, channel.codebooks.data(), 12, 1024);
        return channel.spectrum;
    };
    EXPECT_EQ(noise(-32768), Spectrum{});
    for (const Zet32s line : noise(32767)) EXPECT_TRUE(line == INT32_MAX || line == INT32_MIN);
}

// Half of the bands are noise in both channels, and half of those selected.
TEST(AacNoise, CorrelatesSelectedBandsOfAPair) {
    for (const int mask : {0, 1, 2}) {
        Channel left(13, 60), right(13, 60);
        std::array<Zet8u, 8 * ZETAC_AAC_MS_ROW> used{};
        for (int band = 0; band < kNumBandsLong; ++band) {
            used[band] = band % 2;
            if (band % 4 == 2) left.codebooks[band] = 1;
            if (band % 4 == 3) right.codebooks[band] = 1;
        }
        Zet32s state = 7;
        ASSERT_EQ(zetsDecodeMsPNS_AAC_32s(left.spectrum.data(), right.spectrum.data(), &state,
                                          left.scaleFactors.data(), right.scaleFactors.data(), mask,
                                          used.data(), LONG_BANDS, left.codebooks.data(),
                                          right.codebooks.data(), LONG_TABLE),
                  zetStsOk);
        for (int band = 0; band < 10; ++band) {  // four lines each
            const auto line = [&](Channel& c) {
                return std::vector(&c.spectrum[4 * band], &c.spectrum[4 * band + 4]);
            };
            const bool both = band % 4 < 2;
            const bool same = both && (mask == 2 || (mask == 1 && band % 2));
            EXPECT_EQ(line(left) == line(right), same) << mask << ' ' << band;
            EXPECT_EQ(norm(line(left).data(), 4) > 0, band % 4 != 2);
            EXPECT_EQ(norm(line(right).data(), 4) > 0, band % 4 != 3);
        }
    }
}

TEST(AacDeinterleave, LaysWindowAfterWindow) {
    Spectrum grouped{}, expected{}, result = randomSpectrum(9, 3);
    forEachShortBand([&](int, int band, int window, int line) {
        for (int i = kShortOffset[band]; i < kShortOffset[band + 1]; ++i)
            grouped[line++] = expected[window * 128 + i] = 1000 * window + i;
    });
    ASSERT_EQ(
        zetsDeinterleaveSpectrum_AAC_32s(grouped.data(), result.data(), SHORT_BANDS, SHORT_TABLE),
        zetStsOk);
    EXPECT_EQ(result, expected);
}

// ---- temporal noise shaping

// The coefficients that a filter takes, the lines it covers, and its direction.
struct Filter {
    int firstCoef, order, start, end;
    bool downwards;
};

constexpr Zet8s kCoef[ZETAC_AAC_TNS_COEFS_MAX] = {3,  -2, 1, -1, 0, 2, -3, 1, -1, 1, 0,  1, -4, 3,
                                                  -1, 1,  2, 3,  1, 2, -2, 1, 0,  3, -4, 2, 1,  1};

double reflection(int index, int coefRes) {
    return std::sin(M_PI * kCoef[index] / ((1 << coefRes) + (kCoef[index] < 0 ? 1 : -1)));
}

// The all-pole filter as a lattice in double.
void latticeFilter(const Filter& filter, int coefRes, std::vector<double>& lines) {
    std::vector<double> backward(filter.order + 1);
    for (double& line : lines) {
        double forward = line;
        for (int m = filter.order - 1; m >= 0; --m) {
            const double k = reflection(filter.firstCoef + m, coefRes);
            forward -= k * backward[m];
            backward[m + 1] = backward[m] + k * forward;
        }
        line = backward[0] = forward;
    }
}

// The largest error that rounding every line by half a unit can make: half the sum of the absolute
// impulse response, here over 1000 lines. Coefficients of 26 fractional bits and more add less than
// the unit allowed for them, with lines up to 2^20.
double roundingBound(const Filter& filter, int coefRes) {
    std::vector<double> impulse(1000);
    impulse[0] = 1;
    latticeFilter(filter, coefRes, impulse);
    return 1 + std::accumulate(impulse.begin(), impulse.end(), 0.0,
                               [](double sum, double x) { return sum + std::abs(x) / 2; });
}

void expectTns(const ZetAACTnsInfo& info, int maxSfb, int winLen,
               const std::vector<Filter>& filters) {
    const Spectrum source = randomSpectrum(1 << 20, 4);
    Spectrum result = source, untouched = source;
    ASSERT_EQ(zetsDecodeTNS_AAC_32s_I(result.data(), &info, kCoef, maxSfb, kIndex44100, winLen),
              zetStsOk);
    for (const Filter& filter : filters) {
        std::vector<double> lines(&source[filter.start], &source[filter.end]);
        if (filter.downwards) std::reverse(lines.begin(), lines.end());
        latticeFilter(filter, info.coef_res[0], lines);
        if (filter.downwards) std::reverse(lines.begin(), lines.end());
        const double bound = roundingBound(filter, info.coef_res[0]);
        for (int i = filter.start; i < filter.end; ++i)
            ASSERT_NEAR(result[i], lines[i - filter.start], bound) << i;
        std::copy(&result[filter.start], &result[filter.end], &untouched[filter.start]);
    }
    EXPECT_EQ(result, untouched) << "lines that no filter covers";
    zetsEncodeTNS_AAC_32s_I(result.data(), &info, kCoef, maxSfb, kIndex44100, winLen, 1);
    EXPECT_EQ(result, source) << "the encoder undoes every bit of the decoder";
}

// The first filter reaches down from band 49 to 29, but only from TNS_MAX_BANDS, 42, on; the second
// one does nothing; the third one takes all that is left.
TEST(AacTns, FollowsTheLatticeInALongWindow) {
    for (const int coefRes : {3, 4}) {
        const ZetAACTnsInfo info = {.n_filt = {3},
                                    .coef_res = {coefRes},
                                    .length = {20, 3, 49},
                                    .order = {12, 0, 5},
                                    .direction = {0, 0, 1},
                                    .coef_compress = {}};
        expectTns(info, 45, 1024, {{0, 12, 320, 736, false}, {12, 5, 0, 240, true}});
    }
}

// 4 * 0.4067 rounds to 2, -2 * 0.4067 to -1, and 1 * 0.4067 to 0.
TEST(AacTns, RoundsEveryPrediction) {
    ZetAACTnsInfo info{};
    info.n_filt[0] = info.order[0] = 1;
    info.coef_res[0] = 4;
    info.length[0] = kNumBandsLong;
    const Zet8s coef = 2;
    Spectrum lines{4}, expected{4, -2, 1};
    zetsDecodeTNS_AAC_32s_I(lines.data(), &info, &coef, kNumBandsLong, LONG_TABLE);
    EXPECT_EQ(lines, expected);
}

// Window w has a filter of order w over the bands 4..13, of which 4..9 are there.
TEST(AacTns, FollowsTheLatticeInShortWindows) {
    ZetAACTnsInfo info{};
    std::vector<Filter> filters;
    for (int w = 0, coef = 0; w < 8; coef += w++) {
        info.n_filt[w] = 1;
        info.coef_res[w] = 4;
        info.length[w] = 10;
        info.order[w] = w;
        info.direction[w] = w % 2;
        if (w > 0) filters.push_back({coef, w, 128 * w + 16, 128 * w + 68, w % 2 == 1});
    }
    expectTns(info, 10, 128, filters);
}

}  // namespace
