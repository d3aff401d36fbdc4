// Rotations before and after the FFTs of the complex SBR filter banks (ISO/IEC 14496-3, 4.6.18.4).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

namespace zetac::tables {

template <int size>
struct Rotations32fc {
    alignas(64) float re[size];
    alignas(64) float im[size];
};

// e^(-i pi n / 64): between values and an FFT of 32 points, in every bank.
extern const Rotations32fc<32> kQmfTurns32;
// 2 e^(-i pi (2 k + 1) / 256): the phase and gain of band k in the analysis.
extern const Rotations32fc<32> kQmfAnalysisPhases;
// 1/64 e^(-i pi (4 n + 1) / 256): in front of the synthesis of 64 bands.
extern const Rotations32fc<32> kQmfSynthesisTurns;
// 1/64 e^(-i pi (2 k + 1) 127.5 / 128): the phase and gain of band k in the down synthesis.
extern const Rotations32fc<32> kQmfDownPhases;
// The encoder's analysis of 64 bands: e^(-i pi n / 128), and e^(i pi (2 k + 1) / 256) of even and
// of odd bands k.
extern const Rotations32fc<64> kQmfTurns64;
extern const Rotations32fc<32> kQmfEncoderEvenPhases;
extern const Rotations32fc<32> kQmfEncoderOddPhases;

}  // namespace zetac::tables
