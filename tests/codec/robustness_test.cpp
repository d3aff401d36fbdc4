// Damaged streams: whatever the bytes are, the decoder stays within its data and its time.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>

#include "support/streams/clips.h"

namespace zetac::test {
namespace {

constexpr const char* kClips[] = {"stereo_adif",
                                  "mono_sbr_core",
                                  "stereo_crc_ms_intensity_tns",
                                  "surround_71_pce",
                                  "mono_pulses_data_elements",
                                  "stereo_noise",
                                  "stereo_two_blocks_24k",
                                  "stereo_main_prediction",
                                  "stereo_ltp_tns"};

/** Blocks that come before the cut are untouched, and at most those of one frame are concealed. */
void expectCleanCut(const Bytes& bytes, const Decoded& whole, size_t length) {
    const Decoded cut = decodeAll({bytes.begin(), bytes.begin() + static_cast<ptrdiff_t>(length)});
    const size_t good = cut.faults.size() - cut.damages();
    ASSERT_LE(cut.pcm.size(), whole.pcm.size());
    ASSERT_LE(cut.damages(), 4u) << length;
    const size_t values = good * static_cast<size_t>(cut.channels) * ZETAC_AAC_FRAME_LEN;
    ASSERT_TRUE(std::equal(cut.pcm.begin(), cut.pcm.begin() + static_cast<ptrdiff_t>(values),
                           whole.pcm.begin()))
        << length;
    size_t complete = 0;
    while (complete + 1 < whole.positions.size() && whole.positions[complete + 1] <= length) {
        ++complete;
    }
    ASSERT_GE(good, complete) << length;
}

TEST(Robustness, CutAnywhere) {
    for (const std::string name : kClips) {
        SCOPED_TRACE(name);
        const Bytes bytes = clip(name);
        const Decoded whole = decodeAll(bytes);
        const size_t step = name == "mono_sbr_core" || name == "stereo_adif" ? 1 : 97;
        for (size_t length = 0; length < bytes.size(); length += step) {
            expectCleanCut(bytes, whole, length);
            if (HasFatalFailure()) return;
        }
    }
}

TEST(Robustness, FlippedBits) {
    Random random(1);
    for (const char* name : kClips) {
        SCOPED_TRACE(name);
        const Bytes bytes = clip(name);
        const Decoded whole = decodeAll(bytes);
        for (int round = 0; round < 60; ++round) {
            const Bytes damaged = withFlippedBits(bytes, 1 << round % 8, random);
            // A damaged count of blocks may add up to three blocks a frame.
            EXPECT_LE(decodeAll(damaged).faults.size(), 4 * whole.faults.size());
        }
    }
}

TEST(Robustness, RandomBlocks) {
    Random random(2);
    for (int round = 0; round < 300; ++round) {
        constexpr Zet8u kProfiles[] = {0x00, 0x40, 0xC0};  // Main, LC, LTP
        const auto profile = static_cast<Zet8u>(kProfiles[random.below(3)] | random.below(12) << 2 |
                                                random.below(2));
        const auto channels = static_cast<Zet8u>(random.below(4) << 6);
        const auto version = static_cast<Zet8u>(0xF1 | random.below(2) << 3);
        Bytes stream;
        for (int frame = 0; frame < 4; ++frame) {
            const uint32_t length = 8 + random.below(900);
            Bytes bytes = {0xFF,
                           version,
                           profile,
                           static_cast<Zet8u>(channels | length >> 11),
                           static_cast<Zet8u>(length >> 3),
                           static_cast<Zet8u>(length << 5 | 0x1F),
                           0xFC};
            while (bytes.size() < length) bytes.push_back(static_cast<Zet8u>(random.below(256)));
            append(stream, bytes);
        }
        EXPECT_GE(decodeAll(stream).faults.size(), 4u);
    }
}

}  // namespace
}  // namespace zetac::test
