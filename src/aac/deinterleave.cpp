// Deinterleaving of grouped short windows (ISO/IEC 14496-3, 4.5.2.3.5).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>

#include "aac/band_walk.h"

namespace zetac::aac {
namespace {

// One group: band after band, each with its windows side by side, becomes window after window.
void deinterleaveGroup(const Zet32s* src, Zet32s* dst, int windows, const int16_t* offset,
                       int maxSfb, int winLen) {
    for (int sfb = 0; sfb < maxSfb; ++sfb) {
        const int width = offset[sfb + 1] - offset[sfb];
        for (int window = 0; window < windows; ++window, src += width)
            std::copy_n(src, width, dst + window * winLen + offset[sfb]);
    }
    for (int window = 0; window < windows; ++window, dst += winLen)
        std::fill(dst + offset[maxSfb], dst + winLen, 0);
}

void deinterleaveSpectrum(const Zet32s* src, Zet32s* dst, const BandArgs& args) {
    const int16_t* offset = bandOffsets(args.samplingFreqIndex, args.winLen);
    for (int group = 0; group < args.numWinGrp; ++group) {
        const int windows = args.pWinGrpLen[group];
        deinterleaveGroup(src, dst, windows, offset, args.maxSfb, args.winLen);
        src += windows * args.winLen;
        dst += windows * args.winLen;
    }
}

}  // namespace
}  // namespace zetac::aac

ZetStatus zetsDeinterleaveSpectrum_AAC_32s(const Zet32s* pSrc, Zet32s* pDst, int numWinGrp,
                                           const Zet32s* pWinGrpLen, int maxSfb,
                                           int samplingFreqIndex, int winLen) {
    using namespace zetac;
    const aac::BandArgs args = {numWinGrp, pWinGrpLen, maxSfb, samplingFreqIndex, winLen};
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pWinGrpLen), zetStsNullPointer);
    if (const ZetStatus status = aac::checkBands(args)) return status;
    aac::deinterleaveSpectrum(pSrc, pDst, args);
    return zetStsOk;
}
