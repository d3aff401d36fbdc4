// The polyphase synthesis filter bank (ISO/IEC 11172-3, 2.4.3.5 and figure A.2).
#include "core/checks.h"
#include "mp3dec/polyphase_kernels.h"

using namespace zetac::mp3;
using zetac::core::allSet;
using zetac::core::inRange;

ZetStatus zetsSynthPQMF_MP3_32s16s(Zet32s* pSrc, Zet16s* pDst, Zet32s* pVBuffer, int* pVOffset,
                                   int nChannels) {
    ZETAC_REQUIRE(allSet(pSrc, pDst, pVBuffer, pVOffset), zetStsNullPointer);
    ZETAC_REQUIRE(inRange(nChannels, 1, 2), zetStsBadArg);
    ZETAC_REQUIRE(inRange(*pVOffset, 0, kVSlots - 1), zetStsBadArg);

    const int offset = (*pVOffset + kVSlots - 1) % kVSlots;
    const PolyphaseKernels& kernels =
        kPolyphaseKernels[static_cast<unsigned>(zetac::core::currentLevel())];
    kernels._sDCTFwd32_MP3_32s(pSrc, pVBuffer + vSlot(offset));
    kernels.windowSlots(pVBuffer, offset, pDst, nChannels);
    *pVOffset = offset;
    return zetStsOk;
}
