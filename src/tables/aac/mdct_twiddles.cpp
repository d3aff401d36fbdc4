// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "tables/aac/mdct_twiddles.h"

namespace zetac::tables {
namespace {

template <int kLength>
constexpr Rotations<kLength> makeDctRotations() {
    Rotations<kLength> table{};
    for (int n = 0; n < kLength; ++n) {
        setRotation(table, n, core::kPi * (8 * n + 1) / (16 * kLength));
    }
    return table;
}

}  // namespace

constexpr Rotations<512> kDctRotations1024 = makeDctRotations<512>();
constexpr Rotations<64> kDctRotations128 = makeDctRotations<64>();

}  // namespace zetac::tables
