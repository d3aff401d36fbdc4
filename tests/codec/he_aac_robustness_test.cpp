// HE-AAC that is damaged.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>

#include "sbr/fault.h"
#include "support/streams/clips.h"

namespace zetac::test {
namespace {

using codec::Fault;
using codec::SbrFault;
using codec::SbrOutput;

constexpr codec::DecoderOptions kPlayed = {codec::ChannelOrder::kStream, true, SbrOutput::kDouble};

Bytes heClip(const std::string& name) {
    return readFile(std::string(ZETAC_TEST_DATA) + "/he_aac/" + name + ".aac");
}

void flip(Bytes& frame, size_t bit) {
    frame[bit / 8] ^= static_cast<Zet8u>(0x80 >> bit % 8);
}

/** Flips bits near the ends of frames, where the SBR data stand. */
Bytes withDamagedSbr(const std::string& name, int flips, Random& random) {
    constexpr uint32_t kBytes = 14;  // that the data have at least, and the end element's bits
    auto frames = framesOf(heClip(name));
    for (int i = 0; i < flips; ++i) {
        Bytes& frame = frames[random.below(static_cast<uint32_t>(frames.size()))];
        if (frame.size() > 100) flip(frame, frame.size() * 8 - 16 - random.below(8 * kBytes));
    }
    return joined(frames, 0);
}

// Damage and loss sound alike, and nothing before or after the frames up to the next header, which
// are 3 to 7, differs between them.
TEST(HeRobustness, DamagedDataAreLikeMissingOnes) {
    const auto frames = framesOf(heClip("mono_ltp_crc"));
    const auto core = framesOf(clip("mono_ltp"));
    const Decoded expected =
        decodeAll(joined(frames, 0, 3) + joined(core, 3, 8) + joined(frames, 8), kPlayed);
    EXPECT_EQ(std::ranges::count(expected.sbrFaults, Fault::kNone),
              static_cast<ptrdiff_t>(expected.sbrFaults.size()));
    auto damaged = frames;
    flip(damaged[3], damaged[3].size() * 8 - 100);
    const Decoded decoded = decodeAll(joined(damaged, 0), kPlayed);
    EXPECT_EQ(decoded.damages(), 0u);
    EXPECT_EQ(decoded.pcm, expected.pcm);
    for (size_t frame = 0; frame < frames.size(); ++frame) {
        EXPECT_EQ(decoded.sbrFaults[frame], frame == 3 ? SbrFault::kCrc : Fault::kNone) << frame;
    }
}

TEST(HeRobustness, TheCrcNoticesEveryBit) {
    const Bytes good = framesOf(heClip("mono_ltp_crc"))[0];
    for (size_t bit = good.size() * 8 - 8 * 30; bit < good.size() * 8 - 16; ++bit) {
        Bytes bad = good;
        flip(bad, bit);
        EXPECT_EQ(decodeAll(bad, kPlayed).sbrFaults[0], SbrFault::kCrc) << bit;
    }
}

TEST(HeRobustness, CutAtManyBytes) {
    for (const char* name : {"mono_speech", "stereo_all_tools_24k"}) {
        const Bytes bytes = heClip(name);
        const Decoded whole = decodeAll(bytes, kPlayed);
        for (size_t length = 0; length < bytes.size(); length += 11) {
            const Decoded cut =
                decodeAll({bytes.begin(), bytes.begin() + static_cast<ptrdiff_t>(length)}, kPlayed);
            const size_t good = (cut.faults.size() - cut.damages()) * codec::kSbrFrameLength *
                                static_cast<size_t>(cut.channels);
            ASSERT_LE(good, whole.pcm.size());
            ASSERT_TRUE(std::equal(cut.pcm.begin(), cut.pcm.begin() + static_cast<ptrdiff_t>(good),
                                   whole.pcm.begin()))
                << name << " " << length;
        }
    }
}

TEST(HeRobustness, FlippedBits) {
    Random random(1);
    for (const char* name : {"mono_speech", "stereo_all_tools_24k", "stereo_ps_phases_speech"}) {
        const Bytes bytes = heClip(name);
        const size_t frames = decodeAll(bytes, kPlayed).faults.size();
        for (int round = 0; round < 200; ++round) {
            Bytes damaged = bytes;
            for (int flip = 0; flip < 1 << round % 6; ++flip) {
                const uint32_t bit = random.below(static_cast<uint32_t>(bytes.size() * 8));
                damaged[bit / 8] ^= static_cast<Zet8u>(1u << bit % 8);
            }
            codec::DecoderOptions options = kPlayed;
            options.isFloat = round % 2 != 0;
            if (round % 3 == 0) options.sbr = SbrOutput::kCore;
            EXPECT_LE(decodeAll(damaged, options).faults.size(), 4 * frames);
        }
    }
}

// Without an error check any bits of the data may be wrong: nothing but the sound changes, and each
// kind of damage is told of some time.
TEST(HeRobustness, DamagedSbrData) {
    Random random(2);
    std::vector<Fault> seen;
    for (const char* name : {"stereo_all_tools_24k", "stereo_ps_mode_switches"}) {
        const Decoded whole = decodeAll(heClip(name), kPlayed);
        for (int round = 0; round < 150; ++round) {
            const Decoded decoded = decodeAll(withDamagedSbr(name, 1 + round % 8, random), kPlayed);
            EXPECT_EQ(decoded.damages(), 0u);
            EXPECT_EQ(decoded.pcm.size(), whole.pcm.size());
            seen.insert(seen.end(), decoded.sbrFaults.begin(), decoded.sbrFaults.end());
        }
    }
    for (const Fault& fault :
         {SbrFault::kTruncated, SbrFault::kValue, SbrFault::kParametricStereo}) {
        EXPECT_GT(std::ranges::count(seen, fault), 0) << fault.text;
    }
}

}  // namespace
}  // namespace zetac::test
