// The twiddles of the MDCTs: sine and cosine of 2 pi (k + 1/8) / N for k < N/4.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "core/constexpr_math.h"
#include "core/fixed_point.h"
#include "tables/transform/unit_circle.h"
#include "transform/mdct_spec.h"

namespace zetac::transform {
namespace {

struct SinCos {
    double sine;
    double cosine;
};

// The angle is (8 k + 1) / 8N of a turn.
SinCos twiddle(int len, int k) {
    if (hasFft(len)) {
        const auto root = tables::unitRoot(8 * static_cast<uint64_t>(k) + 1, mdctFftOrder(len) + 5);
        return {-root.im, root.re};
    }
    const long double angle = core::kPi * (8 * k + 1) / (4 * len);
    return {static_cast<double>(core::sine(angle)), static_cast<double>(core::cosine(angle))};
}

// All sines, then all cosines.
void fillFloating(int len, double gain, Zet32f* table) {
    for (int k = 0; k < len / 4; ++k) {
        const SinCos pair = twiddle(len, k);
        table[k] = static_cast<Zet32f>(gain * pair.sine);
        table[k + len / 4] = static_cast<Zet32f>(gain * pair.cosine);
    }
}

}  // namespace

// Both rotations together give the factor 2 of the forward transform, 2/N of the inverse.
void fillMdctForward(int len, Zet32f* table) {
    fillFloating(len, static_cast<double>(core::squareRoot(2)), table);
}
void fillMdctInverse(int len, Zet32f* table) {
    fillFloating(len, static_cast<double>(core::squareRoot(2.0L / len)), table);
}

// Pairs in Q14.
void ownFillSinCosBuf_16s(int len, Zet16s* table) {
    for (int k = 0; k < len / 4; ++k) {
        const SinCos pair = twiddle(len, k);
        table[2 * k] = static_cast<Zet16s>(16384 * pair.sine + 0.5);
        table[2 * k + 1] = static_cast<Zet16s>(16384 * pair.cosine + 0.5);
    }
}

}  // namespace zetac::transform
