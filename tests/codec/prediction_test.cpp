// Prediction from frame to frame: its accuracy, and what becomes of it after damage.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>

#include "support/streams/clips.h"
#include "support/streams/reference.h"

namespace zetac::test {
namespace {

// The history of long-term prediction has eight fractional bits, so that its output is rounded only
// once. With three bits the RMS would be 0.3 and more; measured: 0.1212 and 0.1346.
TEST(Prediction, LongTermHistoryIsFine) {
    for (const std::string name : {"mono_ltp", "stereo_ltp_tns"}) {
        const Pcm expected = readReference(ZETAC_TEST_DATA "/aac/" + name + ".pcm.gz");
        EXPECT_LT(compare(decodeAll(clip(name)).pcm, expected).rms, 0.15) << name;
    }
}

// Frame 3 of this clip has short windows, which reset the predictors, so that damage before it is
// forgotten behind it.
TEST(Prediction, ShortWindowsEndTheEffectOfDamage) {
    constexpr ptrdiff_t kShortFrame = 3, kFrameValues = 2 * ZETAC_AAC_FRAME_LEN;
    const Bytes whole = clip("stereo_main_prediction");
    const Pcm expected = decodeAll(whole).pcm;
    std::vector<Bytes> frames = framesOf(whole);
    std::fill(frames[1].begin() + 7, frames[1].end(), Zet8u{0xE0});  // an end at once
    const Decoded damaged = decodeAll(joined(frames));
    EXPECT_EQ(damaged.damages(), 1u);
    ASSERT_EQ(damaged.pcm.size(), expected.size());
    const auto last = std::mismatch(expected.rbegin(), expected.rend(), damaged.pcm.rbegin());
    EXPECT_LE(expected.rend() - last.first, (kShortFrame + 1) * kFrameValues);
    EXPECT_GT(expected.rend() - last.first, kShortFrame * kFrameValues);
}

}  // namespace
}  // namespace zetac::test
