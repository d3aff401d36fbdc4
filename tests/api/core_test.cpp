// The library frame and the vector utilities: exact values from independent models.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <bit>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <numeric>
#include <random>

#include "support/guarded.h"

namespace {

using zetac::test::Guarded;

constexpr Zet32f kNaN = std::numeric_limits<Zet32f>::quiet_NaN();
constexpr Zet32f kInf = std::numeric_limits<Zet32f>::infinity();

// from, from + 1 ... to.
template <class T>
std::vector<T> counting(int from, int to) {
    std::vector<T> values(static_cast<size_t>(to - from) + 1);
    std::iota(values.begin(), values.end(), static_cast<T>(from));
    return values;
}

template <class T>
int lengthOf(const std::vector<T>& values) {
    return static_cast<int>(values.size());
}

TEST(Version, isTheReleaseRecord) {
    const ZetLibraryVersion* version = zetacGetLibVersion();
    EXPECT_EQ(version->major, 5);
    EXPECT_EQ(version->minor, 2);
    EXPECT_EQ(version->majorBuild, 108);
    EXPECT_EQ(version->build, 366);
    EXPECT_EQ(std::memcmp(version->targetCpu, "r5\0\0", 4), 0);
    EXPECT_STREQ(version->Name, "libzetacr5.so.5.2");
    EXPECT_STREQ(version->Version, "5.2");
    EXPECT_STREQ(version->BuildDate, "Jul 11 2007");
    EXPECT_EQ(version, zetacGetLibVersion());
}

// What the hooks hand out, and what they are asked.
void* address = nullptr;
std::vector<size_t> asked;
std::vector<void*> freed;

class Allocator : public testing::Test {
  protected:
    Allocator() {
        i_malloc = [](size_t size) {
            asked.push_back(size);
            return address;
        };
        i_free = [](void* block) { freed.push_back(block); };
    }
    ~Allocator() override {
        i_malloc = std::malloc;
        i_free = std::free;
        address = nullptr;
        asked.clear();
        freed.clear();
    }
};

TEST_F(Allocator, placesBlocksForEveryAlignmentOfTheHook) {
    constexpr size_t kLen = 33;
    for (size_t alignment = 0; alignment < 64; ++alignment) {
        Guarded<Zet8u> memory(kLen + 36, alignment);
        address = memory.bytes();
        Zet8u* block = zetsMalloc_8u(kLen);
        ASSERT_EQ(asked.back(), kLen + 36);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % 32, 0u);
        EXPECT_GE(block - memory.bytes(), 4);
        std::memset(block, 0xff, kLen);
        if (alignment % sizeof(void*) == 0) {
            EXPECT_EQ(std::memcmp(block - sizeof(void*), &address, sizeof(void*)), 0);
        }
        zetsFree(block);
        EXPECT_EQ(freed.back(), address);
        EXPECT_TRUE(memory.intact());
    }
}

TEST_F(Allocator, asksForElementsAndReportsFailure) {
    EXPECT_EQ(zetsMalloc_32f(5), nullptr);
    EXPECT_EQ(zetsMalloc_8u(INT_MAX), nullptr);
    EXPECT_EQ(asked, (std::vector<size_t>{4 * 5 + 36, static_cast<size_t>(INT_MAX) + 36}));
    asked.clear();
    for (const int len : {0, -5, INT_MIN}) {
        EXPECT_EQ(zetsMalloc_8u(len), nullptr);
        EXPECT_EQ(zetsMalloc_32f(len), nullptr);
    }
    zetsFree(nullptr);
    EXPECT_TRUE(asked.empty());
    EXPECT_TRUE(freed.empty());
}

// Calls visit(size, alignment) with sizes in bytes on both sides of every change of path, and
// everything short, at all alignments.
template <class Visit>
void forEachPath(Visit visit) {
    std::vector<int> sizes = counting<int>(1, 150);
    for (const int edge : {8192, 16384, 20480})
        for (const int distance : {-65, -16, -4, -1, 0, 1, 4, 15, 63, 64})
            sizes.push_back(edge + distance);
    for (const int size : sizes) {
        for (size_t alignment = 0; alignment < 32; ++alignment) {
            SCOPED_TRACE(testing::Message() << size << " bytes, alignment " << alignment);
            visit(size, alignment);
        }
    }
}

