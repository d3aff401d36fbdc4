// Every kernel at every level: the bits of level 0, and nothing written beyond its buffers.
// With ZETAC_TIME_KERNELS=1 the test also prints the nanoseconds of a call at each level.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "kernels/kernel_rows.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace zetac::test {

bool KernelMemory::intact() const {
    return std::ranges::all_of(buffers_, [](const Buffer& b) { return b.bytes->intact(); });
}

bool KernelMemory::operator==(const KernelMemory& other) const {
    return std::ranges::equal(buffers_, other.buffers_, [](const Buffer& a, const Buffer& b) {
        return !a.isResult || (a.bytes->size() == b.bytes->size() &&
                               std::memcmp(a.bytes->data(), b.bytes->data(), a.bytes->size()) == 0);
    });
}

std::vector<KernelRow>& kernelRows() {
    static std::vector<KernelRow> rows;
    return rows;
}

namespace {

size_t highestLevel() {
    return static_cast<size_t>(core::currentLevel());
}

// The least of several means, in nanoseconds.
double timeOf(const KernelRow& row, size_t level) {
    using Clock = std::chrono::steady_clock;
    KernelMemory memory(0);
    const auto call = row.prepare(memory, row.variants / 2);
    double best = 1e30;
    for (int round = 0; round < 7; ++round) {
        const auto start = Clock::now();
        std::chrono::nanoseconds elapsed{};
        int calls = 0;
        for (; elapsed < std::chrono::milliseconds(5); elapsed = Clock::now() - start, calls += 16)
            for (int i = 0; i < 16; ++i) call(level);
        best = std::min(best, static_cast<double>(elapsed.count()) / calls);
    }
    return best;
}

class KernelLevels : public testing::TestWithParam<KernelRow> {};

TEST_P(KernelLevels, giveTheSameBits) {
    const KernelRow& row = GetParam();
    for (int variant = 0; variant < row.variants; ++variant) {
        KernelMemory expected(variant);
        row.prepare(expected, variant)(0);
        EXPECT_TRUE(expected.intact()) << variant;
        for (size_t level = 1; level <= highestLevel(); ++level) {
            KernelMemory result(variant);
            row.prepare(result, variant)(level);
            EXPECT_TRUE(result.intact()) << "level " << level << ", variant " << variant;
            ASSERT_TRUE(result == expected) << "level " << level << ", variant " << variant;
        }
    }
    if (!std::getenv("ZETAC_TIME_KERNELS")) return;
    std::printf("%-28s", row.name.c_str());
    for (size_t level = 0; level <= highestLevel(); ++level)
        std::printf("%10.0f", timeOf(row, level));
    std::printf(" ns\n");
}

INSTANTIATE_TEST_SUITE_P(Rows, KernelLevels, testing::ValuesIn(kernelRows()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace zetac::test
