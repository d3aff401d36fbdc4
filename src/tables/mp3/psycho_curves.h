// The curves of psychoacoustic model two: a logarithm and a power, sampled for linear interpolation
// over a mantissa m = 1..2 in steps of 1/128.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

#include "tables/table.h"

namespace zetac::tables {

inline constexpr int kCurveStepBits = 7;
inline constexpr int kCurvePoints = (1 << kCurveStepBits) + 1;

extern const Table<std::int32_t, kCurvePoints> kLog2Mantissa;       // log2 m, Q30
extern const Table<std::int32_t, kCurvePoints> kPow118813Mantissa;  // m^1.18813, Q29

// 2^(-1.18813 e), Q31, e = 0..31; the first one saturates.
extern const Table<std::int32_t, 32> kPow118813Exponent;

}  // namespace zetac::tables
