// The window of the synthesis, and the rounding and the limits that its output stage promises.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include "mp3/banks/polyphase_synthesis_kernels.h"
#include "tables/mp3/polyphase.h"

namespace zetac::mp3 {
namespace {

// FNV-1a over the listed half, computed from a separate transcription of table B.3.
TEST(Mp3SynthesisKernels, haveTheWindowOfTheStandard) {
    uint64_t sum = 0xcbf29ce484222325U;
    for (const int32_t d : tables::kSynthesisWindow)
        sum = (sum ^ static_cast<uint32_t>(d)) * 0x100000001b3U;
    EXPECT_EQ(sum, 0xc46437816a2dfa58U);
}

// Output 16 where the sum of products, in units of 1/128, is the given one. Nothing but T[0] of age
// 7 contributes, and it meets -D[240]; a step of it is a quarter of a unit, so that any sum is met.
int outputOf(int sum) {
    const int64_t coefficient = -int64_t{tables::synthesisWindow(240)} * (1 << 14);
    const auto value = static_cast<Zet32s>((2 * int64_t{sum} + 1) * 0x80000000 / coefficient);
    EXPECT_EQ(coefficient * value >> 32, sum);
    std::vector<Zet32s> v(ZETAC_MP3_V_BUFFER_LEN);
    v[static_cast<size_t>(vSlot(7) + kVFirst)] = value;
    Zet16s pcm[32];
    core::select(kPolyphaseSynthesis).windowSlots(v.data(), 0, pcm, 1);
    return pcm[16];
}

TEST(Mp3SynthesisKernels, roundAndLimitTheOutput) {
    constexpr int kSums[] = {
        0,           63,           64,           -64,          -65,          32767 * 128 + 63,
        32768 * 128, 100000 * 128, -32767 * 128, -32768 * 128, -100000 * 128};
    constexpr int kOutputs[] = {0, 0, 1, 0, -1, 32767, 32767, 32767, -32767, -32768, -32768};
    for (size_t i = 0; i < std::size(kSums); ++i) EXPECT_EQ(outputOf(kSums[i]), kOutputs[i]) << i;
}

}  // namespace
}  // namespace zetac::mp3
