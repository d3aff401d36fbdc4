// The complex FFT on 16-bit integers. It runs in single precision, whose 24 bits keep every
// intermediate value to a small fraction of the final rounding; nothing can overflow on the way.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include "core/checks.h"
#include "transform/fft_spec.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>

namespace zetac::transform {
namespace {

void convertToSingle(const Zet16s* src, Zet32f* dst, int64_t count) {
    for (int64_t i = 0; i < count; ++i) dst[i] = src[i];
}

// Rounds to nearest, ties to even, and saturates.
Zet16s roundSaturated(Zet32f x) {
    return static_cast<Zet16s>(_mm_cvtss_si32(_mm_set_ss(std::clamp(x, -32768.0f, 32767.0f))));
}
void convertSaturated(const Zet32f* src, Zet16s* dst, int64_t count) {
    const __m128 low = _mm_set1_ps(-32768);
    const __m128 high = _mm_set1_ps(32767);
    const auto rounded = [&](const Zet32f* p) {
        return _mm_cvtps_epi32(_mm_min_ps(_mm_max_ps(_mm_loadu_ps(p), low), high));
    };
    int64_t i = 0;
    for (; i + 8 <= count; i += 8) {
        const __m128i packed = _mm_packs_epi32(rounded(src + i), rounded(src + i + 4));
        std::memcpy(dst + i, &packed, sizeof packed);
    }
    for (; i < count; ++i) dst[i] = roundSaturated(src[i]);
}

// Beyond these limits nothing changes: magnitudes of results lie between 2^-27 and 2^43, or are 0.
Zet32f scaled(Zet32f scale, int scaleFactor) {
    return std::ldexp(scale, -std::clamp(scaleFactor, -64, 96));
}

using Transform = decltype(FftKernels::forward);

ZetStatus integerFft(const ZetsFFTSpec_C_16sc& spec, const Zet16sc* src, Zet16sc* dst, Zet32f scale,
                     Transform transform, Zet8u* buffer) {
    const FftWork work(buffer, spec.bufSize);
    if (work.failed()) return zetStsNoMemory;
    const int64_t count = int64_t{2} << spec.order;
    Zet32f* values = work.singles();
    auto* points = reinterpret_cast<Zet32fc*>(values);
    convertToSingle(&src->re, values, count);
    transform(spec.plan, points, points, scale, values + count);
    convertSaturated(values, &dst->re, count);
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::transform

using namespace zetac;
using namespace zetac::transform;

ZetStatus zetsFFTFwd_CToC_16sc_Sfs(const Zet16sc* pSrc, Zet16sc* pDst,
                                   const ZetsFFTSpec_C_16sc* pSpec, int scaleFactor,
                                   Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    return integerFft(*pSpec, pSrc, pDst, scaled(pSpec->forwardScale, scaleFactor),
                      core::select(kFftKernels).forward, pBuffer);
}

ZetStatus zetsFFTFwd_CToC_16sc_ISfs(Zet16sc* pSrcDst, const ZetsFFTSpec_C_16sc* pSpec,
                                    int scaleFactor, Zet8u* pBuffer) {
    return zetsFFTFwd_CToC_16sc_Sfs(pSrcDst, pSrcDst, pSpec, scaleFactor, pBuffer);
}

ZetStatus zetsFFTInv_CToC_16sc_Sfs(const Zet16sc* pSrc, Zet16sc* pDst,
                                   const ZetsFFTSpec_C_16sc* pSpec, int scaleFactor,
                                   Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    return integerFft(*pSpec, pSrc, pDst, scaled(pSpec->inverseScale, scaleFactor),
                      core::select(kFftKernels).inverse, pBuffer);
}

ZetStatus zetsFFTInv_CToC_16sc_ISfs(Zet16sc* pSrcDst, const ZetsFFTSpec_C_16sc* pSpec,
                                    int scaleFactor, Zet8u* pBuffer) {
    return zetsFFTInv_CToC_16sc_Sfs(pSrcDst, pSrcDst, pSpec, scaleFactor, pBuffer);
}
