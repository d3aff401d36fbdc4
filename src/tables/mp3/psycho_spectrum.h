// Windows and rotations of the spectra of psychoacoustic model two.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

#include "tables/table.h"
#include "tables/transform/fft_rotations.h"

namespace zetac::tables {

// Hann windows, Q15: (1 - cos(2 pi (i + 1/2) / N)) / 2.
extern const Table<std::int16_t, 1024> pHannWinLong_MP3;
extern const Table<std::int16_t, 256> pHannWinShort_MP3;

// The rotations that part the spectrum of N = 4 * kLength real values from that of N / 2 complex
// ones: rotation k is by 2 pi (k + 1) / N.
extern const Rotations<256> kRealRotations1024;
extern const Rotations<64> kRealRotations256;

}  // namespace zetac::tables
