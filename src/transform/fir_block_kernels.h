// The sums of the block FIR filter, compiled once per instruction-set level.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "core/levels.h"

namespace zetac::transform {

struct FirBlockKernels {
    // sums[i] += taps[0] * window[numTaps - 1 + i], then += taps[1] * window[numTaps - 2 + i] and
    // so on to taps[numTaps - 1] * window[i], for i < count: one product and one sum at a time, in
    // this order at every level. sums and window have room for count rounded up to
    // kFirBlockGroup, so that whole vectors can be worked on.
    void (*accumulate)(const Zet32f* window, const Zet32f* taps, int numTaps, Zet32f* sums,
                       int count);
};

inline constexpr int kFirBlockGroup = 16;

extern const core::LevelTable<FirBlockKernels> kFirBlockKernels;

}  // namespace zetac::transform
