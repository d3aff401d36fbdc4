// Rotations of the AAC filter bank.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "tables/transform/fft_rotations.h"

namespace zetac::tables {

// DCT-IV of M = 2 * kLength values: rotation n is by pi * (n + 1/8) / M.
extern const Rotations<512> kDctRotations1024;
extern const Rotations<64> kDctRotations128;

}  // namespace zetac::tables
