// The arithmetic of the floating QMF banks (ISO/IEC 14496-3, 4.6.18.4 and 4.6.18.8.2), compiled
// once per instruction-set level.
//
// Time slots stand side by side: a lane is a slot, so that the modulation runs without a shuffle
// and every slot sees the same operations, whatever the level and the number of slots. Rows are
// transposed on the way in and out; windowing works along the samples of one slot.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "core/levels.h"
#include "transform/dct_spec.h"
#include "transform/fft_plan.h"

namespace zetac::sbr {

inline constexpr int kMaxLanes = 16;

// The circular delay line of a bank, ten blocks, and where its newest block begins.
struct DelayLine {
    Zet32f* values;
    Zet32s* position;
};

// The rows of one run of a kernel, at most as many as it has lanes. im is null where there is no
// second matrix, and complex rows then hold pairs.
template <class Value>
struct QmfRows {
    Value* re[kMaxLanes];
    Value* im[kMaxLanes];

    bool parted() const { return im[0]; }
};

struct AnalysisBatch {
    int count;
    int kx;
    const Zet32f* src;
    const Zet32f* window;
    DelayLine line;
    QmfRows<Zet32f> rows;
};
struct SynthesisBatch {
    int count;
    Zet32f* dst;
    const Zet32f* window;
    DelayLine line;
    QmfRows<const Zet32f> rows;
};

struct QmfFloatKernels {
    int lanes;
    // The DCT of the real banks is of as many values as there are bands. The FFT of the complex
    // ones is of 32 points; the plan may also be one of 64, which contains it.
    void (*analyzeReal)(const AnalysisBatch& batch, const transform::DctSpec& dct);
    void (*analyzeComplex)(const AnalysisBatch& batch, const transform::FftPlan& plan);
    void (*synthesizeReal)(const SynthesisBatch& batch, const transform::DctSpec& dct);
    void (*synthesizeComplex)(const SynthesisBatch& batch, const transform::FftPlan& plan);
    void (*synthesizeDownReal)(const SynthesisBatch& batch, const transform::DctSpec& dct);
    void (*synthesizeDownComplex)(const SynthesisBatch& batch, const transform::FftPlan& plan);
};

extern const core::LevelTable<QmfFloatKernels> kQmfFloatKernels;

}  // namespace zetac::sbr
