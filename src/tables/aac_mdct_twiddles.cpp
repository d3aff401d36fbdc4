#include "tables/aac_mdct_twiddles.h"

#include "core/constexpr_math.h"

namespace zetac::tables {
namespace {

// Q31, with 1 as the largest value that the format holds.
constexpr int32_t toQ31(long double x) {
    const int64_t scaled = core::roundToInteger(x * 2147483648.0L);
    return static_cast<int32_t>(scaled > INT32_MAX ? INT32_MAX : scaled);
}

template <int kLength>
constexpr void setRotation(Rotations<kLength>& table, int index, long double angle) {
    table.cosine[index] = toQ31(core::cosine(angle));
    table.sine[index] = toQ31(core::sine(angle));
}

template <int kLength>
constexpr Rotations<kLength> makeDctRotations() {
    Rotations<kLength> table{};
    for (int n = 0; n < kLength; ++n) {
        setRotation(table, n, core::kPi * (8 * n + 1) / (16 * kLength));
    }
    return table;
}

// kRepeat neighbouring columns share a rotation.
template <int kColumns, int kRepeat>
constexpr Rotations<7 * kColumns> makeFftRotations() {
    Rotations<7 * kColumns> table{};
    const int points = 8 * kColumns / kRepeat;
    for (int k = 1; k < 8; ++k) {
        for (int n = 0; n < kColumns; ++n) {
            const int position = n / kRepeat;
            setRotation(table, (k - 1) * kColumns + n, 2 * core::kPi * k * position / points);
        }
    }
    return table;
}

}  // namespace

constexpr Rotations<512> kDctRotations1024 = makeDctRotations<512>();
constexpr Rotations<64> kDctRotations128 = makeDctRotations<64>();
constexpr Rotations<7 * 64> kFftRotations512 = makeFftRotations<64, 1>();
constexpr Rotations<7 * 8> kFftRotations64 = makeFftRotations<8, 1>();
constexpr Rotations<7 * 64> kFftRotations512Second = makeFftRotations<64, 8>();

}  // namespace zetac::tables
