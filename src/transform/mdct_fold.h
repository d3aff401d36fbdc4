// The folding of N samples to N/2 values, whose DCT-IV is the MDCT.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

namespace zetac::transform {

// With quarters a, b, c, d of the samples: -reverse(c) - d, then a - reverse(b).
template <class Sample, class Sum>
void foldSamples(const Sample* x, int len, Sum* folded) {
    const int quarter = len / 4;
    for (int n = 0; n < quarter; ++n) {
        folded[n] = -Sum{x[3 * quarter + n]} - Sum{x[3 * quarter - 1 - n]};
        folded[quarter + n] = Sum{x[n]} - Sum{x[2 * quarter - 1 - n]};
    }
}

}  // namespace zetac::transform
