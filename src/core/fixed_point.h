// Fixed-point arithmetic: every rounding and saturation idiom by its name.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <limits>

namespace zetac::core {

inline constexpr Zet32s kMax32s = std::numeric_limits<Zet32s>::max();
inline constexpr Zet32s kMin32s = std::numeric_limits<Zet32s>::min();

// High word of the 64-bit product, rounded towards minus infinity.
constexpr Zet32s mulHigh(Zet32s a, Zet32s b) {
    return static_cast<Zet32s>((static_cast<int64_t>(a) * b) >> 32);
}

// a * b with b in Q31 (or a in Q31), rounded towards minus infinity; -1 * -1 wraps.
constexpr Zet32s mulQ31(Zet32s a, Zet32s b) {
    return static_cast<Zet32s>((static_cast<int64_t>(a) * b) >> 31);
}

// Sums, differences and left shifts modulo 2^32.
constexpr Zet32s addWrap(Zet32s a, Zet32s b) {
    return static_cast<Zet32s>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}
constexpr Zet32s subWrap(Zet32s a, Zet32s b) {
    return static_cast<Zet32s>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}
constexpr Zet32s shiftLeftWrap(Zet32s value, int shift) {
    return static_cast<Zet32s>(static_cast<uint32_t>(value) << shift);
}

constexpr Zet32s saturate32(int64_t value) {
    return value > kMax32s ? kMax32s : value < kMin32s ? kMin32s : static_cast<Zet32s>(value);
}
constexpr Zet16s saturate16(Zet32s value) {
    return static_cast<Zet16s>(value > 32767 ? 32767 : value < -32768 ? -32768 : value);
}

// value / 2^shift to nearest, ties to even; shift 1..62, value within 2^62 either way.
constexpr int64_t roundShiftEven(int64_t value, int shift) {
    const int64_t keptLowest = (value >> shift) & 1;
    return (value + ((int64_t{1} << (shift - 1)) - 1) + keptLowest) >> shift;
}

// value / 2^shift to nearest, ties upwards; shift 1..31.
constexpr Zet32s roundShift(Zet32s value, int shift) {
    return (value >> shift) + ((value >> (shift - 1)) & 1);
}

// 1 / sqrt(x) in Q30 for x = 1/4..1 in Q32, by Newton's iteration y' = y (3 - x y^2) / 2. The line
// it starts from is within 10 %; the fourth step leaves only the rounding, less than 2^-28.
constexpr uint32_t inverseSquareRoot(uint32_t x) {
    constexpr uint32_t kStart = 2254857830u;  // 2.1 in Q30
    uint64_t y = kStart - x / 10 * 3;         // 2.1 - 1.2 x
    for (int step = 0; step < 4; ++step) {
        const uint64_t square = (y * y) >> 31;                                 // Q29
        const uint64_t correction = (uint64_t{3} << 29) - (x * square >> 32);  // Q29
        y = (y * correction) >> 30;
    }
    return static_cast<uint32_t>(y);
}

}  // namespace zetac::core