TEST(Fill, setsEveryByteAndNoOtherAtAnyAlignment) {
    forEachPath([](int size, size_t alignment) {
        Guarded<Zet8u> dst(size, alignment);
        ASSERT_EQ(zetsZero_8u(dst.data(), size), zetStsOk);
        ASSERT_EQ(std::count(dst.bytes(), dst.bytes() + size, 0), size);
        ASSERT_TRUE(dst.intact());
        if (size % 4 != 0) return;
        Guarded<Zet32s> words(static_cast<size_t>(size) / 4, alignment);
        ASSERT_EQ(zetsSet_32s(0x04030201, words.data(), size / 4), zetStsOk);
        for (int i = 0; i < size; ++i) ASSERT_EQ(words.bytes()[i], i % 4 + 1) << i;
        ASSERT_TRUE(words.intact());
    });
}

TEST(Fill, countsElementsOfEveryType) {
    const auto expectZeroed = []<class T>(ZetStatus (*zero)(T*, int)) {
        for (const int len : {1, 7, 20480 / static_cast<int>(sizeof(T)) + 1}) {
            Guarded<T> dst(len);
            ASSERT_EQ(zero(dst.data(), len), zetStsOk);
            EXPECT_EQ(std::count(dst.bytes(), dst.bytes() + dst.size(), 0), ptrdiff_t(dst.size()));
            EXPECT_TRUE(dst.intact());
        }
    };
    expectZeroed(zetsZero_16s), expectZeroed(zetsZero_32s), expectZeroed(zetsZero_32f);
    expectZeroed(zetsZero_16sc), expectZeroed(zetsZero_32sc), expectZeroed(zetsZero_32fc);
}

template <class T>
void expectCopied(ZetStatus (*zetsCopy)(const T*, T*, int)) {
    forEachPath([zetsCopy](int size, size_t alignment) {
        if (static_cast<size_t>(size) % sizeof(T) != 0) return;
        const size_t count = static_cast<size_t>(size) / sizeof(T);
        Guarded<T> src(count, alignment * 5 % 32), dst(count, alignment);
        for (int i = 0; i < size; ++i) src.bytes()[i] = static_cast<Zet8u>(i * 167 + i / 256);
        ASSERT_EQ(zetsCopy(src.data(), dst.data(), static_cast<int>(count)), zetStsOk);
        ASSERT_EQ(std::memcmp(src.bytes(), dst.bytes(), src.size()), 0);
        ASSERT_TRUE(dst.intact());
    });
}

TEST(Copy, copiesEveryByteAndNoOtherAtAnyAlignment) {
    expectCopied(zetsCopy_8u);
    expectCopied(zetsCopy_32s);
    expectCopied(zetsCopy_32f);
}

TEST(Copy, movesBetweenOverlappingRegions) {
    constexpr int kStart = 4096;
    for (const int size : {5, 100, 8192, 16384, 30000})
        for (const int distance : {-4096, -17, -1, 0, 1, 17, 4096}) {
            std::vector<Zet8u> memory(static_cast<size_t>(size) + 2 * kStart);
            for (size_t i = 0; i < memory.size(); ++i)
                memory[i] = static_cast<Zet8u>(i * 7 + i / 256);
            const std::vector<Zet8u> source(&memory[kStart], &memory[kStart] + size);
            std::vector<Zet8u> expected = memory;
            std::copy(source.begin(), source.end(), expected.begin() + kStart + distance);
            ASSERT_EQ(zetsMove_8u(&memory[kStart], &memory[kStart] + distance, size), zetStsOk);
            EXPECT_EQ(memory, expected) << size << " bytes by " << distance;
        }
}

// value * 2^-scaleFactor by long division, saturated to low..high; ties to even.
int64_t scaledModel(int64_t value, int64_t scaleFactor, int64_t low, int64_t high) {
    for (; scaleFactor < 0 && low <= value && value <= high && value != 0; ++scaleFactor)
        value *= 2;
    if (scaleFactor > 60) return 0;
    if (scaleFactor > 0) {
        const int64_t divisor = int64_t{1} << scaleFactor;
        const int64_t remainder = ((value % divisor) + divisor) % divisor;
        value = (value - remainder) / divisor;
        value += 2 * remainder > divisor || (2 * remainder == divisor && value % 2 != 0);
    }
    return std::clamp(value, low, high);
}

