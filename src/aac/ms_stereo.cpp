// M/S stereo (ISO/IEC 13818-7, 12.1; 14496-3, 4.6.8.1).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/band_walk.h"
#include "core/fixed_point.h"

namespace zetac::aac {
namespace {

void matrix(Zet32s* __restrict left, Zet32s* __restrict right, int count) {
    for (int i = 0; i < count; ++i) {
        const Zet32s mid = left[i];
        const Zet32s side = right[i];
        left[i] = core::addWrap(mid, side);
        right[i] = core::subWrap(mid, side);
    }
}

void decodeMsStereo(Zet32s* left, Zet32s* right, int msMaskPresent, const Zet8u* msUsed,
                    Zet8u* codebooks, const BandArgs& args) {
    for (const Band band : BandWalk(args)) {
        const bool flagged = isFlagged(band, msMaskPresent, msUsed);
        Zet8u& codebook = codebooks[band.index];
        if (isIntensity(codebook)) {
            // The flag of an intensity band inverts the phase: 15 becomes 14 and 14 becomes 15.
            if (flagged) codebook ^= 1;
        } else if (codebook != zetAacNoiseCb && (flagged || msMaskPresent == 2)) {
            matrix(left + band.start, right + band.start, band.lines());
        }
    }
}

}  // namespace
}  // namespace zetac::aac

ZetStatus zetsDecodeMsStereo_AAC_32s_I(Zet32s* pSrcDstL, Zet32s* pSrcDstR, int msMaskPresent,
                                       const Zet8u* pMsUsed, Zet8u* pSfbCbR, int numWinGrp,
                                       const Zet32s* pWinGrpLen, int maxSfb, int samplingFreqIndex,
                                       int winLen) {
    using namespace zetac;
    const aac::BandArgs args = {numWinGrp, pWinGrpLen, maxSfb, samplingFreqIndex, winLen};
    ZETAC_REQUIRE(core::allSet(pSrcDstL, pSrcDstR, pMsUsed, pSfbCbR, pWinGrpLen),
                  zetStsNullPointer);
    if (const ZetStatus status = aac::checkBandRanges(args)) return status;
    ZETAC_REQUIRE(core::inRange(msMaskPresent, 1, 2), zetStsAacMsMaskErr);
    if (const ZetStatus status = aac::checkBandCount(args)) return status;
    aac::decodeMsStereo(pSrcDstL, pSrcDstR, msMaskPresent, pMsUsed, pSfbCbR, args);
    return zetStsOk;
}
