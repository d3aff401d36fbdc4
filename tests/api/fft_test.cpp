// The FFTs: values against references in long double, and formats.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <climits>
#include <cstring>
#include <memory>

#include "support/guarded.h"
#include "support/reference_fft.h"

namespace zetac::test {
namespace {

constexpr int kMaxOrder = 14;
constexpr int kFlags[] = {zetFftDivFwdByN, zetFftDivInvByN, zetFftDivBySqrtN, zetFftNoDiv};

// The header promises 1e-7 * log2 N. Measured: at most 4.9e-8 * sqrt(log2 N), as of independent
// roundings in every stage; twice that is below the promise for every N.
double errorLimit(int order) {
    return 1e-7 * std::sqrt(std::max(order, 1));
}

using PairSpec = std::unique_ptr<ZetsFFTSpec_C_32fc, decltype(&zetsFFTFree_C_32fc)>;
using SplitSpec = std::unique_ptr<ZetsFFTSpec_C_32f, decltype(&zetsFFTFree_C_32f)>;
using IntegerSpec = std::unique_ptr<ZetsFFTSpec_C_16sc, decltype(&zetsFFTFree_C_16sc)>;
using RealSpec = std::unique_ptr<ZetsFFTSpec_R_32f, decltype(&zetsFFTFree_R_32f)>;

template <class Pointer, class InitAlloc, class Free>
Pointer makeSpec(InitAlloc initAlloc, Free free, int order, int flag) {
    typename Pointer::pointer spec = nullptr;
    EXPECT_EQ(zetStsOk, initAlloc(&spec, order, flag, zetAlgHintNone));
    return Pointer(spec, free);
}
PairSpec pairSpec(int order, int flag = zetFftNoDiv) {
    return makeSpec<PairSpec>(zetsFFTInitAlloc_C_32fc, zetsFFTFree_C_32fc, order, flag);
}
SplitSpec splitSpec(int order, int flag = zetFftNoDiv) {
    return makeSpec<SplitSpec>(zetsFFTInitAlloc_C_32f, zetsFFTFree_C_32f, order, flag);
}
IntegerSpec integerSpec(int order, int flag = zetFftNoDiv) {
    return makeSpec<IntegerSpec>(zetsFFTInitAlloc_C_16sc, zetsFFTFree_C_16sc, order, flag);
}
RealSpec realSpec(int order, int flag = zetFftNoDiv) {
    return makeSpec<RealSpec>(zetsFFTInitAlloc_R_32f, zetsFFTFree_R_32f, order, flag);
}

using Pairs = std::vector<Zet32fc>;

Pairs randomPairs(int order, uint32_t seed) {
    const auto singles = randomSingles(size_t{2} << order, seed);
    Pairs pairs(size_t{1} << order);
    std::memcpy(pairs.data(), singles.data(), singles.size() * sizeof singles[0]);
    return pairs;
}
Values toValues(const Pairs& pairs) {
    Values values;
    for (const Zet32fc& pair : pairs) values.emplace_back(pair.re, pair.im);
    return values;
}
template <class Array>
bool same(const Array& a, const Array& b) {
    return std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0;
}

// What the flag multiplies the sums with.
long double norm(int order, int flag, bool inverse) {
    const long double count = std::ldexp(1.0L, order);
    if (flag == zetFftDivBySqrtN) return 1 / std::sqrt(count);
    return flag == (inverse ? zetFftDivInvByN : zetFftDivFwdByN) ? 1 / count : 1;
}

TEST(Fft, agreesWithTheDefinition) {
    for (int order = 0; order <= kMaxOrder + 3; ++order) {
        const Pairs src = randomPairs(order, 1);
        for (const bool inverse : {false, true}) {
            const Values sums = referenceFft(toValues(src), inverse);
            for (const int flag : kFlags) {
                if (order > 12 && flag != zetFftNoDiv) continue;  // a factor at the end, no more
                const PairSpec spec = pairSpec(order, flag);
                Pairs dst(src.size());
                const auto transform = inverse ? zetsFFTInv_CToC_32fc : zetsFFTFwd_CToC_32fc;
                ASSERT_EQ(zetStsOk, transform(src.data(), dst.data(), spec.get(), nullptr));
                Values expected = sums;
                for (Complex& x : expected) x *= norm(order, flag, inverse);
                EXPECT_LT(relativeError(toValues(dst), expected), errorLimit(order))
                    << "order " << order << " flag " << flag << " inverse " << inverse;
            }
        }
    }
}

// In place, at any alignment, and with parts apart.
TEST(Fft, givesTheSameBitsHoweverItIsCalled) {
    for (int order = 0; order <= kMaxOrder; ++order) {
        SCOPED_TRACE(order);
        const size_t count = size_t{1} << order;
        const Pairs src = randomPairs(order, 2);
        const int flag = kFlags[order % 4];
        const PairSpec spec = pairSpec(order, flag);
        const SplitSpec split = splitSpec(order, flag);
        for (const bool inverse : {false, true}) {
            const auto transform = inverse ? zetsFFTInv_CToC_32fc : zetsFFTFwd_CToC_32fc;
            const auto inPlace = inverse ? zetsFFTInv_CToC_32fc_I : zetsFFTFwd_CToC_32fc_I;
            const auto apart = inverse ? zetsFFTInv_CToC_32f : zetsFFTFwd_CToC_32f;
            const auto apartInPlace = inverse ? zetsFFTInv_CToC_32f_I : zetsFFTFwd_CToC_32f_I;
            Pairs expected(count), joined(count);
            ASSERT_EQ(zetStsOk, transform(src.data(), expected.data(), spec.get(), nullptr));
            for (const size_t alignment : {0, 4, 28, 36}) {
                Guarded<Zet32fc> in(count, alignment), out(count, 60 - alignment);
                Guarded<float> re(count, alignment), im(count, 4), re2(count), im2(count, 20);
                std::memcpy(in.bytes(), src.data(), in.size());
                ASSERT_EQ(zetStsOk, transform(in.data(), out.data(), spec.get(), nullptr));
                EXPECT_EQ(0, std::memcmp(out.bytes(), expected.data(), out.size()));
                EXPECT_EQ(0, std::memcmp(in.bytes(), src.data(), in.size()));
                ASSERT_EQ(zetStsOk, inPlace(in.data(), spec.get(), nullptr));
                EXPECT_EQ(0, std::memcmp(in.bytes(), expected.data(), in.size()));

                const int len = static_cast<int>(count);
                zetsCplxToReal_32fc(src.data(), re.data(), im.data(), len);
                ASSERT_EQ(zetStsOk, apart(re.data(), im.data(), re2.data(), im2.data(), split.get(),
                                          nullptr));
                zetsRealToCplx_32f(re2.data(), im2.data(), joined.data(), len);
                EXPECT_EQ(0, std::memcmp(joined.data(), expected.data(), out.size()));
                ASSERT_EQ(zetStsOk, apartInPlace(re.data(), im.data(), split.get(), nullptr));
                zetsRealToCplx_32f(re.data(), im.data(), joined.data(), len);
                EXPECT_EQ(0, std::memcmp(joined.data(), expected.data(), out.size()));
                EXPECT_TRUE(in.intact() && out.intact() && re.intact() && im.intact() &&
                            re2.intact() && im2.intact());
            }
        }
    }
}

using Integers = std::vector<Zet16sc>;

Integers randomIntegers(int order, uint32_t seed) {
    std::mt19937 random(seed);
    Integers values(size_t{1} << order);
    for (Zet16sc& value : values)
        value = {static_cast<Zet16s>(random()), static_cast<Zet16s>(random())};
    return values;
}

// Off from exact by half a unit and by the error of the arithmetic: errorLimit relative to the
// result's RMS, of which six standard deviations are allowed for the worst of 2^15 values.
TEST(FftInteger, isRoundedOnceAndSaturated) {
    for (int order = 0; order <= kMaxOrder; ++order) {
        const Integers src = randomIntegers(order, 4);
        Values values;
        for (const Zet16sc& x : src) values.emplace_back(x.re, x.im);
        for (const bool inverse : {false, true}) {
            const Values sums = referenceFft(values, inverse);
            for (const int scaleFactor : {-1, 0, order / 2, order}) {
                const int flag = kFlags[static_cast<unsigned>(order) % 4];
                const IntegerSpec spec = integerSpec(order, flag);
                Integers dst(src.size());
                Integers inPlace = src;
                const auto transform =
                    inverse ? zetsFFTInv_CToC_16sc_Sfs : zetsFFTFwd_CToC_16sc_Sfs;
                const auto transformInPlace =
                    inverse ? zetsFFTInv_CToC_16sc_ISfs : zetsFFTFwd_CToC_16sc_ISfs;
                ASSERT_EQ(zetStsOk,
                          transform(src.data(), dst.data(), spec.get(), scaleFactor, nullptr));
                ASSERT_EQ(zetStsOk,
                          transformInPlace(inPlace.data(), spec.get(), scaleFactor, nullptr));
                EXPECT_TRUE(same(dst, inPlace)) << order;
                const long double scale =
                    norm(order, flag, inverse) * std::ldexp(1.0L, -scaleFactor);
                const long double rms = scale * 32768 * std::sqrt(std::ldexp(1.0L, order) / 1.5L);
                const long double limit = 0.5L + 6 * errorLimit(order) * rms;
                const auto expectNear = [&](long double exact, int value) {
                    exact = std::min(std::max(exact * scale, -32768.0L), 32767.0L);
                    EXPECT_LE(std::abs(exact - value), limit) << order << " " << scaleFactor;
                };
                for (size_t i = 0; i < dst.size(); ++i) {
                    expectNear(sums[i].real(), dst[i].re);
                    expectNear(sums[i].imag(), dst[i].im);
                }
            }
        }
    }
}

TEST(FftInteger, roundsTiesToEvenAndTakesAnyScaleFactor) {
    const IntegerSpec spec = integerSpec(0);
    const auto scaled = [&](int value, int scaleFactor) {
        Zet16sc x = {static_cast<Zet16s>(value), static_cast<Zet16s>(-value)};
        EXPECT_EQ(zetStsOk, zetsFFTFwd_CToC_16sc_ISfs(&x, spec.get(), scaleFactor, nullptr));
        return std::pair<int, int>(x.re, x.im);
    };
    EXPECT_EQ(scaled(3, 1), std::pair(2, -2));
    EXPECT_EQ(scaled(5, 1), std::pair(2, -2));
    EXPECT_EQ(scaled(1, 1), std::pair(0, 0));
    EXPECT_EQ(scaled(7, 2), std::pair(2, -2));
    EXPECT_EQ(scaled(20000, -1), std::pair(32767, -32768));
    EXPECT_EQ(scaled(1, INT_MIN), std::pair(32767, -32768));
    EXPECT_EQ(scaled(0, INT_MIN), std::pair(0, 0));
    EXPECT_EQ(scaled(32767, INT_MAX), std::pair(0, 0));
}

struct RealFormat {
    const char* name;
    decltype(&zetsFFTFwd_RToCCS_32f) forward, inverse;
    decltype(&zetsFFTFwd_RToCCS_32f_I) forwardInPlace, inverseInPlace;
    size_t (*placeOf)(size_t part, size_t len);  // of part 2 k, real, or 2 k + 1, imaginary
};
constexpr size_t kNowhere = SIZE_MAX;

const RealFormat kFormats[] = {
    {"CCS", zetsFFTFwd_RToCCS_32f, zetsFFTInv_CCSToR_32f, zetsFFTFwd_RToCCS_32f_I,
     zetsFFTInv_CCSToR_32f_I, [](size_t part, size_t) { return part; }},
    {"Pack", zetsFFTFwd_RToPack_32f, zetsFFTInv_PackToR_32f, zetsFFTFwd_RToPack_32f_I,
     zetsFFTInv_PackToR_32f_I,
     [](size_t part, size_t len) {
         return part == 0 ? 0 : part == 1 || part == len + 1 ? kNowhere : part - 1;
     }},
    {"Perm", zetsFFTFwd_RToPerm_32f, zetsFFTInv_PermToR_32f, zetsFFTFwd_RToPerm_32f_I,
     zetsFFTInv_PermToR_32f_I, [](size_t part, size_t len) {
         return part == len                    ? std::min<size_t>(1, len - 1)
                : part == 1 || part == len + 1 ? kNowhere
                                               : part;
     }}};

// Back: the errors of two transforms. CCS holds imaginary parts that do not count.
TEST(FftReal, storesTheLowerHalfInThreeFormatsAndComesBack) {
    for (int order = 0; order <= kMaxOrder; ++order) {
        const size_t len = size_t{1} << order;
        const auto src = randomSingles(len, 5);
        Values sums = referenceFft(Values(src.begin(), src.end()), false);
        sums.resize(len == 1 ? 1 : len / 2 + 1);
        for (const RealFormat& format : kFormats) {
            const bool isCcs = &format == kFormats;
            for (const int flag : kFlags) {
                SCOPED_TRACE(testing::Message() << format.name << order << " flag " << flag);
                const RealSpec spec = realSpec(order, flag);
                const size_t size = isCcs ? 2 * sums.size() : len;
                Guarded<float> dst(size, 4), back(len, 8);
                ASSERT_EQ(zetStsOk, format.forward(src.data(), dst.data(), spec.get(), nullptr));
                Values result, expected = sums;
                for (size_t k = 0; k < sums.size(); ++k) {
                    const auto part = [&](size_t i) {
                        const size_t place = format.placeOf(i, len);
                        return place == kNowhere ? 0 : dst[place];
                    };
                    result.emplace_back(part(2 * k), len == 1 ? 0 : part(2 * k + 1));
                    expected[k] *= norm(order, flag, false);
                }
                EXPECT_LT(relativeError(result, expected), errorLimit(order));
                std::vector<float> inPlace = src;
                inPlace.resize(size);
                ASSERT_EQ(zetStsOk, format.forwardInPlace(inPlace.data(), spec.get(), nullptr));
                EXPECT_EQ(0, std::memcmp(inPlace.data(), dst.data(), dst.size()));

                if (isCcs) inPlace[1] = inPlace[len > 1 ? len + 1 : 1] = 99;
                ASSERT_EQ(zetStsOk,
                          format.inverse(inPlace.data(), back.data(), spec.get(), nullptr));
                Values returned(back.data(), back.data() + len), given(src.begin(), src.end());
                for (Complex& x : given)
                    x *= norm(order, flag, false) * norm(order, flag, true) * len;
                EXPECT_LT(relativeError(returned, given), 2 * errorLimit(order));
                ASSERT_EQ(zetStsOk, format.inverseInPlace(inPlace.data(), spec.get(), nullptr));
                EXPECT_EQ(0, std::memcmp(inPlace.data(), back.data(), back.size()));
                EXPECT_TRUE(dst.intact() && back.intact());
            }
        }
    }
}

}  // namespace
}  // namespace zetac::test
