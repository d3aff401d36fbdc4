// Frequency inversion, window switching, MDCT and alias butterflies (ISO/IEC 11172-3, C.1.5.3.3).
#include <algorithm>

#include "core/checks.h"
#include "mp3enc/hybrid_analysis_kernels.h"
#include "mp3enc/syntax.h"
#include "tables/mp3_sfb.h"

namespace zetac::mp3enc {
namespace {

constexpr int kWindowLines = kLinesPerSubband / kWindows;  // of one window in a subband
constexpr int kFirstShortBandOfMixed = 3;
constexpr int kMixedLongLines = 2 * kLinesPerSubband;

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

void transformGranule(const Zet32s* previous, const Zet32s* samples, Zet32s* lines, int blockType,
                      bool mixed) {
    const HybridAnalysisKernels& kernels =
        kHybridAnalysisKernels[static_cast<unsigned>(core::currentLevel())];
    for (int first = 0; first < kSubbands; first += kSubbandsAtOnce) {
        kernels.transformGroup(previous + first, samples + first, lines + first * kLinesPerSubband,
                               blockType, mixed && first == 0 ? 2 : 0);
    }
    kernels.spreadAliases(lines, blockType != kShortBlock ? kSubbands : mixed ? 2 : 0);
}

void analyzeGranule(const Zet32s* src, Zet32s* dst, Zet32s* overlap, const Zet16s* shortBands,
                    int blockType, bool mixed) {
    if (blockType != kShortBlock) {
        transformGranule(overlap, src, dst, blockType, mixed);
    } else {
        Zet32s lines[ZETAC_MP3_GRANULE_LEN];
        transformGranule(overlap, src, lines, blockType, mixed);
        if (mixed) std::copy_n(lines, kMixedLongLines, dst);
        orderShortLines(lines, dst + (mixed ? kMixedLongLines : 0), shortBands,
                        mixed ? kFirstShortBandOfMixed : 0);
    }
    std::copy_n(src, ZETAC_MP3_GRANULE_LEN, overlap);
}

}  // namespace
}  // namespace zetac::mp3enc

using namespace zetac;

ZetStatus zetsMDCTFwd_MP3_32s(const Zet32s* pSrc, Zet32s* pDst, Zet32s* pOverlap,
                              const ZetMP3Header* pFrameHeader,
                              const ZetMP3GranuleSideInfo* pSideInfo) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pOverlap, pFrameHeader, pSideInfo), zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(pFrameHeader->ID, 0, 1), zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(pFrameHeader->sampling_frequency, 0, 2), zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(pSideInfo->block_type, 0, 3), zetStsBadSideInfo);
    ZETAC_REQUIRE(core::inRange(pSideInfo->mixed_block_flag, 0, 1), zetStsBadSideInfo);
    const Zet16s* shortBands = tables::_zet_pMP3SfbTableShort +
                               mp3enc::bandRow(*pFrameHeader) * tables::kMP3SfbShortEntries;
    mp3enc::analyzeGranule(pSrc, pDst, pOverlap, shortBands, pSideInfo->block_type,
                           pSideInfo->mixed_block_flag == 1);
    return zetStsOk;
}
