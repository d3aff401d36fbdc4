// Windows and factors of the hybrid filter banks (ISO/IEC 11172-3, 2.4.3.4.10 and C.1.5.3.3).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

#include "tables/table.h"

namespace zetac::tables {

// Alias reduction, table B.9: cs and ca in Q31.
extern const Table<std::int32_t, 8> kAliasCs;
extern const Table<std::int32_t, 8> kAliasCa;

// The transforms leave C[n] * 2 cos(pi/72 * (2n + 1)) or, in short blocks, C[n] * 2 cos(pi/24 *
// (2n + 1)), with C the DCT-IV. These windows divide by that cosine and hold the sign with which
// output i takes its C[n]; Q27.
inline constexpr int kImdctWindowFractionBits = 27;
extern const Table<std::int32_t, 36> kImdctWindows[4];  // by block_type; [2] is not in use
extern const Table<std::int32_t, 12> kImdctWindowShort;

// 1 / (2 cos(pi/36 * (2n + 1))), n = 0..8, and 1 / (2 cos(pi/12 * (2n + 1))), n = 0..2; Q28.
inline constexpr int kImdctSecantFractionBits = 28;
extern const Table<std::int32_t, 9> kImdctSecants9;
extern const Table<std::int32_t, 3> kImdctSecants3;

// The n of the C[n] that output i of a transform of 2 * size outputs takes.
constexpr int imdctFold(int i, int size) {
    const int n = i + size / 2;
    return n < size ? n : n < 2 * size ? 2 * size - 1 - n : n - 2 * size;
}

// A transform of 2 * size samples x is the DCT-IV of size values v[n] = window.first[n] *
// x[3 size / 2 - 1 - n] + window.second[n] * x[mdctSecond(n, size)]. Q30, signs included.
inline constexpr int kMdctWindowFractionBits = 30;
template <int size>
struct MdctWindow {
    std::int32_t first[size];
    std::int32_t second[size];
};
extern const MdctWindow<18> kMdctWindows[4];  // by block_type; [2] is not in use
extern const MdctWindow<6> kMdctWindowShort;

constexpr int mdctFirst(int n, int size) {
    return 3 * size / 2 - 1 - n;
}
constexpr int mdctSecond(int n, int size) {
    return n < size / 2 ? 3 * size / 2 + n : n - size / 2;
}

// 1 / (size * cos(pi / (4 size) * (2 k + 1))): what makes a line of the folded DCT-IV, on the scale
// that the inverse transform takes. Q29.
inline constexpr int kMdctSecantFractionBits = 29;
extern const Table<std::int32_t, 18> kMdctSecants18;
extern const Table<std::int32_t, 6> kMdctSecants6;

}  // namespace zetac::tables
