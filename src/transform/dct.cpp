// The orthonormal DCT: type II forward, type III inverse.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
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
ZetStatus initDct(Spec** result, int len, Zet8u* memory, Zet8u* init) {
    const DctSizes sizes = dctSizes(len);
    if (!sizes.fit()) return zetStsNoMemory;
    if (sizes.init != 0 && !init) return zetStsNullPointer;
    *result = static_cast<Spec*>(makeDctSpec({Spec::kId, len}, memory, init));
    return zetStsOk;
}

template <class Spec>
ZetStatus allocateDct(Spec** result, int len) {
    const DctSizes sizes = dctSizes(len);
    if (!sizes.fit()) return zetStsNoMemory;
    const core::WorkBuffer init(nullptr, static_cast<int>(sizes.init));
    if (init.failed()) return zetStsNoMemory;
    return core::allocateSpec(result, static_cast<int>(sizes.spec), [&](Zet8u* memory) {
        return static_cast<Spec*>(makeDctSpec({Spec::kId, len}, memory, init.data()));
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

using Fast = decltype(fastForward);
using Chirp = decltype(chirpForward);

// work begins with the points of the FFT, its own work follows.
ZetStatus runDct(const DctSpec& spec, const Zet32f* src, Zet32f* dst, Zet8u* buffer, Fast fast,
                 Chirp chirp) {
    const FftWork work(buffer, spec.bufSize);
    if (work.failed()) return zetStsNoMemory;
    Zet32f* points = work.singles();
    Zet32f* rest = points + (int64_t{2} << spec.plan.order);
    if (isPowerOfTwo(spec.len))
        fast(spec, src, dst, points, rest);
    else
        chirp(spec, src, dst, reinterpret_cast<Zet32fc*>(points), rest);
    return zetStsOk;
}

ZetStatus forwardDct(const DctSpec& spec, const Zet32f* src, Zet32f* dst, Zet8u* buffer) {
    return runDct(spec, src, dst, buffer, fastForward, chirpForward);
}
ZetStatus inverseDct(const DctSpec& spec, const Zet32f* src, Zet32f* dst, Zet8u* buffer) {
    return runDct(spec, src, dst, buffer, fastInverse, chirpInverse);
}

}  // namespace
}  // namespace zetac::transform

using namespace zetac;
using namespace zetac::transform;

// The functions of one direction.
#define ZETAC_DCT(direction, transform)                                                         \
    ZetStatus zetsDCT##direction##GetSize_32f(int len, int, int* pSpecSize, int* pSizeInit,     \
                                              int* pBufSize) {                                  \
        ZETAC_REQUIRE(core::allSet(pSpecSize, pSizeInit, pBufSize), zetStsNullPointer);         \
        ZETAC_REQUIRE(len >= 1, zetStsBadSize);                                                 \
        return getDctSize(len, pSpecSize, pSizeInit, pBufSize);                                 \
    }                                                                                           \
    ZetStatus zetsDCT##direction##Init_32f(ZetsDCT##direction##Spec_32f** ppSpec, int len, int, \
                                           Zet8u* pMemSpec, Zet8u* pMemInit) {                  \
        ZETAC_REQUIRE(core::allSet(ppSpec, pMemSpec), zetStsNullPointer);                       \
        ZETAC_REQUIRE(len >= 1, zetStsBadSize);                                                 \
        return initDct(ppSpec, len, pMemSpec, pMemInit);                                        \
    }                                                                                           \
    ZetStatus zetsDCT##direction##InitAlloc_32f(ZetsDCT##direction##Spec_32f** ppSpec, int len, \
                                                int) {                                          \
        ZETAC_REQUIRE(core::allSet(ppSpec), zetStsNullPointer);                                 \
        ZETAC_REQUIRE(len >= 1, zetStsBadSize);                                                 \
        return allocateDct(ppSpec, len);                                                        \
    }                                                                                           \
    ZetStatus zetsDCT##direction##Free_32f(ZetsDCT##direction##Spec_32f* pSpec) {               \
        ZETAC_REQUIRE(core::allSet(pSpec), zetStsNullPointer);                                  \
        ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);                                 \
        core::freeSpec(pSpec);                                                                  \
        return zetStsOk;                                                                        \
    }                                                                                           \
    ZetStatus zetsDCT##direction##GetBufSize_32f(const ZetsDCT##direction##Spec_32f* pSpec,     \
                                                 int* pSize) {                                  \
        ZETAC_REQUIRE(core::allSet(pSpec, pSize), zetStsNullPointer);                           \
        ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);                                 \
        *pSize = pSpec->bufSize;                                                                \
        return zetStsOk;                                                                        \
    }                                                                                           \
    ZetStatus zetsDCT##direction##_32f(const Zet32f* pSrc, Zet32f* pDst,                        \
                                       const ZetsDCT##direction##Spec_32f* pSpec,               \
                                       Zet8u* pBuffer) {                                        \
        ZETAC_REQUIRE(core::allSet(pSrc, pDst, pSpec), zetStsNullPointer);                      \
        ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);                                 \
        return transform(*pSpec, pSrc, pDst, pBuffer);                                          \
    }                                                                                           \
    ZetStatus zetsDCT##direction##_32f_I(                                                       \
        Zet32f* pSrcDst, const ZetsDCT##direction##Spec_32f* pSpec, Zet8u* pBuffer) {           \
        return zetsDCT##direction##_32f(pSrcDst, pSrcDst, pSpec, pBuffer);                      \
    }

ZETAC_DCT(Fwd, forwardDct)
ZETAC_DCT(Inv, inverseDct)
