// Windows and cosines of the polyphase filter banks in fixed point (ISO/IEC 11172-3, tables B.3 and
// C.1, figures A.2 and C.4).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

#include "tables/table.h"

namespace zetac::tables {

// D[0..256] in units of 2^-16, in which the standard's decimals are exact. The rest follows by
// symmetry: see synthesisWindow().
inline constexpr Table<std::int32_t, 257> kSynthesisWindow = {{
    // clang-format off
    0, -1, -1, -1, -1, -1, -1, -2, -2, -2, -2, -3, -3, -4, -4, -5,
    -5, -6, -7, -7, -8, -9, -10, -11, -13, -14, -16, -17, -19, -21, -24, -26,
    -29, -31, -35, -38, -41, -45, -49, -53, -58, -63, -68, -73, -79, -85, -91, -97,
    -104, -111, -117, -125, -132, -139, -147, -154, -161, -169, -176, -183, -190, -196, -202, -208,
    213, 218, 222, 225, 227, 228, 228, 227, 224, 221, 215, 208, 200, 189, 177, 163,
    146, 127, 106, 83, 57, 29, -2, -36, -72, -111, -153, -197, -244, -294, -347, -401,
    -459, -519, -581, -645, -711, -779, -848, -919, -991, -1064, -1137, -1210, -1283, -1356, -1428, -1498,
    -1567, -1634, -1698, -1759, -1817, -1870, -1919, -1962, -2001, -2032, -2057, -2075, -2085, -2087, -2080, -2063,
    2037, 2000, 1952, 1893, 1822, 1739, 1644, 1535, 1414, 1280, 1131, 970, 794, 605, 402, 185,
    -45, -288, -545, -814, -1095, -1388, -1692, -2006, -2330, -2663, -3004, -3351, -3705, -4063, -4425, -4788,
    -5153, -5517, -5879, -6237, -6589, -6935, -7271, -7597, -7910, -8209, -8491, -8755, -8998, -9219, -9416, -9585,
    -9727, -9838, -9916, -9959, -9966, -9935, -9863, -9750, -9592, -9389, -9139, -8840, -8492, -8092, -7640, -7134,
    6574, 5959, 5288, 4561, 3776, 2935, 2037, 1082, 70, -998, -2122, -3300, -4533, -5818, -7154, -8540,
    -9975, -11455, -12980, -14548, -16155, -17799, -19478, -21189, -22929, -24694, -26482, -28289, -30112, -31947, -33791, -35640,
    -37489, -39336, -41176, -43006, -44821, -46617, -48390, -50137, -51853, -53534, -55178, -56778, -58333, -59838, -61289, -62684,
    -64019, -65290, -66494, -67629, -68692, -69679, -70590, -71420, -72169, -72835, -73415, -73908, -74313, -74630, -74856, -74992,
    75038,
    // clang-format on
}};

// D[i], i = 0..511, in units of 2^-16: odd about 256 but at the multiples of 64, where it is even.
constexpr std::int32_t synthesisWindow(int i) {
    if (i <= 256) return kSynthesisWindow.values[i];
    const std::int32_t mirrored = kSynthesisWindow.values[512 - i];
    return i % 64 == 0 ? mirrored : -mirrored;
}

// The coefficients of the fixed-point bank, Q30, in the order of its lanes r = 1..16, which make
// the output samples 16 - r and 16 + r. Rows of odd i are negated; the bank subtracts their
// products, and so the truncations of its products cancel in the mean.
struct SynthesisRow {
    alignas(64) std::int32_t values[16];
    alignas(64) std::int32_t shifted[16];  // values[1..15], 0: see SplitLanes
};
struct SynthesisRows {
    SynthesisRow even[8];    // D[64 i + 16 - r]
    SynthesisRow odd[8];     // D[64 i + 48 - r]
    std::int32_t center[8];  // D[64 i + 48], for output sample 16
};
extern const SynthesisRows kSynthesisRows;

// C is D / 32, and D has up to 18 bits in units of 2^-16: D = 4 coarse + fine, so that 16-bit
// multipliers serve. In the order of time, oldest sample first: entry n is D[511 - n].
struct AnalysisWindowWords {
    alignas(64) std::int16_t coarse[512];
    alignas(64) std::int16_t fine[512];
};
extern const AnalysisWindowWords kAnalysisWindowWords;

// 1 / (2 cos(pi / (2 size) * (2 k + 1))), k < size / 2, for sizes 2, 4, 8, 16 and 32; the values of
// a size begin at size / 2 - 1. Q27.
inline constexpr int kDct3SecantFractionBits = 27;
struct Dct3Secants {
    std::int32_t values[31];
    constexpr const std::int32_t* ofSize(int size) const { return values + size / 2 - 1; }
};
extern const Dct3Secants kDct3Secants;

// The 32-point DCT of the synthesis, T[m] = sum of S[k] * cos(pi/64 * m * (2k + 1)).
inline constexpr int kDct32FractionBits = 27;

// cos(pi/64 * j), j = 0..127, Q27.
extern const Table<std::int32_t, 128> kDct32Cosines;

// The same values in the order of vectors of sums of products. Column l of a row holds the factors
// of the inputs that the row names for T[m]; with r = 1, 3, .. 15 (odd) or 2, 4, .. 16 (even),
// columns 0..7 belong to m = r and columns 8..15 to m = 32 - r.
struct Dct32Rows {
    // of S[k] - S[31 - k]
    alignas(64) std::int64_t odd[16][16];
    // A[k] = S[k] + S[31 - k]: of A[k] - A[15 - k] in even columns, A[k] + A[15 - k] in odd ones
    alignas(64) std::int64_t even[8][16];
};
extern const Dct32Rows kDct32Rows;

}  // namespace zetac::tables
