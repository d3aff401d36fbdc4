// Sound to encode: music-like, speech-like, castanets-like, silence, noise, clicks.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac_codec.h>

#include <memory>
#include <span>

#include "support/streams/clips.h"

namespace zetac::test {

enum class Material { kMusic, kSpeech, kCastanets, kSilence, kNoise, kClicks };
inline constexpr Material kMaterials[] = {Material::kMusic,     Material::kSpeech,
                                          Material::kCastanets, Material::kSilence,
                                          Material::kNoise,     Material::kClicks};

/** Samples, interleaved. The right channel differs from the left one. */
Pcm soundOf(Material material, int sampleRate, int channels, size_t samples);

/** Options of the encoder, with the names and units of the command line. */
struct EncoderSettings {
    int sampleRate = 44100;
    int channels = 2;
    bool isJoint = true;
    int bitRate = 128;   // kbit/s
    float quality = -1;  // 0..9: variable bit rate
    bool hasCrc = false;

    ZetacEncoderOptions options() const;
};

/** Null where there are no frames with these settings. */
using EncoderHandle = std::unique_ptr<ZetacEncoder, void (*)(ZetacEncoder*)>;
EncoderHandle makeEncoder(const ZetacEncoderOptions& options);

/** Appends the packets that are complete. */
void takePackets(ZetacEncoder* encoder, Bytes& stream);

/** Feeds 16-bit samples, interleaved, and takes the packets. */
void feed(ZetacEncoder* encoder, std::span<const Zet16s> pcm, int channels, Bytes& stream);

/** The whole stream, with its first frame as it is at the end. */
Bytes encodeMp3(const EncoderSettings& settings, const Pcm& pcm);

/** What a decoder is left with when it cuts off what the first frame says. */
Pcm decodeTrimmed(const Bytes& mp3, int channels);

/** In decibels; 200 for equal signals. */
double signalToNoise(const Pcm& signal, const Pcm& decoded);

}  // namespace zetac::test
