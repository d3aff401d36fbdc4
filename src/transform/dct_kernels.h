// The passes of the DCT around the complex FFT, compiled once per instruction-set level.
//
// Of N = 2^order values x, M = N/2. The forward transform reorders v[n] = x[2n], v[N-1-n] =
// x[2n+1], takes v as M complex points to their transform Z, that to the spectrum V of v as in
// fft_real.h, and rotates: with U[k] = c V[k], c = sqrt(1/2N) e^(-pi i k / 2N), y[k] = Re U[k] and
// y[N-k] = -Im U[k]. The inverse takes the same steps backwards.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "core/levels.h"

namespace zetac::transform {

// Rows of factors, one value per pair k = 1 .. N/4 of points k and M - k: re h, im h, re c, -im c,
// and the last two for point M - k.
inline constexpr int kDctRows = 6;

// For orders from 2. Source and destination are different.
struct DctKernels {
    void (*reorder)(const Zet32f* x, Zet32f* v, int order);
    void (*restore)(const Zet32f* v, Zet32f* x, int order);
    void (*toCosines)(const Zet32f* points, Zet32f* y, const Zet32f* rows, int order);
    void (*toPoints)(const Zet32f* y, Zet32f* points, const Zet32f* rows, int order);
};

extern const core::LevelTable<DctKernels> kDctKernels;

}  // namespace zetac::transform
