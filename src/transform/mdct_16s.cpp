// The 16-bit MDCT: block floating point around a 16-bit FFT.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <climits>

#include "core/checks.h"
#include "transform/mdct_fold.h"
#include "transform/mdct_spec.h"

namespace zetac::transform {
namespace {

using Spec = ZetsMDCTFwdSpec_16s;

// Up to 32768.
int peakOf(const Zet16s* x, int len) {
    Zet16s low;
    Zet16s high;
    zetsMinMax_16s(x, len, &low, &high);
    return std::max(int{high}, -int{low});
}

// Folding doubles the peak at most and a rotation takes it up by sqrt 2, so that a peak of
// 32768 / sqrt 2 may come out of the two divided by 2, a larger one divided by 4. The shift says
// how far the peak is below.
int normalisation(int peak) {
    int shift = 0;
    while (peak << (shift + 1) <= 32768) ++shift;
    return peak << shift <= 23168 ? shift + 1 : shift;
}

// By the angle of pair k, in Q14: products of 16 with 17 bits, whose sums stay below 2^31.
struct Rotated {
    Zet32s even;  // c re + s im
    Zet32s odd;   // s re - c im
};
Rotated rotate(const Zet16s* table, int k, Zet32s re, Zet32s im) {
    const Zet32s s = table[2 * k];
    const Zet32s c = table[2 * k + 1];
    return {c * re + s * im, s * re - c * im};
}

void rotateFolded(const Spec& spec, const Zet32s* folded, int shift, Zet16sc* z) {
    const int last = spec.length / 2 - 1;
    const Zet32s half = 1 << (15 - shift);
    for (int k = 0; k < spec.length / 4; ++k) {
        const Rotated r = rotate(spec.table, k, folded[2 * k], folded[last - 2 * k]);
        z[k] = {static_cast<Zet16s>((r.even + half) >> (16 - shift)),
                static_cast<Zet16s>((half - r.odd) >> (16 - shift))};
    }
}

void rotatePoints(const Spec& spec, const Zet16sc* z, Zet32s* coefficients) {
    const int last = spec.length / 2 - 1;
    for (int k = 0; k < spec.length / 4; ++k) {
        const Rotated r = rotate(spec.table, k, z[k].re, z[k].im);
        coefficients[2 * k] = r.even;
        coefficients[last - 2 * k] = r.odd;
    }
}

int saturateToInt(int64_t value) {
    return static_cast<int>(std::clamp<int64_t>(value, INT_MIN, INT_MAX));
}

// The points stand at the start of the work buffer; behind them first the folded samples, then the
// memory of the FFT, then the coefficients before they are rounded to 16 bits.
ZetStatus forwardMdct(const Spec& spec, const Zet16s* src, Zet16s* dst, int scaleFactor,
                      Zet8u* buffer) {
    const core::WorkBuffer work(buffer, spec.bufSize);
    if (work.failed()) return zetStsNoMemory;
    const int peak = peakOf(src, spec.length);
    if (peak == 0) return zetsZero_16s(dst, spec.length / 2);
    const int shift = normalisation(peak);
    auto* points = work.as<Zet16sc>();
    Zet8u* behind = work.data() + spec.length;
    auto* wide = reinterpret_cast<Zet32s*>(behind);
    foldSamples(src, spec.length, wide);
    rotateFolded(spec, wide, shift, points);
    const ZetStatus status = zetsFFTFwd_CToC_16sc_ISfs(points, spec.fft, spec.fftOrder + 1, behind);
    if (status != zetStsOk) return status;
    rotatePoints(spec, points, wide);
    return zetsConvert_32s16s_Sfs(wide, dst, spec.length / 2,
                                  saturateToInt(int64_t{scaleFactor} - spec.fftOrder + shift + 10));
}

}  // namespace
}  // namespace zetac::transform

using namespace zetac;
using namespace zetac::transform;

ZetStatus zetsMDCTFwd_16s_Sfs(const Zet16s* pSrc, Zet16s* pDst, const ZetsMDCTFwdSpec_16s* pSpec,
                              int scaleFactor, Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    ZETAC_REQUIRE(core::allSet(pSrc, pDst), zetStsNullPointer);
    return forwardMdct(*pSpec, pSrc, pDst, scaleFactor, pBuffer);
}
