// The arithmetic of the encoder's 64-band analysis around its FFT, compiled once per
// instruction-set level.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "core/levels.h"

namespace zetac::sbr {

// With S[k] = sum over n = 0 .. 127 of u[n] exp(i pi n (2k+1) / 128), S[127-k] is the conjugate of
// S[k], and the even S[2f] are the inverse transform of the 64 points (u[m] + i u[m+64]) exp(i pi m
// / 64). Everything is conjugated between the two steps to have it forward.
struct QmfEncoderKernels {
    // Windows 640 samples, the oldest first, and rotates them into 64 points.
    void (*toPoints)(const Zet32f* samples, Zet32f* re, Zet32f* im);
    // From the transform of the points to 64 bands.
    void (*toBands)(const Zet32f* re, const Zet32f* im, Zet32fc* bands);
};

extern const core::LevelTable<QmfEncoderKernels> kQmfEncoderKernels;

}  // namespace zetac::sbr
