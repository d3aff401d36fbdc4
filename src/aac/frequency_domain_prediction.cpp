// Frequency-domain prediction (ISO/IEC 13818-7, 13; 14496-3, 4.6.6): one backward-adaptive lattice
// LMS predictor of second order per spectral line.
//
// Encoder and decoder stay in step only if every rounding is the same in both, so each expression
// is evaluated in single precision in the order in which it is written.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <bit>

#include "core/checks.h"
#include "core/spec.h"
#include "tables/aac/fdp.h"

// The arrays of the state stand behind this header, each on a 32-byte boundary. There are no
// pointers inside, so that the header fits into 32 bytes in both word sizes.
struct ZetsFDPState_32f {
    zetac::core::SpecHeader header;
    Zet32s len;
};

namespace zetac::aac {
namespace {

using core::allSet;

constexpr Zet32f kForgetting = 0.90625f;    // alpha, of correlations and energies
constexpr Zet32f kAttenuation = 0.953125f;  // a, of the delayed values
constexpr uint32_t kUpperHalf = 0xffff0000;

// --- Layout -------------------------------------------------------------------------------------

// What the state of one line consists of.
enum Part { kCor0, kCor1, kVar0, kVar1, kR0, kR1, kParts };

constexpr int kHeaderBytes = 32;
constexpr int kSizeSlack = 260;
constexpr int kLenMax = (INT_MAX - kSizeSlack) / (kParts * static_cast<int>(sizeof(Zet32f)));
static_assert(sizeof(ZetsFDPState_32f) <= kHeaderBytes);
// Alignment of the block, the header, and what each array leaves unused: at most 7 values.
static_assert(core::kSpecAlignment - 1 + kHeaderBytes + kParts * 7 * sizeof(Zet32f) <= kSizeSlack);

int sizeOf(int len) {
    return kParts * static_cast<int>(sizeof(Zet32f)) * len + kSizeSlack;
}

Zet32f* arrayOf(ZetsFDPState_32f& state, Part part) {
    const size_t stride = core::roundUp(static_cast<size_t>(state.len) * sizeof(Zet32f));
    auto* bytes = reinterpret_cast<Zet8u*>(&state) + kHeaderBytes + part * stride;
    return reinterpret_cast<Zet32f*>(bytes);
}

bool isState(const ZetsFDPState_32f* state) {
    return core::hasId(state, core::SpecId::kFdp32f);
}

// A run of lines that may be named by a caller's table; what the state does not have is cut off.
struct Lines {
    int begin, end;
};

Lines linesOfBand(const ZetsFDPState_32f& state, const int* bandOffset, int band) {
    return {std::max(bandOffset[band], 0), std::min(bandOffset[band + 1], state.len)};
}

// --- Reset --------------------------------------------------------------------------------------

void resetLines(ZetsFDPState_32f& state, Lines lines, int step = 1) {
    for (int part = 0; part < kParts; ++part) {
        Zet32f* values = arrayOf(state, static_cast<Part>(part));
        const Zet32f value = part == kVar0 || part == kVar1 ? 1.f : 0.f;
        for (int64_t line = lines.begin; line < lines.end; line += step) values[line] = value;
    }
}

void resetBands(ZetsFDPState_32f& state, const int* bandOffset, int nBands, const Zet8u* flags) {
    for (int band = 0; band < nBands; ++band) {
        if (flags[band]) resetLines(state, linesOfBand(state, bandOffset, band));
    }
}

ZetsFDPState_32f* layOut(Zet8u* memory, int len) {
    auto* state = reinterpret_cast<ZetsFDPState_32f*>(core::alignUp(memory));
    state->header = {core::SpecId::kFdp32f, 0};
    state->len = len;
    resetLines(*state, {0, len});
    return state;
}

// --- The predictor ------------------------------------------------------------------------------

// To 16 bits of sign, exponent and mantissa: towards zero, or to nearest with ties away from it.
Zet32f truncated(Zet32f value) {
    return std::bit_cast<Zet32f>(std::bit_cast<uint32_t>(value) & kUpperHalf);
}
Zet32f rounded(Zet32f value) {
    return std::bit_cast<Zet32f>((std::bit_cast<uint32_t>(value) + 0x8000) & kUpperHalf);
}

// b / energy. Energies are not negative; the sign bit of one that is no number is passed over.
Zet32f reciprocal(Zet32f energy) {
    const uint32_t high = std::bit_cast<uint32_t>(energy) >> 16;
    return tables::kFdpMantissa[high & 127] * tables::kFdpExponent[high >> 7 & 255];
}

// Lines are independent of each other; runs of this length keep what lies between the steps in the
// first-level cache, and the loops over a run vectorise.
constexpr int kRun = 64;

struct Run {
    Zet32f *cor0, *cor1, *var0, *var1, *r0, *r1;
    int len;

