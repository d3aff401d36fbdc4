// The power laws of quantisation and its inverse on plain arrays: |x|^(4/3) and |x|^(3/4).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <emmintrin.h>

#include <algorithm>
#include <bit>

#include "core/checks.h"
#include "tables/mp3/powers.h"

namespace zetac::mp3 {
namespace {

constexpr double kMax16s = 32767;

void pow43(const Zet16s* src, Zet32f* dst, int len) {
    for (int i = 0; i < len; ++i) {
        const int x = src[i];
        const int magnitude = std::min(x < 0 ? -x : x, tables::kMP3MaxQuantised);
        const auto power = static_cast<Zet32f>(tables::kMP3Pow43[magnitude]);
        dst[i] = x < 0 ? -power : power;
    }
}

// Applies a kernel, which takes four values, to any number of them.
template <class Src, class Dst, class Kernel>
void byFours(const Src* src, Dst* dst, int len, Kernel kernel) {
    for (; len >= 4; len -= 4, src += 4, dst += 4) kernel(src, dst);
    Src rest[4] = {};
    Dst result[4];
    std::copy_n(src, len, rest);
    kernel(rest, result);
    std::copy_n(result, len, dst);
}

// x^(3/4) as the product of the square root and the fourth root. In singles each root is within
// half a unit in the last place, which makes 1.75 * 2^-23 together with the product.
__m128 pow34(__m128 x) {
    const __m128 root = _mm_sqrt_ps(_mm_andnot_ps(_mm_set1_ps(-0.0f), x));
    return _mm_mul_ps(root, _mm_sqrt_ps(root));
}
__m128d pow34(__m128d x) {
    const __m128d root = _mm_sqrt_pd(_mm_andnot_pd(_mm_set1_pd(-0.0), x));
    return _mm_mul_pd(root, _mm_sqrt_pd(root));
}

// Stores four values rounded to nearest, ties to even. The limit also stands for NaN.
void store16s(__m128d low, __m128d high, Zet16s* dst) {
    const __m128d limit = _mm_set1_pd(kMax16s);
    const __m128i values = _mm_unpacklo_epi64(_mm_cvtpd_epi32(_mm_min_pd(low, limit)),
                                              _mm_cvtpd_epi32(_mm_min_pd(high, limit)));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(dst), _mm_packs_epi32(values, values));
}

void pow34Single(const Zet32f* src, Zet32f* dst, int len) {
    byFours(src, dst, len,
            [](const Zet32f* x, Zet32f* y) { _mm_storeu_ps(y, pow34(_mm_loadu_ps(x))); });
}

// In doubles, so that only the last rounding shows.
void pow34Rounded(const Zet32f* src, Zet16s* dst, int len) {
    byFours(src, dst, len, [](const Zet32f* x, Zet16s* y) {
        const __m128 values = _mm_loadu_ps(x);
        store16s(pow34(_mm_cvtps_pd(values)), pow34(_mm_cvtps_pd(_mm_movehl_ps(values, values))),
                 y);
    });
}

// (|x|^3 * gain)^(1/4). The argument of the roots is exact, hence whatever has an exact result, the
// ties of the rounding above all, gets it.
__m128d scaledPow34(__m128d x, __m128d gain) {
    const __m128d magnitude = _mm_andnot_pd(_mm_set1_pd(-0.0), x);
    const __m128d cube = _mm_mul_pd(_mm_mul_pd(magnitude, magnitude), magnitude);
    return _mm_sqrt_pd(_mm_sqrt_pd(_mm_mul_pd(cube, gain)));
}

// quarters: 4 * log2 of what the results are scaled by. Beyond the limits all of them are 0 or
// 32767 anyway.
void pow34Scaled(const Zet16s* src, Zet16s* dst, int len, int64_t quarters) {
    const int64_t exponent = std::clamp<int64_t>(quarters, -200, 200);
    const __m128d gain =
        _mm_set1_pd(std::bit_cast<double>(static_cast<uint64_t>(1023 + exponent) << 52));
    byFours(src, dst, len, [gain](const Zet16s* x, Zet16s* y) {
        const __m128i values = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(x));
        const __m128i wide = _mm_srai_epi32(_mm_unpacklo_epi16(values, values), 16);
        store16s(scaledPow34(_mm_cvtepi32_pd(wide), gain),
                 scaledPow34(_mm_cvtepi32_pd(_mm_unpackhi_epi64(wide, wide)), gain), y);
    });
}

}  // namespace
}  // namespace zetac::mp3

ZetStatus zetsPow43_16s32f(const Zet16s* pSrc, Zet32f* pDst, int len) {
    using namespace zetac;
    ZETAC_REQUIRE(core::allSet(pSrc, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 0, zetStsBadSize);
    mp3::pow43(pSrc, pDst, len);
    return zetStsOk;
}

ZetStatus zetsPow34_32f(const Zet32f* pSrc, Zet32f* pDst, int len) {
    using namespace zetac;
    ZETAC_REQUIRE(core::allSet(pSrc, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    mp3::pow34Single(pSrc, pDst, len);
    return core::alignmentStatus(pSrc, pDst);
}

ZetStatus zetsPow34_32f16s(const Zet32f* pSrc, Zet16s* pDst, int len) {
    using namespace zetac;
    ZETAC_REQUIRE(core::allSet(pSrc, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    mp3::pow34Rounded(pSrc, pDst, len);
    return core::alignmentStatus(pSrc, pDst);
}

ZetStatus zetsPow34_16s_Sfs(const Zet16s* pSrc, int inScaleFactor, Zet16s* pDst, int scaleFactor,
                            int len) {
    using namespace zetac;
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    ZETAC_REQUIRE(core::allSet(pSrc, pDst), zetStsNullPointer);
    const int64_t quarters = -(3 * int64_t{inScaleFactor} + 4 * int64_t{scaleFactor});
    mp3::pow34Scaled(pSrc, pDst, len, quarters);
    return zetStsOk;
}
