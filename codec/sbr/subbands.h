// Matrices of subband samples on their way through the high band tools.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstddef>

#include "sbr/frequency_tables.h"
#include "sbr/grid.h"

namespace zetac::codec {

inline constexpr int kSbrSlots = 2 * kSbrTimeSlots;        // subband slots of a frame
inline constexpr int kSbrSlotsMax = 2 * kSbrTimeSlotsMax;  // up to the last envelope's end
inline constexpr int kSbrHistory = 8;                      // t_HFGen: slots kept for prediction
inline constexpr int kSbrDelay = 2;                        // t_HFAdj
inline constexpr int kLowBands = 32;                       // of the analysis
inline constexpr int kLowRows = kSbrHistory + kSbrSlots;

/** Loops over subbands run in steps of this; what lies beyond the last subband is zero. */
inline constexpr int kSbrStep = 8;
constexpr int paddedBands(int bands) {
    return (bands + kSbrStep - 1) / kSbrStep * kSbrStep;
}

/** Complex samples with their parts apart, a row per subband slot. Samples are in the scale in
 * which time samples are 16-bit integers. */
template <int rows, int columns>
struct SubbandMatrix {
    alignas(32) float re[rows][columns];
    alignas(32) float im[rows][columns];
};

/** Output of the analysis, X_low: row n belongs to slot n - kSbrHistory of this frame. The output
 *  of slot i, high band and low, comes from row i + kSbrDelay. */
using LowBand = SubbandMatrix<kLowRows, kLowBands>;

/** Generated and adjusted high band; row i is output slot i, column 0 the first subband of SBR. */
using HighBand = SubbandMatrix<kSbrSlotsMax, kSbrBandsMax>;

/** What goes into the synthesis, with room for a padded high band behind any crossover. */
using OutputBand = SubbandMatrix<kSbrSlotsMax, kLowBands + kSbrBandsMax>;

/** Prediction of each low subband from its two last samples. */
struct LowPrediction {
    float alpha0Re[kLowBands], alpha0Im[kLowBands];
    float alpha1Re[kLowBands], alpha1Im[kLowBands];
};

}  // namespace zetac::codec
