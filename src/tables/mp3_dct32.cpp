#include "tables/mp3_dct32.h"

#include "core/constexpr_math.h"

namespace zetac::tables {
namespace {

constexpr Table<std::int32_t, 128> makeCosines() {
    Table<std::int32_t, 128> table{};
    for (int j = 0; j < 128; ++j) {
        table.values[j] =
            core::toFixedPoint<std::int32_t>(core::cosine(core::kPi * j / 64), kDct32FractionBits);
    }
    return table;
}

constexpr Dct32Rows makeRows(const Table<std::int32_t, 128>& cosines) {
    Dct32Rows rows{};
    for (int column = 0; column < 16; ++column) {
        const auto output = [column](int r) { return column < 8 ? r : 32 - r; };
        const auto factor = [&](int m, int k) { return cosines.values[m * (2 * k + 1) % 128]; };
        for (int k = 0; k < 16; ++k) {
            rows.odd[k][column] = factor(output(2 * (column % 8) + 1), k);
        }
        for (int k = 0; k < 8; ++k) {
            rows.even[k][column] = factor(output(2 * (column % 8) + 2), k);
        }
    }
    return rows;
}

}  // namespace

constexpr Table<std::int32_t, 128> kDct32Cosines = makeCosines();
constexpr Dct32Rows kDct32Rows = makeRows(kDct32Cosines);

}  // namespace zetac::tables