constexpr int kScaleFactors[] = {INT_MIN, -1000, -33, -32, -31, -30, -29, -16, -15, -2, -1,     0,
                                 1,       2,     3,   15,  16,  17,  30,  31,  32,  33, INT_MAX};

// Values around every power of two, the limits and random ones.
std::vector<Zet32s> integers() {
    std::vector<Zet32s> values = {0, INT_MAX, INT_MAX - 1, INT_MIN, INT_MIN + 1};
    for (int bit = 0; bit < 31; ++bit)
        for (const int distance : {-2, -1, 0, 1, 2}) {
            values.push_back((1 << bit) + distance);
            values.push_back(-(1 << bit) + distance);
            values.push_back((1 << bit) + (1 << bit) / 2 + distance);
        }
    std::mt19937 random(1);
    for (int i = 0; i < 500; ++i)
        values.push_back(static_cast<Zet32s>(random()) >> (random() % 31));
    return values;
}

TEST(Scaled, addsRoundsAndSaturates) {
    const std::vector<Zet32s> src = integers();
    std::mt19937 random(2);
    for (const int scaleFactor : kScaleFactors)
        for (int round = 0; round < 20; ++round) {
            std::vector<Zet32s> before(src);
            if (round > 0) std::shuffle(before.begin(), before.end(), random);
            std::vector<Zet32s> after = before;
            ASSERT_EQ(zetsAdd_32s_ISfs(src.data(), after.data(), lengthOf(src), scaleFactor),
                      zetStsOk);
            for (size_t i = 0; i < src.size(); ++i)
                ASSERT_EQ(after[i],
                          scaledModel(int64_t{before[i]} + src[i], scaleFactor, INT_MIN, INT_MAX))
                    << before[i] << " + " << src[i] << ", scale factor " << scaleFactor;
        }
}

// Expects 16-bit results, converted by convert(pSrc, pDst, len), as the model has them.
template <class T, class Convert, class Model>
void expect16Bits(const std::vector<T>& src, Convert convert, Model model) {
    Guarded<Zet16s> dst(src.size(), 2);
    ASSERT_EQ(convert(src.data(), dst.data(), lengthOf(src)), zetStsOk);
    for (size_t i = 0; i < src.size(); ++i) ASSERT_EQ(dst[i], model(src[i])) << src[i];
    EXPECT_TRUE(dst.intact());
}

TEST(Scaled, convertsIntegersTo16Bits) {
    for (const int scaleFactor : kScaleFactors) {
        SCOPED_TRACE(scaleFactor);
        expect16Bits(
            integers(),
            [&](auto src, auto dst, int len) {
                return zetsConvert_32s16s_Sfs(src, dst, len, scaleFactor);
            },
            [&](Zet32s x) { return scaledModel(x, std::min(scaleFactor, 31), -32768, 32767); });
    }
}

Zet16s singleModel(Zet32f value, int roundMode, int scaleFactor) {
    if (std::isnan(value)) return 0;
    long double x =
        std::ldexp(static_cast<long double>(value), -std::clamp(scaleFactor, -999, 999));
    x = roundMode == zetRndZero   ? std::trunc(x)
        : roundMode == zetRndNear ? std::nearbyint(x)
                                  : std::round(x);
    return static_cast<Zet16s>(std::clamp(x, -32768.0L, 32767.0L));
}

// Special values, and those around every decision at several exponents.
std::vector<Zet32f> singles() {
    std::vector<Zet32f> values = {0.0f,  -0.0f,     kNaN,       -kNaN,          kInf,
                                  -kInf, 0x1p-149f, -0x1p-149f, 0x1.fffffep127f};
    for (const Zet32f middle :
         {0.5f, 1.0f, 1.5f, 2.5f, 3.5f, 32766.5f, 32767.0f, 32767.5f, 32768.0f, 32768.5f, 40000.0f})
        for (const Zet32f value :
             {middle, std::nextafter(middle, 0.0f), std::nextafter(middle, kInf)})
            for (const int exponent : {-140, -20, -1, 0, 1, 20, 100})
                for (const Zet32f sign : {1.0f, -1.0f})
                    values.push_back(sign * std::ldexp(value, exponent));
    return values;
}

