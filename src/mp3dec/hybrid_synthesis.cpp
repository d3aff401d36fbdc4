// Alias reduction, inverse MDCT, overlap and frequency inversion (ISO/IEC 11172-3, 2.4.3.4.10).
#include <algorithm>

#include "core/checks.h"
#include "mp3dec/hybrid_kernels.h"

namespace zetac::mp3 {
namespace {

constexpr int kShort = 2;
constexpr int kGroupSize = 8;

// How many subbands have lines. (bound * 3641) >> 16 is bound / 18 for bounds up to 576. Long
// blocks take one more than the rounded quotient, for what alias reduction carries over the border.
int countSubbands(int nonZeroBound, int blockType, int mixedBlock) {
    if (nonZeroBound == 0) return 0;
    if (blockType != kShort) {
        return std::min(((nonZeroBound * 3641 + 29128) >> 16) + 1, kSubbands);
    }
    const int count = (nonZeroBound * 3641 + 61897) >> 16;
    return std::min(mixedBlock ? std::max(count, 2) : count, kSubbands);
}

// How many subbands alias reduction runs over: in mixed blocks the two long ones.
int countAliased(int subbands, int blockType, int mixedBlock) {
    if (blockType != kShort) return subbands;
    return mixedBlock ? std::min(subbands, 2) : 0;
}

void synthesizeGranule(Zet32s* lines, Zet32s* dst, Zet32s* overlap, int subbands, int active,
                       int blockType, int mixedBlock) {
    const HybridKernels& kernels = kHybridKernels[static_cast<unsigned>(core::currentLevel())];
    kernels._sAliasReduce_MP3_32s_I(lines, countAliased(subbands, blockType, mixedBlock));
    for (int first = 0; first < kSubbands; first += kGroupSize) {
        if (first >= active) {
            for (int t = 0; t < kTimeSlots; ++t) {
                std::fill(dst + t * kSubbands + first, dst + (t + 1) * kSubbands, 0);
            }
            break;
        }
        const SubbandGroup group = {.transformed = std::clamp(subbands - first, 0, kGroupSize),
                                    .active = std::min(active - first, kGroupSize),
                                    .blockType = blockType,
                                    .normal = mixedBlock && first == 0 ? 2 : 0};
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

    const int subbands = countSubbands(nonZeroBound, blockType, mixedBlock);
    synthesizeGranule(pSrc, pDst, pOverlap, subbands, std::max(subbands, *pPrevNumOfImdct),
                      blockType, mixedBlock);
    *pPrevNumOfImdct = subbands;
    return zetStsOk;
}

ZetStatus zetsMDCTInvWindow_MP3_32s(Zet32s* pSrc, Zet32s* pDst, int blockType) {
    zetac::core::select(kHybridKernels)
        .transformSubband(pSrc, pDst, inRange(blockType, 0, 3) ? blockType : 0);
    return zetStsOk;
}
