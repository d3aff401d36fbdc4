// Elementary functions for tables that are computed at compile time. The functions of <cmath> are
// not usable in constant expressions by every compiler, so these are series of our own in long
// double. With its 64 significant bits errors stay below 3 * 2^-63 relative (sine and cosine:
// absolute) for arguments of table size, below 2^-59 for power and besselI0: far beyond what a
// 32-bit table rounds to. At run time they are slow and serve where specs are initialised: the same
// bits on every machine matter more there.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

namespace zetac::core {

inline constexpr long double kPi = 3.14159265358979323846264338327950288L;
inline constexpr long double kLn2 = 0.693147180559945309417232121458176568L;

// The integer nearest to x; halves go away from zero.
constexpr std::int64_t roundToInteger(long double x) {
    return static_cast<std::int64_t>(x < 0 ? x - 0.5L : x + 0.5L);
}

constexpr long double scaleByPowerOfTwo(long double x, int exponent) {
    for (; exponent > 0; --exponent) x *= 2;
    for (; exponent < 0; ++exponent) x /= 2;
    return x;
}

// x rounded to the given number of fractional bits, as the integer a fixed-point table holds. A
// value that T cannot hold is not a constant expression, hence an error where the table is built.
template <typename T>
constexpr T toFixedPoint(long double x, int fractionBits) {
    const long double scaled = scaleByPowerOfTwo(x, fractionBits);
    return static_cast<T>(scaled < 0 ? scaled - 0.5L : scaled + 0.5L);
}

// Taylor series of sine (start x, index 1) and cosine (start 1, index 0) for |x| <= pi/4.
constexpr long double circularSeries(long double x, long double start, int index) {
    long double sum = start;
    for (long double term = start; index < 26; index += 2) {
        term *= -x * x / ((index + 1) * (index + 2));
        sum += term;
    }
    return sum;
}

// sin(x + quarterTurns * pi/2).
constexpr long double sine(long double x, int quarterTurns = 0) {
    const std::int64_t turns = roundToInteger(x / (kPi / 2));
    const long double rest = x - static_cast<long double>(turns) * (kPi / 2);
    const int quadrant = static_cast<int>((turns + quarterTurns) & 3);
    const long double value =
        quadrant % 2 == 0 ? circularSeries(rest, rest, 1) : circularSeries(rest, 1, 0);
    return quadrant < 2 ? value : -value;
}

constexpr long double cosine(long double x) {
    return sine(x, 1);
}

// Newton's iteration from above falls until it has converged. x must be positive or zero.
constexpr long double squareRoot(long double x) {
    if (x == 0) return 0;
    long double root = x > 1 ? x : 1;
    for (long double next = (root + x / root) / 2; next < root; next = (root + x / root) / 2) {
        root = next;
    }
    return root;
}

// Two halvings of the angle, atan x = 2 atan(x / (1 + sqrt(1 + x^2))), bring |x| <= 1 below 0.2,
// where the series converges by 1/25 a term. x must be positive or zero.
constexpr long double arctangent(long double x) {
    if (x > 1) return kPi / 2 - arctangent(1 / x);
    for (int halving = 0; halving < 2; ++halving) x /= 1 + squareRoot(1 + x * x);
    long double sum = 0;
    long double power = x;
    for (int n = 1; n < 28; n += 2) {
        sum += power / n;
        power *= -x * x;
    }
    return 4 * sum;
}

constexpr long double cubeRoot(long double x) {
    if (x == 0) return 0;
    long double root = x > 1 ? x : 1;
    for (long double next = (2 * root + x / (root * root)) / 3; next < root;
         next = (2 * root + x / (root * root)) / 3) {
        root = next;
    }
    return root;
}

// 2^x = 2^n * e^((x - n) ln 2) with n the integer nearest to x.
constexpr long double powerOfTwo(long double x) {
    const std::int64_t whole = roundToInteger(x);
    const long double y = (x - static_cast<long double>(whole)) * kLn2;
    long double sum = 1;
    long double term = 1;
    for (int n = 1; n < 24; ++n) {
        term *= y / n;
        sum += term;
    }
    return scaleByPowerOfTwo(sum, static_cast<int>(whole));
}

// log2 x = n + ln m / ln 2, and ln m = 2 artanh((m - 1) / (m + 1)) for the mantissa m in [2/3,
// 4/3). x must be positive.
constexpr long double logarithm2(long double x) {
    int exponent = 0;
    for (; x >= 4.0L / 3; x /= 2) ++exponent;
    for (; x < 2.0L / 3; x *= 2) --exponent;
    const long double ratio = (x - 1) / (x + 1);
    long double sum = 0;
    long double term = 2 * ratio;
    for (int n = 1; n < 30; n += 2) {
        sum += term / n;
        term *= ratio * ratio;
    }
    return exponent + sum / kLn2;
}

constexpr long double exponential(long double x) {
    return powerOfTwo(x / kLn2);
}

constexpr long double power(long double base, long double exponent) {
    return base == 0 ? 0 : powerOfTwo(exponent * logarithm2(base));
}

// Modified Bessel function of the first kind, order 0, given x^2: sum of ((x/2)^n / n!)^2.
constexpr long double besselI0OfSquare(long double xSquared) {
    long double sum = 1;
    long double term = 1;
    for (int n = 1; term > sum * 0x1p-66L; ++n) {
        term *= xSquared / (4.0L * n * n);
        sum += term;
    }
    return sum;
}

constexpr long double besselI0(long double x) {
    return besselI0OfSquare(x * x);
}

}  // namespace zetac::core
