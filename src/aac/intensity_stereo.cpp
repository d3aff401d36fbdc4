// Intensity stereo (ISO/IEC 13818-7, 12.2; 14496-3, 4.6.8.2).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>

#include "aac/band_walk.h"
#include "core/fixed_point.h"
#include "tables/aac/dequant.h"

namespace zetac::aac {
namespace {

// kAttenuation[i] = 2^(-(i + 1) / 4) in Q31.
constexpr const int32_t* kAttenuation = tables::_pAacIsSqrt14_32s;

// position -3..7: one factor of kAttenuation, with two guard bits, reaches from 2^(3/4) down to
// 2^(-7/4).
void panNear(const Zet32s* __restrict left, Zet32s* __restrict right, int count, int position,
             int sign) {
    const int64_t factor = kAttenuation[position + 3];
    for (int i = 0; i < count; ++i) right[i] = core::saturate32(sign * ((factor * left[i]) >> 30));
}

// position 8 and more: attenuation by a factor and a shift.
void panAway(const Zet32s* __restrict left, Zet32s* __restrict right, int count, int position,
             int sign) {
    const Zet32s factor = kAttenuation[3 + position % 4];
    const int shift = std::min(position / 4 - 2, 31);
    for (int i = 0; i < count; ++i) right[i] = sign * (core::mulHigh(left[i], factor) >> shift);
}

// position below -3: amplification. The left shift loses the bits that it pushes out.
void panTowards(const Zet32s* __restrict left, Zet32s* __restrict right, int count, int position,
                int sign) {
    const int shift = ((128 - position) / 4 + 2) % 32;
    const Zet32s factor = kAttenuation[(-position % 4) ^ 3];
    for (int i = 0; i < count; ++i)
        right[i] = sign * core::mulHigh(core::shiftLeftWrap(left[i], shift), factor);
}

void decodeIsStereo(const Zet32s* left, Zet32s* right, const Zet16s* positions,
                    const Zet8u* codebooks, const BandArgs& args) {
    for (const Band band : BandWalk(args)) {
        const Zet8u codebook = codebooks[band.index];
        if (!isIntensity(codebook)) continue;
        const int position = positions[band.index];
        const auto pan = position < -3 ? panTowards : position < 8 ? panNear : panAway;
        pan(left + band.start, right + band.start, band.lines(), position,
            codebook == zetAacIntensityCb ? 1 : -1);
    }
}

}  // namespace
}  // namespace zetac::aac

ZetStatus zetsDecodeIsStereo_AAC_32s(const Zet32s* pSrcL, Zet32s* pDstR,
                                     const Zet16s* pScaleFactorR, const Zet8u* pSfbCbR,
                                     int numWinGrp, const Zet32s* pWinGrpLen, int maxSfb,
                                     int samplingFreqIndex, int winLen) {
    using namespace zetac;
    const aac::BandArgs args = {numWinGrp, pWinGrpLen, maxSfb, samplingFreqIndex, winLen};
    ZETAC_REQUIRE(core::allSet(pSrcL, pDstR, pScaleFactorR, pSfbCbR, pWinGrpLen),
                  zetStsNullPointer);
    if (const ZetStatus status = aac::checkBands(args)) return status;
    aac::decodeIsStereo(pSrcL, pDstR, pScaleFactorR, pSfbCbR, args);
    return zetStsOk;
}
