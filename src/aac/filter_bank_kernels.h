// The arithmetic of the AAC filter bank, compiled once per instruction-set level.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "core/levels.h"

namespace zetac::aac {

struct FilterBankKernels {
    // Inverse transform of 1024 values, or of eight times 128, in place, Q3 to Q3. The result is
    // the standard's IMDCT with its factor 2/N, folded: y[n] = z[n] for the first quarter of the N
    // outputs and y[N/4 + m] = z[N/2 + m] for the third; symmetry gives the rest.
    void (*inverseTransformLong)(Zet32s* y);
    void (*inverseTransformShort)(Zet32s* y);

    // DCT-IV of 1024 or 128 values: c[k] = sum of x[n] cos(pi/M (n + 1/2)(k + 1/2)) is
    // 4 * 2^s * (what is stored), with s returned. Magnitudes of x stay below 2^30.
    int (*forwardTransformLong)(const Zet32s* x, Zet32s* c);
    int (*forwardTransformShort)(const Zet32s* x, Zet32s* c);

    // One long window in place: y becomes the 1024 output samples (Q3 fraction rounded away), the
    // overlap the windowed second half. Both windows are given by their rising halves.
    void (*overlapAddLong)(Zet32s* y, Zet32s* overlap, const Zet32s* rising, const Zet32s* falling);

    // Undoes the folding of a long transform.
    void (*unfoldLong)(const Zet32s* y, Zet32s* first, Zet32s* second);

    // z times a rising half, forwards or backwards.
    void (*multiplyRising)(Zet32s* z, const Zet32s* rising, int len);
    void (*multiplyFalling)(Zet32s* z, const Zet32s* rising, int len);

    // One short window: adds its first half to sum[0..127] and sets sum[128..255].
    void (*windowShort)(const Zet32s* y, const Zet32s* rising, const Zet32s* falling, Zet32s* sum);

    // out = (sum + overlap + 4) >> 3.
    void (*roundToPcm)(const Zet32s* sum, const Zet32s* overlap, Zet32s* out, int len);

    // 1024 samples to 16 bits, saturated, step samples apart.
    void (*storePcm)(const Zet32s* samples, Zet16s* pcm, int step);
};

extern const core::LevelTable<FilterBankKernels> kFilterBankKernels;

}  // namespace zetac::aac
