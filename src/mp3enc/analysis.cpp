// The polyphase analysis filter bank (ISO/IEC 11172-3, C.1.3).
#include "core/checks.h"
#include "mp3enc/analysis_kernels.h"

namespace zetac::mp3enc {
namespace {

void analyzeGranule(const Zet16s* src, Zet32s* dst, int stride) {
    const AnalysisKernels kernels = core::select(kAnalysisKernels);
    if (stride == 1) return kernels.analyze(src, dst);
    Zet16s samples[kAnalysisSamples];
    for (int i = 0; i < kAnalysisSamples; ++i) samples[i] = src[i * stride];
    kernels.analyze(samples, dst);
}

}  // namespace
}  // namespace zetac::mp3enc

using namespace zetac;

ZetStatus zetsAnalysisPQMF_MP3_16s32s(const Zet16s* pSrc, Zet32s* pDst, int nChannels) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(nChannels, 1, 2), zetStsBadArg);
    mp3enc::analyzeGranule(pSrc, pDst, nChannels);
    return zetStsOk;
}
