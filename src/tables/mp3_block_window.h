// The windows of the MDCT of Layer III by their formulas (ISO/IEC 11172-3, 2.4.3.4.10.3), for
// tables.
#pragma once

#include "core/constexpr_math.h"

namespace zetac::tables {

// i = 0..35, block types 0, 1 and 3.
constexpr long double longBlockWindow(int blockType, int i) {
    const bool second = i >= 18;
    const int distance = second ? 35 - i : i;  // from the outer end
    if ((blockType == 1 && second) || (blockType == 3 && !second)) {
        if (distance < 6) return 0;
        return distance < 12 ? core::sine(core::kPi / 12 * (distance - 6 + 0.5L)) : 1;
    }
    return core::sine(core::kPi / 36 * (i + 0.5L));
}

// i = 0..11.
constexpr long double shortBlockWindow(int i) {
    return core::sine(core::kPi / 12 * (i + 0.5L));
}

}  // namespace zetac::tables
