// What an SBR encoder measures before it chooses its grid, noise floors and inverse filtering:
// transients and tonality.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include "core/checks.h"
#include "sbr/predict_float_kernels.h"

namespace zetac::sbr {
namespace {

struct Detection {
    Zet32f threshold;
    Zet32f floor;
};

int detectTransient(const Zet32f* energies, Zet32f* history, Zet32f* strengths,
                    PredictorBlock block, Detection detection) {
    const auto rise = core::select(kPredictFloatKernels).rise;
    int strongest = 0;
    for (int n = 0; n < block.numSlots; ++n) {
        const Zet32f* slot = energies + int64_t{block.len} * n;
        strengths[n] = rise(slot, history, block.len, detection.floor);
        if (strengths[n] > strengths[strongest]) strongest = n;
    }
    return strengths[strongest] < detection.threshold ? -1 : strongest;
}

}  // namespace
}  // namespace zetac::sbr

using namespace zetac;
using namespace zetac::sbr;

ZetStatus zetsDetectTransient_SBR_32f(const Zet32f* pSrc, Zet32f* pHistory, Zet32f* pStrength,
                                      int* pSlot, int len, int numSlots, Zet32f threshold,
                                      Zet32f floor) {
    ZETAC_REQUIRE(core::allSet(pSrc, pHistory, pStrength, pSlot), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    ZETAC_REQUIRE(numSlots >= 1, zetStsBadSize);
    *pSlot = detectTransient(pSrc, pHistory, pStrength, {len, numSlots}, {threshold, floor});
    return zetStsOk;
}

ZetStatus zetsEstimateTNR_SBR_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32f* pTNR, int len,
                                  int numSlots) {
    ZETAC_REQUIRE(core::allSet(pSrcRe, pSrcIm, pTNR), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    ZETAC_REQUIRE(numSlots >= 1, zetStsBadSize);
    core::select(kPredictFloatKernels).tonality(pSrcRe, pSrcIm, pTNR, {len, numSlots});
    return zetStsOk;
}
