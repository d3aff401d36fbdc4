// HE-AAC that is damaged.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>

#include "support/streams/sbr_stream.h"

namespace zetac::test {
namespace {

using codec::Fault;
using codec::SbrFault;
using codec::SbrOutput;

constexpr codec::DecoderOptions kPlayed = {codec::ChannelOrder::kStream, true, SbrOutput::kDouble};

Bytes heClip(const std::string& name) {
    return readFile(std::string(ZETAC_TEST_DATA) + "/he_aac/" + name + ".aac");
}

SbrStyle style(bool hasCrc) {
    SbrStyle s;
    s.header.bs_start_freq = 5;
    s.header.bs_stop_freq = 6;
    s.header.bs_smoothing_mode = 0;
    s.hasCrc = hasCrc;
    return s;
}

/** A stream of a core with long-term prediction. */
template <class Change>
Bytes heStream(bool hasCrc, Change change) {
    SbrWriter writer(style(hasCrc), 3);
    Bytes stream;
    int frame = 0;
    for (const Bytes& core : framesOf(clip("mono_ltp"))) {
        Bytes payload = writer.next();
        change(frame++, payload);
        append(stream, payload.empty() ? core : withPayload(core, payload));
    }
    return stream;
}

// Damage and loss sound alike, and nothing before or after the frames up to the next header, which
// are 3 to 7, differs between them.
TEST(HeRobustness, DamagedDataAreLikeMissingOnes) {
    const auto missing = [](int frame, Bytes& payload) {
        if (frame >= 3 && frame < 8) payload.clear();
    };
    const Decoded expected = decodeAll(heStream(false, missing), kPlayed);
    EXPECT_EQ(std::ranges::count(expected.sbrFaults, Fault::kNone),
              static_cast<ptrdiff_t>(expected.sbrFaults.size()));
    const auto cut = [](int frame, Bytes& payload) {
        if (frame == 3) payload.resize(payload.size() / 2);
    };
    const auto flipped = [](int frame, Bytes& payload) {
        if (frame == 3) payload[5] ^= 0x10;
    };
    const Decoded decoded[] = {decodeAll(heStream(false, cut), kPlayed),
                               decodeAll(heStream(true, flipped), kPlayed)};
    for (const Decoded& damaged : decoded) {
        EXPECT_EQ(damaged.damages(), 0u);
        EXPECT_EQ(damaged.pcm, expected.pcm);
        for (size_t frame = 0; frame < damaged.sbrFaults.size(); ++frame) {
            EXPECT_EQ(failed(damaged.sbrFaults[frame]), frame == 3) << frame;
        }
    }
    EXPECT_EQ(decoded[0].sbrFaults[3], SbrFault::kTruncated);
    EXPECT_EQ(decoded[1].sbrFaults[3], SbrFault::kCrc);
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
    for (const char* name : {"mono_speech", "stereo_music", "stereo_all_tools_24k"}) {
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

// Payloads without an error check, any bits of which are wrong: nothing but the sound may change.
TEST(HeRobustness, RandomPayloads) {
    Random random(2);
    for (int round = 0; round < 200; ++round) {
        const Bytes stream = heStream(false, [&](int, Bytes& payload) {
            for (int i = 0; i < round % 8; ++i) {
                payload[random.below(static_cast<uint32_t>(payload.size()))] =
                    static_cast<Zet8u>(random.below(256));
            }
            payload[0] = static_cast<Zet8u>((payload[0] & 15) | 0xD0);
        });
        const Decoded decoded = decodeAll(stream, kPlayed);
        EXPECT_EQ(decoded.damages(), 0u);
        EXPECT_EQ(decoded.sampleRate, 44100);
    }
}

}  // namespace
}  // namespace zetac::test