TEST(Scaled, convertsSinglesTo16BitsInEveryMode) {
    for (const int scaleFactor :
         {INT_MIN, -200, -150, -127, -100, -20, -1, 0, 1, 20, 100, 127, 150, INT_MAX})
        for (const int roundMode : {zetRndZero, zetRndNear, zetRndFinancial}) {
            SCOPED_TRACE(testing::Message() << roundMode << ", scale factor " << scaleFactor);
            expect16Bits(
                singles(),
                [&](auto src, auto dst, int len) {
                    return zetsConvert_32f16s_Sfs(src, dst, len, roundMode, scaleFactor);
                },
                [&](Zet32f x) { return singleModel(x, roundMode, scaleFactor); });
        }
}

TEST(Convert, makesFloatsOfMantissaAndExponent) {
    const auto exponents = counting<Zet16s>(-142, 111);
    std::vector<Zet32f> dst(exponents.size());
    for (const Zet16s mantissa : {-32768, -12345, -1, 0, 1, 16384, 32767}) {
        const std::vector<Zet16s> mantissas(exponents.size(), mantissa);
        ASSERT_EQ(zetsMakeFloat_16s32f(mantissas.data(), exponents.data(), 254, dst.data()),
                  zetStsOk);
        for (size_t i = 0; i < dst.size(); ++i)
            EXPECT_EQ(dst[i], static_cast<Zet32f>(std::ldexp(mantissa * 0x1p-15, -exponents[i])));
    }
    // Exponent fields 0 and 255, then fields that run on into the sign: 256 and 257.
    const Zet16s ones[] = {1, 1, 1, 1}, beyond[] = {112, -143, -144, -145};
    ASSERT_EQ(zetsMakeFloat_16s32f(ones, beyond, 4, dst.data()), zetStsOk);
    const uint32_t expected[] = {0, 0x7f800000, 0x80000000, 0x80800000};
    for (size_t i = 0; i < 4; ++i) EXPECT_EQ(std::bit_cast<uint32_t>(dst[i]), expected[i]);
}

TEST(Convert, turnsScaleFactorsIntoGains) {
    const auto src = counting<Zet16s>(-32768, 32767);
    std::vector<Zet32f> dst(src.size());
    for (const int offset : {0, 100, -100, 32767, -32768, 33000, -33400, INT_MAX, INT_MIN}) {
        ASSERT_EQ(zetsCalcSF_16s32f(src.data(), offset, dst.data(), 65536), zetStsOk);
        for (size_t i = 0; i < src.size(); ++i) {
            const int64_t d = std::clamp<int64_t>(int64_t{src[i]} - offset, -504, 508);
            ASSERT_EQ(dst[i], static_cast<Zet32f>(std::exp2(static_cast<long double>(d) / 4)))
                << src[i] << " - " << offset;
        }
    }
}

TEST(Arithmetic, shiftsTowardsMinusInfinity) {
    const std::vector<Zet32s> src = integers();
    for (const int shift : {0, 1, 2, 15, 30, 31, 32, 40, INT_MAX}) {
        std::vector<Zet32s> values = src;
        ASSERT_EQ(zetsRShiftC_32s_I(shift, values.data(), lengthOf(src)), zetStsOk);
        const double divisor = std::ldexp(1.0, std::min(shift, 31));
        for (size_t i = 0; i < src.size(); ++i)
            ASSERT_EQ(values[i], std::floor(src[i] / divisor)) << src[i] << " by " << shift;
    }
}

// 1 and NaN change nothing, 0 of either sign gives 0.
TEST(Arithmetic, multipliesByAConstantWithTwoExceptions) {
    const std::vector<Zet32f> src = {0.0f, -0.0f, 1.5f, -3.0f, kInf, kNaN, 0x1p-149f};
    for (const Zet32f value : {1.0f, kNaN, 0.0f, -0.0f, 2.0f}) {
        std::vector<Zet32f> result = src, expected = src;
        if (value == 0) expected.assign(src.size(), 0);
        if (value == 2) expected = {0.0f, -0.0f, 3.0f, -6.0f, kInf, kNaN, 0x1p-148f};
        ASSERT_EQ(zetsMulC_32f_I(value, result.data(), lengthOf(result)), zetStsOk);
        EXPECT_EQ(std::memcmp(result.data(), expected.data(), 4 * src.size()), 0) << value;
    }
}

