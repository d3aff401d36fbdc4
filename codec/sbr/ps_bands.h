// The subbands of parametric stereo (ISO/IEC 14496-3, 8.6.4.3): the lowest ones of the QMF bank are
// split further, the others stay whole.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <algorithm>
#include <type_traits>

#include "sbr/ps_data.h"
#include "sbr/subbands.h"

namespace zetac::codec {

inline constexpr int kPsSplitMax = 5;    // QMF subbands that are split
inline constexpr int kPsHybridMax = 32;  // subbands that they are split into

// All-pass filters decorrelate the subbands below the first of these QMF subbands, a long delay
// those below the second, a short delay all above.
inline constexpr int kPsAllPassEnd = 23;
inline constexpr int kPsLongDelayEnd = 35;

// Slots of the frame before that the decorrelation needs.
inline constexpr int kPsLongDelay = 14;
inline constexpr int kPsAllPassDelay = 2;

/** Samples of QMF subbands; slot i is row i + kPsLongDelay. */
using PsWholeBand = SubbandMatrix<kPsLongDelay + kSbrSlots, kQmfBands>;

/** Samples of the parts of split ones; slot i is row i + kPsAllPassDelay. */
using PsHybridBand = SubbandMatrix<kPsAllPassDelay + kSbrSlots, kPsHybridMax>;

/** All subbands of a frame. */
struct PsSignal {
    PsWholeBand whole;
    PsHybridBand hybrid;
};

/** The subbands for 20 parameter bands or for 34. */
struct PsBands {
    int bands = 0;
    int split = 0;        // QMF subbands that are split
    int hybrid = 0;       // subbands that they are split into
    int padded = 0;       // the same, rounded up to whole steps of the loops
    int firstWhole = 0;   // parameter band of the first QMF subband that is not split
    int decayCutoff = 0;  // index from which on all-pass filters die away
    // First subband of the parts of each QMF subband, and the end of all.
    uint8_t part[kPsSplitMax + 1] = {};
    // First QMF subband of each parameter band from firstWhole on, and the end of all.
    uint8_t edge[kPsBandsMax + 1] = {};
    // Parameter bands of the parts, and of the QMF subbands that are not split.
    uint8_t hybridBand[kPsHybridMax] = {};
    uint8_t wholeBand[kQmfBands] = {};
    // Centre frequencies in 24ths of a QMF subband; those below 0 are mirror images.
    int8_t centre[kPsHybridMax] = {};

    constexpr PsBands completed() const {
        PsBands b = *this;
        b.padded = paddedTo4(b.hybrid);
        for (int band = b.firstWhole; band < b.bands; ++band) {
            std::fill(b.wholeBand + b.edge[band], b.wholeBand + b.edge[band + 1],
                      static_cast<uint8_t>(band));
        }
        return b;
    }

    static constexpr int paddedTo4(int count) { return (count + 3) / 4 * 4; }
};

/** Calls with every index from first on, as a constant: sums over bands of known widths need no
 *  loops then. */
template <int first, int end, class Operation>
inline void forEachIndex(Operation operation) {
    if constexpr (first < end) {
        operation(std::integral_constant<int, first>());
        forEachIndex<first + 1, end>(operation);
    }
}

inline constexpr PsBands kPsBands20 = PsBands{
    .bands = 20,
    .split = 3,
    .hybrid = 10,
    .firstWhole = 8,
    .decayCutoff = 10,
    .part = {0, 6, 8, 10},
    .edge = {0, 0, 0, 0, 0, 0, 0, 0, 3, 4, 5, 6, 7, 8, 9, 11, 14, 18, 23, 35, 64},
    .hybridBand = {1, 0, 0, 1, 2, 3, 4, 5, 6, 7},
    .centre = {-9, -3, 3, 9, 15, 21, 30, 42, 54,
               66}}.completed();

inline constexpr PsBands kPsBands34 =
    PsBands{.bands = 34,
            .split = 5,
            .hybrid = 32,
            .firstWhole = 16,
            .decayCutoff = 32,
            .part = {0, 12, 20, 24, 28, 32},
            .edge = {0, 0, 0, 0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  5, 6,
                     7, 8, 9, 10, 11, 13, 15, 17, 19, 21, 24, 27, 30, 33, 37, 41, 64},
            .hybridBand = {0, 1, 2, 3, 4,  5,  6,  6, 7,  2,  1,  0,  10, 10, 4,  5,
                           6, 7, 8, 9, 10, 11, 12, 9, 14, 11, 12, 13, 14, 15, 16, 13},
            .centre = {2,  6,  10, 14, 18, 22, 26, 30, 34,  -10, -6, -2, 51,  57,  15,  21,
                       27, 33, 39, 45, 54, 66, 78, 42, 102, 66,  78, 90, 102, 114, 126, 90}}
        .completed();

}  // namespace zetac::codec
