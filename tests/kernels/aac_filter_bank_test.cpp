// The arithmetic that the filter bank's interface promises, on level 0; kernel_rows_test.cpp
// compares the other levels with it.
#include <gtest/gtest.h>

#include <algorithm>

#include "aac/filter_bank_kernels.h"
#include "kernels/kernel_rows.h"
#include "tables/aac/windows.h"

namespace zetac::aac {
namespace {

// Term by term at 64 bits, over values of full range.
TEST(AacFilterBankKernels, overlapAddFollowsTheFormula) {
    const Zet32s* rising = tables::pWinSINLong;
    const Zet32s* falling = tables::pWinKBDLong;
    test::KernelMemory memory(7);
    Zet32s* y = memory.integers(1024, 32);
    Zet32s* overlap = memory.integers(1024, 32);
    for (int n = 0; n < 1024; ++n) y[n] = std::max(y[n], -2147483647);  // what a transform can give
    const std::vector<Zet32s> before(y, y + 1024), kept(overlap, overlap + 1024);
    kFilterBankKernels[0].overlapAddLong(y, overlap, rising, falling);
    for (size_t n = 0; n < 1024; ++n) {
        const int64_t first = n < 512 ? before[n] : -int64_t{before[1023 - n]};
        const int64_t second = n < 512 ? before[512 + n] : before[1535 - n];
        ASSERT_EQ(((first * rising[n] >> 31) + kept[n] + 4) >> 3, y[n]) << n;
        ASSERT_EQ(second * falling[1023 - n] >> 31, overlap[n]) << n;
    }
}

}  // namespace
}  // namespace zetac::aac
