// The arithmetic of the forward MDCT, compiled once per instruction-set level.
//
// Windowed samples are Q25. Eight subbands share the exponent of their transform: they are scaled
// so that the largest sum of magnitudes of a subband just fits. Lines saturate beyond 32 times full
// scale.
#pragma once

#include <zetac.h>

#include "core/levels.h"

namespace zetac::mp3enc {

inline constexpr int kSubbands = 32;
inline constexpr int kLinesPerSubband = 18;
inline constexpr int kTimeSlots = 18;
inline constexpr int kSubbandsAtOnce = 8;

struct HybridAnalysisKernels {
    // The samples of eight subbands, time slots kSubbands apart, and those of the granule before to
    // lines [8][18]. Short blocks have six lines of each window in turn. The first `normal`
    // subbands take the normal window whatever blockType says: 0 or 2.
    void (*transformGroup)(const Zet32s* previous, const Zet32s* samples, Zet32s* lines,
                           int blockType, int normal);

    // The alias butterflies across the borders of the first count subbands.
    void (*spreadAliases)(Zet32s* lines, int count);
};

extern const core::LevelTable<HybridAnalysisKernels> kHybridAnalysisKernels;

}  // namespace zetac::mp3enc
