// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "tables/mp3/powers.h"

#include "core/constexpr_math.h"

namespace zetac::tables {
namespace {

template <class T>
constexpr Table<T, kMP3MaxQuantised + 1> makePow43() {
    Table<T, kMP3MaxQuantised + 1> table{};
    for (int q = 0; q <= kMP3MaxQuantised; ++q)
        table.values[q] = static_cast<T>(q * core::cubeRoot(q));
    return table;
}

template <class T, int kCount>
constexpr Table<T, kCount> makePowersOfTwo(long double step) {
    Table<T, kCount> table{};
    for (int i = 0; i < kCount; ++i) table.values[i] = static_cast<T>(core::powerOfTwo(step * i));
    return table;
}

}  // namespace

constexpr Table<double, kMP3MaxQuantised + 1> kMP3Pow43 = makePow43<double>();
constexpr Table<float, kMP3MaxQuantised + 1> kMP3Pow43Single = makePow43<float>();
constexpr Table<double, 4> kMP3QuarterPower = makePowersOfTwo<double, 4>(-0.25L);
constexpr Table<float, 16> kMP3SixteenthPower = makePowersOfTwo<float, 16>(0.0625L);

}  // namespace zetac::tables
