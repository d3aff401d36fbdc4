// Roots of unity in double precision, for the twiddles that transforms compute when they are
// initialised.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

namespace zetac::tables {

struct Root {
    double re;
    double im;
};

inline constexpr int kMaxRootOrder = 31;

// e^(-2 pi i index / 2^order), index modulo 2^order, order up to kMaxRootOrder. A product of at
// most four tabulated factors in plain double arithmetic: within 2^-50 of the exact value, the same
// bits everywhere, and with exact symmetry between octants.
Root unitRoot(uint64_t index, int order);

}  // namespace zetac::tables
