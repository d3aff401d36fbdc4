// The arithmetic of the hybrid synthesis, compiled once per instruction-set level.
//
// Subband samples and overlap are Q24. Eight subbands share the exponent of their transform: their
// lines are scaled so that the largest sum of magnitudes of a subband just fits. That keeps two or
// three bits below Q26 for ordinary signals and still holds lines of full 32 bits; transform
// outputs saturate beyond 128 times full scale.
#pragma once

#include <zetac.h>

#include "core/levels.h"

namespace zetac::mp3 {

inline constexpr int kSubbands = 32;
inline constexpr int kLinesPerSubband = 18;
inline constexpr int kTimeSlots = 18;

// Eight subbands of one granule.
struct SubbandGroup {
    int transformed;  // how many have lines, 0..8
    int active;       // how many have lines or overlap, at least transformed
    int blockType;
    int normal;  // subbands that take the normal window whatever blockType says: 0 or 2
};

struct HybridKernels {
    // The eight butterflies across each border of the first count subbands. Saturates.
    void (*_sAliasReduce_MP3_32s_I)(Zet32s* lines, int count);

    // lines [8][18] to time slots, 32 values apart, and overlap [8][18].
    void (*synthesizeGroup)(const Zet32s* lines, Zet32s* dst, Zet32s* overlap, SubbandGroup group);

    // One subband: 18 lines to 36 windowed values.
    void (*transformSubband)(const Zet32s* lines, Zet32s* dst, int blockType);
};

extern const core::LevelTable<HybridKernels> kHybridKernels;

}  // namespace zetac::mp3
