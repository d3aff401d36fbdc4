// The complex FFT on real and imaginary parts in separate arrays.
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

ZetStatus zetsFFTGetSize_C_32f(int order, int flag, int, int* pSpecSize, int* pSizeInit,
                               int* pBufSize) {
    ZETAC_REQUIRE(core::allSet(pSpecSize, pSizeInit, pBufSize), zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(order, 0, kMaxFftOrder), zetStsFftOrderErr);
    ZETAC_REQUIRE(isFftFlag(flag), zetStsFftFlagErr);
    return getFftSize<ZetsFFTSpec_C_32f>(order, flag, pSpecSize, pSizeInit, pBufSize);
}

ZetStatus zetsFFTInit_C_32f(ZetsFFTSpec_C_32f** ppSpec, int order, int flag, int, Zet8u* pMemSpec,
                            Zet8u*) {
    ZETAC_REQUIRE(core::allSet(ppSpec, pMemSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(order, 0, kMaxFftOrder), zetStsFftOrderErr);
    ZETAC_REQUIRE(isFftFlag(flag), zetStsFftFlagErr);
    return initFft(ppSpec, order, flag, pMemSpec);
}

ZetStatus zetsFFTInitAlloc_C_32f(ZetsFFTSpec_C_32f** ppSpec, int order, int flag, int) {
    ZETAC_REQUIRE(core::allSet(ppSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(order, 0, kMaxFftOrder), zetStsFftOrderErr);
    ZETAC_REQUIRE(isFftFlag(flag), zetStsFftFlagErr);
    return allocateFft(ppSpec, order, flag);
}

ZetStatus zetsFFTFree_C_32f(ZetsFFTSpec_C_32f* pSpec) {
    ZETAC_REQUIRE(core::allSet(pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kFftC32f), zetStsSpecMismatch);
    core::freeSpec(pSpec);
    return zetStsOk;
}

ZetStatus zetsFFTGetBufSize_C_32f(const ZetsFFTSpec_C_32f* pSpec, int* pSize) {
    ZETAC_REQUIRE(core::allSet(pSpec, pSize), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kFftC32f), zetStsSpecMismatch);
    *pSize = pSpec->bufSize;
    return zetStsOk;
}

ZetStatus zetsFFTFwd_CToC_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32f* pDstRe,
                              Zet32f* pDstIm, const ZetsFFTSpec_C_32f* pSpec, Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrcRe, pSrcIm, pDstRe, pDstIm, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kFftC32f), zetStsSpecMismatch);
    return splitFft(*pSpec, {pSrcRe, pSrcIm}, {pDstRe, pDstIm}, pSpec->forwardScale, pBuffer);
}

ZetStatus zetsFFTFwd_CToC_32f_I(Zet32f* pSrcDstRe, Zet32f* pSrcDstIm,
                                const ZetsFFTSpec_C_32f* pSpec, Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrcDstRe, pSrcDstIm, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kFftC32f), zetStsSpecMismatch);
    return splitFft(*pSpec, {pSrcDstRe, pSrcDstIm}, {pSrcDstRe, pSrcDstIm}, pSpec->forwardScale,
                    pBuffer);
}

ZetStatus zetsFFTInv_CToC_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32f* pDstRe,
                              Zet32f* pDstIm, const ZetsFFTSpec_C_32f* pSpec, Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrcRe, pSrcIm, pDstRe, pDstIm, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kFftC32f), zetStsSpecMismatch);
    return splitFft(*pSpec, {pSrcIm, pSrcRe}, {pDstIm, pDstRe}, pSpec->inverseScale, pBuffer);
}

ZetStatus zetsFFTInv_CToC_32f_I(Zet32f* pSrcDstRe, Zet32f* pSrcDstIm,
                                const ZetsFFTSpec_C_32f* pSpec, Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrcDstRe, pSrcDstIm, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kFftC32f), zetStsSpecMismatch);
    return splitFft(*pSpec, {pSrcDstIm, pSrcDstRe}, {pSrcDstIm, pSrcDstRe}, pSpec->inverseScale,
                    pBuffer);
}
