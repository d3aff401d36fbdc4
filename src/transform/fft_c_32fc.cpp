// The complex FFT on pairs.
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

ZetStatus zetsFFTGetSize_C_32fc(int order, int flag, int, int* pSpecSize, int* pSizeInit,
                                int* pBufSize) {
    ZETAC_REQUIRE(core::allSet(pSpecSize, pSizeInit, pBufSize), zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(order, 0, kMaxFftOrder), zetStsFftOrderErr);
    ZETAC_REQUIRE(isFftFlag(flag), zetStsFftFlagErr);
    return getFftSize<ZetsFFTSpec_C_32fc>(order, flag, pSpecSize, pSizeInit, pBufSize);
}

ZetStatus zetsFFTInit_C_32fc(ZetsFFTSpec_C_32fc** ppSpec, int order, int flag, int, Zet8u* pMemSpec,
                             Zet8u*) {
    ZETAC_REQUIRE(core::allSet(ppSpec, pMemSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(order, 0, kMaxFftOrder), zetStsFftOrderErr);
    ZETAC_REQUIRE(isFftFlag(flag), zetStsFftFlagErr);
    return initFft(ppSpec, order, flag, pMemSpec);
}

ZetStatus zetsFFTInitAlloc_C_32fc(ZetsFFTSpec_C_32fc** ppSpec, int order, int flag, int) {
    ZETAC_REQUIRE(core::allSet(ppSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(order, 0, kMaxFftOrder), zetStsFftOrderErr);
    ZETAC_REQUIRE(isFftFlag(flag), zetStsFftFlagErr);
    return allocateFft(ppSpec, order, flag);
}

ZetStatus zetsFFTFree_C_32fc(ZetsFFTSpec_C_32fc* pSpec) {
    ZETAC_REQUIRE(core::allSet(pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kFftC32fc), zetStsSpecMismatch);
    core::freeSpec(pSpec);
    return zetStsOk;
}

ZetStatus zetsFFTGetBufSize_C_32fc(const ZetsFFTSpec_C_32fc* pSpec, int* pSize) {
    ZETAC_REQUIRE(core::allSet(pSpec, pSize), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kFftC32fc), zetStsSpecMismatch);
    *pSize = pSpec->bufSize;
    return zetStsOk;
}

ZetStatus zetsFFTFwd_CToC_32fc(const Zet32fc* pSrc, Zet32fc* pDst, const ZetsFFTSpec_C_32fc* pSpec,
                               Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kFftC32fc), zetStsSpecMismatch);
    return forwardFft(*pSpec, pSrc, pDst, pBuffer);
}

ZetStatus zetsFFTFwd_CToC_32fc_I(Zet32fc* pSrcDst, const ZetsFFTSpec_C_32fc* pSpec,
                                 Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrcDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kFftC32fc), zetStsSpecMismatch);
    return forwardFft(*pSpec, pSrcDst, pSrcDst, pBuffer);
}

ZetStatus zetsFFTInv_CToC_32fc(const Zet32fc* pSrc, Zet32fc* pDst, const ZetsFFTSpec_C_32fc* pSpec,
                               Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kFftC32fc), zetStsSpecMismatch);
    return inverseFft(*pSpec, pSrc, pDst, pBuffer);
}

ZetStatus zetsFFTInv_CToC_32fc_I(Zet32fc* pSrcDst, const ZetsFFTSpec_C_32fc* pSpec,
                                 Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrcDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kFftC32fc), zetStsSpecMismatch);
    return inverseFft(*pSpec, pSrcDst, pSrcDst, pBuffer);
}
