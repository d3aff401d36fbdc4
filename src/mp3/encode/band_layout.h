// The scale factor bands of a granule as the quantiser walks them (ISO/IEC 11172-3, 2.4.2.7 and
// Table B.8), in the order of the lines: band by band, in short bands window by window.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "mp3/syntax/bands.h"

namespace zetac::mp3 {

inline constexpr int kMaxBands = kShortBands * kWindows;
inline constexpr int kNoScaleFactor = -1;

// Bands whose steps have a base in common: those of each short window, and all long ones.
inline constexpr int kLongClass = 3;
inline constexpr int kClasses = 4;

struct Band {
    Zet16s start, width;  // lines
    Zet16s number;        // among the long or the short bands
    Zet16s stepClass;     // window, or kLongClass
    Zet16s scaleFactor;   // its place, or kNoScaleFactor
    Zet16s upper;         // 0: the scale factor has slen1 bits; 1: slen2
    Zet16s scfsiGroup;    // long bands
    Zet16s ratio;         // its place in ZetMP3PsyOutput; the band below's where there is none
    Zet8s pretab;         // steps that preflag adds
};

struct BandLayout {
    Band bands[kMaxBands];
    int count;
    bool hasShort;
    int numLower, numUpper;  // scale factors of slen1 and slen2 bits
};

// Region boundaries are boundaries of these bands, whatever the block type.
const Zet16s* longBandStarts(int sampling_frequency);

const BandLayout& bandLayout(int sampling_frequency, const ZetMP3GranuleSideInfo& info);

}  // namespace zetac::mp3
