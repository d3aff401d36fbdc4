// The floating MDCTs.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "core/checks.h"
#include "transform/mdct_blocks.h"
#include "transform/mdct_kernels.h"
#include "transform/mdct_spec.h"

namespace zetac::transform {
namespace {

template <class Spec>
MdctTwiddles twiddlesOf(const Spec& spec) {
    return {spec.table, spec.table + spec.length / 4};
}

ZetStatus forwardMdct(const ZetsMDCTFwdSpec_32f& spec, const Zet32f* src, Zet32f* dst,
                      Zet8u* buffer) {
    const FftWork work(buffer, spec.bufSize);
    if (work.failed()) return zetStsNoMemory;
    if (spec.fft)
        core::select(kMdctKernels)
            .forward(spec.fft->plan, twiddlesOf(spec), src, dst, work.singles());
    else
        forwardBlock(spec.length, spec.table, src, dst, work.as<Zet32f>());
    return zetStsOk;
}

ZetStatus inverseMdct(const ZetsMDCTInvSpec_32f& spec, const Zet32f* src, Zet32f* dst,
                      Zet8u* buffer) {
    const FftWork work(buffer, spec.bufSize);
    if (work.failed()) return zetStsNoMemory;
    if (spec.fft)
        core::select(kMdctKernels)
            .inverse(spec.fft->plan, twiddlesOf(spec), src, dst, work.singles());
    else
        inverseBlock(spec.length, spec.table, src, dst, work.as<Zet32f>());
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::transform

using namespace zetac;
using namespace zetac::transform;

ZetStatus zetsMDCTFwd_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsMDCTFwdSpec_32f* pSpec,
                          Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    ZETAC_REQUIRE(core::allSet(pSrc, pDst), zetStsNullPointer);
    return forwardMdct(*pSpec, pSrc, pDst, pBuffer);
}

ZetStatus zetsMDCTFwd_32f_I(Zet32f* pSrcDst, const ZetsMDCTFwdSpec_32f* pSpec, Zet8u* pBuffer) {
    return zetsMDCTFwd_32f(pSrcDst, pSrcDst, pSpec, pBuffer);
}

ZetStatus zetsMDCTInv_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsMDCTInvSpec_32f* pSpec,
                          Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    ZETAC_REQUIRE(core::allSet(pSrc, pDst), zetStsNullPointer);
    return inverseMdct(*pSpec, pSrc, pDst, pBuffer);
}

ZetStatus zetsMDCTInv_32f_I(Zet32f* pSrcDst, const ZetsMDCTInvSpec_32f* pSpec, Zet8u* pBuffer) {
    return zetsMDCTInv_32f(pSrcDst, pSrcDst, pSpec, pBuffer);
}
