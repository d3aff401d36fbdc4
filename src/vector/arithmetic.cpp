// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include <algorithm>

#include "core/checks.h"
#include "vector/fill.h"
#include "vector/rounding.h"

namespace zetac::vector {
namespace {

using core::allSet;

void addScaled(const Zet32s* src, Zet32s* srcDst, int len, int scaleFactor) {
    storeScaled<roundEven>(srcDst, len, scaleFactor, [=](int i, int count) {
        const Doubles a = load(src + i, count), b = load(srcDst + i, count);
        return Doubles{_mm_add_pd(a.low, b.low), _mm_add_pd(a.high, b.high)};
    });
}

void shiftRight(Zet32s* srcDst, int len, int shift) {
    shift = std::min(shift, 31);
    for (int i = 0; i < len; ++i) srcDst[i] >>= shift;
}

void multiply(Zet32f* srcDst, int len, Zet32f value) {
    for (int i = 0; i < len; ++i) srcDst[i] *= value;
}

void multiplyConstant(Zet32f* srcDst, int len, Zet32f value) {
    if (!(value < 1 || value > 1)) return;
    if (value == 0)
        zero(srcDst, len);
    else
        multiply(srcDst, len, value);
}

void multiplyBands(Zet32f* srcDst, const Zet32f* factor, const int* bandOffset, int nBands) {
    for (int b = 0; b < nBands; ++b)
        multiply(srcDst + bandOffset[b], bandOffset[b + 1] - bandOffset[b], factor[b]);
}

// dst may be a or b.
void multiplyComplex(const Zet32fc* a, const Zet32fc* b, Zet32fc* dst, int len) {
    for (int i = 0; i < len; ++i) {
        const Zet32fc x = a[i], y = b[i];
        dst[i] = {x.re * y.re - x.im * y.im, x.re * y.im + x.im * y.re};
    }
}

}  // namespace
}  // namespace zetac::vector

using namespace zetac::vector;

ZetStatus zetsAdd_32s_ISfs(const Zet32s* pSrc, Zet32s* pSrcDst, int len, int scaleFactor) {
    ZETAC_REQUIRE(allSet(pSrc, pSrcDst), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    addScaled(pSrc, pSrcDst, len, scaleFactor);
    return zetStsOk;
}

ZetStatus zetsRShiftC_32s_I(int shift, Zet32s* pSrcDst, int len) {
    ZETAC_REQUIRE(pSrcDst, zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    ZETAC_REQUIRE(shift >= 0, zetStsNegativeShift);
    shiftRight(pSrcDst, len, shift);
    return zetStsOk;
}

ZetStatus zetsMulC_32f_I(Zet32f value, Zet32f* pSrcDst, int len) {
    ZETAC_REQUIRE(pSrcDst, zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    multiplyConstant(pSrcDst, len, value);
    return zetStsOk;
}

ZetStatus zetsScale_32f_I(Zet32f* pSrcDst, const Zet32f* pFactor, const int* pBandOffset,
                          int nBands) {
    ZETAC_REQUIRE(allSet(pSrcDst, pFactor, pBandOffset), zetStsNullPointer);
    ZETAC_REQUIRE(nBands >= 1, zetStsBadSize);
    multiplyBands(pSrcDst, pFactor, pBandOffset, nBands);
    return zetStsOk;
}

ZetStatus zetsMul_32fc(const Zet32fc* pSrc1, const Zet32fc* pSrc2, Zet32fc* pDst, int len) {
    ZETAC_REQUIRE(allSet(pSrc1, pSrc2, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    multiplyComplex(pSrc1, pSrc2, pDst, len);
    return zetStsOk;
}

ZetStatus zetsMul_32fc_I(const Zet32fc* pSrc, Zet32fc* pSrcDst, int len) {
    ZETAC_REQUIRE(allSet(pSrc, pSrcDst), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    multiplyComplex(pSrcDst, pSrc, pSrcDst, len);
    return zetStsOk;
}
