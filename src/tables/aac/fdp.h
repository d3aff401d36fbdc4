// The reciprocal of the frequency-domain predictor (ISO/IEC 13818-7, 13.3), in two factors.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <bit>
#include <cstdint>

#include "tables/table.h"

namespace zetac::tables {

// The damping factor of the predictor coefficients.
inline constexpr double kFdpDamping = 0.953125;

// kFdpDamping / (1 + m/128), rounded to a mantissa of 16 bits, sign and exponent included.
inline constexpr Table<float, 128> kFdpMantissa = [] {
    Table<float, 128> table{};
    for (int m = 0; m < 128; ++m) {
        const auto value = static_cast<float>(kFdpDamping / (1 + m / 128.));
        const std::uint32_t bits = std::bit_cast<std::uint32_t>(value) + 0x8000;
        table.values[m] = std::bit_cast<float>(bits & 0xffff0000);
    }
    return table;
}();

// 2^(127 - e) for biased exponents e from 128 on; 0 below, so that energies less than 2 predict
// nothing, and for 255, which is no number. The last power is subnormal.
inline constexpr Table<float, 256> kFdpExponent = [] {
    Table<float, 256> table{};
    float power = 0.5f;
    for (int e = 128; e <= 254; ++e, power *= 0.5f) table.values[e] = power;
    return table;
}();

}  // namespace zetac::tables
