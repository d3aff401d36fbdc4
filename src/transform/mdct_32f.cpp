// The floating MDCTs.
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

// The length decides which pointers Init needs.
ZetStatus checkInit(int len, const void* ppSpec, const void* pMemSpec, const void* pMemInit) {
    ZETAC_REQUIRE(FloatingMdctFamily::allows(len), zetStsBadSize);
    ZETAC_REQUIRE(core::allSet(ppSpec, pMemSpec), zetStsNullPointer);
    ZETAC_REQUIRE(!hasFft(len) || pMemInit, zetStsNullPointer);
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::transform

using namespace zetac;
using namespace zetac::transform;

ZetStatus zetsMDCTInvGetSize_32f(int len, int* pSpecSize, int* pSizeInit, int* pBufSize) {
    ZETAC_REQUIRE(core::allSet(pSpecSize, pSizeInit, pBufSize), zetStsNullPointer);
    ZETAC_REQUIRE(FloatingMdctFamily::allows(len), zetStsBadSize);
    return getMdctSize<ZetsMDCTInvSpec_32f>(len, pSpecSize, pSizeInit, pBufSize);
}

ZetStatus zetsMDCTFwdGetSize_32f(int len, int* pSpecSize, int* pSizeInit, int* pBufSize) {
    return zetsMDCTInvGetSize_32f(len, pSpecSize, pSizeInit, pBufSize);
}

ZetStatus zetsMDCTFwdInit_32f(ZetsMDCTFwdSpec_32f** ppSpec, int len, Zet8u* pMemSpec,
                              Zet8u* pMemInit) {
    const ZetStatus status = checkInit(len, ppSpec, pMemSpec, pMemInit);
    return status == zetStsOk ? initMdct(ppSpec, len, pMemSpec) : status;
}

ZetStatus zetsMDCTInvInit_32f(ZetsMDCTInvSpec_32f** ppSpec, int len, Zet8u* pMemSpec,
                              Zet8u* pMemInit) {
    const ZetStatus status = checkInit(len, ppSpec, pMemSpec, pMemInit);
    return status == zetStsOk ? initMdct(ppSpec, len, pMemSpec) : status;
}

ZetStatus zetsMDCTFwdInitAlloc_32f(ZetsMDCTFwdSpec_32f** ppSpec, int len) {
    ZETAC_REQUIRE(core::allSet(ppSpec), zetStsNullPointer);
    ZETAC_REQUIRE(FloatingMdctFamily::allows(len), zetStsBadSize);
    return allocateMdct(ppSpec, len);
}

ZetStatus zetsMDCTInvInitAlloc_32f(ZetsMDCTInvSpec_32f** ppSpec, int len) {
    ZETAC_REQUIRE(core::allSet(ppSpec), zetStsNullPointer);
    ZETAC_REQUIRE(FloatingMdctFamily::allows(len), zetStsBadSize);
    return allocateMdct(ppSpec, len);
}

ZetStatus zetsMDCTFwdFree_32f(ZetsMDCTFwdSpec_32f* pSpec) {
    ZETAC_REQUIRE(core::allSet(pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kMdctFwd32f), zetStsSpecMismatch);
    freeMdct(pSpec);
    return zetStsOk;
}

ZetStatus zetsMDCTInvFree_32f(ZetsMDCTInvSpec_32f* pSpec) {
    ZETAC_REQUIRE(core::allSet(pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kMdctInv32f), zetStsSpecMismatch);
    freeMdct(pSpec);
    return zetStsOk;
}

ZetStatus zetsMDCTFwdGetBufSize_32f(const ZetsMDCTFwdSpec_32f* pSpec, int* pSize) {
    ZETAC_REQUIRE(core::allSet(pSpec, pSize), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kMdctFwd32f), zetStsSpecMismatch);
    *pSize = pSpec->bufSize;
    return zetStsOk;
}

ZetStatus zetsMDCTInvGetBufSize_32f(const ZetsMDCTInvSpec_32f* pSpec, int* pSize) {
    ZETAC_REQUIRE(core::allSet(pSpec, pSize), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kMdctInv32f), zetStsSpecMismatch);
    *pSize = pSpec->bufSize;
    return zetStsOk;
}

ZetStatus zetsMDCTFwd_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsMDCTFwdSpec_32f* pSpec,
                          Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kMdctFwd32f), zetStsSpecMismatch);
    ZETAC_REQUIRE(core::allSet(pSrc, pDst), zetStsNullPointer);
    return forwardMdct(*pSpec, pSrc, pDst, pBuffer);
}

ZetStatus zetsMDCTFwd_32f_I(Zet32f* pSrcDst, const ZetsMDCTFwdSpec_32f* pSpec, Zet8u* pBuffer) {
    return zetsMDCTFwd_32f(pSrcDst, pSrcDst, pSpec, pBuffer);
}

ZetStatus zetsMDCTInv_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsMDCTInvSpec_32f* pSpec,
                          Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kMdctInv32f), zetStsSpecMismatch);
    ZETAC_REQUIRE(core::allSet(pSrc, pDst), zetStsNullPointer);
    return inverseMdct(*pSpec, pSrc, pDst, pBuffer);
}

ZetStatus zetsMDCTInv_32f_I(Zet32f* pSrcDst, const ZetsMDCTInvSpec_32f* pSpec, Zet8u* pBuffer) {
    return zetsMDCTInv_32f(pSrcDst, pSrcDst, pSpec, pBuffer);
}
