// Intensity stereo of MPEG-1 Layer III (ISO/IEC 11172-3, 2.4.3.4.9.3).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

namespace zetac::tables {

// The left channel's share is_ratio / (1 + is_ratio), is_ratio = tan(is_pos * pi/12), of MPEG-1
// intensity stereo, by is_pos, 31 fractional bits; 1 is held as the largest fraction.
inline constexpr std::int32_t kMP3IntensityShare[7] = {
    0, 453816693, 786033569, 1073741824, 1361450079, 1693666955, INT32_MAX};

// The bounds between the positions, as ratios of the left channel's energy to the right one's:
// tan^2((2k - 1) pi / 24), k = 1..6, in Q15: position k begins there.
inline constexpr std::int32_t pIsRatioSqrTable[7] = {0, 568, 5622, 19293, 55653, 190986, 1890566};

}  // namespace zetac::tables
