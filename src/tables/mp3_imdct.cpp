#include "tables/mp3_imdct.h"

#include "core/constexpr_math.h"
#include "tables/mp3_block_window.h"

namespace zetac::tables {
namespace {

using core::cosine;
using core::kPi;

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

}  // namespace

constexpr Table<std::int32_t, 8> kAliasCs = makeAlias(false);
constexpr Table<std::int32_t, 8> kAliasCa = makeAlias(true);
constexpr Table<std::int32_t, 36> kImdctWindows[4] = {
    makeWindowLong(0), makeWindowLong(1), {}, makeWindowLong(3)};
constexpr Table<std::int32_t, 12> kImdctWindowShort = makeWindowShort();
constexpr Table<std::int32_t, 9> kImdctSecants9 = makeSecants<9>();
constexpr Table<std::int32_t, 3> kImdctSecants3 = makeSecants<3>();

}  // namespace zetac::tables
