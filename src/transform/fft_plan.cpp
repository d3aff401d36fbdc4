// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "transform/fft_plan.h"

#include "tables/transform/unit_circle.h"

namespace zetac::transform {
namespace {

// log2 of m in the description: the columns of a pass.
int columnsOrder(int order, int pass) {
    int rest = order;
    for (int i = 0; i <= pass; ++i) rest -= fftRadixOrder(order, i);
    return rest;
}

uint64_t passTwiddleCount(int order, int pass) {
    const uint64_t columns = uint64_t{1} << columnsOrder(order, pass);
    return 2 * columns * ((1u << fftRadixOrder(order, pass)) - 1);
}

void fillFirst(Zet32f* twiddles, int order, int radixOrder) {
    const int columns = 1 << (order - radixOrder);
    const int block = firstPassBlock(columns);
    for (int first = 0; first < columns; first += block) {
        for (int k = 1; k < 1 << radixOrder; ++k, twiddles += 2 * block) {
            for (int i = 0; i < block; ++i) {
                const auto root = tables::unitRoot(static_cast<uint64_t>(first + i) * k, order);
                twiddles[i] = static_cast<Zet32f>(root.re);
                twiddles[i + block] = static_cast<Zet32f>(root.im);
            }
        }
    }
}

// order is that of the sub-sequences.
void fillLater(Zet32f* twiddles, int order, int radixOrder) {
    for (int p = 0; p < 1 << (order - radixOrder); ++p) {
        for (int k = 1; k < 1 << radixOrder; ++k) {
            const auto root = tables::unitRoot(static_cast<uint64_t>(p) * k, order);
            *twiddles++ = static_cast<Zet32f>(root.re);
            *twiddles++ = static_cast<Zet32f>(root.im);
        }
    }
}

}  // namespace

uint64_t fftTwiddleCount(int order) {
    uint64_t count = 0;
    for (int pass = 0; pass < fftPasses(order) - 1; ++pass) count += passTwiddleCount(order, pass);
    return count;
}

FftPlan makeFftPlan(int order, Zet32f* twiddles) {
    FftPlan plan{order, {}};
    for (int pass = 0; pass < fftPasses(order) - 1; ++pass) {
        const int radixOrder = fftRadixOrder(order, pass);
        plan.twiddles[pass] = twiddles;
        if (pass == 0)
            fillFirst(twiddles, order, radixOrder);
        else
            fillLater(twiddles, columnsOrder(order, pass) + radixOrder, radixOrder);
        twiddles += passTwiddleCount(order, pass);
    }
    return plan;
}

}  // namespace zetac::transform
