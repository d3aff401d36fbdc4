// Real data through a complex FFT of half the points: z[n] = v[2n] + i v[2n+1], M = N/2 points. Its
// transform Z and the spectrum V are each other's by pairs of points k and M - k:
//   V[k] = a + b + h (a - b), V[M-k] = conj(a + b - h (a - b)), with a = Z[k] / 2,
//   b = conj(Z[M-k]) / 2 and h = -i e^(-2 pi i k / N),
// and with a and b from V, without the halves, and conj(h) the other way. Point 0 stands for the
// real V[0] and V[M].
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

namespace zetac::transform {

// Pairs that are not point 0.
constexpr int64_t realPairs(int order) {
    return order < 2 ? 0 : int64_t{1} << (order - 2);
}

// Singles for the factors h of the pairs k = 1, 2, ...: real parts, then imaginary parts.
constexpr uint64_t realTwiddleCount(int order) {
    return 2 * static_cast<uint64_t>(realPairs(order));
}
void fillRealTwiddles(int order, Zet32f* twiddles);

}  // namespace zetac::transform
