// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "tables/mp3/psycho_curves.h"

#include "core/constexpr_math.h"

namespace zetac::tables {
namespace {

constexpr long double kExponent = 1.18813L;

constexpr long double mantissa(int i) {
    return 1 + static_cast<long double>(i) / (kCurvePoints - 1);
}

constexpr Table<std::int32_t, kCurvePoints> makeLog2() {
    Table<std::int32_t, kCurvePoints> table{};
    for (int i = 0; i < kCurvePoints; ++i) {
        table.values[i] = core::toFixedPoint<std::int32_t>(core::logarithm2(mantissa(i)), 30);
    }
    return table;
}

constexpr Table<std::int32_t, kCurvePoints> makePower() {
    Table<std::int32_t, kCurvePoints> table{};
    for (int i = 0; i < kCurvePoints; ++i) {
        table.values[i] = core::toFixedPoint<std::int32_t>(core::power(mantissa(i), kExponent), 29);
    }
    return table;
}

constexpr Table<std::int32_t, 32> makeExponents() {
    Table<std::int32_t, 32> table{};
    for (int e = 0; e < 32; ++e) {
        const auto q31 = core::toFixedPoint<std::int64_t>(core::powerOfTwo(-kExponent * e), 31);
        table.values[e] = static_cast<std::int32_t>(q31 > INT32_MAX ? INT32_MAX : q31);
    }
    return table;
}

}  // namespace

constexpr Table<std::int32_t, kCurvePoints> kLog2Mantissa = makeLog2();
constexpr Table<std::int32_t, kCurvePoints> kPow118813Mantissa = makePower();
constexpr Table<std::int32_t, 32> kPow118813Exponent = makeExponents();

}  // namespace zetac::tables
