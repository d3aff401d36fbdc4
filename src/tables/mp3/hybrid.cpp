// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "tables/mp3/hybrid.h"

#include "core/constexpr_math.h"

namespace zetac::tables {
namespace {

using core::cosine;
using core::kPi;

// The windows of 2.4.3.4.10.3: i = 0..35, block types 0, 1 and 3.
constexpr long double longBlockWindow(int blockType, int i) {
    const bool second = i >= 18;
    const int distance = second ? 35 - i : i;  // from the outer end
    if ((blockType == 1 && second) || (blockType == 3 && !second)) {
        if (distance < 6) return 0;
        return distance < 12 ? core::sine(kPi / 12 * (distance - 6 + 0.5L)) : 1;
    }
    return core::sine(kPi / 36 * (i + 0.5L));
}

// i = 0..11.
constexpr long double shortBlockWindow(int i) {
    return core::sine(kPi / 12 * (i + 0.5L));
}

// Table B.9.
constexpr long double kAliasC[8] = {-0.6L,   -0.535L, -0.33L,   -0.185L,
                                    -0.095L, -0.041L, -0.0142L, -0.0037L};

constexpr Table<std::int32_t, 8> makeAlias(bool sineOfAngle) {
    Table<std::int32_t, 8> table{};
    for (int i = 0; i < 8; ++i) {
        const long double c = kAliasC[i];
        const long double cs = 1 / core::squareRoot(1 + c * c);
        table.values[i] = core::toFixedPoint<std::int32_t>(sineOfAngle ? c * cs : cs, 31);
    }
    return table;
}

constexpr long double foldedFactor(int i, int size) {
    const long double sign = i + size / 2 < size ? 1 : -1;
    return sign / (2 * cosine(kPi / (4 * size) * (2 * imdctFold(i, size) + 1)));
}

constexpr Table<std::int32_t, 36> makeWindowLong(int blockType) {
    Table<std::int32_t, 36> table{};
    for (int i = 0; i < 36; ++i) {
        table.values[i] = core::toFixedPoint<std::int32_t>(
            longBlockWindow(blockType, i) * foldedFactor(i, 18), kImdctWindowFractionBits);
    }
    return table;
}

constexpr Table<std::int32_t, 12> makeWindowShort() {
    Table<std::int32_t, 12> table{};
    for (int i = 0; i < 12; ++i) {
        table.values[i] = core::toFixedPoint<std::int32_t>(shortBlockWindow(i) * foldedFactor(i, 6),
                                                           kImdctWindowFractionBits);
    }
    return table;
}

template <int kSize>
constexpr Table<std::int32_t, kSize> makeSecants() {
    Table<std::int32_t, kSize> table{};
    for (int n = 0; n < kSize; ++n) {
        table.values[n] = core::toFixedPoint<std::int32_t>(
            1 / (2 * cosine(kPi / (4 * kSize) * (2 * n + 1))), kImdctSecantFractionBits);
    }
    return table;
}

// ---- analysis

// Samples from size / 2 on enter the DCT-IV with their sign changed.
template <int size, class Window>
constexpr MdctWindow<size> foldWindow(Window window) {
    const auto factor = [&](int i) {
        return core::toFixedPoint<std::int32_t>(i < size / 2 ? window(i) : -window(i),
                                                kMdctWindowFractionBits);
    };
    MdctWindow<size> folded{};
    for (int n = 0; n < size; ++n) {
        folded.first[n] = factor(mdctFirst(n, size));
        folded.second[n] = factor(mdctSecond(n, size));
    }
    return folded;
}

constexpr MdctWindow<18> foldLong(int blockType) {
    return foldWindow<18>([blockType](int i) { return longBlockWindow(blockType, i); });
}

template <int size>
constexpr Table<std::int32_t, size> makeLineSecants() {
    Table<std::int32_t, size> table{};
    for (int k = 0; k < size; ++k)
        table.values[k] = core::toFixedPoint<std::int32_t>(
            1 / (size * cosine(kPi / (4 * size) * (2 * k + 1))), kMdctSecantFractionBits);
    return table;
}

}  // namespace

constexpr Table<std::int32_t, 8> kAliasCs = makeAlias(false);
constexpr Table<std::int32_t, 8> kAliasCa = makeAlias(true);
constexpr Table<std::int32_t, 36> kImdctWindows[4] = {
    makeWindowLong(0), makeWindowLong(1), {}, makeWindowLong(3)};
constexpr Table<std::int32_t, 12> kImdctWindowShort = makeWindowShort();
constexpr Table<std::int32_t, 9> kImdctSecants9 = makeSecants<9>();
constexpr Table<std::int32_t, 3> kImdctSecants3 = makeSecants<3>();

constexpr MdctWindow<18> kMdctWindows[4] = {foldLong(0), foldLong(1), {}, foldLong(3)};
constexpr MdctWindow<6> kMdctWindowShort = foldWindow<6>(shortBlockWindow);
constexpr Table<std::int32_t, 18> kMdctSecants18 = makeLineSecants<18>();
constexpr Table<std::int32_t, 6> kMdctSecants6 = makeLineSecants<6>();

}  // namespace zetac::tables