TEST(Arithmetic, multipliesBandsAndNothingBetween) {
    std::vector<Zet32f> data(9, 1);
    const Zet32f factors[] = {2, 3, 5};
    const int offsets[] = {1, 3, 3, 8};
    ASSERT_EQ(zetsScale_32f_I(data.data(), factors, offsets, 3), zetStsOk);
    EXPECT_EQ(data, (std::vector<Zet32f>{1, 2, 2, 5, 5, 5, 5, 5, 1}));
}

// Integers below 2^11: every product and sum is exact in single precision.
TEST(Arithmetic, multipliesComplexValuesInPlaceToo) {
    using Values = std::vector<Zet32fc>;
    std::mt19937 random(3);
    for (const int len : {1, 2, 3, 4, 5, 100}) {
        Values a(static_cast<size_t>(len)), b = a, product = a, square = a;
        for (Values* values : {&a, &b})
            for (Zet32fc& x : *values) x = {random() % 4096 - 2048.0f, random() % 4096 - 2048.0f};
        const auto times = [](const Zet32fc& x, const Zet32fc& y) {
            return Zet32fc{x.re * y.re - x.im * y.im, x.im * y.re + x.re * y.im};
        };
        std::ranges::transform(a, b, product.begin(), times);
        std::ranges::transform(b, b, square.begin(), times);
        Values apart(a.size()), first = a, second = b, both = b, inPlace = b;
        ASSERT_EQ(zetsMul_32fc(a.data(), b.data(), apart.data(), len), zetStsOk);
        ASSERT_EQ(zetsMul_32fc(first.data(), b.data(), first.data(), len), zetStsOk);
        ASSERT_EQ(zetsMul_32fc(a.data(), second.data(), second.data(), len), zetStsOk);
        ASSERT_EQ(zetsMul_32fc(both.data(), both.data(), both.data(), len), zetStsOk);
        ASSERT_EQ(zetsMul_32fc_I(a.data(), inPlace.data(), len), zetStsOk);
        const size_t size = a.size() * sizeof a[0];
        for (const Values* result : {&apart, &first, &second, &inPlace})
            EXPECT_EQ(std::memcmp(result->data(), product.data(), size), 0);
        EXPECT_EQ(std::memcmp(both.data(), square.data(), size), 0);
    }
}

template <class T>
void expectInterleaved(ZetStatus (*interleave)(const T**, int, int, T*),
                       ZetStatus (*deinterleave)(const T*, int, int, T**)) {
    for (const int n : {1, 2, 3, 8})
        for (const int len : {1, 2, 7, 8, 100}) {
            std::vector<T> source(n * len), back(n * len);
            std::iota(source.begin(), source.end(), T{1});
            std::vector<const T*> from(n);
            std::vector<T*> to(n);
            for (int c = 0; c < n; ++c) from[c] = &source[c * len], to[c] = &back[c * len];
            Guarded<T> together(source.size(), sizeof(T));
            ASSERT_EQ(interleave(from.data(), n, len, together.data()), zetStsOk);
            for (int i = 0; i < n * len; ++i) ASSERT_EQ(together[i], source[i % n * len + i / n]);
            EXPECT_TRUE(together.intact());
            ASSERT_EQ(deinterleave(together.data(), n, len, to.data()), zetStsOk);
            EXPECT_EQ(back, source) << n << " channels of " << len;
        }
}

TEST(Interleave, ordersChannelsAndBack) {
    expectInterleaved(zetsInterleave_16s, zetsDeinterleave_16s);
    expectInterleaved(zetsInterleave_32f, zetsDeinterleave_32f);
}

