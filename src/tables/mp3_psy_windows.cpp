#include "tables/mp3_psy_windows.h"

#include <numeric>

#include "core/constexpr_math.h"

namespace zetac::tables {
namespace {

template <int kSize>
constexpr Table<std::int16_t, kSize> makeHann() {
    Table<std::int16_t, kSize> table{};
    for (int i = 0; i < kSize; ++i) {
        const long double w = (1 - core::cosine(2 * core::kPi * (i + 0.5L) / kSize)) / 2;
        const int q15 = core::toFixedPoint<int>(w, 15);
        table.values[i] = static_cast<std::int16_t>(q15 > INT16_MAX ? INT16_MAX : q15);
    }
    return table;
}

template <int kLength>
constexpr Rotations<kLength> makeRealRotations() {
    Rotations<kLength> table{};
    for (int k = 0; k < kLength; ++k) setRotation(table, k, core::kPi * (k + 1) / (2 * kLength));
    return table;
}

}  // namespace

constexpr Table<std::int16_t, 1024> pHannWinLong_MP3 = makeHann<1024>();
constexpr Table<std::int16_t, 256> pHannWinShort_MP3 = makeHann<256>();

// What the bounds of the model start from.
static_assert(std::accumulate(pHannWinLong_MP3.begin(), pHannWinLong_MP3.end(), 0) <= 1 << 24);
static_assert(std::accumulate(pHannWinShort_MP3.begin(), pHannWinShort_MP3.end(), 0) <= 1 << 22);

constexpr Rotations<256> kRealRotations1024 = makeRealRotations<256>();
constexpr Rotations<64> kRealRotations256 = makeRealRotations<64>();

}  // namespace zetac::tables
