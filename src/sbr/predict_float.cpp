// Prediction coefficients for the high-frequency generator (ISO/IEC 14496-3, 4.6.18.6.2), in single
// precision.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include "core/checks.h"
#include "sbr/predict_float_kernels.h"

using namespace zetac;
using namespace zetac::sbr;

ZetStatus zetsPredictCoef_SBR_R_32f_D2L(const Zet32f* const pSrc[], Zet32f* pAlpha0,
                                        Zet32f* pAlpha1, int len, int numSlots) {
    ZETAC_REQUIRE(core::allSet(pSrc, pAlpha0, pAlpha1), zetStsNullPointer);
    if (numSlots < 1) return zetStsOk;
    core::select(kPredictFloatKernels).real(pSrc, pAlpha0, pAlpha1, {len, numSlots});
    return zetStsOk;
}

ZetStatus zetsPredictCoef_SBR_C_32f_D2L(const Zet32f* const pSrcRe[], const Zet32f* const pSrcIm[],
                                        Zet32f* pAlpha0Re, Zet32f* pAlpha0Im, Zet32f* pAlpha1Re,
                                        Zet32f* pAlpha1Im, int len, int numSlots) {
    ZETAC_REQUIRE(core::allSet(pSrcRe, pSrcIm, pAlpha0Re, pAlpha0Im, pAlpha1Re, pAlpha1Im),
                  zetStsNullPointer);
    if (numSlots < 1) return zetStsOk;
    core::select(kPredictFloatKernels)
        .parts({pSrcRe, pSrcIm}, {pAlpha0Re, pAlpha0Im}, {pAlpha1Re, pAlpha1Im}, {len, numSlots});
    return zetStsOk;
}

ZetStatus zetsPredictCoef_SBR_C_32fc_D2L(const Zet32fc* const pSrc[], Zet32fc* pAlpha0,
                                         Zet32fc* pAlpha1, int len, int numSlots) {
    ZETAC_REQUIRE(core::allSet(pSrc, pAlpha0, pAlpha1), zetStsNullPointer);
    if (numSlots < 1) return zetStsOk;
    core::select(kPredictFloatKernels).pairs(pSrc, pAlpha0, pAlpha1, {len, numSlots});
    return zetStsOk;
}
