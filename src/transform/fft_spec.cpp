// The spec structures of the FFTs and their life.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "transform/fft_spec.h"

#include "core/checks.h"
#include "core/constexpr_math.h"
#include "transform/fft_real.h"

namespace zetac::transform {
namespace {

int complexOrder(const FftParameters& parameters) {
    return parameters.real && parameters.order > 0 ? parameters.order - 1 : parameters.order;
}

struct Pieces {
    FftSpec* spec;
    Zet32f* twiddles;
    Zet32f* realTwiddles;
};

Pieces layOut(core::Layout& layout, const FftParameters& parameters) {
    auto* spec = layout.take<FftSpec>();
    auto* twiddles = layout.take<Zet32f>(fftTwiddleCount(complexOrder(parameters)), kCacheLine);
    auto* real =
        layout.take<Zet32f>(parameters.real ? realTwiddleCount(parameters.order) : 0, kCacheLine);
    return {spec, twiddles, real};
}

Zet32f scaleFor(const FftParameters& parameters, int flagToDivide) {
    const long double points = static_cast<long double>(uint64_t{1} << parameters.order);
    if (parameters.flag == flagToDivide) return static_cast<Zet32f>(1 / points);
    if (parameters.flag == zetFftDivBySqrtN)
        return static_cast<Zet32f>(1 / core::squareRoot(points));
    return 1;
}

}  // namespace

FftSizes fftSizes(const FftParameters& parameters) {
    core::Layout layout;
    layOut(layout, parameters);
    return {layout.size(), parameters.work};
}

FftSpec* makeFftSpec(const FftParameters& parameters, Zet8u* memory) {
    core::Layout layout(memory);
    const Pieces pieces = layOut(layout, parameters);
    // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): a layout of memory yields a structure
    *pieces.spec = {.header = {parameters.id, 0},
                    .order = parameters.order,
                    .bufSize = static_cast<int>(parameters.work),
                    .forwardScale = scaleFor(parameters, zetFftDivFwdByN),
                    .inverseScale = scaleFor(parameters, zetFftDivInvByN),
                    .plan = makeFftPlan(complexOrder(parameters), pieces.twiddles),
                    .realTwiddles = pieces.realTwiddles};
    if (parameters.real) fillRealTwiddles(parameters.order, pieces.realTwiddles);
    return pieces.spec;
}

}  // namespace zetac::transform

using namespace zetac;
using namespace zetac::transform;

// The life of a family, by the ending of its names.
#define ZETAC_FFT_LIFE(type)                                                                   \
    ZetStatus zetsFFTGetSize_##type(int order, int flag, int, int* pSpecSize, int* pSizeInit,  \
                                    int* pBufSize) {                                           \
        ZETAC_REQUIRE(core::allSet(pSpecSize, pSizeInit, pBufSize), zetStsNullPointer);        \
        ZETAC_REQUIRE(core::inRange(order, 0, kMaxFftOrder), zetStsFftOrderErr);               \
        ZETAC_REQUIRE(isFftFlag(flag), zetStsFftFlagErr);                                      \
        return getFftSize<ZetsFFTSpec_##type>(order, flag, pSpecSize, pSizeInit, pBufSize);    \
    }                                                                                          \
    ZetStatus zetsFFTInit_##type(ZetsFFTSpec_##type** ppSpec, int order, int flag, int,        \
                                 Zet8u* pMemSpec, Zet8u*) {                                    \
        ZETAC_REQUIRE(core::allSet(ppSpec, pMemSpec), zetStsNullPointer);                      \
        ZETAC_REQUIRE(core::inRange(order, 0, kMaxFftOrder), zetStsFftOrderErr);               \
        ZETAC_REQUIRE(isFftFlag(flag), zetStsFftFlagErr);                                      \
        return initFft(ppSpec, order, flag, pMemSpec);                                         \
    }                                                                                          \
    ZetStatus zetsFFTInitAlloc_##type(ZetsFFTSpec_##type** ppSpec, int order, int flag, int) { \
        ZETAC_REQUIRE(core::allSet(ppSpec), zetStsNullPointer);                                \
        ZETAC_REQUIRE(core::inRange(order, 0, kMaxFftOrder), zetStsFftOrderErr);               \
        ZETAC_REQUIRE(isFftFlag(flag), zetStsFftFlagErr);                                      \
        return allocateFft(ppSpec, order, flag);                                               \
    }                                                                                          \
    ZetStatus zetsFFTFree_##type(ZetsFFTSpec_##type* pSpec) {                                  \
        ZETAC_REQUIRE(core::allSet(pSpec), zetStsNullPointer);                                 \
        ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);                                \
        core::freeSpec(pSpec);                                                                 \
        return zetStsOk;                                                                       \
    }                                                                                          \
    ZetStatus zetsFFTGetBufSize_##type(const ZetsFFTSpec_##type* pSpec, int* pSize) {          \
        ZETAC_REQUIRE(core::allSet(pSpec, pSize), zetStsNullPointer);                          \
        ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);                                \
        *pSize = pSpec->bufSize;                                                               \
        return zetStsOk;                                                                       \
    }

ZETAC_FFT_LIFE(C_16sc)
ZETAC_FFT_LIFE(C_32f)
ZETAC_FFT_LIFE(C_32fc)
ZETAC_FFT_LIFE(R_32f)
