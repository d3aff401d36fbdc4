// The complex FFT on pairs.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include "core/checks.h"
#include "transform/fft_spec.h"

namespace zetac::transform {
namespace {

ZetStatus forwardFft(const ZetsFFTSpec_C_32fc& spec, const Zet32fc* src, Zet32fc* dst,
                     Zet8u* buffer) {
    const FftWork work(buffer, spec.bufSize);
    if (work.failed()) return zetStsNoMemory;
    core::select(kFftKernels).forward(spec.plan, src, dst, spec.forwardScale, work.singles());
    return zetStsOk;
}

ZetStatus inverseFft(const ZetsFFTSpec_C_32fc& spec, const Zet32fc* src, Zet32fc* dst,
                     Zet8u* buffer) {
    const FftWork work(buffer, spec.bufSize);
    if (work.failed()) return zetStsNoMemory;
    core::select(kFftKernels).inverse(spec.plan, src, dst, spec.inverseScale, work.singles());
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::transform

using namespace zetac;
using namespace zetac::transform;

ZetStatus zetsFFTFwd_CToC_32fc(const Zet32fc* pSrc, Zet32fc* pDst, const ZetsFFTSpec_C_32fc* pSpec,
                               Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    return forwardFft(*pSpec, pSrc, pDst, pBuffer);
}

ZetStatus zetsFFTFwd_CToC_32fc_I(Zet32fc* pSrcDst, const ZetsFFTSpec_C_32fc* pSpec,
                                 Zet8u* pBuffer) {
    return zetsFFTFwd_CToC_32fc(pSrcDst, pSrcDst, pSpec, pBuffer);
}

ZetStatus zetsFFTInv_CToC_32fc(const Zet32fc* pSrc, Zet32fc* pDst, const ZetsFFTSpec_C_32fc* pSpec,
                               Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    return inverseFft(*pSpec, pSrc, pDst, pBuffer);
}

ZetStatus zetsFFTInv_CToC_32fc_I(Zet32fc* pSrcDst, const ZetsFFTSpec_C_32fc* pSpec,
                                 Zet8u* pBuffer) {
    return zetsFFTInv_CToC_32fc(pSrcDst, pSrcDst, pSpec, pBuffer);
}
