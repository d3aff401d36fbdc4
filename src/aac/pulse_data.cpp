// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/individual_channel_stream.h"

namespace zetac::aac {

ZetStatus readPulseData(BitReader& stream, const BandLayout& layout, PulseData& pulses) {
    pulses.count = ownsGetBits_AAC(stream, 2) + 1;  // number_pulse
    pulses.startSfb = ownsGetBits_AAC(stream, 6);
    if (pulses.startSfb > ZETAC_AAC_SFB_MAX) return zetStsAacPulseStartSfbErr;
    for (int i = 0; i < pulses.count; ++i) {
        pulses.offset[i] = ownsGetBits_AAC(stream, 5);
        pulses.amp[i] = ownsGetBits_AAC(stream, 4);
    }
    return pulses.startSfb < layout.numSwb ? zetStsOk : zetStsAacPulseStartSfbErr;
}

// A pulse makes the magnitude of its line larger; on a zero it is negative.
ZetStatus addPulses(const PulseData& pulses, const BandLayout& layout, Zet32s* spectrum) {
    if (pulses.count == 0) return zetStsOk;
    int k = layout.swbOffset[pulses.startSfb];
    for (int i = 0; i < pulses.count; ++i) {
        k += pulses.offset[i];
        if (k >= layout.windowLength) return zetStsAacPulseStartSfbErr;
        spectrum[k] += spectrum[k] > 0 ? pulses.amp[i] : -pulses.amp[i];
    }
    return zetStsOk;
}

}  // namespace zetac::aac
