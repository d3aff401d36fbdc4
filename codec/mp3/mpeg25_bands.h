// Scale-factor bands of MPEG-2.5, the extension of MPEG-2 Layer III to 8, 11.025 and 12 kHz that no
// ISO standard describes. Everything else in it is as in MPEG-2.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

namespace zetac::codec {

// Rows by sampling_frequency: 11.025, 12, 8 kHz.

inline constexpr Zet16s kMpeg25LongBands[3 * 23] = {
    0,   6,   12,  18,  24,  30,  36,  44,  54,  66,  80,  96,   // 11.025 kHz
    116, 140, 168, 200, 238, 284, 336, 396, 464, 522, 576,       //
    0,   6,   12,  18,  24,  30,  36,  44,  54,  66,  80,  96,   // 12 kHz
    116, 140, 168, 200, 238, 284, 336, 396, 464, 522, 576,       //
    0,   12,  24,  36,  48,  60,  72,  88,  108, 132, 160, 192,  // 8 kHz
    232, 280, 336, 400, 476, 566, 568, 570, 572, 574, 576,
};

inline constexpr Zet16s kMpeg25ShortBands[3 * 14] = {
    0, 4, 8,  12, 18, 26, 36, 48, 62,  80,  104, 134, 174, 192,  // 11.025 kHz
    0, 4, 8,  12, 18, 26, 36, 48, 62,  80,  104, 134, 174, 192,  // 12 kHz
    0, 8, 16, 24, 36, 52, 72, 96, 124, 160, 162, 164, 166, 192,  // 8 kHz
};

// Long band at which a mixed block switches, and windows of short bands in its first region. No
// known encoder writes mixed blocks at these rates, and decoders disagree on them.
inline constexpr Zet16s kMpeg25MixedPartition[3 * 2] = {6, 0, 6, 0, 3, 0};

}  // namespace zetac::codec
