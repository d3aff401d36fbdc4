// The power law of inverse quantisation (ISO/IEC 14496-3, 4.6.1.3 and 4.6.2.3.3):
// |q|^(4/3) * 2^(s/4) in Q3, s = scalefactor - 100.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <algorithm>

#include "core/fixed_point.h"
#include "tables/aac/dequant.h"

namespace zetac::aac {

// The largest magnitude, and the largest ones of pow43Row, the bulk of any spectrum, and of
// pow43Medium.
inline constexpr uint32_t kMaxQuantised = 8191;
inline constexpr uint32_t kMaxSmallQuantised = 15;
inline constexpr uint32_t kMaxMediumQuantised = 128;

// 2^(s/4) = 2^exponent * 2^(-quarters/4) with quarters 0..3.
struct Pow43Scale {
    int exponent;
    int quarters;

    explicit Pow43Scale(int scaleFactor) {
        const int64_t s = int64_t{scaleFactor} - 100;
        exponent = static_cast<int>((s + 3) >> 2);
        quarters = static_cast<int>(4 * int64_t{exponent} - s);
    }

    // Right shifts from the formats of tables::kSmallPow43 to Q3. They stop at 0: small magnitudes
    // grow no further with very large scalefactors. 31 leaves nothing of any magnitude.
    int shiftBelow4() const { return std::clamp(25 - exponent, 0, 31); }
    int shiftFrom4() const { return std::clamp(22 - exponent, 0, 31); }
};

// The results for magnitudes 0..15.
inline void pow43Row(const Pow43Scale& scale, Zet32s* row) {
    const int32_t* table = tables::kSmallPow43[scale.quarters];
    const int below4 = scale.shiftBelow4();
    const int from4 = scale.shiftFrom4();
    for (int q = 0; q < 4; ++q) row[q] = table[q] >> below4;
    for (int q = 4; q < 16; ++q) row[q] = table[q] >> from4;
}

// The result for a magnitude of 16..128. What leaves 32 bits wraps, until there is no bit left to
// keep: then the result is the largest number.
inline Zet32s pow43Medium(uint32_t magnitude, const Pow43Scale& scale) {
    const Zet32s value =
        core::mulHigh(tables::kQuarterPower[scale.quarters], tables::kPow43[magnitude - 16]);
    const int shift = (magnitude < 64 ? 19 : 17) - scale.exponent;
    if (shift > 0) return value >> std::min(shift, 31);
    return shift > -32 ? core::shiftLeftWrap(value, -shift) : core::kMax32s;
}

// The same for 129..8191, in wider arithmetic: at most one unit away from the exact value.
Zet32s pow43Large(uint32_t magnitude, const Pow43Scale& scale);

}  // namespace zetac::aac
