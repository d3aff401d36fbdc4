// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include <algorithm>

#include "core/checks.h"
#include "vector/fill.h"

namespace zetac::vector {
namespace {

using core::allSet;

// Two channels, or the parts of complex values: dst has 2 * len elements.
template <class T>
void interleavePair(const T* __restrict src0, const T* __restrict src1, T* __restrict dst,
                    ptrdiff_t len) {
    for (ptrdiff_t i = 0; i < len; ++i) {
        dst[2 * i] = src0[i];
        dst[2 * i + 1] = src1[i];
    }
}

template <class T>
void deinterleavePair(const T* __restrict src, T* __restrict dst0, T* __restrict dst1,
                      ptrdiff_t len) {
    for (ptrdiff_t i = 0; i < len; ++i) {
        dst0[i] = src[2 * i];
        dst1[i] = src[2 * i + 1];
    }
}

template <class T>
void interleave(const T* const* src, int numChannels, int len, T* dst) {
    if (numChannels == 2) return interleavePair(src[0], src[1], dst, len);
    const ptrdiff_t step = numChannels;
    for (ptrdiff_t c = 0; c < step; ++c)
        for (ptrdiff_t i = 0; i < len; ++i) dst[i * step + c] = src[c][i];
}

template <class T>
void deinterleave(const T* src, int numChannels, int len, T* const* dst) {
    if (numChannels == 2) return deinterleavePair(src, dst[0], dst[1], len);
    const ptrdiff_t step = numChannels;
    for (ptrdiff_t c = 0; c < step; ++c)
        for (ptrdiff_t i = 0; i < len; ++i) dst[c][i] = src[i * step + c];
}

// One part of complex values alone, the other one 0; part counts 0 real, 1 imaginary.
void spreadPart(const Zet32f* __restrict src, int part, Zet32f* __restrict dst, ptrdiff_t len) {
    for (ptrdiff_t i = 0; i < len; ++i) {
        dst[2 * i + part] = src[i];
        dst[2 * i + 1 - part] = 0;
    }
}

void toComplex(const Zet32f* srcRe, const Zet32f* srcIm, Zet32fc* dst, int len) {
    if (srcRe && srcIm)
        interleavePair(srcRe, srcIm, &dst->re, len);
    else if (srcRe)
        spreadPart(srcRe, 0, &dst->re, len);
    else if (srcIm)
        spreadPart(srcIm, 1, &dst->re, len);
    else
        zero(dst, len);
}

template <class Pointer>
bool allChannelsSet(Pointer const* channels, int numChannels) {
    return std::all_of(channels, channels + numChannels, [](Pointer p) { return p != nullptr; });
}

template <class T>
ZetStatus checkedInterleave(const T** pSrc, int numChannels, int len, T* pDst) {
    ZETAC_REQUIRE(allSet(pSrc, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(numChannels >= 1, zetStsBadChannelCount);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    ZETAC_REQUIRE(allChannelsSet(pSrc, numChannels), zetStsNullPointer);
    interleave(pSrc, numChannels, len, pDst);
    return zetStsOk;
}

template <class T>
ZetStatus checkedDeinterleave(const T* pSrc, int numChannels, int len, T** pDst) {
    ZETAC_REQUIRE(allSet(pSrc, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(numChannels >= 1, zetStsBadChannelCount);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    ZETAC_REQUIRE(allChannelsSet(pDst, numChannels), zetStsNullPointer);
    deinterleave(pSrc, numChannels, len, pDst);
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::vector

using namespace zetac::vector;

ZetStatus zetsCplxToReal_32fc(const Zet32fc* pSrc, Zet32f* pDstRe, Zet32f* pDstIm, int len) {
    ZETAC_REQUIRE(allSet(pSrc, pDstRe, pDstIm), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    deinterleavePair(&pSrc->re, pDstRe, pDstIm, len);
    return zetStsOk;
}

ZetStatus zetsRealToCplx_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32fc* pDst, int len) {
    ZETAC_REQUIRE(pDst, zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    toComplex(pSrcRe, pSrcIm, pDst, len);
    return zetStsOk;
}

ZetStatus zetsInterleave_16s(const Zet16s** pSrc, int numChannels, int len, Zet16s* pDst) {
    return checkedInterleave(pSrc, numChannels, len, pDst);
}
ZetStatus zetsInterleave_32f(const Zet32f** pSrc, int numChannels, int len, Zet32f* pDst) {
    return checkedInterleave(pSrc, numChannels, len, pDst);
}

ZetStatus zetsDeinterleave_16s(const Zet16s* pSrc, int numChannels, int len, Zet16s** pDst) {
    return checkedDeinterleave(pSrc, numChannels, len, pDst);
}
ZetStatus zetsDeinterleave_32f(const Zet32f* pSrc, int numChannels, int len, Zet32f** pDst) {
    return checkedDeinterleave(pSrc, numChannels, len, pDst);
}
