// The 64-band complex analysis of an SBR encoder.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include "core/checks.h"
#include "core/spec.h"
#include "sbr/qmf_encoder_kernels.h"
#include "transform/fft_spec.h"

namespace zetac::sbr {
namespace {

constexpr uint32_t kAlignment = 16;
constexpr int kOrder = 6;
constexpr int kBands = 1 << kOrder;

// The FFT's state follows; there is room for its work buffer too.
struct EncoderState {
    core::SpecHeader header;
    const ZetsFFTSpec_C_32fc* fft;
};
constexpr uint64_t kStateRoom = 48;
static_assert(sizeof(EncoderState) <= kStateRoom);

// A state begins at the first boundary of the caller's memory.
EncoderState* stateIn(Zet8u* memory) {
    return reinterpret_cast<EncoderState*>(core::alignUp(memory, kAlignment));
}

bool isEncoder(const EncoderState* state) {
    return core::hasId(state, core::SpecId::kQmfEncoder);
}

struct Sizes {
    int state;
    int init;
};

ZetStatus getSizes(Sizes* sizes) {
    int fftSize = 0;
    int fftWork = 0;
    const ZetStatus status = zetsFFTGetSize_C_32fc(kOrder, zetFftNoDiv, zetAlgHintAccurate,
                                                   &fftSize, &sizes->init, &fftWork);
    core::Layout layout(nullptr, kAlignment);
    layout.takeBytes(kStateRoom);
    layout.takeBytes(static_cast<uint64_t>(fftSize) + 4);
    layout.takeBytes(static_cast<uint64_t>(fftWork) + 4);
    sizes->state = static_cast<int>(layout.size());
    return status;
}

ZetStatus init(Zet8u* memory, Zet8u* memInit) {
    core::Layout layout(memory, kAlignment);
    auto* state = reinterpret_cast<EncoderState*>(layout.takeBytes(kStateRoom));
    ZetsFFTSpec_C_32fc* fft = nullptr;
    const ZetStatus status = zetsFFTInit_C_32fc(&fft, kOrder, zetFftNoDiv, zetAlgHintAccurate,
                                                layout.takeBytes(0), memInit);
    *state = {{core::SpecId::kQmfEncoder, 0}, fft};
    return status;
}

ZetStatus initAlloc(Zet8u** result) {
    *result = nullptr;
    Sizes sizes;
    const ZetStatus sized = getSizes(&sizes);
    ZETAC_REQUIRE(sized == zetStsOk, sized);
    *result = zetsMalloc_8u(sizes.state);
    ZETAC_REQUIRE(*result, zetStsNoMemory);
    Zet8u* memInit = zetsMalloc_8u(sizes.init > 0 ? sizes.init : 1);
    ZETAC_REQUIRE(memInit, zetStsNoMemory);
    const ZetStatus status = init(*result, memInit);
    ZETAC_REQUIRE(status == zetStsOk, status);
    zetsFree(memInit);
    stateIn(*result)->header.owned = 1;
    return zetStsOk;
}

void analyze(const Zet32f* samples, Zet32fc* bands, const EncoderState& state) {
    const QmfEncoderKernels kernels = core::select(kQmfEncoderKernels);
    alignas(64) Zet32f re[kBands];
    alignas(64) Zet32f im[kBands];
    kernels.toPoints(samples, re, im);
    core::select(transform::kFftKernels).forwardSplit(state.fft->plan, re, im, re, im, 1, nullptr);
    kernels.toBands(re, im, bands);
}

}  // namespace
}  // namespace zetac::sbr

using namespace zetac;
using namespace zetac::sbr;

ZetStatus zetsAnalysisFilterEncGetSize_SBR_32f(int* pSize, int* pSizeInit) {
    ZETAC_REQUIRE(core::allSet(pSize, pSizeInit), zetStsNullPointer);
    Sizes sizes;
    const ZetStatus status = getSizes(&sizes);
    ZETAC_REQUIRE(status == zetStsOk, status);
    *pSize = sizes.state;
    *pSizeInit = sizes.init;
    return zetStsOk;
}

ZetStatus zetsAnalysisFilterEncInit_SBR_32f(Zet8u* pMem, Zet8u* pMemInit) {
    ZETAC_REQUIRE(core::allSet(pMem, pMemInit), zetStsNullPointer);
    return init(pMem, pMemInit);
}

ZetStatus zetsAnalysisFilterEncInitAlloc_SBR_32f(Zet8u** ppState) {
    ZETAC_REQUIRE(core::allSet(ppState), zetStsNullPointer);
    return initAlloc(ppState);
}

ZetStatus zetsAnalysisFilterEncFree_SBR_32f(Zet8u* pState) {
    ZETAC_REQUIRE(core::allSet(pState), zetStsNullPointer);
    EncoderState* state = stateIn(pState);
    ZETAC_REQUIRE(isEncoder(state), zetStsSpecMismatch);
    core::freeIfOwned(state);
    return zetStsOk;
}

ZetStatus zetsAnalysisFilterEnc_SBR_32f32fc(const Zet32f* pSrc, Zet32fc* pDst, Zet8u* pState) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pState), zetStsNullPointer);
    const EncoderState* state = stateIn(pState);
    ZETAC_REQUIRE(isEncoder(state), zetStsSpecMismatch);
    analyze(pSrc, pDst, *state);
    return zetStsOk;
}
