// Circular delay lines in linear order.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <cstring>

#include "core/checks.h"
#include "core/fixed_point.h"

namespace zetac::sbr {
namespace {

// dst[i] = src[i] * 2^-scaleFactor.
void copyScaled(const Zet32s* src, Zet32s* dst, int len, int scaleFactor) {
    if (scaleFactor == 0) {
        std::copy_n(src, len, dst);
    } else if (scaleFactor > 0) {
        for (int i = 0; i < len; ++i) dst[i] = core::roundShift(src[i], scaleFactor);
    } else {
        for (int i = 0; i < len; ++i) dst[i] = core::shiftLeftWrap(src[i], -scaleFactor);
    }
}

}  // namespace
}  // namespace zetac::sbr

ZetStatus zetsInvWrap_32s_Sf(const Zet32s* pSrc, Zet32s* pDst, int len, int position,
                             int scaleFactor) {
    using namespace zetac;
    ZETAC_REQUIRE(core::allSet(pSrc, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    ZETAC_REQUIRE(core::inRange(position, 0, len - 1), zetStsBadSize);
    ZETAC_REQUIRE(core::inRange(scaleFactor, -31, 31), zetStsBadArg);

    const int tail = len - position;
    sbr::copyScaled(pSrc + position, pDst, tail, scaleFactor);
    sbr::copyScaled(pSrc, pDst + tail, position, scaleFactor);
    return zetStsOk;
}
