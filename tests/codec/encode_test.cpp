// The MP3 encoder: whatever it is given, its stream decodes without complaint to as many samples,
// at the same place, and every header says what was asked for.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <numeric>

#include "support/streams/encode_material.h"
#include "support/streams/mp3_clips.h"

namespace zetac::test {
namespace {

constexpr int kRates[] = {44100, 48000, 32000};
constexpr int kBitRates[] = {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320};

std::string describe(const EncoderSettings& s, Material material) {
    return std::to_string(s.sampleRate) + " Hz, " + std::to_string(s.channels) + " channels, " +
           (s.quality >= 0 ? "quality " + std::to_string(s.quality)
                           : std::to_string(s.bitRate) + " kbit/s") +
           (s.isJoint ? ", joint" : "") + (s.hasCrc ? ", CRC" : "") + ", material " +
           std::to_string(static_cast<int>(material));
}

/** The frames behind the first one, which has no sound. */
void expectHeaders(const Bytes& mp3, const EncoderSettings& settings) {
    const std::vector<Bytes> frames = mp3FramesOf(mp3);
    size_t bytes = 0;
    for (size_t i = 0; i < frames.size(); ++i) {
        const Bytes& frame = frames[i];
        ASSERT_EQ(frame[0], 0xFF);
        ASSERT_EQ(frame[1], i > 0 && settings.hasCrc ? 0xFA : 0xFB);  // MPEG-1, Layer III
        ASSERT_EQ(kRates[frame[2] >> 2 & 3], settings.sampleRate);
        ASSERT_EQ(frame[3] >> 6, settings.channels == 1 ? 3 : settings.isJoint ? 1 : 0);
        ASSERT_TRUE(settings.isJoint || (frame[3] & 0x30) == 0);
        if (i == 0) continue;
        // Intensity stereo belongs to low constant bit rates.
        ASSERT_TRUE((settings.bitRate < 128 && settings.quality < 0) || (frame[3] & 0x10) == 0);
        bytes += frame.size();
        // At a constant bit rate frames are never more than a byte off the average.
        if (settings.quality < 0) {
            ASSERT_EQ(kBitRates[(frame[2] >> 4) - 1], settings.bitRate);
            const double average = 144000.0 * settings.bitRate / settings.sampleRate;
            ASSERT_LT(std::abs(static_cast<double>(bytes) - average * static_cast<double>(i)), 1);
        }
    }
    ASSERT_EQ(bytes + frames[0].size(), mp3.size());
}

void expectGood(const EncoderSettings& settings, Material material, size_t samples) {
    SCOPED_TRACE(describe(settings, material));
    const Pcm pcm = soundOf(material, settings.sampleRate, settings.channels, samples);
    const Bytes mp3 = encodeMp3(settings, pcm);
    expectHeaders(mp3, settings);
    const Pcm decoded = decodeTrimmed(mp3, settings.channels);
    ASSERT_EQ(decoded.size(), pcm.size());
    EXPECT_TRUE(material != Material::kSilence ||
                std::ranges::all_of(decoded, [](Zet16s x) { return x == 0; }));
}

TEST(Encode, EveryRateAndModeOfEveryMaterial) {
    for (const Material material : kMaterials) {
        for (const int sampleRate : kRates) {
            for (size_t i = 0; i < std::size(kBitRates); ++i) {
                EncoderSettings settings{.sampleRate = sampleRate, .bitRate = kBitRates[i]};
                settings.channels = i % 3 == 0 ? 1 : 2;
                settings.isJoint = settings.channels == 2 && i % 3 == 1;
                settings.hasCrc = i % 4 == 0;
                expectGood(settings, material, 12000);
            }
        }
    }
}

TEST(Encode, EveryQualityOfEveryMaterial) {
    for (const Material material : kMaterials) {
        for (int quality = 0; quality < 10; ++quality) {
            EncoderSettings settings{.sampleRate = kRates[quality % 3],
                                     .quality = static_cast<float>(quality)};
            settings.channels = quality % 4 == 3 ? 1 : 2;
            settings.isJoint = settings.channels == 2;
            settings.hasCrc = quality % 2 == 1;
            expectGood(settings, material, 20000);
        }
    }
}

TEST(Encode, AnyLength) {
    for (const size_t samples :
         {1, 95, 96, 575, 944, 945, 1151, 1152, 1153, 1247, 1248, 1249, 5000})
        expectGood({.channels = 1, .isJoint = false, .bitRate = 96}, Material::kMusic, samples);
}

/** Clicks come back where they were, in all channels, and all else stays quiet. */
TEST(Encode, NothingIsShifted) {
    for (const int channels : {1, 2}) {
        const Pcm pcm = soundOf(Material::kClicks, 44100, channels, 20000);
        const Pcm decoded = decodeTrimmed(
            encodeMp3({.channels = channels, .isJoint = channels == 2, .bitRate = 320}, pcm),
            channels);
        ASSERT_EQ(decoded.size(), pcm.size());
        for (size_t i = 0; i < pcm.size(); ++i)
            EXPECT_GE(decoded[i] * (pcm[i] > 0 ? 1 : -1), pcm[i] != 0 ? 20000 : -40000) << i;
    }
}

/** Measured: 29, 40 and 42 dB at 128, 192 and 320 kbit/s, 20 at quality 4. Five less would say that
 *  something is broken. */
TEST(Encode, MusicKeepsItsWaveform) {
    const Pcm pcm = soundOf(Material::kMusic, 44100, 2, 60000);
    const auto quality = [&](const EncoderSettings& settings) {
        return signalToNoise(pcm, decodeTrimmed(encodeMp3(settings, pcm), 2));
    };
    EXPECT_GT(quality({.bitRate = 128}), 24);
    EXPECT_GT(quality({.bitRate = 192}), 35);
    EXPECT_GT(quality({.bitRate = 320}), 47);
    EXPECT_GT(quality({.quality = 4}), 15);
}

TEST(Encode, QualityOrdersSizes) {
    const Pcm pcm = soundOf(Material::kMusic, 44100, 2, 60000);
    size_t last = SIZE_MAX;
    for (int quality = 0; quality < 10; ++quality) {
        const size_t size = encodeMp3({.quality = static_cast<float>(quality)}, pcm).size();
        EXPECT_LT(size, last) << quality;
        last = size;
    }
}

uint32_t bigEndian(const Bytes& bytes, size_t at, size_t count) {
    return std::accumulate(bytes.begin() + static_cast<ptrdiff_t>(at),
                           bytes.begin() + static_cast<ptrdiff_t>(at + count), 0U,
                           [](uint32_t sum, Zet8u byte) { return sum << 8 | byte; });
}

/** Bit by bit: x^16 + x^15 + x^2 + 1, lowest bit first. */
uint32_t crc16(const Zet8u* data, size_t count) {
    uint32_t crc = 0;
    for (size_t i = 0; i < 8 * count; ++i) {
        const uint32_t bit = (crc ^ data[i / 8] >> i % 8) & 1;
        crc = crc >> 1 ^ (bit ? 0xA001 : 0);
    }
    return crc;
}

TEST(Encode, FirstFrameTellsAboutTheStream) {
    for (const bool isVariable : {false, true}) {
        EncoderSettings settings{.bitRate = 112, .quality = isVariable ? 5.0f : -1.0f};
        Pcm pcm = soundOf(Material::kSilence, 44100, 2, 60000);
        const Pcm loud = soundOf(Material::kNoise, 44100, 2, 60000);
        pcm.insert(pcm.end(), loud.begin(), loud.end());
        const Bytes mp3 = encodeMp3(settings, pcm);
        const std::vector<Bytes> frames = mp3FramesOf(mp3);
        constexpr size_t kTag = 4 + 32;
        EXPECT_EQ(std::memcmp(&mp3[kTag], isVariable ? "Xing" : "Info", 4), 0);
        EXPECT_EQ(bigEndian(mp3, kTag + 4, 4), 15U);
        EXPECT_EQ(bigEndian(mp3, kTag + 8, 4), frames.size() - 1);
        EXPECT_EQ(bigEndian(mp3, kTag + 12, 4), mp3.size());
        // The seek table against the places of the frames, in 256ths of the stream.
        size_t at = frames[0].size(), frame = 1;
        for (size_t percent = 0; percent < 100; ++percent) {
            for (; (frame - 1) < percent * (frames.size() - 1) / 100; ++frame)
                at += frames[frame].size();
            EXPECT_EQ(mp3[kTag + 16 + percent], at * 256 / mp3.size()) << percent;
        }
        constexpr size_t kExtension = kTag + 120;
        const uint32_t gaps = bigEndian(mp3, kExtension + 21, 3);
        EXPECT_EQ(gaps >> 12, 528U);
        EXPECT_EQ((gaps & 0xFFF) + (gaps >> 12) + 120000, (frames.size() - 1) * 1152);
        EXPECT_EQ(bigEndian(mp3, kExtension + 28, 4), mp3.size());
        EXPECT_EQ(bigEndian(mp3, kExtension + 32, 2),
                  crc16(&mp3[frames[0].size()], mp3.size() - frames[0].size()));
        EXPECT_EQ(bigEndian(mp3, kExtension + 34, 2), crc16(mp3.data(), kExtension + 34));
    }
}

/** Frames that no later frame changes come out at once: what waits is what the model looks ahead,
 *  1424 samples, and what the reservoir may hold, 511 bytes. */
TEST(Encode, StreamsAsItGoes) {
    const Pcm pcm = soundOf(Material::kMusic, 48000, 2, 1152 * 100);
    const EncoderHandle encoder =
        makeEncoder(EncoderSettings{.sampleRate = 48000, .bitRate = 128}.options());
    Bytes stream;
    for (size_t frame = 0; frame < 100; ++frame) {
        feed(encoder.get(), std::span(pcm).subspan(2 * 1152 * frame, 2 * 1152), 2, stream);
        EXPECT_GE(stream.size() + (2 + 2) * 384, 384 * frame);
    }
}

}  // namespace
}  // namespace zetac::test
