// Global gain, subblock gains and scale factors that give every band at least the resolution that
// it needs, for the fewest bits (ISO/IEC 11172-3, C.1.5.4.3).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <bit>

#include "mp3/encode/band_layout.h"

namespace zetac::mp3 {

// What a band needs.
struct BandDemand {
    bool isCoded;  // whether any line is to be more than 0
    int step;      // the largest step exponent with little enough noise
    int finest;    // the smallest one that the largest magnitude allows
    int weight;    // 1/16 bits that a quarter step finer costs
};

struct StepChoice {
    int gain;  // step exponent of global_gain
    int subblock_gain[kWindows];
    int scalefac_scale, preflag;
    bool reuses[kScfsiGroups];       // the group takes the scale factors of granule 0
    int steps[kMaxBands];            // step exponents that result
    Zet16s scaleFactors[kMaxBands];  // by band
};

// granule0: by place, scale factors that scfsi can take over, or null. Steps are finer than
// demanded where that saves bits, and coarser only where the ranges of the syntax leave no choice.
StepChoice chooseSteps(const BandLayout& layout, const BandDemand* demands, const Zet16s* granule0);

// scalefac_compress with the fewest bits for numLower and numUpper values that need that many bits
// each; at most 4 and 3.
int chooseCompress(int lowerBits, int upperBits, int numLower, int numUpper);

// The bits of a scale factor.
constexpr int bitsOfScaleFactor(int value) {
    return std::bit_width(static_cast<unsigned>(value));
}

}  // namespace zetac::mp3
