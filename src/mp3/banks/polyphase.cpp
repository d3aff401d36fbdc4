// The polyphase filter banks (ISO/IEC 11172-3, 2.4.3.5, figure A.2, and C.1.3).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "core/checks.h"
#include "mp3/banks/polyphase_analysis_kernels.h"
#include "mp3/banks/polyphase_synthesis_kernels.h"

namespace zetac::mp3 {
namespace {

void analyzeGranule(const Zet16s* src, Zet32s* dst, int stride) {
    const PolyphaseAnalysis& kernels = core::select(kPolyphaseAnalysis);
    if (stride == 1) return kernels.analyze(src, dst);
    Zet16s samples[kAnalysisSamples];
    for (int i = 0; i < kAnalysisSamples; ++i) samples[i] = src[i * stride];
    kernels.analyze(samples, dst);
}

void synthesizeSlot(const Zet32s* src, Zet16s* dst, Zet32s* vBuffer, int& offset, int stride) {
    const PolyphaseSynthesis& kernels = core::select(kPolyphaseSynthesis);
    offset = (offset + kVSlots - 1) % kVSlots;
    kernels._sDCTFwd32_MP3_32s(src, vBuffer + vSlot(offset));
    kernels.windowSlots(vBuffer, offset, dst, stride);
}

}  // namespace
}  // namespace zetac::mp3

using namespace zetac;

ZetStatus zetsAnalysisPQMF_MP3_16s32s(const Zet16s* pSrc, Zet32s* pDst, int nChannels) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(nChannels, 1, 2), zetStsBadArg);
    mp3::analyzeGranule(pSrc, pDst, nChannels);
    return zetStsOk;
}

ZetStatus zetsSynthPQMF_MP3_32s16s(Zet32s* pSrc, Zet16s* pDst, Zet32s* pVBuffer, int* pVOffset,
                                   int nChannels) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pVBuffer, pVOffset), zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(nChannels, 1, 2), zetStsBadArg);
    ZETAC_REQUIRE(core::inRange(*pVOffset, 0, mp3::kVSlots - 1), zetStsBadArg);
    mp3::synthesizeSlot(pSrc, pDst, pVBuffer, *pVOffset, nChannels);
    return zetStsOk;
}