    Run(ZetsFDPState_32f& state, int begin, int count)
        : cor0(arrayOf(state, kCor0) + begin),
          cor1(arrayOf(state, kCor1) + begin),
          var0(arrayOf(state, kVar0) + begin),
          var1(arrayOf(state, kVar1) + begin),
          r0(arrayOf(state, kR0) + begin),
          r1(arrayOf(state, kR1) + begin),
          len(count) {}
};

// The coefficients of the first stage and the predictions.
void predict(const Run& run, Zet32f* __restrict k1, Zet32f* __restrict prediction) {
    for (int i = 0; i < run.len; ++i) {
        k1[i] = run.cor0[i] * reciprocal(run.var0[i]);
        const Zet32f k2 = run.cor1[i] * reciprocal(run.var1[i]);
        const Zet32f first = k1[i] * run.r0[i];
        const Zet32f second = k2 * run.r1[i];
        prediction[i] = rounded(first + second);
    }
}

Zet32f forget(Zet32f old, Zet32f fresh) {
    const Zet32f kept = kForgetting * old;
    return truncated(kept + fresh);
}

// One stage: its correlation and energy learn from its delayed value r and its error e.
void adaptStage(Zet32f* __restrict cor, Zet32f* __restrict var, const Zet32f* __restrict r,
                const Zet32f* __restrict e, int len) {
    for (int i = 0; i < len; ++i) {
        cor[i] = forget(cor[i], r[i] * e[i]);
        const Zet32f squares = r[i] * r[i] + e[i] * e[i];
        var[i] = forget(var[i], 0.5f * squares);
    }
}

void adapt(const Run& run, const Zet32f* __restrict k1, const Zet32f* reconstructed) {
    Zet32f e0[kRun], e1[kRun];
    for (int i = 0; i < run.len; ++i) {
        e0[i] = reconstructed[i];
        const Zet32f first = k1[i] * run.r0[i];
        e1[i] = e0[i] - first;
    }
    adaptStage(run.cor0, run.var0, run.r0, e0, run.len);
    adaptStage(run.cor1, run.var1, run.r1, e1, run.len);
    Zet32f* __restrict r0 = run.r0, * __restrict r1 = run.r1;
    for (int i = 0; i < run.len; ++i) {
        const Zet32f passed = k1[i] * e0[i];
        r1[i] = truncated(kAttenuation * (r0[i] - passed));
        r0[i] = truncated(kAttenuation * e0[i]);
    }
}

// Calls step(run, first line, coefficients, predictions) for the runs of some lines.
template <class Step>
void forRuns(ZetsFDPState_32f& state, Lines lines, Step step) {
    for (int begin = lines.begin; begin < lines.end; begin += kRun) {
        const Run run(state, begin, std::min(kRun, lines.end - begin));
        Zet32f k1[kRun], prediction[kRun];
        predict(run, k1, prediction);
        step(run, begin, k1, prediction);
    }
}

// The state moves on before the residual is written: dst may be src.
void formResidual(ZetsFDPState_32f& state, const Zet32f* src, Zet32f* dst) {
    forRuns(state, {0, state.len},
            [=](const Run& run, int begin, const Zet32f* k1, const Zet32f* prediction) {
                adapt(run, k1, src + begin);
                for (int i = 0; i < run.len; ++i) dst[begin + i] = src[begin + i] - prediction[i];
            });
}

void reconstruct(ZetsFDPState_32f& state, Lines lines, bool isUsed, Zet32f* srcDst) {
    forRuns(state, lines,
            [=](const Run& run, int begin, const Zet32f* k1, const Zet32f* prediction) {
                Zet32f* values = srcDst + begin;
                for (int i = 0; isUsed && i < run.len; ++i) values[i] = values[i] + prediction[i];
                adapt(run, k1, values);
            });
}

}  // namespace
}  // namespace zetac::aac

