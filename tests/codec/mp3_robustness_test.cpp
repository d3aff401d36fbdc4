// Damaged MP3 streams: whatever the bytes are, the decoder stays within its data and its time.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>

#include "support/streams/mp3_clips.h"

namespace zetac::test {
namespace {

constexpr const char* kClips[] = {"stereo_ms_intensity_48k", "stereo_independent_blocks_crc_44k",
                                  "stereo_lsf_ms_intensity_16k", "mono_lsf_mixed_22k",
                                  "dual_vbr_all_rates_32k"};

/** Frames that end before the cut are untouched, and at most the one that is cut is concealed. */
TEST(Mp3Robustness, CutAnywhere) {
    for (const char* name : kClips) {
        SCOPED_TRACE(name);
        const Bytes bytes = mp3Clip(name);
        const Mp3Decoded whole = decodeMp3(bytes);
        for (size_t length = 4; length < bytes.size(); length += length < 2000 ? 1 : 61) {
            const Mp3Decoded cut =
                decodeMp3({bytes.begin(), bytes.begin() + static_cast<ptrdiff_t>(length)});
            ASSERT_LE(cut.damages(), 1u) << length;
            const size_t good = cut.faults.size() - cut.damages();
            const size_t values = good < cut.starts.size() ? cut.starts[good] : cut.pcm.size();
            ASSERT_TRUE(std::equal(cut.pcm.begin(),
                                   cut.pcm.begin() + static_cast<ptrdiff_t>(values),
                                   whole.pcm.begin()))
                << length;
            size_t complete = 0;
            while (complete + 1 < whole.positions.size() &&
                   whole.positions[complete + 1] <= length) {
                ++complete;
            }
            ASSERT_GE(good, complete) << length;
        }
    }
}

TEST(Mp3Robustness, FlippedBits) {
    Random random(1);
    for (const char* name : kClips) {
        SCOPED_TRACE(name);
        const Bytes bytes = mp3Clip(name);
        const Mp3Decoded whole = decodeMp3(bytes);
        for (int round = 0; round < 60; ++round) {
            const Bytes damaged = withFlippedBits(bytes, 1 << round % 8, random);
            const Mp3Decoded decoded = decodeMp3(damaged);
            EXPECT_LE(decoded.faults.size(), 2 * whole.faults.size());
            EXPECT_GE(4 * decoded.faults.size(), whole.faults.size());
        }
    }
}

/** Sane headers, everything else random. */
TEST(Mp3Robustness, RandomFrames) {
    Random random(2);
    size_t goodFrames = 0;
    for (int round = 0; round < 400; ++round) {
        const auto version = static_cast<Zet8u>(0xF3 | random.below(2) << 3);
        const auto rate = static_cast<Zet8u>((1 + random.below(14)) << 4 | random.below(3) << 2);
        Bytes stream;
        for (int frame = 0; frame < 6; ++frame) {
            Bytes bytes = {0xFF, version, rate, static_cast<Zet8u>(random.below(16) << 4)};
            const size_t length = mp3FrameBytes(bytes.data());
            while (bytes.size() < length) bytes.push_back(static_cast<Zet8u>(random.below(256)));
            // Small fields now and then, so that more than the first check is reached.
            if (random.below(2) != 0) putBits(bytes, kSideInfoBits, 20, 0);
            append(stream, bytes);
        }
        const Mp3Decoded decoded = decodeMp3(stream);
        ASSERT_EQ(decoded.faults.size(), 6u);
        goodFrames += decoded.count(codec::Fault::kNone);
    }
    EXPECT_GT(goodFrames, 0u);
}

}  // namespace
}  // namespace zetac::test
