// Scaling by powers of two with saturation and rounding, four values at a time, in double
// precision: it holds integers of up to 33 bits and singles exactly and scales them without error.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

namespace zetac::vector {

inline constexpr int kLanes = 4;

struct Doubles {
    __m128d low, high;  // lanes 0 and 1, 2 and 3
};

// Loads and stores move count lanes, 1..4. Lanes that are not loaded are 0.
inline Doubles load(const Zet32s* src, int count) {
    Zet32s lanes[kLanes] = {};
    std::memcpy(lanes, src, static_cast<size_t>(count) * sizeof *src);
    const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(lanes));
    return {_mm_cvtepi32_pd(x), _mm_cvtepi32_pd(_mm_unpackhi_epi64(x, x))};
}
// NaN is loaded as 0.
inline Doubles load(const Zet32f* src, int count) {
    Zet32f lanes[kLanes] = {};
    std::memcpy(lanes, src, static_cast<size_t>(count) * sizeof *src);
    const __m128 raw = _mm_loadu_ps(lanes);
    const __m128 x = _mm_and_ps(raw, _mm_cmpord_ps(raw, raw));
    return {_mm_cvtps_pd(x), _mm_cvtps_pd(_mm_movehl_ps(x, x))};
}

inline void store(__m128i values, Zet32s* dst, int count) {
    std::memcpy(dst, &values, static_cast<size_t>(count) * sizeof *dst);
}
inline void store(__m128i values, Zet16s* dst, int count) {
    const __m128i packed = _mm_packs_epi32(values, values);
    std::memcpy(dst, &packed, static_cast<size_t>(count) * sizeof *dst);
}

// Roundings of values within 32 bits.
inline __m128i roundToZero(__m128d x) {
    return _mm_cvttpd_epi32(x);
}
// Ties to even, the rounding that threads start with and that all float arithmetic relies on.
inline __m128i roundEven(__m128d x) {
    return _mm_cvtpd_epi32(x);
}
// Ties away from zero. One half plus a scaled single below it stays below 1 in double precision.
inline __m128i roundAway(__m128d x) {
    const __m128d sign = _mm_and_pd(x, _mm_set1_pd(-0.0));
    return _mm_cvttpd_epi32(_mm_add_pd(x, _mm_or_pd(sign, _mm_set1_pd(0.5))));
}

// x * 2^-scaleFactor, saturated to the range of T and rounded.
template <class T, __m128i (*kRound)(__m128d)>
class Scaler {
  public:
    // Beyond -200 and 200 nothing changes: whatever is not 0 saturates, or falls below 2^-71.
    explicit Scaler(int scaleFactor) {
        const int exponent = -std::clamp(scaleFactor, -200, 200);
        scale_ = _mm_set1_pd(std::bit_cast<double>(static_cast<uint64_t>(1023 + exponent) << 52));
    }

    __m128i operator()(Doubles x) const {
        return _mm_unpacklo_epi64(kRound(scaled(x.low)), kRound(scaled(x.high)));
    }

  private:
    __m128d scaled(__m128d x) const {
        const __m128d low = _mm_set1_pd(std::numeric_limits<T>::min());
        const __m128d high = _mm_set1_pd(std::numeric_limits<T>::max());
        return _mm_min_pd(_mm_max_pd(_mm_mul_pd(x, scale_), low), high);
    }

    __m128d scale_;
};

// dst[i] = scaler(source(i)); source(i, count) loads count values from i on.
template <__m128i (*kRound)(__m128d), class T, class Source>
void storeScaled(T* dst, int len, int scaleFactor, Source source) {
    const Scaler<T, kRound> scaler(scaleFactor);
    int i = 0;
    for (; i <= len - kLanes; i += kLanes) store(scaler(source(i, kLanes)), dst + i, kLanes);
    if (i < len) store(scaler(source(i, len - i)), dst + i, len - i);
}

}  // namespace zetac::vector
