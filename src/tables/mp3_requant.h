// Tables of Layer III requantisation and stereo (ISO/IEC 11172-3, 2.4.3.4).
#pragma once

#include <cstdint>

#include "tables/table.h"

namespace zetac::tables {

// The largest quantised magnitude: 15 and an escape of 13 bits.
inline constexpr int kMP3MaxQuantised = 15 + (1 << 13) - 1;

// q^(4/3), rounded to nearest. Cubes have whole powers, and the table has them exactly.
extern const Table<double, kMP3MaxQuantised + 1> kMP3Pow43;

// 2^(-f/4), f = 0..3, rounded to nearest.
extern const Table<double, 4> kMP3QuarterPower;

// Preemphasis of the long bands (Table B.6).
inline constexpr std::int8_t kMP3Pretab[22] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                               1, 1, 1, 1, 2, 2, 3, 3, 3, 2, 0};

// The left channel's share is_ratio / (1 + is_ratio), is_ratio = tan(is_pos * pi/12), of MPEG-1
// intensity stereo, by is_pos, 31 fractional bits; 1 is held as the largest fraction.
inline constexpr std::int32_t kMP3IntensityShare[7] = {
    0, 453816693, 786033569, 1073741824, 1361450079, 1693666955, INT32_MAX};

}  // namespace zetac::tables
