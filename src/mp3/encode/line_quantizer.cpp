// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/encode/line_quantizer.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <iterator>

#include "tables/mp3/powers.h"

namespace zetac::mp3 {
namespace {

constexpr Zet32f kRounding = 0.4054f;
constexpr Zet32f kMaxQuantised = tables::kMP3MaxQuantised;

__m128 magnitudeOf(__m128 x) {
    return _mm_andnot_ps(_mm_set1_ps(-0.0f), x);
}

__m128i quantized(const Zet32f* power, __m128 scale) {
    const __m128 scaled = _mm_mul_ps(_mm_loadu_ps(power), scale);
    const __m128 rounded = _mm_add_ps(scaled, _mm_set1_ps(kRounding));
    return _mm_cvttps_epi32(_mm_min_ps(rounded, _mm_set1_ps(kMaxQuantised)));
}

__m128 pow43(__m128i q) {
    const Zet32f* const table = tables::kMP3Pow43Single;
    const __m128 a = _mm_load_ss(table + _mm_extract_epi16(q, 0));
    const __m128 b = _mm_load_ss(table + _mm_extract_epi16(q, 2));
    const __m128 c = _mm_load_ss(table + _mm_extract_epi16(q, 4));
    const __m128 d = _mm_load_ss(table + _mm_extract_epi16(q, 6));
    return _mm_movelh_ps(_mm_unpacklo_ps(a, b), _mm_unpacklo_ps(c, d));
}

// All ones in the first `count` lanes; bands have an even number of lines.
__m128 firstLanes(int count) {
    const int rest = count >= 4 ? -1 : 0;
    return _mm_castsi128_ps(_mm_setr_epi32(-1, -1, rest, rest));
}

Zet32f sumOf(__m128 x) {
    const __m128 pairs = _mm_add_ps(x, _mm_movehl_ps(x, x));
    return _mm_cvtss_f32(_mm_add_ss(pairs, _mm_shuffle_ps(pairs, pairs, 1)));
}
Zet32f largestOf(__m128 x) {
    const __m128 pairs = _mm_max_ps(x, _mm_movehl_ps(x, x));
    return _mm_cvtss_f32(_mm_max_ss(pairs, _mm_shuffle_ps(pairs, pairs, 1)));
}
int sumOf(__m128i x) {
    const __m128i pairs = _mm_add_epi32(x, _mm_unpackhi_epi64(x, x));
    return _mm_cvtsi128_si32(_mm_add_epi32(pairs, _mm_shuffle_epi32(pairs, 1)));
}

// What powers are multiplied by: 2^(-3e/16).
__m128 scaleOf(int e) {
    return _mm_set1_ps(sixteenthPower(-3 * e));
}

}  // namespace

Zet32f sixteenthPower(int sixteenths) {
    const auto exponent = static_cast<uint32_t>(127 + (sixteenths >> 4)) << 23;
    return tables::kMP3SixteenthPower[sixteenths & 15] * std::bit_cast<Zet32f>(exponent);
}

Zet32f roughLog2(Zet32f x) {
    constexpr int kOne = 127 << 23;
    return static_cast<Zet32f>(std::bit_cast<Zet32s>(x) - kOne) * 0x1p-23f;
}

void takeLines(const Zet32s* lines, Spectrum& spectrum) {
    constexpr int kCount = ZETAC_MP3_GRANULE_LEN;
    for (int i = 0; i < kCount; i += 4) {
        const __m128i four = _mm_loadu_si128(reinterpret_cast<const __m128i*>(lines + i));
        const __m128 magnitude = magnitudeOf(_mm_cvtepi32_ps(four));
        const __m128 root = _mm_sqrt_ps(magnitude);
        _mm_store_ps(spectrum.magnitude + i, magnitude);
        _mm_store_ps(spectrum.power + i, _mm_mul_ps(root, _mm_sqrt_ps(root)));
    }
    std::fill(spectrum.magnitude + kCount, std::end(spectrum.magnitude), 0.0f);
    std::fill(spectrum.power + kCount, std::end(spectrum.power), 0.0f);
}

BandLevels levelsOf(const Spectrum& spectrum, const Band& band) {
    __m128 energy = _mm_setzero_ps(), roots = energy, peak = energy;
    for (int i = 0; i < band.width; i += 4) {
        const __m128 lanes = firstLanes(band.width - i);
        const __m128 x = _mm_and_ps(lanes, _mm_loadu_ps(spectrum.magnitude + band.start + i));
        const __m128 power = _mm_and_ps(lanes, _mm_loadu_ps(spectrum.power + band.start + i));
        energy = _mm_add_ps(energy, _mm_mul_ps(x, x));
        roots = _mm_add_ps(roots, _mm_sqrt_ps(x));
        peak = _mm_max_ps(peak, power);
    }
    return {sumOf(energy), sumOf(roots), largestOf(peak)};
}

Noise noiseOf(const Spectrum& spectrum, const Band& band, int e) {
    const __m128 scale = scaleOf(e);
    const __m128 gain = _mm_set1_ps(sixteenthPower(4 * e));
    __m128 energy = _mm_setzero_ps();
    __m128i nonZero = _mm_setzero_si128();
    for (int i = 0; i < band.width; i += 4) {
        const __m128 lanes = firstLanes(band.width - i);
        const int line = band.start + i;
        const __m128i q = quantized(spectrum.power + line, scale);
        const __m128 error =
            _mm_sub_ps(_mm_loadu_ps(spectrum.magnitude + line), _mm_mul_ps(pow43(q), gain));
        const __m128 kept = _mm_and_ps(lanes, error);
        energy = _mm_add_ps(energy, _mm_mul_ps(kept, kept));
        const __m128i isSet = _mm_cmpgt_epi32(q, _mm_setzero_si128());
        nonZero = _mm_sub_epi32(nonZero, _mm_and_si128(isSet, _mm_castps_si128(lanes)));
    }
    return {sumOf(energy), sumOf(nonZero)};
}

void quantizeBand(const Spectrum& spectrum, const Band& band, int e, Zet16s* magnitudes) {
    const __m128 scale = scaleOf(e);
    for (int i = 0; i < band.width; i += 4) {
        const __m128i q = quantized(spectrum.power + band.start + i, scale);
        const __m128i packed = _mm_packs_epi32(q, q);
        Zet16s* const dst = magnitudes + band.start + i;
        if (band.width - i >= 4) {
            _mm_storel_epi64(reinterpret_cast<__m128i*>(dst), packed);
        } else {
            dst[0] = static_cast<Zet16s>(_mm_extract_epi16(packed, 0));
            dst[1] = static_cast<Zet16s>(_mm_extract_epi16(packed, 1));
        }
    }
}

// The estimate is within 0.09 * 16/3 = 0.5 of the answer; steps of one reach it.
int finestStep(Zet32f peak) {
    constexpr Zet32f kRoom = kMaxQuantised + 0.5f;
    int e = static_cast<int>(roughLog2(peak / kRoom) * (16.0f / 3)) - 2;
    while (peak * sixteenthPower(-3 * e) > kRoom) ++e;
    return e;
}

int coarsestStep(Zet32f peak) {
    int e = static_cast<int>(roughLog2(peak) * (16.0f / 3)) + 8;
    while (peak * sixteenthPower(-3 * e) + kRounding < 1) --e;
    return e;
}

}  // namespace zetac::mp3
