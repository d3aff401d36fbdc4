// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include <algorithm>
#include <bit>

#include "core/checks.h"
#include "vector/rounding.h"

namespace zetac::vector {
namespace {

using core::allSet;
using core::inRange;

void toSingle(const Zet16s* __restrict src, Zet32f* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = src[i];
}

void to16Bits(const Zet32s* src, Zet16s* dst, int len, int scaleFactor) {
    storeScaled<roundEven>(dst, len, std::min(scaleFactor, 31),
                           [=](int i, int count) { return load(src + i, count); });
}

void to16Bits(const Zet32f* src, Zet16s* dst, int len, int roundMode, int scaleFactor) {
    const auto source = [=](int i, int count) { return load(src + i, count); };
    if (roundMode == zetRndZero)
        storeScaled<roundToZero>(dst, len, scaleFactor, source);
    else if (roundMode == zetRndNear)
        storeScaled<roundEven>(dst, len, scaleFactor, source);
    else
        storeScaled<roundAway>(dst, len, scaleFactor, source);
}

void makeFloat(const Zet16s* __restrict mantissa, const Zet16s* __restrict exponent,
               Zet32f* __restrict dst, int len) {
    constexpr int kExponentOfUnit = 127 - 15;
    for (int i = 0; i < len; ++i) {
        const auto field = static_cast<uint32_t>(kExponentOfUnit - exponent[i]);
        dst[i] = static_cast<Zet32f>(mantissa[i]) * std::bit_cast<Zet32f>(field << 23);
    }
}

// 2^(quarters / 4) for quarters in -504..508: the fraction of a power below 2, moved to its octave.
Zet32f quarterPower(int quarters) {
    constexpr Zet32f kWithinOctave[4] = {1.0f, 1.18920711500272106672f, 1.41421356237309504880f,
                                         1.68179283050742908606f};
    const auto one = std::bit_cast<uint32_t>(kWithinOctave[quarters & 3]);
    return std::bit_cast<Zet32f>(one + (static_cast<uint32_t>(quarters >> 2) << 23));
}

void gains(const Zet16s* src, int offset, Zet32f* dst, int len) {
    // Offsets this large leave the range of gains for any value, and smaller ones cannot overflow.
    offset = std::clamp(offset, -65536, 65536);
    for (int i = 0; i < len; ++i) dst[i] = quarterPower(std::clamp(src[i] - offset, -504, 508));
}

}  // namespace
}  // namespace zetac::vector

using namespace zetac::vector;

ZetStatus zetsConvert_16s32f(const Zet16s* pSrc, Zet32f* pDst, int len) {
    ZETAC_REQUIRE(allSet(pSrc, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    toSingle(pSrc, pDst, len);
    return zetStsOk;
}

ZetStatus zetsConvert_32s16s_Sfs(const Zet32s* pSrc, Zet16s* pDst, int len, int scaleFactor) {
    ZETAC_REQUIRE(allSet(pSrc, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    to16Bits(pSrc, pDst, len, scaleFactor);
    return zetStsOk;
}

ZetStatus zetsConvert_32f16s_Sfs(const Zet32f* pSrc, Zet16s* pDst, int len, int roundMode,
                                 int scaleFactor) {
    ZETAC_REQUIRE(allSet(pSrc, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    ZETAC_REQUIRE(inRange(roundMode, zetRndZero, zetRndFinancial), zetStsBadArg);
    to16Bits(pSrc, pDst, len, roundMode, scaleFactor);
    return zetStsOk;
}

ZetStatus zetsMakeFloat_16s32f(const Zet16s* pMantissa, const Zet16s* pExponent, int len,
                               Zet32f* pDst) {
    ZETAC_REQUIRE(allSet(pMantissa, pExponent, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    makeFloat(pMantissa, pExponent, pDst, len);
    return zetStsOk;
}

ZetStatus zetsCalcSF_16s32f(const Zet16s* pSrc, int offset, Zet32f* pDst, int len) {
    ZETAC_REQUIRE(allSet(pSrc, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    gains(pSrc, offset, pDst, len);
    return zetStsOk;
}
