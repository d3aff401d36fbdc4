// The arithmetic of the complex FFT, compiled once per instruction-set level.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "core/levels.h"
#include "transform/fft_plan.h"

namespace zetac::transform {

// Results are multiplied by scale. Source and destination may be the same.
struct FftKernels {
    // work holds fftWorkCount singles on a 64-byte boundary.
    void (*forward)(const FftPlan& plan, const Zet32fc* src, Zet32fc* dst, Zet32f scale,
                    Zet32f* work);
    void (*inverse)(const FftPlan& plan, const Zet32fc* src, Zet32fc* dst, Zet32f scale,
                    Zet32f* work);
    // Real and imaginary parts apart. work holds twice as many.
    void (*forwardSplit)(const FftPlan& plan, const Zet32f* srcRe, const Zet32f* srcIm,
                         Zet32f* dstRe, Zet32f* dstIm, Zet32f scale, Zet32f* work);

    // From the points 1 .. M - 1 of a complex transform to those of a spectrum of 2^order real
    // values, and back; see fft_real.h. In place or out of place.
    void (*pairForward)(const Zet32fc* src, Zet32fc* dst, const Zet32f* twiddles, int order);
    void (*pairInverse)(const Zet32fc* src, Zet32fc* dst, const Zet32f* twiddles, int order);
};

constexpr uint64_t fftWorkCount(int order) {
    return order <= kMaxStackOrder ? 0 : uint64_t{2} << order;
}

extern const core::LevelTable<FftKernels> kFftKernels;

}  // namespace zetac::transform
