// The plan of a complex FFT of 2^order points: the radices of its passes and their twiddles.
//
// A transform is a chain of Stockham passes. Before pass i the data are s = r_0 ... r_(i-1)
// interleaved sub-sequences of n = N / s points; the pass takes the points p + m j, m = n / r_i, of
// each to a DFT of r_i points, multiplies output k by W_n^(p k), and stores it so that s * r_i
// sub-sequences remain. The results come out in order, without a permutation.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

namespace zetac::transform {

inline constexpr int kMaxFftOrder = 30;
inline constexpr int kMaxFftPasses = 10;

// Up to here the transform is two passes without loops, or one, and its intermediate values live on
// the stack; beyond, it needs a work buffer.
inline constexpr int kMaxStackOrder = 8;

// Up to 8 points there is one DFT; 16 points are 4 times 4 and 256 points 16 times 16. All others
// take passes of radix 8, but for the first one, which is of radix 16 where that makes the factors
// come out even, and the last one, of radix 4 where that is left.
constexpr int fftPasses(int order) {
    return order <= 3 ? 1 : order == 4 || order == 8 ? 2 : (order + 1) / 3;
}
constexpr int fftRadixOrder(int order, int pass) {
    if (order <= 3) return order;
    if (order == 4 || order == 8) return order / 2;
    const int first = order % 3 == 1 ? 4 : 3;
    const int rest = order - first - 3 * (pass - 1);
    return pass == 0 ? first : rest < 3 ? rest : 3;
}

// Twiddles of the first pass come in blocks of this many columns, those of a block in the order k =
// 1 .. r - 1, real parts before imaginary parts. Twiddles of later passes are pairs in the order p,
// k. The last pass has none.
constexpr int firstPassBlock(int columns) {
    return columns < 16 ? columns : 16;
}

struct FftPlan {
    int order;
    const Zet32f* twiddles[kMaxFftPasses - 1];
};

// Singles that the twiddles take.
uint64_t fftTwiddleCount(int order);

// Fills the twiddles and returns the plan that refers to them.
FftPlan makeFftPlan(int order, Zet32f* twiddles);

}  // namespace zetac::transform
