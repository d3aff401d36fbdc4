// The stages of individual_channel_stream() (ISO/IEC 14496-3, 4.4.2.7), in stream order. Sections
// stand in the channel's record: section_data fills them in, the later stages walk them.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "aac/bit_stream.h"

namespace zetac::aac {

// How the lines of one channel are divided in this frame.
struct BandLayout {
    bool isShort;
    int windowLength;
    int numWindows;
    int numSwb;                // bands of the sampling rate
    const int16_t* swbOffset;  // numSwb + 1 lines of one window
    int maxSfb;                // bands coded per group
    int numGroups;
    const Zet32s* groupLength;  // windows of each group
};

// section_data(): the sections into info, the codebook of every band, maxSfb per group, into sfbCb.
ZetStatus ownsDecodeSectData_AAC(BitReader& stream, const BandLayout& layout, ZetAACChanInfo& info,
                                 Zet8u* sfbCb);

// What runs from band to band through scale_factor_data().
enum class ScaleFactorForm {
    kLowComplexity,  // no noise bands
    kSharedNoise,    // noise energies and scalefactors continue from each other
    kSeparateNoise   // noise energies have a running value of their own and no range
};

// scale_factor_data(): one value for every band, maxSfb per group.
ZetStatus readScaleFactorData(BitReader& stream, const BandLayout& layout,
                              const ZetAACChanInfo& info, ScaleFactorForm form,
                              Zet16s* scaleFactor);

// pulse_data().
struct PulseData {
    int count;  // 0 without pulses
    int startSfb;
    int offset[4];
    int amp[4];
};
ZetStatus readPulseData(BitReader& stream, const BandLayout& layout, PulseData& pulses);
ZetStatus addPulses(const PulseData& pulses, const BandLayout& layout, Zet32s* spectrum);

// spectral_data(): all quantised values of the channel, zeros included.
ZetStatus readSpectralData(BitReader& stream, const BandLayout& layout, const ZetAACChanInfo& info,
                           Zet32s* spectrum);

}  // namespace zetac::aac
