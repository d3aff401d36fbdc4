// The measure of unpredictability for the short lines, compiled once per instruction-set level.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "core/levels.h"
#include "mp3/psycho/model.h"

namespace zetac::mp3 {

struct PredictionKernels {
    // Unpredictability of lines 6..205 from the three short spectra of the granule, by the measure
    // of ownsCalUnpredictMeasureCw06_Psy_MP3 to 2^-20. Four lines share a short one.
    void (*ownsCalUnpredictMeasureCwAbove06_Psy_MP3)(const Zet32sc (*spectra)[kShortSpectrum],
                                                     ZetMP3PsyChannelState& state,
                                                     Zet32s* unpredictability);
};

extern const core::LevelTable<PredictionKernels> kPredictionKernels;

}  // namespace zetac::mp3
