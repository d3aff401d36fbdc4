// The power laws of Layer III (ISO/IEC 11172-3, 2.4.3.4 and C.1.5.4.4.2).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "tables/table.h"

namespace zetac::tables {

// The largest quantised magnitude: 15 and an escape of 13 bits.
inline constexpr int kMP3MaxQuantised = 15 + (1 << 13) - 1;

// q^(4/3), rounded to nearest, in doubles and in singles. Cubes have whole powers, and the tables
// have them exactly.
extern const Table<double, kMP3MaxQuantised + 1> kMP3Pow43;
extern const Table<float, kMP3MaxQuantised + 1> kMP3Pow43Single;

// 2^(-f/4), f = 0..3, rounded to nearest.
extern const Table<double, 4> kMP3QuarterPower;

// 2^(i/16), rounded to nearest.
extern const Table<float, 16> kMP3SixteenthPower;

}  // namespace zetac::tables
