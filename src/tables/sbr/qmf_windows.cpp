// The exported forms of the prototype of the SBR filter banks.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include "core/constexpr_math.h"
#include "tables/sbr/qmf_prototype.h"

namespace zetac::tables {
namespace {

constexpr Zet32f single(int i) {
    return static_cast<Zet32f>(kQmfPrototype[i]);
}
constexpr Zet32s q31(int i) {
    return core::toFixedPoint<Zet32s>(kQmfPrototype[i], 31);
}
constexpr Zet32s q30(int i) {
    return core::toFixedPoint<Zet32s>(kQmfPrototype[i], 30);
}
constexpr Zet32s evenQ31(int i) {
    return q31(2 * i);
}
constexpr Zet32s evenQ30(int i) {
    return q30(2 * i);
}

}  // namespace
}  // namespace zetac::tables

using namespace zetac::tables;

// form(i), form(i + 1), ...: what fills an array of the C interface from a function.
#define ZETAC_FOUR(form, i) form(i), form((i) + 1), form((i) + 2), form((i) + 3)
#define ZETAC_SIXTEEN(form, i)                                                 \
    ZETAC_FOUR(form, i), ZETAC_FOUR(form, (i) + 4), ZETAC_FOUR(form, (i) + 8), \
        ZETAC_FOUR(form, (i) + 12)
#define ZETAC_EIGHTY(form, i)                                                             \
    ZETAC_SIXTEEN(form, i), ZETAC_SIXTEEN(form, (i) + 16), ZETAC_SIXTEEN(form, (i) + 32), \
        ZETAC_SIXTEEN(form, (i) + 48), ZETAC_SIXTEEN(form, (i) + 64)
#define ZETAC_320(form, i)                                                              \
    ZETAC_EIGHTY(form, i), ZETAC_EIGHTY(form, (i) + 80), ZETAC_EIGHTY(form, (i) + 160), \
        ZETAC_EIGHTY(form, (i) + 240)

alignas(64) constexpr Zet32f SBR_TAB_QMF_WINDOW_640_FP[640] = {ZETAC_320(single, 0),
                                                               ZETAC_320(single, 320)};
alignas(64) constexpr Zet32s SBR_TABLE_QMF_WINDOW_640_INT_Q31[640] = {ZETAC_320(q31, 0),
                                                                      ZETAC_320(q31, 320)};
alignas(64) constexpr Zet32s SBR_TABLE_QMF_WINDOW_640_INT_Q30[640] = {ZETAC_320(q30, 0),
                                                                      ZETAC_320(q30, 320)};
alignas(64) constexpr Zet32s SBR_TABLE_QMF_WINDOW_320_INT_Q31[320] = {ZETAC_320(evenQ31, 0)};
alignas(64) constexpr Zet32s SBR_TABLE_QMF_WINDOW_320_INT_Q30[320] = {ZETAC_320(evenQ30, 0)};
