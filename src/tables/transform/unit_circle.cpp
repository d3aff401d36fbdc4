// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "tables/transform/unit_circle.h"

#include <array>

#include "core/constexpr_math.h"

namespace zetac::tables {
namespace {

// A full turn is 2^31 steps: 3 bits of octant, then four digits of 7 bits.
constexpr int kDigitBits = 7;
constexpr int kDigits = 4;
constexpr int kDigitMask = (1 << kDigitBits) - 1;
constexpr int kOctantBits = kDigits * kDigitBits;
static_assert(kOctantBits + 3 == kMaxRootOrder);

using DigitRoots = std::array<Root, 1 << kDigitBits>;

constexpr std::array<DigitRoots, kDigits> makeRoots() {
    std::array<DigitRoots, kDigits> roots{};
    for (int digit = 0; digit < kDigits; ++digit) {
        long double step = core::kPi / 4;  // digit 0 is the most significant one
        for (int i = 0; i <= digit; ++i) step /= 1 << kDigitBits;
        for (int i = 0; i <= kDigitMask; ++i) {
            roots[digit][i] = {static_cast<double>(core::cosine(step * i)),
                               static_cast<double>(-core::sine(step * i))};
        }
    }
    return roots;
}

constexpr std::array<DigitRoots, kDigits> kRoots = makeRoots();

// The root at steps from 0 to one octant.
Root octantRoot(uint64_t steps) {
    constexpr Root kEighth = {0.70710678118654752440, -0.70710678118654752440};
    if (steps >> kOctantBits) return kEighth;
    Root result = kRoots[0][steps >> (kOctantBits - kDigitBits)];
    for (int digit = 1; digit < kDigits; ++digit) {
        const auto value = (steps >> (kOctantBits - (digit + 1) * kDigitBits)) & kDigitMask;
        if (value == 0) continue;
        const Root factor = kRoots[digit][value];
        result = {result.re * factor.re - result.im * factor.im,
                  result.re * factor.im + result.im * factor.re};
    }
    return result;
}

}  // namespace

Root unitRoot(uint64_t index, int order) {
    const uint64_t steps =
        (index << (kMaxRootOrder - order)) & ((uint64_t{1} << kMaxRootOrder) - 1);
    const auto octant = static_cast<unsigned>(steps >> kOctantBits);
    const uint64_t rest = steps & ((uint64_t{1} << kOctantBits) - 1);
    // Odd octants are mirrored, so that the root is one of the first octant.
    Root root = octantRoot(octant % 2 == 0 ? rest : (uint64_t{1} << kOctantBits) - rest);
    if (octant % 2 != 0) root = {-root.im, -root.re};  // -pi/2 minus the angle
    switch (octant / 2) {
        case 1:
            return {root.im, -root.re};
        case 2:
            return {-root.re, -root.im};
        case 3:
            return {-root.im, root.re};
        default:
            return root;
    }
}

}  // namespace zetac::tables
