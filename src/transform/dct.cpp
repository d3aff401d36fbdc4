// The orthonormal DCT: type II forward, type III inverse.
#include <zetac.h>

#include <algorithm>
#include <bit>

#include "core/checks.h"
#include "transform/dct_kernels.h"
#include "transform/dct_spec.h"

namespace zetac::transform {
namespace {

ZetStatus getDctSize(int len, int* specSize, int* sizeInit, int* bufSize) {
    const DctSizes sizes = dctSizes(len);
    if (!sizes.fit()) return zetStsNoMemory;
    *specSize = static_cast<int>(sizes.spec);
    *sizeInit = static_cast<int>(sizes.init);
    *bufSize = static_cast<int>(sizes.work);
    return zetStsOk;
}

template <class Spec>
ZetStatus initDct(Spec** result, core::SpecId id, int len, Zet8u* memory, Zet8u* init) {
    const DctSizes sizes = dctSizes(len);
    if (!sizes.fit()) return zetStsNoMemory;
    if (sizes.init != 0 && !init) return zetStsNullPointer;
    *result = static_cast<Spec*>(makeDctSpec({id, len}, memory, init));
    return zetStsOk;
}

template <class Spec>
ZetStatus allocateDct(Spec** result, core::SpecId id, int len) {
    const DctSizes sizes = dctSizes(len);
    if (!sizes.fit()) return zetStsNoMemory;
    const core::WorkBuffer init(nullptr, static_cast<int>(sizes.init));
    if (init.failed()) return zetStsNoMemory;
    return core::allocateSpec(result, static_cast<int>(sizes.spec), [&](Zet8u* memory) {
        return static_cast<Spec*>(makeDctSpec({id, len}, memory, init.data()));
    });
}

// A power of two. One and two values are transforms of their own.
void fastForward(const DctSpec& spec, const Zet32f* x, Zet32f* y, Zet32f* points, Zet32f* work) {
    const int half = spec.len / 2;
    if (half == 0) {
        y[0] = x[0];
    } else if (half == 1) {
        const Zet32f first = x[0];
        const Zet32f second = x[1];
        y[0] = (first + second) * spec.edge;
        y[1] = (first - second) * spec.edge;
    } else {
        const int order = spec.plan.order + 1;
        const DctKernels kernels = core::select(kDctKernels);
        kernels.reorder(x, points, order);
        auto* pairs = reinterpret_cast<Zet32fc*>(points);
        core::select(kFftKernels).forward(spec.plan, pairs, pairs, 1, work);
        kernels.toCosines(points, y, spec.rows, order);
        y[0] = (points[0] + points[1]) * spec.edge;
        y[half] = (points[0] - points[1]) * spec.edge;
    }
}

void fastInverse(const DctSpec& spec, const Zet32f* y, Zet32f* x, Zet32f* points, Zet32f* work) {
    const int half = spec.len / 2;
    if (half < 2) return fastForward(spec, y, x, points, work);  // symmetric
    const int order = spec.plan.order + 1;
    const DctKernels kernels = core::select(kDctKernels);
    kernels.toPoints(y, points, spec.rows, order);
    const Zet32f first = y[0] * spec.edge;
    const Zet32f middle = y[half] * spec.edge;
    points[0] = first + middle;
    points[1] = first - middle;
    auto* pairs = reinterpret_cast<Zet32fc*>(points);
    core::select(kFftKernels).inverse(spec.plan, pairs, pairs, 1, work);
    kernels.restore(points, x, order);
}

Zet32fc product(Zet32fc a, Zet32fc b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
Zet32f realPartOfProduct(Zet32fc a, Zet32fc b) {
    return a.re * b.re - a.im * b.im;
}

// Where value n of the reordered sequence comes from: the even ones in order, then the odd ones
// backwards.
int reordered(int n, int len) {
    return 2 * n < len ? 2 * n : 2 * (len - n) - 1;
}

// The first len points convolved with the conjugate chirp, in place.
void convolve(const DctSpec& spec, Zet32fc* points, Zet32f* work) {
    const int64_t count = int64_t{1} << spec.plan.order;
    const FftKernels kernels = core::select(kFftKernels);
    std::fill(points + spec.len, points + count, Zet32fc{0, 0});
    kernels.forward(spec.plan, points, points, 1, work);
    for (int64_t k = 0; k < count; ++k) points[k] = product(points[k], spec.response[k]);
    kernels.inverse(spec.plan, points, points, 1, work);
}

// The DFT of the reordered sequence: 2 n k = n^2 + k^2 - (k - n)^2 turns it into a convolution of
// the sequence times the chirp e^(-pi i n^2 / N).
void chirpForward(const DctSpec& spec, const Zet32f* x, Zet32f* y, Zet32fc* points, Zet32f* work) {
    for (int n = 0; n < spec.len; ++n) {
        const Zet32f value = x[reordered(n, spec.len)];
        points[n] = {value * spec.chirp[n].re, value * spec.chirp[n].im};
    }
    convolve(spec, points, work);
    for (int k = 0; k < spec.len; ++k) y[k] = realPartOfProduct(points[k], spec.rotations[k]);
}

// The same backwards, on conjugate values throughout: the result is real.
void chirpInverse(const DctSpec& spec, const Zet32f* y, Zet32f* x, Zet32fc* points, Zet32f* work) {
    for (int k = 0; k < spec.len; ++k) {
        const Zet32f mirror = k == 0 ? 0 : y[spec.len - k];
        points[k] = product({y[k], mirror}, spec.rotations[k]);
    }
    convolve(spec, points, work);
    for (int n = 0; n < spec.len; ++n)
        x[reordered(n, spec.len)] = realPartOfProduct(points[n], spec.chirp[n]);
}

// work begins with the points of the FFT, its own work follows.
ZetStatus forwardDct(const DctSpec& spec, const Zet32f* src, Zet32f* dst, Zet8u* buffer) {
    const FftWork work(buffer, spec.bufSize);
    if (work.failed()) return zetStsNoMemory;
    Zet32f* points = work.singles();
    Zet32f* rest = points + (int64_t{2} << spec.plan.order);
    if (isPowerOfTwo(spec.len))
        fastForward(spec, src, dst, points, rest);
    else
        chirpForward(spec, src, dst, reinterpret_cast<Zet32fc*>(points), rest);
    return zetStsOk;
}

ZetStatus inverseDct(const DctSpec& spec, const Zet32f* src, Zet32f* dst, Zet8u* buffer) {
    const FftWork work(buffer, spec.bufSize);
    if (work.failed()) return zetStsNoMemory;
    Zet32f* points = work.singles();
    Zet32f* rest = points + (int64_t{2} << spec.plan.order);
    if (isPowerOfTwo(spec.len))
        fastInverse(spec, src, dst, points, rest);
    else
        chirpInverse(spec, src, dst, reinterpret_cast<Zet32fc*>(points), rest);
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::transform

using namespace zetac;
using namespace zetac::transform;

ZetStatus zetsDCTFwdGetSize_32f(int len, int, int* pSpecSize, int* pSizeInit, int* pBufSize) {
    ZETAC_REQUIRE(core::allSet(pSpecSize, pSizeInit, pBufSize), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    return getDctSize(len, pSpecSize, pSizeInit, pBufSize);
}

ZetStatus zetsDCTFwdInit_32f(ZetsDCTFwdSpec_32f** ppSpec, int len, int, Zet8u* pMemSpec,
                             Zet8u* pMemInit) {
    ZETAC_REQUIRE(core::allSet(ppSpec, pMemSpec), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    return initDct(ppSpec, core::SpecId::kDctFwd32f, len, pMemSpec, pMemInit);
}

ZetStatus zetsDCTFwdInitAlloc_32f(ZetsDCTFwdSpec_32f** ppSpec, int len, int) {
    ZETAC_REQUIRE(core::allSet(ppSpec), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    return allocateDct(ppSpec, core::SpecId::kDctFwd32f, len);
}

ZetStatus zetsDCTFwdFree_32f(ZetsDCTFwdSpec_32f* pSpec) {
    ZETAC_REQUIRE(core::allSet(pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kDctFwd32f), zetStsSpecMismatch);
    core::freeSpec(pSpec);
    return zetStsOk;
}

ZetStatus zetsDCTFwdGetBufSize_32f(const ZetsDCTFwdSpec_32f* pSpec, int* pSize) {
    ZETAC_REQUIRE(core::allSet(pSpec, pSize), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kDctFwd32f), zetStsSpecMismatch);
    *pSize = pSpec->bufSize;
    return zetStsOk;
}

ZetStatus zetsDCTFwd_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsDCTFwdSpec_32f* pSpec,
                         Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kDctFwd32f), zetStsSpecMismatch);
    return forwardDct(*pSpec, pSrc, pDst, pBuffer);
}

ZetStatus zetsDCTFwd_32f_I(Zet32f* pSrcDst, const ZetsDCTFwdSpec_32f* pSpec, Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrcDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kDctFwd32f), zetStsSpecMismatch);
    return forwardDct(*pSpec, pSrcDst, pSrcDst, pBuffer);
}

ZetStatus zetsDCTInvGetSize_32f(int len, int, int* pSpecSize, int* pSizeInit, int* pBufSize) {
    ZETAC_REQUIRE(core::allSet(pSpecSize, pSizeInit, pBufSize), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    return getDctSize(len, pSpecSize, pSizeInit, pBufSize);
}

ZetStatus zetsDCTInvInit_32f(ZetsDCTInvSpec_32f** ppSpec, int len, int, Zet8u* pMemSpec,
                             Zet8u* pMemInit) {
    ZETAC_REQUIRE(core::allSet(ppSpec, pMemSpec), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    return initDct(ppSpec, core::SpecId::kDctInv32f, len, pMemSpec, pMemInit);
}

ZetStatus zetsDCTInvInitAlloc_32f(ZetsDCTInvSpec_32f** ppSpec, int len, int) {
    ZETAC_REQUIRE(core::allSet(ppSpec), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    return allocateDct(ppSpec, core::SpecId::kDctInv32f, len);
}

ZetStatus zetsDCTInvFree_32f(ZetsDCTInvSpec_32f* pSpec) {
    ZETAC_REQUIRE(core::allSet(pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kDctInv32f), zetStsSpecMismatch);
    core::freeSpec(pSpec);
    return zetStsOk;
}

ZetStatus zetsDCTInvGetBufSize_32f(const ZetsDCTInvSpec_32f* pSpec, int* pSize) {
    ZETAC_REQUIRE(core::allSet(pSpec, pSize), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kDctInv32f), zetStsSpecMismatch);
    *pSize = pSpec->bufSize;
    return zetStsOk;
}

ZetStatus zetsDCTInv_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsDCTInvSpec_32f* pSpec,
                         Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kDctInv32f), zetStsSpecMismatch);
    return inverseDct(*pSpec, pSrc, pDst, pBuffer);
}

ZetStatus zetsDCTInv_32f_I(Zet32f* pSrcDst, const ZetsDCTInvSpec_32f* pSpec, Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrcDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(pSpec, core::SpecId::kDctInv32f), zetStsSpecMismatch);
    return inverseDct(*pSpec, pSrcDst, pSrcDst, pBuffer);
}
