// Arithmetic of the floating predictors and detectors, compiled once per instruction-set level. A
// lane is a band, and every lane sees the same operations in the same order, so that neither the
// level nor a band's place among the vectors changes a result.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "core/levels.h"

namespace zetac::sbr {

// numSlots + 2 slots of len bands.
struct PredictorBlock {
    int len;
    int numSlots;
};

// Real and imaginary parts apart.
struct ConstParts {
    const Zet32f* const* re;
    const Zet32f* const* im;
};
struct Parts {
    Zet32f* re;
    Zet32f* im;
};

struct PredictFloatKernels {
    void (*real)(const Zet32f* const* rows, Zet32f* alpha0, Zet32f* alpha1, PredictorBlock block);
    void (*parts)(ConstParts rows, Parts alpha0, Parts alpha1, PredictorBlock block);
    void (*pairs)(const Zet32fc* const* rows, Zet32fc* alpha0, Zet32fc* alpha1,
                  PredictorBlock block);
    // What prediction explains of the energies, over what it leaves; matrices slot after slot.
    void (*tonality)(const Zet32f* re, const Zet32f* im, Zet32f* ratios, PredictorBlock block);
    // The strength of a slot's rise above the mean energies of the past, which then follow.
    Zet32f (*rise)(const Zet32f* energies, Zet32f* means, int len, Zet32f floor);
};

extern const core::LevelTable<PredictFloatKernels> kPredictFloatKernels;

}  // namespace zetac::sbr
