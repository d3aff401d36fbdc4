// The arithmetic of psychoacoustic model two that runs over spectra and spreading tables, compiled
// once per instruction-set level.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "core/levels.h"
#include "mp3/psycho/model.h"

namespace zetac::mp3 {

// The spreading tables of one length of block.
struct Spreading {
    int count;
    const uint32_t* bounds;
    const Zet32s* packed;
    const tables::SpreadingBlock* blocks;
    const Zet32s (*rows)[8];
};

struct PsyKernels {
    // dst[i] = (src[stride * i] * window[i]) >> 15; count is a multiple of 16, stride 1 or 2.
    void (*applyWindow)(const Zet16s* src, int stride, const Zet16s* window, Zet16s* dst,
                        int count);

    // Spectra of real blocks, 513 and 129 lines.
    void (*ownsFFTFwd1024_Audio_16s32sc)(const Zet16s* src, Zet32sc* dst);
    void (*ownsFFTFwd256_Audio_16s32sc)(const Zet16s* src, Zet32sc* dst);

    // Energies (and unpredictabilities) of the partitions of all analysis channels. Mid and side
    // are (L + R) / sqrt(2) and (L - R) / sqrt(2), as M/S stereo codes them.
    void (*ownsCalEnergyUnpredict_Psy_MP3)(const PsyContext& context);
    void (*ownsCalEnergyShort_Psy_MP3)(const PsyContext& context);

    // dst[b] = sum of energy[k] * weight over the partitions k that spread into b, times 2^-shift,
    // rounded down once; shift is 31 or 32. The weights of a b sum to 2^31 but for their rounding.
    // dst has room for count rounded up to 8.
    void (*spread)(const uint64_t* energy, const Spreading& spreading, int shift, uint64_t* dst);
};

extern const core::LevelTable<PsyKernels> kPsyKernels;

}  // namespace zetac::mp3
