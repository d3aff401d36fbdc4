// Alias reduction, inverse MDCT, overlap and frequency inversion (ISO/IEC 11172-3, 2.4.3.4.10).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>

#include "core/checks.h"
#include "mp3/banks/hybrid_kernels.h"

namespace zetac::mp3 {
namespace {

// How many subbands have lines. (bound * 3641) >> 16 is bound / 18 for bounds up to 576. Long
// blocks take one more than the rounded quotient, for what alias reduction carries over the border.
int countSubbands(int nonZeroBound, BlockType type, bool mixed) {
    if (nonZeroBound == 0) return 0;
    if (type != BlockType::kShort) {
        return std::min(((nonZeroBound * 3641 + 29128) >> 16) + 1, kSubbands);
    }
    const int count = (nonZeroBound * 3641 + 61897) >> 16;
    return std::min(mixed ? std::max(count, kMixedLongSubbands) : count, kSubbands);
}

void synthesizeGranule(Zet32s* lines, Zet32s* dst, Zet32s* overlap, int subbands, int active,
                       BlockType type, bool mixed) {
    const HybridKernels& kernels = core::select(kHybridKernels);
    kernels._sAliasReduce_MP3_32s_I(lines, countAliased(subbands, type, mixed));
    for (int first = 0; first < kSubbands; first += kGroup) {
        if (first >= active) {
            for (int t = 0; t < kTimeSlots; ++t) {
                std::fill(dst + t * kSubbands + first, dst + (t + 1) * kSubbands, 0);
            }
            break;
        }
        const SubbandGroup group = {.transformed = std::clamp(subbands - first, 0, kGroup),
                                    .active = std::min(active - first, kGroup),
                                    .type = type,
                                    .normal = mixed && first == 0 ? kMixedLongSubbands : 0};
        kernels.synthesizeGroup(lines + first * kLinesPerSubband, dst + first,
                                overlap + first * kLinesPerSubband, group);
    }
}

}  // namespace
}  // namespace zetac::mp3

using namespace zetac::mp3;
using zetac::core::allSet;
using zetac::core::inRange;

ZetStatus zetsMDCTInv_MP3_32s(Zet32s* pSrc, Zet32s* pDst, Zet32s* pOverlap, int nonZeroBound,
                              int* pPrevNumOfImdct, int blockType, int mixedBlock) {
    ZETAC_REQUIRE(allSet(pSrc, pDst, pOverlap, pPrevNumOfImdct), zetStsNullPointer);
    ZETAC_REQUIRE(inRange(nonZeroBound, 0, ZETAC_MP3_GRANULE_LEN), zetStsBadArg);
    ZETAC_REQUIRE(inRange(blockType, 0, 3), zetStsBadArg);
    ZETAC_REQUIRE(inRange(mixedBlock, 0, 1), zetStsBadArg);
    ZETAC_REQUIRE(inRange(*pPrevNumOfImdct, 0, kSubbands), zetStsBadArg);

    const auto type = static_cast<BlockType>(blockType);
    const int subbands = countSubbands(nonZeroBound, type, mixedBlock == 1);
    synthesizeGranule(pSrc, pDst, pOverlap, subbands, std::max(subbands, *pPrevNumOfImdct), type,
                      mixedBlock == 1);
    *pPrevNumOfImdct = subbands;
    return zetStsOk;
}

ZetStatus zetsMDCTInvWindow_MP3_32s(Zet32s* pSrc, Zet32s* pDst, int blockType) {
    const auto type =
        inRange(blockType, 0, 3) ? static_cast<BlockType>(blockType) : BlockType::kNormal;
    zetac::core::select(kHybridKernels).transformSubband(pSrc, pDst, type);
    return zetStsOk;
}
