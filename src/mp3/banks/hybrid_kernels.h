// The arithmetic of the hybrid filter banks, compiled once per instruction-set level.
//
// Eight subbands share the exponent of their transform: what is transformed is scaled so that the
// largest sum of magnitudes of a subband just fits.
//
// Synthesis: subband samples and overlap are Q24. The exponent keeps two or three bits below Q26
// for ordinary signals and still holds lines of full 32 bits; transform outputs saturate beyond 128
// times full scale.
//
// Analysis: windowed samples are Q25. Lines saturate beyond 32 times full scale.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "core/levels.h"
#include "mp3/banks/subbands.h"

namespace zetac::mp3 {

inline constexpr int kGroup = 8;  // subbands at once

// Eight subbands of one granule.
struct SubbandGroup {
    int transformed;  // how many have lines, 0..8
    int active;       // how many have lines or overlap, at least transformed
    BlockType type;
    int normal;  // subbands that take the normal window whatever the type is
};

struct HybridKernels {
    // The eight butterflies across each border of the first count subbands. Saturates.
    void (*_sAliasReduce_MP3_32s_I)(Zet32s* lines, int count);

    // lines [8][18] to time slots, kSubbands values apart, and overlap [8][18].
    void (*synthesizeGroup)(const Zet32s* lines, Zet32s* dst, Zet32s* overlap, SubbandGroup group);

    // One subband: 18 lines to 36 windowed values.
    void (*transformSubband)(const Zet32s* lines, Zet32s* dst, BlockType type);

    // The samples of eight subbands, time slots kSubbands apart, and those of the granule before to
    // lines [8][18]. Short blocks have six lines of each window in turn. The first `normal`
    // subbands take the normal window whatever the type is.
    void (*analyzeGroup)(const Zet32s* previous, const Zet32s* samples, Zet32s* lines,
                         BlockType type, int normal);

    // The inverse of the alias reduction.
    void (*spreadAliases)(Zet32s* lines, int count);
};

extern const core::LevelTable<HybridKernels> kHybridKernels;

}  // namespace zetac::mp3
