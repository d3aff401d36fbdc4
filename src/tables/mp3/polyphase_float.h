// Coefficients of the floating polyphase filter banks of Layer III.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

namespace zetac::tables {

// Window C of the analysis bank (ISO/IEC 11172-3, table C.1), which is D / 32.
struct AnalysisWindow {
    alignas(16) float values[512];
};
extern const AnalysisWindow kAnalysisWindow;

// Window D of the synthesis bank (table B.3), in the order of its lanes r = 0..15, by i = 0..7:
// what the parts of a slot contribute to the outputs 16 - r (minus) and 16 + r (plus). Lane 0 of
// the high part holds T[16], which belongs to output 0: see windowSynthesis in polyphase_float.cpp.
struct SynthesisLanes {
    alignas(16) float minusHigh[8][16];
    alignas(16) float minusLow[8][16];
    alignas(16) float plusHigh[8][16];
    alignas(16) float plusLow[8][16];
    float edge[8];  // for output 0, high part of odd ages
};
extern const SynthesisLanes kSynthesisLanes;

// cos(pi / (4 half) * (2 k + 1) (2 p + 1)) at [k][p]: the odd outputs of a DCT of 2 * half points.
template <int half>
struct OddCosines {
    alignas(16) float values[half][half];
};
extern const OddCosines<16> kOddCosines16;
extern const OddCosines<8> kOddCosines8;
extern const OddCosines<4> kOddCosines4;
extern const OddCosines<2> kOddCosines2;
extern const OddCosines<1> kOddCosines1;

}  // namespace zetac::tables
