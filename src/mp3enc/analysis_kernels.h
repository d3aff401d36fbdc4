// The arithmetic of the polyphase analysis filter bank, compiled once per instruction-set level.
#pragma once

#include <zetac.h>

#include "core/levels.h"

namespace zetac::mp3enc {

inline constexpr int kSlots = 18;
inline constexpr int kBands = 32;
inline constexpr int kHistory = 480;  // samples of the window before those of its own slot
inline constexpr int kAnalysisSamples = kHistory + ZETAC_MP3_GRANULE_LEN;

struct AnalysisKernels {
    // kAnalysisSamples samples to [18][32] subband samples, Q26.
    void (*analyze)(const Zet16s* samples, Zet32s* dst);
};

extern const core::LevelTable<AnalysisKernels> kAnalysisKernels;

}  // namespace zetac::mp3enc