TEST(Interleave, mergesAndSplitsComplexParts) {
    const Zet32f re[] = {1, 2, 3, 4, 5}, im[] = {-1, -2, -3, -4, -5}, none[5] = {};
    for (const Zet32f* givenRe : {re, static_cast<const Zet32f*>(nullptr)})
        for (const Zet32f* givenIm : {im, static_cast<const Zet32f*>(nullptr)}) {
            Guarded<Zet32fc> merged(5, 4);
            Guarded<Zet32f> splitRe(5, 4), splitIm(5, 8);
            ASSERT_EQ(zetsRealToCplx_32f(givenRe, givenIm, merged.data(), 5), zetStsOk);
            EXPECT_TRUE(merged.intact());
            ASSERT_EQ(zetsCplxToReal_32fc(merged.data(), splitRe.data(), splitIm.data(), 5),
                      zetStsOk);
            for (int i = 0; i < 5; ++i) {
                EXPECT_EQ(merged[i].re, (givenRe ? re : none)[i]);
                EXPECT_EQ(merged[i].im, (givenIm ? im : none)[i]);
            }
            EXPECT_EQ(std::memcmp(splitRe.bytes(), givenRe ? re : none, sizeof re), 0);
            EXPECT_EQ(std::memcmp(splitIm.bytes(), givenIm ? im : none, sizeof im), 0);
            EXPECT_TRUE(splitRe.intact() && splitIm.intact());
        }
}

TEST(Statistics, findsExtremesWhereverTheyStand) {
    for (int len = 1; len <= 40; ++len)
        for (int where = 0; where < len; ++where) {
            std::vector<Zet16s> values(len, 5);
            values[where] = -32768;
            values[(where + 1) % len] = 32767;
            Zet16s min = 0, max = 0;
            ASSERT_EQ(zetsMinMax_16s(values.data(), len, &min, &max), zetStsOk);
            EXPECT_EQ(min, len == 1 ? 32767 : -32768);
            EXPECT_EQ(max, 32767);
        }
}

Zet32f deviation(const std::vector<Zet32f>& values, int hint) {
    Zet32f result = -1;
    EXPECT_EQ(zetsStdDev_32f(values.data(), lengthOf(values), &result, hint), zetStsOk);
    return result;
}

TEST(Statistics, deviationIsExactWhereTheSumsAre) {
    for (const int hint :
         std::initializer_list<int>{zetAlgHintNone, zetAlgHintFast, zetAlgHintAccurate, 99}) {
        EXPECT_EQ(deviation({3, 3}, hint), 0.0f);
        EXPECT_EQ(deviation({1, 2, 3, 4, 5}, hint), static_cast<Zet32f>(std::sqrt(2.5)));
        EXPECT_EQ(deviation({-7, 1, 1, 5, 0, 0, 2, -2, 9}, hint),
                  static_cast<Zet32f>(std::sqrt(156.0 / 8)));
        EXPECT_TRUE(std::isnan(deviation({1, 2, kNaN}, hint)));
    }
    // Squares of 2^20 + 1 do not fit in a single, but fit in extended precision.
    EXPECT_EQ(deviation({1048577, 1048576, 1048577, 1048576}, zetAlgHintAccurate),
              static_cast<Zet32f>(std::sqrt(1.0 / 3)));
}

// With u = 2^-24, k = n / 4 + 2 additions a lane and the squaring round by at most k * u relative
// to the sum of squares and twice that to the square of the sum: the variance of a constant x comes
// out below n / (n - 1) * x^2 * 3 * (k + 1) * u, and where it comes out negative the result must be
// 0.
TEST(Statistics, deviationOfConstantsIsSmallAndNeverNaN) {
    constexpr int kLen = 101;
    std::mt19937 random(5);
    int zeros = 0;
    for (int i = 0; i < 200; ++i) {
        const Zet32f x = static_cast<Zet32f>(random() % 16777216) * 0x1p-10f;
        const std::vector<Zet32f> values(kLen, x);
        const Zet32f fast = deviation(values, zetAlgHintFast);
        EXPECT_LE(fast, x * std::sqrt(kLen / (kLen - 1.0) * 3 * (kLen / 4 + 3) * 0x1p-24)) << x;
        zeros += fast == 0;
        EXPECT_EQ(deviation(values, zetAlgHintAccurate), 0.0f) << x;
    }
    EXPECT_GT(zeros, 20);
    EXPECT_LT(zeros, 200);
}

}  // namespace
