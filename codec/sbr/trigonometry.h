// Cosines and sines for tables that are computed at compile time.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

namespace zetac::codec {

struct CosSin {
    double cos;
    double sin;
};

/** Of any angle in half turns, within 2^-50. */
constexpr CosSin cosSinPi(double halfTurns) {
    constexpr double kPi = 3.14159265358979323846;
    const double turns = halfTurns / 2;
    const auto whole = static_cast<long long>(turns + (turns < 0 ? -0.5 : 0.5));
    const double x = (turns - static_cast<double>(whole)) * 2 * kPi;
    CosSin result{0, 0};
    double term = 1;  // x^i / i!, of which 30 leave less than 2^-58 for |x| up to pi
    for (int i = 0; i < 30; ++i) {
        (i % 2 ? result.sin : result.cos) += i % 4 < 2 ? term : -term;
        term *= x / (i + 1);
    }
    return result;
}

/** The square root of a number above 0. */
constexpr double rootOf(double square) {
    double root = square < 1 ? 1 : square;
    for (double next = 0; (next = (root + square / root) / 2) < root;) root = next;
    return root;
}

}  // namespace zetac::codec
