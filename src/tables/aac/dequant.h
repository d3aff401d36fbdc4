// Tables of inverse quantisation (ISO/IEC 14496-3, 4.6.1), intensity stereo (4.6.8.2) and long-term
// prediction (4.6.7). Values are rounded to nearest.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

#include "tables/table.h"

namespace zetac::tables {

// q^(4/3) * 2^(-f/4) at [f][q], f = 0..3, q = 0..15: 28 fractional bits for q below 4 and 25
// from there on.
inline constexpr int kSmallPow43FractionBits[2] = {28, 25};
extern const Table<std::int32_t, 16> kSmallPow43[4];

// q^(4/3) at [q - 16], q = 16..128: 23 fractional bits for q below 64 and 21 from there on.
extern const Table<std::int32_t, 113> kPow43;

// 2^(-f/4), f = 0..3, 31 fractional bits; 1 is held as the largest fraction.
extern const Table<std::int32_t, 4> kQuarterPower;

// Intensity factors 2^(-(i + 1)/4), 31 fractional bits.
inline constexpr std::int32_t _pAacIsSqrt14_32s[11] = {
    1805811301, 1518500250, 1276901417, 1073741824, 902905651, 759250125,
    638450708,  536870912,  451452825,  379625062,  319225354};

// Long-term prediction gains by ltp_coef, 14 fractional bits: the largest, 1.369533, leaves no room
// for a fifteenth.
inline constexpr std::int16_t _Tab_LtpCoef_AAC[8] = {9352,  11413, 13320, 14931,
                                                     16137, 17496, 19572, 22438};

// The same gains with 29 fractional bits.
inline constexpr Table<std::int32_t, 8> kLtpGain = [] {
    constexpr double kGain[8] = {0.570829, 0.696616, 0.813004, 0.911304,
                                 0.984900, 1.067894, 1.194601, 1.369533};
    Table<std::int32_t, 8> table{};
    for (int i = 0; i < 8; ++i)
        table.values[i] = static_cast<std::int32_t>(kGain[i] * (1 << 29) + 0.5);
    return table;
}();

}  // namespace zetac::tables
