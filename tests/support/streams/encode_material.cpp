// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "support/streams/encode_material.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

#include "support/streams/mp3_clips.h"

namespace zetac::test {
namespace {

/** Between -1 and 1. */
double noise(Random& random) {
    return static_cast<double>(random.below(65536)) / 32768 - 1;
}

double tone(double frequency, double time) {
    return std::sin(2 * std::numbers::pi * frequency * time);
}

/** Chords that change every quarter of a second. */
double music(double time, int channel) {
    constexpr double kRoots[] = {220, 261.6, 196, 329.6};
    const auto chord = static_cast<size_t>(time * 4) % 4;
    const double decay = std::exp(-4 * (time * 4 - std::floor(time * 4)));
    double sum = 0;
    for (int voice = 0; voice < 3; ++voice)
        for (int partial = 1; partial <= 8; ++partial)
            sum += tone(kRoots[chord] * (1 + 0.25 * voice) * partial, time + 0.001 * channel) /
                   (partial * partial);
    return 0.2 * sum * (0.3 + decay);
}

/** Pulses at 120 Hz through a resonance, and hisses between them. */
double speech(double time, Random& random) {
    const double syllable = time * 5 - std::floor(time * 5);
    if (syllable > 0.8) return 0;
    if (syllable > 0.6) return 0.1 * noise(random);
    const double pulse = time * 120 - std::floor(time * 120);
    return 0.6 * std::exp(-8 * pulse) * tone(700, pulse / 120) * std::sin(syllable * 5);
}

/** A strike every sixth of a second, from silence. */
double castanets(double time, Random& random) {
    const double since = (time * 6 - std::floor(time * 6)) / 6 - 0.05;
    return since < 0 ? 0 : 0.9 * std::exp(-150 * since) * (tone(2500, since) + noise(random)) / 2;
}

double valueOf(Material material, double time, size_t sample, int channel, Random& random) {
    switch (material) {
        case Material::kMusic:
            return music(time, channel);
        case Material::kSpeech:
            return speech(time, random) * (channel == 0 ? 1 : 0.7);
        case Material::kCastanets:
            return castanets(time, random);
        case Material::kNoise:
            return random.below(2) ? 1 : -1;
        case Material::kClicks:
            return sample % 5000 == 2500 ? (sample % 10000 > 5000 ? 1 : -1) : 0;
        default:
            return 0;
    }
}

}  // namespace

Pcm soundOf(Material material, int sampleRate, int channels, size_t samples) {
    Random random(static_cast<uint32_t>(material) + 1);
    Pcm pcm;
    for (size_t i = 0; i < samples; ++i) {
        for (int c = 0; c < channels; ++c) {
            const double value =
                valueOf(material, static_cast<double>(i) / sampleRate, i, c, random);
            pcm.push_back(
                static_cast<Zet16s>(std::clamp(std::nearbyint(value * 32767), -32768.0, 32767.0)));
        }
    }
    return pcm;
}

ZetacEncoderOptions EncoderSettings::options() const {
    ZetacEncoderOptions options = ZETAC_ENCODER_OPTIONS_INIT;
    options.sampleRate = sampleRate;
    options.channels = channels;
    options.stereoMode = isJoint ? ZETAC_STEREO_JOINT : ZETAC_STEREO_INDEPENDENT;
    options.bitRate = 1000 * bitRate;
    options.rateMode = quality >= 0 ? ZETAC_RATE_VARIABLE : ZETAC_RATE_CONSTANT;
    options.quality = quality >= 0 ? quality : 0;
    options.hasCrc = hasCrc;
    return options;
}

EncoderHandle makeEncoder(const ZetacEncoderOptions& options) {
    ZetacEncoder* encoder = nullptr;
    const ZetacStatus status = zetacEncoderCreate(&encoder, &options);
    EXPECT_EQ(encoder == nullptr, status != ZETAC_OK);
    return {encoder, zetacEncoderFree};
}

void takePackets(ZetacEncoder* encoder, Bytes& stream) {
    ZetacPacket packet = ZETAC_PACKET_INIT;
    ZetacStatus status;
    while ((status = zetacEncoderTake(encoder, &packet)) == ZETAC_OK)
        stream.insert(stream.end(), packet.data, packet.data + packet.bytes);
    EXPECT_TRUE(status == ZETAC_NEED_INPUT || status == ZETAC_END) << status;
}

void feed(ZetacEncoder* encoder, std::span<const Zet16s> pcm, int channels, Bytes& stream) {
    const auto stride = static_cast<size_t>(channels);
    for (size_t at = 0, taken = 0; at < pcm.size(); at += taken * stride) {
        const void* plane = &pcm[at];
        EXPECT_EQ(zetacEncoderFeed(encoder, &plane, (pcm.size() - at) / stride, &taken), ZETAC_OK);
        takePackets(encoder, stream);
    }
}

Bytes encodeMp3(const EncoderSettings& settings, const Pcm& pcm) {
    const EncoderHandle encoder = makeEncoder(settings.options());
    Bytes stream;
    feed(encoder.get(), pcm, settings.channels, stream);
    EXPECT_EQ(zetacEncoderFinish(encoder.get()), ZETAC_OK);
    takePackets(encoder.get(), stream);
    EXPECT_EQ(zetacEncoderGetInfoFrame(encoder.get(), stream.data(), stream.size()), ZETAC_OK);
    return stream;
}

Pcm decodeTrimmed(const Bytes& mp3, int channels) {
    constexpr size_t kDecoderDelay = 529;
    const Mp3Decoded decoded = decodeMp3(mp3);
    EXPECT_EQ(decoded.damages(), 0U);
    EXPECT_EQ(decoded.foreignBytes, 0U);
    if (!decoded.infoTag || !decoded.infoTag->hasGaps) return {};
    const auto values = static_cast<ptrdiff_t>(channels);
    const auto front = static_cast<ptrdiff_t>(decoded.infoTag->delay + kDecoderDelay);
    const auto back = static_cast<ptrdiff_t>(decoded.infoTag->padding - kDecoderDelay);
    return {decoded.pcm.begin() + front * values, decoded.pcm.end() - back * values};
}

double signalToNoise(const Pcm& signal, const Pcm& decoded) {
    double energy = 0, error = 0;
    for (size_t i = 0; i < std::min(signal.size(), decoded.size()); ++i) {
        const double value = signal[i], difference = value - decoded[i];
        energy += value * value;
        error += difference * difference;
    }
    return error == 0 ? 200 : 10 * std::log10(energy / error);
}

}  // namespace zetac::test
