// Powers and logarithms whose last bit is the same in both word sizes, unlike those of maths
// libraries: made of single operations of IEEE 754.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cmath>

namespace zetac::codec {

/** 2^x, for x whose result is a normal number. Within 2^-51 of exact. */
inline double exp2Portable(double x) {
    constexpr double kLn2 = 0.693147180559945309;
    constexpr int kTerms = 14;  // 0.347^15 / 15! is below 2^-62
    const double whole = std::floor(x + 0.5);
    const double y = (x - whole) * kLn2;
    double sum = 1;
    for (int i = kTerms; i > 0; --i) sum = 1 + y * sum / i;
    return std::ldexp(sum, static_cast<int>(whole));
}

/** The ratio of two powers. */
inline double powerOfDecibels(double decibels) {
    constexpr double kLog2Of10 = 3.32192809488736235;
    return exp2Portable(decibels * (kLog2Of10 / 10));
}

}  // namespace zetac::codec
