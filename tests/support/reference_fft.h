// Transforms in long double, straight from their definitions or by halving.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <vector>

namespace zetac::test {

using Complex = std::complex<long double>;
using Values = std::vector<Complex>;

inline Complex unitAngle(long double turns) {
    const long double angle = 2 * std::numbers::pi_v<long double> * turns;
    return {std::cos(angle), std::sin(angle)};
}

// X[k] = sum of x[n] e^(-2 pi i n k / N); inverse: with the other sign.
inline Values definedDft(const Values& x, bool inverse) {
    const size_t count = x.size();
    Values result(count);
    for (size_t k = 0; k < count; ++k)
        for (size_t n = 0; n < count; ++n) {
            const long double turns = static_cast<long double>(n * k % count) / count;
            result[k] += x[n] * unitAngle(inverse ? turns : -turns);
        }
    return result;
}

// The same for powers of two.
inline Values referenceFft(const Values& x, bool inverse) {
    const size_t half = x.size() / 2;
    if (half < 4) return definedDft(x, inverse);
    Values even(half), odd(half), result(x.size());
    for (size_t n = 0; n < half; ++n) {
        even[n] = x[2 * n];
        odd[n] = x[2 * n + 1];
    }
    even = referenceFft(even, inverse);
    odd = referenceFft(odd, inverse);
    for (size_t k = 0; k < half; ++k) {
        const long double turns = static_cast<long double>(k) / x.size();
        const Complex turned = odd[k] * unitAngle(inverse ? turns : -turns);
        result[k] = even[k] + turned;
        result[half + k] = even[k] - turned;
    }
    return result;
}

// Root of the mean square of result - expected, relative to that of expected.
template <class Result>
double relativeError(const Result& result, const Values& expected) {
    long double error = 0;
    long double power = 0;
    for (size_t i = 0; i < expected.size(); ++i) {
        error += std::norm(Complex(result[i]) - expected[i]);
        power += std::norm(expected[i]);
    }
    return static_cast<double>(std::sqrt(error / power));
}

// Uniform in -1 .. 1.
inline std::vector<float> randomSingles(size_t count, uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<float> values(count);
    for (float& value : values)
        value = static_cast<float>(static_cast<int32_t>(random())) * 0x1p-31f;
    return values;
}

}  // namespace zetac::test
