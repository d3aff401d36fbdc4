// The roots of unity that all factors of the transforms are made of.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include "support/reference_fft.h"
#include "tables/transform/unit_circle.h"

namespace zetac::tables {
namespace {

TEST(UnitCircle, isExactToFiftyBits) {
    for (const int order : {0, 1, 2, 3, 5, 10, 17, 29, 31}) {
        const uint64_t count = uint64_t{1} << order;
        for (uint64_t i = 0; i < 2000; ++i) {
            const uint64_t index = i < 1000 ? i : i * 0x9e3779b97f4a7c15;
            const Root root = unitRoot(index, order);
            const auto turns = static_cast<long double>(index % count) / count;
            const test::Complex exact = test::unitAngle(-turns);
            ASSERT_LT(std::abs(test::Complex(root.re, root.im) - exact), 0x1p-50L) << order;
        }
        if (order < 2) continue;
        const Root quarter = unitRoot(count / 4, order);
        EXPECT_EQ(0, quarter.re);
        EXPECT_EQ(-1, quarter.im);
    }
}

}  // namespace
}  // namespace zetac::tables
