// The arithmetic of the fixed-point QMF banks, compiled once per instruction-set level.
//
// A delay line is a ring of ten slots, the newest at the given position: of 32 samples, the newest
// first, in the analysis; of 2K values v in the synthesis of K bands. The caller moves the position
// afterwards. Samples of the line are integers in the analysis, v is in half units (Q1).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "core/levels.h"

namespace zetac::sbr {

inline constexpr int kQmfSlots = 10;

struct QmfFixedKernels {
    void (*analysisHQ)(const Zet32s* src, Zet32sc* dst, Zet32s* line, int position);
    void (*analysisLP)(const Zet32s* src, Zet32s* dst, Zet32s* line, int position);
    void (*synthesisHQ)(const Zet32sc* src, Zet32s* dst, Zet32s* line, int position);
    void (*synthesisLP)(const Zet32s* src, Zet32s* dst, Zet32s* line, int position);
    void (*synthesisDownHQ)(const Zet32sc* src, Zet32s* dst, Zet32s* line, int position);
    void (*synthesisDownLP)(const Zet32s* src, Zet32s* dst, Zet32s* line, int position);
};

extern const core::LevelTable<QmfFixedKernels> kQmfFixedKernels;

}  // namespace zetac::sbr
