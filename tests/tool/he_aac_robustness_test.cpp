// HE-AAC that is damaged, and HE-AAC at the command line.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>

#include "support/streams/sbr_stream.h"
#include "tool/command.h"

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

#ifdef ZETAC_TOOL

TEST_F(Command, PlaysHeAac) {
    const Bytes aac = heClip("stereo_music");
    put("a.aac", aac);
    const ShellRun run = shell(
        "$zetac decode a.aac -o twice.wav && $zetac decode --float a.aac -o float.wav && "
        "$zetac decode --downsampled a.aac -o once.wav && $zetac decode --no-sbr a.aac -o "
        "core.wav");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.text,
              "zetac: a.aac: HE-AAC: the LC core was decoded and the SBR data left out\n");
    const auto sound = [&](SbrOutput output, bool isFloat) {
        return decodeAll(aac, {codec::ChannelOrder::kWav, true, output, isFloat}).pcm;
    };
    EXPECT_EQ(pcmOf(get("twice.wav")), sound(SbrOutput::kDouble, false));
    EXPECT_EQ(pcmOf(get("float.wav")), sound(SbrOutput::kDouble, true));
    EXPECT_EQ(pcmOf(get("once.wav")), sound(SbrOutput::kCore, false));
    EXPECT_EQ(pcmOf(get("core.wav")), sound(SbrOutput::kNone, false));
    EXPECT_EQ(field32(get("twice.wav"), 24), 44100u);
    EXPECT_EQ(field32(get("once.wav"), 24), 22050u);
    EXPECT_EQ(shell("$zetac decode --no-sbr --downsampled a.aac").status, 2);
}

TEST_F(Command, ShowsHeAac) {
    put("a.aac", heClip("stereo_music"));
    const std::string text = shell("$zetac info a.aac").text;
    for (const char* part : {"AAC LC with SBR (HE-AAC)\n", "44100 Hz, the core 22050 Hz\n",
                             "12 frames of 2048 samples\n", "SBR\n"}) {
        EXPECT_NE(text.find(part), std::string::npos) << text;
    }
    const std::string json = shell("$zetac info --json a.aac").text;
    EXPECT_NE(json.find("\"sample_rate\": 44100, \"core_sample_rate\": 22050"), std::string::npos);
}

TEST_F(Command, ReportsDamagedSbrData) {
    const Bytes stream = heStream(false, [](int frame, Bytes& payload) {
        if (frame == 3) payload.resize(payload.size() / 2);
    });
    put("a.aac", stream);
    const std::vector<Bytes> frames = framesOf(stream);
    const size_t place = frames[0].size() + frames[1].size() + frames[2].size() + 7;
    const std::string text = "at byte " + std::to_string(place) + ": the SBR data end too early";
    const ShellRun run = shell("$zetac decode a.aac");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.text, "zetac: a.aac: " + text + "; resampled only until the next header\n");
    EXPECT_EQ(pcmOf(get("a.wav")).size(), frames.size() * codec::kSbrFrameLength);
    const ShellRun info = shell("$zetac info a.aac");
    EXPECT_EQ(info.status, 1);
    EXPECT_NE(info.text.find(text), std::string::npos) << info.text;
    EXPECT_EQ(shell("$zetac decode --strict -f a.aac").status, 2);
}

#endif  // ZETAC_TOOL

}  // namespace
}  // namespace zetac::test
