// Cosines of the 32-point DCT of the polyphase filter banks, T[m] = sum of S[k] * cos(pi/64 *
// m * (2k + 1)).
#pragma once

#include <cstdint>

#include "tables/table.h"

namespace zetac::tables {

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
