// The arithmetic of psychoacoustic model two that runs over spectra and spreading tables, compiled
// once per instruction-set level.
#pragma once

#include "core/levels.h"
#include "mp3enc/psycho.h"

namespace zetac::mp3enc {

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

    // dst[b] = sum of energy[k] * weight over the partitions k of the bound of b, times 2^-shift,
    // rounded down once. The weights of a range sum to 2^31 but for their rounding.
    void (*spread)(const uint64_t* energy, const uint32_t* bounds, const Zet32s* packed, int count,
                   int shift, uint64_t* dst);
};

extern const core::LevelTable<PsyKernels> kPsyKernels;

}  // namespace zetac::mp3enc
