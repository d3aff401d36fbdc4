// The power-law quantiser of Layer III (ISO/IEC 11172-3, C.1.5.4.4.2) on the lines of a band, and
// the noise that it makes. Single precision in a fixed order of operations: the same results on
// every processor and in both word sizes.
//
// A step exponent e stands for quarter steps on the Q26 scale of the lines: a quantised line q is
// worth q^(4/3) * 2^(e/4).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "mp3/encode/band_layout.h"
#include "tables/mp3/powers.h"

namespace zetac::mp3 {

// The step exponent of global_gain 0: unity is 210, on lines with 26 fractional bits.
inline constexpr int kGainOffset = 4 * 26 - 210;

// The lines of a granule and channel without their signs, and four zeros for those who load ahead.
struct Spectrum {
    alignas(16) Zet32f magnitude[ZETAC_MP3_GRANULE_LEN + 4];
    alignas(16) Zet32f power[ZETAC_MP3_GRANULE_LEN + 4];  // magnitude^(3/4)
};

// What the step of a band is chosen by.
struct BandLevels {
    Zet32f energy;
    Zet32f rootSum;  // sum of the square roots of the magnitudes
    Zet32f peak;     // largest power
};

struct Noise {
    Zet32f energy;
    int nonZero;  // lines that are not quantised to 0
};

void takeLines(const Zet32s* lines, Spectrum& spectrum);

BandLevels levelsOf(const Spectrum& spectrum, const Band& band);

// The noise of a band at step exponent e. Magnitudes above 8206 become 8206.
Noise noiseOf(const Spectrum& spectrum, const Band& band, int e);

void quantizeBand(const Spectrum& spectrum, const Band& band, int e, Zet16s* magnitudes);

// The smallest exponent that keeps a power within 8206, and the largest at which it is not 0.
int finestStep(Zet32f peak);
int coarsestStep(Zet32f peak);

// log2 x within 0.09, for positive normal numbers.
Zet32f roughLog2(Zet32f x);

// 2^(sixteenths / 16), for results in the range of singles.
Zet32f sixteenthPower(int sixteenths);

}  // namespace zetac::mp3
