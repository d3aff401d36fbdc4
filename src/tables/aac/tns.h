// Tables of temporal noise shaping (ISO/IEC 14496-3, 4.6.9).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

#include "core/constexpr_math.h"
#include "tables/table.h"

namespace zetac::tables {

// TNS_MAX_BANDS of the Main and LC profiles: [sampling_frequency_index][0 long, 1 short].
inline constexpr std::int32_t _pAACTnsMaxBandTable[13][2] = {
    {31, 9},  {31, 9},  {34, 10}, {40, 14}, {42, 14}, {51, 14}, {46, 14},
    {46, 14}, {42, 14}, {42, 14}, {42, 14}, {39, 14}, {39, 14}};

// Reflection coefficients of one coefficient resolution by transmitted value + 8, 31 fractional
// bits: sin(value * pi / (2^bits - 1)) from 0 up and sin(value * pi / (2^bits + 1)) below.
// coef_compress narrows the field but not the steps, so sign-extended values need no other table.
// Values that a 3-bit field cannot hold give 0.
constexpr Table<std::int32_t, 16> makeTnsReflection(int coefResBits) {
    Table<std::int32_t, 16> table{};
    const int half = 1 << (coefResBits - 1);
    for (int value = -half; value < half; ++value) {
        const int steps = 2 * half + (value < 0 ? 1 : -1);
        table.values[value + 8] =
            core::toFixedPoint<std::int32_t>(core::sine(core::kPi * value / steps), 31);
    }
    return table;
}

// [0] for coef_res 3 bits, [1] for 4 bits.
inline constexpr Table<std::int32_t, 16> kTnsReflection[2] = {makeTnsReflection(3),
                                                              makeTnsReflection(4)};

}  // namespace zetac::tables
