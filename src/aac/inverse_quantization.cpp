// Inverse quantisation (ISO/IEC 13818-7, 10 and 11; 14496-3, 4.6.1 and 4.6.2).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/inverse_quantization.h"

#include <immintrin.h>

#include "aac/band_walk.h"
#include "aac/pow43.h"

namespace zetac::aac {
namespace {

constexpr uint32_t magnitudeOf(Zet32s q) {
    return q < 0 ? 0u - static_cast<uint32_t>(q) : static_cast<uint32_t>(q);
}

// value with the sign of q.
constexpr Zet32s withSign(Zet32s value, Zet32s q) {
    return q < 0 ? core::subWrap(0, value) : value;
}

struct Baseline {
    // All magnitudes together, bit by bit. Both limits, 15 and 8191, are powers of two less one, so
    // that these bits tell whether any line is beyond.
    static uint32_t magnitudeBits(const Zet32s* line, int count) {
        uint32_t bits = 0;
        for (int i = 0; i < count; ++i) bits |= magnitudeOf(line[i]);
        return bits;
    }

    // Magnitudes up to 15.
    static void convertSmall(Zet32s* line, int count, const Pow43Scale& scale) {
        Zet32s row[16];
        pow43Row(scale, row);
        for (int i = 0; i < count; ++i) line[i] = withSign(row[magnitudeOf(line[i])], line[i]);
    }
};

ZETAC_TARGET_BEGIN("avx2")

inline __m256i load8(const Zet32s* line) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(line));
}
inline void store8(Zet32s* line, __m256i value) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(line), value);
}
// Four lines in the low half, because the widths of bands are multiples of 4.
inline __m256i load4(const Zet32s* line) {
    return _mm256_zextsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(line)));
}
inline void store4(Zet32s* line, __m256i value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(line), _mm256_castsi256_si128(value));
}

// The results for magnitudes 0..15 in two registers.
struct Avx2Row {
    __m256i low, high;

    explicit Avx2Row(const Pow43Scale& scale) {
        const int32_t* table = tables::kSmallPow43[scale.quarters];
        const __m256i from4 = _mm256_set1_epi32(scale.shiftFrom4());
        const __m256i below4 = _mm256_set1_epi32(scale.shiftBelow4());
        low = _mm256_srlv_epi32(load8(table), _mm256_blend_epi32(below4, from4, 0xf0));
        high = _mm256_srlv_epi32(load8(table + 8), from4);
    }

    __m256i convert(__m256i q) const {
        const __m256i magnitude = _mm256_abs_epi32(q);
        const __m256 fromLow = _mm256_castsi256_ps(_mm256_permutevar8x32_epi32(low, magnitude));
        const __m256 fromHigh = _mm256_castsi256_ps(_mm256_permutevar8x32_epi32(high, magnitude));
        const __m256 isHigh = _mm256_castsi256_ps(_mm256_slli_epi32(magnitude, 28));
        const __m256i value = _mm256_castps_si256(_mm256_blendv_ps(fromLow, fromHigh, isHigh));
        return _mm256_sign_epi32(value, q);
    }
};

struct Avx2 {
    static uint32_t magnitudeBits(const Zet32s* line, int count) {
        __m256i bits = _mm256_setzero_si256();
        for (; count >= 8; count -= 8, line += 8)
            bits = _mm256_or_si256(bits, _mm256_abs_epi32(load8(line)));
        if (count & 4) bits = _mm256_or_si256(bits, _mm256_abs_epi32(load4(line)));
        __m128i all = _mm_or_si128(_mm256_castsi256_si128(bits), _mm256_extracti128_si256(bits, 1));
        all = _mm_or_si128(all, _mm_unpackhi_epi64(all, all));
        all = _mm_or_si128(all, _mm_srli_epi64(all, 32));
        const auto most = static_cast<uint32_t>(_mm_cvtsi128_si32(all));
        if ((count & 3) == 0) return most;
        return most | Baseline::magnitudeBits(line + (count & 4), count & 3);
    }

    static void convertSmall(Zet32s* line, int count, const Pow43Scale& scale) {
        const Avx2Row row(scale);
        for (; count >= 8; count -= 8, line += 8) store8(line, row.convert(load8(line)));
        if (count & 4) store4(line, row.convert(load4(line)));
        if (count & 3) Baseline::convertSmall(line + (count & 4), count & 3, scale);
    }
};

ZETAC_TARGET_END

// Lines with magnitudes of all sizes up to 8191. They are few, and the same for every level.
void convertAny(Zet32s* line, int count, const Pow43Scale& scale) {
    Zet32s row[16];
    pow43Row(scale, row);
    for (int i = 0; i < count; ++i) {
        const uint32_t magnitude = magnitudeOf(line[i]);
        const Zet32s value = magnitude <= kMaxSmallQuantised    ? row[magnitude]
                             : magnitude <= kMaxMediumQuantised ? pow43Medium(magnitude, scale)
                                                                : pow43Large(magnitude, scale);
        line[i] = withSign(value, line[i]);
    }
}

template <class Kernels>
bool quantInvLines(Zet32s* line, int count, int scaleFactor) {
    const uint32_t bits = Kernels::magnitudeBits(line, count);
    if (bits == 0) return true;
    if (bits > kMaxQuantised) return false;
    const Pow43Scale scale(scaleFactor);
    const auto convert = bits <= kMaxSmallQuantised ? Kernels::convertSmall : convertAny;
    convert(line, count, scale);
    return true;
}

}  // namespace

const core::LevelTable<QuantInvLines> kQuantInvLines = {
    quantInvLines<Baseline>, quantInvLines<Baseline>, quantInvLines<Avx2>, quantInvLines<Avx2>};

namespace {

ZetStatus quantInv(Zet32s* spectrum, const Zet16s* scaleFactors, const Zet8u* codebooks,
                   const BandArgs& args) {
    const QuantInvLines quantInvLines = core::select(kQuantInvLines);
    for (const Band band : BandWalk(args)) {
        if (!hasSpectrum(codebooks[band.index])) continue;
        if (!quantInvLines(spectrum + band.start, band.lines(), scaleFactors[band.index]))
            return zetStsAacCoefValErr;
    }
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::aac

ZetStatus zetsQuantInv_AAC_32s_I(Zet32s* pSpectrum, const Zet16s* pScaleFactor, int numWinGrp,
                                 const Zet32s* pWinGrpLen, int maxSfb, const Zet8u* pSfbCb,
                                 int samplingFreqIndex, int winLen) {
    using namespace zetac;
    const aac::BandArgs args = {numWinGrp, pWinGrpLen, maxSfb, samplingFreqIndex, winLen};
    ZETAC_REQUIRE(core::allSet(pSpectrum, pScaleFactor, pWinGrpLen, pSfbCb), zetStsNullPointer);
    if (const ZetStatus status = aac::checkBands(args)) return status;
    return aac::quantInv(pSpectrum, pScaleFactor, pSfbCb, args);
}
