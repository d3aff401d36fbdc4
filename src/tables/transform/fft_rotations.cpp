// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "tables/transform/fft_rotations.h"

namespace zetac::tables {
namespace {

// kRepeat neighbouring columns share a rotation.
template <int kRadix, int kColumns, int kRepeat>
constexpr Rotations<(kRadix - 1) * kColumns> makeRotations() {
    Rotations<(kRadix - 1) * kColumns> table{};
    const int points = kRadix * kColumns / kRepeat;
    for (int k = 1; k < kRadix; ++k) {
        for (int n = 0; n < kColumns; ++n) {
            const int position = n / kRepeat;
            setRotation(table, (k - 1) * kColumns + n, 2 * core::kPi * k * position / points);
        }
    }
    return table;
}

}  // namespace

constexpr Rotations<7 * 64> kFftRotations512 = makeRotations<8, 64, 1>();
constexpr Rotations<7 * 16> kFftRotations128 = makeRotations<8, 16, 1>();
constexpr Rotations<7 * 8> kFftRotations64 = makeRotations<8, 8, 1>();
constexpr Rotations<7 * 64> kFftRotations512Second = makeRotations<8, 64, 8>();
constexpr Rotations<64> kFftRotations128Second = makeRotations<2, 64, 8>();

}  // namespace zetac::tables
