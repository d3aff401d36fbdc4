// Frequency inversion, window switching, MDCT and alias butterflies (ISO/IEC 11172-3, C.1.5.3.3).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>

#include "core/checks.h"
#include "mp3/banks/hybrid_kernels.h"
#include "mp3/syntax/bands.h"

namespace zetac::mp3 {
namespace {

// From six lines of each window in every subband to the order of coding: band by band, within a
// band window by window.
void orderShortLines(const Zet32s* src, Zet32s* dst, const Zet16s* bands, int firstBand) {
    for (int band = firstBand; band < kShortBands; ++band) {
        for (int window = 0; window < kWindows; ++window) {
            const Zet32s* windowLines = src + window * kWindowLines;
            for (int j = bands[band]; j < bands[band + 1]; ++j)
                *dst++ = windowLines[j / kWindowLines * kLinesPerSubband + j % kWindowLines];
        }
    }
}

void transformGranule(const Zet32s* previous, const Zet32s* samples, Zet32s* lines, BlockType type,
                      bool mixed) {
    const HybridKernels& kernels = core::select(kHybridKernels);
    for (int first = 0; first < kSubbands; first += kGroup) {
        kernels.analyzeGroup(previous + first, samples + first, lines + first * kLinesPerSubband,
                             type, mixed && first == 0 ? kMixedLongSubbands : 0);
    }
    kernels.spreadAliases(lines, countAliased(kSubbands, type, mixed));
}

void analyzeGranule(const Zet32s* src, Zet32s* dst, Zet32s* overlap, const Zet16s* shortBands,
                    BlockType type, bool mixed) {
    if (type != BlockType::kShort) {
        transformGranule(overlap, src, dst, type, mixed);
    } else {
        Zet32s lines[ZETAC_MP3_GRANULE_LEN];
        transformGranule(overlap, src, lines, type, mixed);
        if (mixed) std::copy_n(lines, kMixedLongLines, dst);
        orderShortLines(lines, dst + (mixed ? kMixedLongLines : 0), shortBands,
                        firstShortBand(mixed ? kMixedBlock : kShortBlock));
    }
    std::copy_n(src, ZETAC_MP3_GRANULE_LEN, overlap);
}

}  // namespace
}  // namespace zetac::mp3

using namespace zetac;

ZetStatus zetsMDCTFwd_MP3_32s(const Zet32s* pSrc, Zet32s* pDst, Zet32s* pOverlap,
                              const ZetMP3Header* pFrameHeader,
                              const ZetMP3GranuleSideInfo* pSideInfo) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pOverlap, pFrameHeader, pSideInfo), zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(pFrameHeader->ID, 0, 1), zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(pFrameHeader->sampling_frequency, 0, 2), zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(pSideInfo->block_type, 0, 3), zetStsBadSideInfo);
    ZETAC_REQUIRE(core::inRange(pSideInfo->mixed_block_flag, 0, 1), zetStsBadSideInfo);
    mp3::analyzeGranule(pSrc, pDst, pOverlap, mp3::shortBandsOf(*pFrameHeader),
                        static_cast<mp3::BlockType>(pSideInfo->block_type),
                        pSideInfo->mixed_block_flag == 1);
    return zetStsOk;
}
