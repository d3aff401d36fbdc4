// Requantisation of Layer III (ISO/IEC 11172-3, 2.4.3.4; 13818-3, 2.4.3.2): what its steps share.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "mp3/syntax/bands.h"

namespace zetac::mp3 {

// Consecutive lines.
struct Run {
    int start;
    int count;
};

// The scale factor bands of one granule of one channel. Up to the reordering the lines of short
// bands lie in coded order: band by band, within a band window by window.
struct GranuleBands {
    const Zet16s* longStart;
    const Zet16s* shortStart;
    int numLong;     // long bands: all, of a mixed block those below line 36, of a short block none
    int firstShort;  // the short bands begin here; kShortBands without short windows

    GranuleBands(const ZetMP3Header& header, const ZetMP3GranuleSideInfo& info,
                 const Zet16s* longTable, const Zet16s* shortTable);

    bool hasShort() const { return firstShort < kShortBands; }
    int longEnd() const {
        return hasShort() ? kWindows * shortStart[firstShort] : longStart[numLong];
    }
    Run shortRun(int band, int window) const {
        const int width = shortStart[band + 1] - shortStart[band];
        return {kWindows * shortStart[band] + window * width, width};
    }
    // Place of a short band's scale factor: behind those of the long bands.
    int shortScaleFactor(int band, int window) const {
        return numLong + (band - firstShort) * kWindows + window;
    }
};

// How far the non-zero lines of a channel reach: in coded order, and of each short window the last
// such band plus 1.
struct Reach {
    int lines;
    int shortBands[kWindows];

    int maxShortBands() const;
};

struct Channel {
    Zet32s* lines;
    const Zet8s* scaleFactors;
    const ZetMP3GranuleSideInfo* info;
    GranuleBands bands;
    Reach reach;
};

// Turns count quantised values, at most 8206 in magnitude, into Q26:
// sign(x) * |x|^(4/3) * 2^(26 - e/4) rounded to nearest, saturated to +-(2^31 - 1). e is -45..1023.
void _sReqCore_MP3_32s_I(Zet32s* pSrcDst, int count, int e);

}  // namespace zetac::mp3
