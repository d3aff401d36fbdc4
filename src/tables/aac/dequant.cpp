// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "tables/aac/dequant.h"

#include "core/constexpr_math.h"

namespace zetac::tables {
namespace {

constexpr long double pow43(int q) {
    return q * core::cubeRoot(q);
}

constexpr long double quarterPower(int f) {
    return core::powerOfTwo(-0.25L * f);
}

constexpr Table<std::int32_t, 16> makeSmallPow43(int f) {
    Table<std::int32_t, 16> table{};
    for (int q = 0; q < 16; ++q) {
        table.values[q] = core::toFixedPoint<std::int32_t>(pow43(q) * quarterPower(f),
                                                           kSmallPow43FractionBits[q >= 4]);
    }
    return table;
}

constexpr Table<std::int32_t, 113> makePow43() {
    Table<std::int32_t, 113> table{};
    for (int q = 16; q <= 128; ++q) {
        table.values[q - 16] = core::toFixedPoint<std::int32_t>(pow43(q), q < 64 ? 23 : 21);
    }
    return table;
}

constexpr Table<std::int32_t, 4> makeQuarterPower() {
    Table<std::int32_t, 4> table{INT32_MAX};
    for (int f = 1; f < 4; ++f) {
        table.values[f] = core::toFixedPoint<std::int32_t>(quarterPower(f), 31);
    }
    return table;
}

}  // namespace

constexpr Table<std::int32_t, 16> kSmallPow43[4] = {makeSmallPow43(0), makeSmallPow43(1),
                                                    makeSmallPow43(2), makeSmallPow43(3)};
constexpr Table<std::int32_t, 113> kPow43 = makePow43();
constexpr Table<std::int32_t, 4> kQuarterPower = makeQuarterPower();

}  // namespace zetac::tables
