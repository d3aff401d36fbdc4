// Windows and factors of the forward MDCT of Layer III (ISO/IEC 11172-3, C.1.5.3.3).
#pragma once

#include <cstdint>

#include "tables/table.h"

namespace zetac::tables {

// A transform of 2 * size samples x is the DCT-IV of size values v[n] = window.first[n] *
// x[3 size / 2 - 1 - n] + window.second[n] * x[mdctSecond(n, size)]. Q30, signs included.
inline constexpr int kMdctWindowFractionBits = 30;
template <int size>
struct MdctWindow {
    std::int32_t first[size];
    std::int32_t second[size];
};
extern const MdctWindow<18> kMdctWindows[4];  // by block_type; [2] is not in use
extern const MdctWindow<6> kMdctWindowShort;

constexpr int mdctFirst(int n, int size) {
    return 3 * size / 2 - 1 - n;
}
constexpr int mdctSecond(int n, int size) {
    return n < size / 2 ? 3 * size / 2 + n : n - size / 2;
}

// 1 / (size * cos(pi / (4 size) * (2 k + 1))): what makes a line of the folded DCT-IV, on the scale
// that the inverse transform takes. Q29.
inline constexpr int kMdctSecantFractionBits = 29;
extern const Table<std::int32_t, 18> kMdctSecants18;
extern const Table<std::int32_t, 6> kMdctSecants6;

}  // namespace zetac::tables
