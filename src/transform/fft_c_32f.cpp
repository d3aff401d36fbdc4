// The complex FFT on real and imaginary parts in separate arrays.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include "core/checks.h"
#include "transform/fft_spec.h"

namespace zetac::transform {
namespace {

struct ConstParts {
    const Zet32f* re;
    const Zet32f* im;
};
struct Parts {
    Zet32f* re;
    Zet32f* im;
};

// An inverse transform is a forward one with the parts of all points exchanged.
ZetStatus splitFft(const ZetsFFTSpec_C_32f& spec, ConstParts src, Parts dst, Zet32f scale,
                   Zet8u* buffer) {
    const FftWork work(buffer, spec.bufSize);
    if (work.failed()) return zetStsNoMemory;
    core::select(kFftKernels)
        .forwardSplit(spec.plan, src.re, src.im, dst.re, dst.im, scale, work.singles());
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::transform

using namespace zetac;
using namespace zetac::transform;

ZetStatus zetsFFTFwd_CToC_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32f* pDstRe,
                              Zet32f* pDstIm, const ZetsFFTSpec_C_32f* pSpec, Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrcRe, pSrcIm, pDstRe, pDstIm, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    return splitFft(*pSpec, {pSrcRe, pSrcIm}, {pDstRe, pDstIm}, pSpec->forwardScale, pBuffer);
}

ZetStatus zetsFFTFwd_CToC_32f_I(Zet32f* pSrcDstRe, Zet32f* pSrcDstIm,
                                const ZetsFFTSpec_C_32f* pSpec, Zet8u* pBuffer) {
    return zetsFFTFwd_CToC_32f(pSrcDstRe, pSrcDstIm, pSrcDstRe, pSrcDstIm, pSpec, pBuffer);
}

ZetStatus zetsFFTInv_CToC_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32f* pDstRe,
                              Zet32f* pDstIm, const ZetsFFTSpec_C_32f* pSpec, Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrcRe, pSrcIm, pDstRe, pDstIm, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    return splitFft(*pSpec, {pSrcIm, pSrcRe}, {pDstIm, pDstRe}, pSpec->inverseScale, pBuffer);
}

ZetStatus zetsFFTInv_CToC_32f_I(Zet32f* pSrcDstRe, Zet32f* pSrcDstIm,
                                const ZetsFFTSpec_C_32f* pSpec, Zet8u* pBuffer) {
    return zetsFFTInv_CToC_32f(pSrcDstRe, pSrcDstIm, pSrcDstRe, pSrcDstIm, pSpec, pBuffer);
}
