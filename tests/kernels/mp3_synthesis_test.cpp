// The rounding and the limits that the synthesis' output stage promises, at every level.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include "mp3/banks/polyphase_synthesis_kernels.h"
#include "tables/mp3/polyphase.h"

namespace zetac::mp3 {
namespace {

// Output 16 where the sum of products, in units of 1/128, is the given one. Nothing but T[0] of age
// 7 contributes, and it meets -D[240]; a step of it is a quarter of a unit, so that any sum is met.
int outputOf(size_t level, int sum) {
    const int64_t coefficient = -int64_t{tables::synthesisWindow(240)} * (1 << 14);
    const auto value = static_cast<Zet32s>((2 * int64_t{sum} + 1) * 0x80000000 / coefficient);
    EXPECT_EQ(coefficient * value >> 32, sum);
    std::vector<Zet32s> v(ZETAC_MP3_V_BUFFER_LEN);
    v[static_cast<size_t>(vSlot(7) + kVFirst)] = value;
    Zet16s pcm[32];
    kPolyphaseSynthesis[level].windowSlots(v.data(), 0, pcm, 1);
    return pcm[16];
}

TEST(Mp3SynthesisKernels, roundAndLimitTheOutput) {
    constexpr std::pair<int, int> kCases[] = {{0, 0},
                                              {63, 0},
                                              {64, 1},
                                              {-64, 0},
                                              {-65, -1},
                                              {32767 * 128 + 63, 32767},
                                              {32768 * 128, 32767},
                                              {100000 * 128, 32767},
                                              {-32767 * 128, -32767},
                                              {-32768 * 128, -32768},
                                              {-100000 * 128, -32768}};
    for (size_t level = 0; level <= static_cast<size_t>(core::currentLevel()); ++level) {
        for (const auto& [sum, output] : kCases) EXPECT_EQ(outputOf(level, sum), output) << sum;
    }
}

}  // namespace
}  // namespace zetac::mp3
