// The arithmetic of the floating MDCT of power-of-two length, compiled once per instruction-set
// level.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "core/levels.h"
#include "transform/fft_plan.h"

namespace zetac::transform {

// Pair k is g (sin t, cos t) with t = 2 pi (k + 1/8) / N, for k < N/4.
struct MdctTwiddles {
    const Zet32f* sines;
    const Zet32f* cosines;
};

struct MdctKernels {
    // N values to N/2 and N/2 to N; plan is that of the FFT of N/4 points. Source and destination
    // may begin at the same address. work holds N singles on a 64-byte boundary.
    void (*forward)(const FftPlan& plan, MdctTwiddles twiddles, const Zet32f* src, Zet32f* dst,
                    Zet32f* work);
    void (*inverse)(const FftPlan& plan, MdctTwiddles twiddles, const Zet32f* src, Zet32f* dst,
                    Zet32f* work);
};

extern const core::LevelTable<MdctKernels> kMdctKernels;

}  // namespace zetac::transform
