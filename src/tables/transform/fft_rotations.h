// Rotations of the integer FFTs, Q31. cosine and sine stand in arrays of their own, so that a
// vector of neighbouring rotations is one load.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

#include "core/constexpr_math.h"

namespace zetac::tables {

template <int kLength>
struct Rotations {
    alignas(64) int32_t cosine[kLength];
    alignas(64) int32_t sine[kLength];
};

// Q31, with 1 as the largest value that the format holds.
constexpr int32_t rotationQ31(long double x) {
    const int64_t scaled = core::roundToInteger(x * 2147483648.0L);
    return static_cast<int32_t>(scaled > INT32_MAX ? INT32_MAX : scaled);
}

template <int kLength>
constexpr void setRotation(Rotations<kLength>& table, int index, long double angle) {
    table.cosine[index] = rotationQ31(core::cosine(angle));
    table.sine[index] = rotationQ31(core::sine(angle));
}

// Between the passes of a radix-8 FFT of 8 * kColumns points: row k - 1, column n is
// the rotation by 2 pi * k * n / (8 * kColumns), k = 1..7.
extern const Rotations<7 * 64> kFftRotations512;
extern const Rotations<7 * 16> kFftRotations128;
extern const Rotations<7 * 8> kFftRotations64;

// The same rotations for the second pass, where eight neighbours share one: of radix 8 over 512
// points, of radix 2 over 128 points.
extern const Rotations<7 * 64> kFftRotations512Second;
extern const Rotations<64> kFftRotations128Second;

}  // namespace zetac::tables
