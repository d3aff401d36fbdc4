// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "transform/fft_real.h"

#include "tables/transform/unit_circle.h"

namespace zetac::transform {

void fillRealTwiddles(int order, Zet32f* twiddles) {
    const int64_t pairs = realPairs(order);
    for (int64_t k = 1; k <= pairs; ++k) {
        const tables::Root root = tables::unitRoot(static_cast<uint64_t>(k), order);
        twiddles[k - 1] = static_cast<Zet32f>(root.im);
        twiddles[pairs + k - 1] = static_cast<Zet32f>(-root.re);
    }
}

}  // namespace zetac::transform