using namespace zetac::aac;

ZetStatus zetsFDPGetSize_32f(int len, int* pSize) {
    ZETAC_REQUIRE(pSize, zetStsNullPointer);
    ZETAC_REQUIRE(zetac::core::inRange(len, 1, kLenMax), zetStsBadSize);
    *pSize = sizeOf(len);
    return zetStsOk;
}

ZetStatus zetsFDPInit_32f(ZetsFDPState_32f** ppState, int len, Zet8u* pMem) {
    ZETAC_REQUIRE(allSet(ppState, pMem), zetStsNullPointer);
    ZETAC_REQUIRE(zetac::core::inRange(len, 1, kLenMax), zetStsBadSize);
    *ppState = layOut(pMem, len);
    return zetStsOk;
}

ZetStatus zetsFDPInitAlloc_32f(ZetsFDPState_32f** ppState, int len) {
    ZETAC_REQUIRE(ppState, zetStsNullPointer);
    ZETAC_REQUIRE(zetac::core::inRange(len, 1, kLenMax), zetStsBadSize);
    return zetac::core::allocateSpec(ppState, sizeOf(len),
                                     [=](Zet8u* memory) { return layOut(memory, len); });
}

ZetStatus zetsFDPFree_32f(ZetsFDPState_32f* pState) {
    ZETAC_REQUIRE(pState, zetStsNullPointer);
    ZETAC_REQUIRE(isState(pState), zetStsSpecMismatch);
    zetac::core::freeSpec(pState);
    return zetStsOk;
}

ZetStatus zetsFDPReset_32f(ZetsFDPState_32f* pState) {
    ZETAC_REQUIRE(pState, zetStsNullPointer);
    ZETAC_REQUIRE(isState(pState), zetStsSpecMismatch);
    resetLines(*pState, {0, pState->len});
    return zetStsOk;
}

ZetStatus zetsFDPResetGroup_32f(int step, int first, ZetsFDPState_32f* pState) {
    ZETAC_REQUIRE(pState, zetStsNullPointer);
    ZETAC_REQUIRE(first >= 0, zetStsBadSize);
    ZETAC_REQUIRE(step >= 1, zetStsFdpGroupLengthErr);
    ZETAC_REQUIRE(isState(pState), zetStsSpecMismatch);
    resetLines(*pState, {first, pState->len}, step);
    return zetStsOk;
}

ZetStatus zetsFDPResetSfb_32f(const int* pBandOffset, int nBands, const Zet8u* pResetFlag,
                              ZetsFDPState_32f* pState) {
    ZETAC_REQUIRE(allSet(pBandOffset, pResetFlag, pState), zetStsNullPointer);
    ZETAC_REQUIRE(nBands >= 1, zetStsBadSize);
    ZETAC_REQUIRE(isState(pState), zetStsSpecMismatch);
    resetBands(*pState, pBandOffset, nBands, pResetFlag);
    return zetStsOk;
}

ZetStatus zetsFDPFwd_32f(const Zet32f* pSrc, Zet32f* pDst, ZetsFDPState_32f* pState) {
    ZETAC_REQUIRE(allSet(pSrc, pDst, pState), zetStsNullPointer);
    ZETAC_REQUIRE(isState(pState), zetStsSpecMismatch);
    formResidual(*pState, pSrc, pDst);
    return zetac::core::alignmentStatus(pSrc, pDst);
}

ZetStatus zetsFDPInv_32f_I(Zet32f* pSrcDst, const int* pBandOffset, int nBands,
                           const Zet8u* pPredictionUsed, ZetsFDPState_32f* pState) {
    ZETAC_REQUIRE(allSet(pSrcDst, pBandOffset, pPredictionUsed, pState), zetStsNullPointer);
    ZETAC_REQUIRE(nBands >= 1, zetStsBadSize);
    ZETAC_REQUIRE(isState(pState), zetStsSpecMismatch);
    for (int band = 0; band < nBands; ++band) {
        reconstruct(*pState, linesOfBand(*pState, pBandOffset, band), pPredictionUsed[band] != 0,
                    pSrcDst);
    }
    return zetac::core::alignmentStatus(pSrcDst);
}
