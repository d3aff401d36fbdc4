// The fixed-point routines of psychoacoustic model two: 64-bit energies are normalised to 32 bits,
// divided by reciprocals, and shifted back.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <algorithm>
#include <bit>

#include "core/fixed_point.h"
#include "tables/mp3/psycho_curves.h"

namespace zetac::mp3 {

using core::kMax32s;

// value = mantissa * 2^shift but for the bits below, with the mantissa's bit 31 set; 0 gives 0.
inline uint32_t ownsNorm64To32_Audio(uint64_t value, int* shift) {
    if (value == 0) {
        *shift = 0;
        return 0;
    }
    const int zeros = std::countl_zero(value);
    *shift = 32 - zeros;
    return static_cast<uint32_t>((value << zeros) >> 32);
}

// 1 / value = result * 2^exponent with the result's bit 31 set; a value of 0 is taken as 1.
// Newton's iteration y' = y (2 - m y) on the mantissa m = 1/2..1, from a line within 1/17: the
// third step leaves only the rounding, less than 2^-29, downwards.
inline uint32_t ownsReciprocal_Audio(uint64_t value, int* exponent) {
    constexpr uint64_t kStart = 3031741620u;  // 48/17 in Q30
    constexpr uint64_t kSlope = 2021161080u;  // 32/17 in Q30
    int shift;
    const uint64_t m = ownsNorm64To32_Audio(value | (value == 0), &shift);
    uint64_t y = kStart - (m * kSlope >> 32);
    for (int step = 0; step < 3; ++step) {
        const uint64_t correction = ((uint64_t{1} << 63) - m * y) >> 31;  // 2 - m y, Q31
        y = y * correction >> 31;
    }
    *exponent = -63 - shift;
    return static_cast<uint32_t>(y >= uint64_t{1} << 31 ? UINT32_MAX : y << 1);
}

// numerator / denominator with the given number of fractional bits, saturated.
inline Zet32s quotient(uint64_t numerator, uint64_t denominator, int fractionBits) {
    int shift;
    int exponent;
    const uint64_t mantissa = ownsNorm64To32_Audio(numerator, &shift);
    const uint64_t product = mantissa * ownsReciprocal_Audio(denominator, &exponent);
    const int right = -(shift + exponent + fractionBits);  // product is 0 or at least 2^62
    if (right > 63) return 0;
    const uint64_t result = product >> (right > 0 ? right : 0);
    return static_cast<Zet32s>(result > kMax32s ? kMax32s : result);
}
inline Zet32s ratioQ31(uint64_t numerator, uint64_t denominator) {
    return quotient(numerator, denominator, 31);
}

// Energies and thresholds stay below 2^52, so that both halves of 26 bits times Q31 leave room for
// sums. scaleQ31 is the floor of the exact product.
inline constexpr int kHalfBits = 26;
constexpr uint32_t lowHalf(uint64_t energy) {
    return static_cast<uint32_t>(energy) & ((1u << kHalfBits) - 1);
}
constexpr uint32_t highHalf(uint64_t energy) {
    return static_cast<uint32_t>(energy >> kHalfBits);
}
constexpr uint64_t scaleQ31(uint64_t energy, Zet32s factor) {
    const auto f = static_cast<uint32_t>(factor);
    const uint64_t high = uint64_t{highHalf(energy)} * f;
    const uint64_t low = uint64_t{lowHalf(energy)} * f;
    return (high + (low >> kHalfBits)) >> (31 - kHalfBits);
}

// Square root of x = 1/4..1 in Q31, as Q31.
inline Zet32s ownsSqrt_Audio_32s(Zet32s x) {
    const uint64_t inverse = core::inverseSquareRoot(static_cast<uint32_t>(x) << 1);
    return static_cast<Zet32s>(
        std::min<uint64_t>(static_cast<uint64_t>(x) * inverse >> 30, kMax32s));
}

// Square root of any value, rounded down but for the last of 31 significant bits.
inline uint32_t squareRoot64(uint64_t value) {
    if (value == 0) return 0;
    const int halfShift = std::countl_zero(value) / 2;
    const auto mantissa = static_cast<Zet32s>((value << (2 * halfShift)) >> 33);
    return (static_cast<uint32_t>(ownsSqrt_Audio_32s(mantissa)) << 1) >> halfShift;
}

// Linear interpolation in a table of kCurvePoints over the mantissa m = 1..2, Q31.
inline int64_t interpolate(const Zet32s* curve, uint32_t mantissa) {
    constexpr int kRestBits = 31 - tables::kCurveStepBits;
    const uint32_t fraction = mantissa & 0x7fffffff;
    const Zet32s* point = curve + (fraction >> kRestBits);
    const int64_t rest = fraction & ((1u << kRestBits) - 1);
    return point[0] + ((int64_t{point[1] - point[0]} * rest) >> kRestBits);
}

// log2 x in Q10, x above 0; off by at most one unit. (Interpolation is within 2^-16.)
inline Zet16s ownsLog2_Audio_32s16s(Zet32s x) {
    const int zeros = std::countl_zero(static_cast<uint32_t>(x));
    const int64_t fraction = interpolate(tables::kLog2Mantissa, static_cast<uint32_t>(x) << zeros);
    return static_cast<Zet16s>(((31 - zeros) << 10) + (fraction >> 20));
}

// x^1.18813 for x above 0, Q31; from 1/32 on within 2^-19 of itself.
inline Zet32s ownsPow118813_Audio_32s(Zet32s x) {
    const int zeros = std::countl_zero(static_cast<uint32_t>(x));  // x = m * 2^-zeros
    const int64_t mantissa =
        interpolate(tables::kPow118813Mantissa, static_cast<uint32_t>(x) << zeros);
    return static_cast<Zet32s>((mantissa * tables::kPow118813Exponent[zeros]) >> 29);
}

}  // namespace zetac::mp3
