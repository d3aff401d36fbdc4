// The encoder of the C interface: PCM of any type in, packets out.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac_codec.h>

#include <algorithm>
#include <cmath>
#include <new>

#include "api/sized_struct.h"
#include "mp3/encoder.h"

using zetac::codec::isSized;
using zetac::codec::Mp3Encoder;
using zetac::codec::Mp3EncoderSettings;
using zetac::codec::readSized;
using zetac::codec::writeSized;

struct ZetacEncoder {
    ZetacEncoder(const ZetacEncoderOptions& given, const Mp3EncoderSettings& settings)
        : options(given), mp3(settings) {}

    ZetacEncoderOptions options;
    Mp3Encoder mp3;
    bool hasGivenInfo = false;
    uint8_t infoFrame[1441];  // no frame is larger
};

static_assert(sizeof(ZetacEncoder) < ZETAC_STREAM_BYTES_MAX);

namespace {

constexpr int32_t kDefaultSampleRate = 44100;
constexpr int32_t kDefaultBitRate = 64000;  // for each channel

bool isFlag(int32_t value) {
    return value == 0 || value == 1;
}

bool areInRange(const ZetacEncoderOptions& o) {
    return (o.codec == ZETAC_CODEC_MP3 || o.codec == ZETAC_CODEC_UNKNOWN) && o.sampleRate >= 0 &&
           o.channels >= 0 && o.channels <= 2 && o.sampleFormat >= ZETAC_S16 &&
           o.sampleFormat <= ZETAC_F32 && isFlag(o.isPlanar) && o.bitRate >= 0 &&
           o.rateMode >= ZETAC_RATE_CONSTANT && o.rateMode <= ZETAC_RATE_AVERAGE &&
           o.quality >= 0 && o.quality <= 9 && isFlag(o.stereoMode) && isFlag(o.hasCrc) &&
           isFlag(o.lacksInfo) && o.lowpass >= 0;
}

ZetacEncoderOptions withDefaults(ZetacEncoderOptions options) {
    if (options.sampleRate == 0) options.sampleRate = kDefaultSampleRate;
    if (options.channels == 0) options.channels = 2;
    if (options.bitRate == 0) options.bitRate = kDefaultBitRate * options.channels;
    return options;
}

Mp3EncoderSettings settingsFor(const ZetacEncoderOptions& options) {
    return {.sampleRate = options.sampleRate,
            .channels = options.channels,
            .isJoint = options.channels == 2 && options.stereoMode == ZETAC_STEREO_JOINT,
            .bitRate = options.bitRate,
            .quality = options.rateMode == ZETAC_RATE_VARIABLE ? options.quality : -1,
            .hasCrc = options.hasCrc != 0};
}

// --- Samples of any type to 16 bits: the nearest value, the even one of two, within full scale ---

int16_t to16(int16_t sample) {
    return sample;
}

int16_t to16(int32_t sample) {
    const int32_t floor = sample >> 16, rest = sample & 0xFFFF;
    const bool roundsUp = rest > 0x8000 || (rest == 0x8000 && (floor & 1));
    return static_cast<int16_t>(std::min(floor + roundsUp, 32767));
}

/** What is no number is silence. */
int16_t to16(float sample) {
    if (!(sample == sample)) return 0;
    return static_cast<int16_t>(std::lrintf(std::clamp(sample * 32768, -32768.0f, 32767.0f)));
}

/** Puts the first samples of all channels next to each other. */
template <typename Sample>
void interleave(const ZetacEncoderOptions& options, const void* const* planes, size_t samples,
                Zet16s* to) {
    const auto channels = static_cast<size_t>(options.channels);
    for (size_t c = 0; c < channels; ++c) {
        const auto* plane = static_cast<const Sample*>(planes[options.isPlanar ? c : 0]);
        const Sample* from = options.isPlanar ? plane : plane + c;
        const size_t step = options.isPlanar ? 1 : channels;
        for (size_t i = 0; i < samples; ++i) to[i * channels + c] = to16(from[i * step]);
    }
}

using Interleave = void (*)(const ZetacEncoderOptions&, const void* const*, size_t, Zet16s*);
constexpr Interleave kInterleave[] = {interleave<int16_t>, interleave<int32_t>, interleave<float>};

bool areGiven(const ZetacEncoderOptions& options, const void* const* planes) {
    return planes && planes[0] && (!options.isPlanar || options.channels == 1 || planes[1]);
}

// --- Packets ------------------------------------------------------------------------------------

ZetacPacket infoPacket(ZetacEncoder& encoder) {
    const std::span<uint8_t> frame(encoder.infoFrame, encoder.mp3.infoFrameBytes());
    encoder.mp3.writeInfoFrame(frame);
    ZetacPacket packet{};
    packet.data = frame.data();
    packet.bytes = frame.size();
    packet.isInfo = 1;
    return packet;
}

ZetacPacket soundPacket(const ZetacEncoder& encoder, std::span<const Zet8u> frame) {
    ZetacPacket packet{};
    packet.data = frame.data();
    packet.bytes = frame.size();
    packet.samples = Mp3Encoder::kFrameSamples;
    packet.position = (encoder.mp3.frames() - 1) * Mp3Encoder::kFrameSamples;
    return packet;
}

}  // namespace

ZetacStatus zetacEncoderCreate(ZetacEncoder** encoder, const ZetacEncoderOptions* options) {
    if (encoder == nullptr) return ZETAC_ERROR_ARGUMENT;
    *encoder = nullptr;
    if (options && !isSized(options)) return ZETAC_ERROR_ARGUMENT;
    ZetacEncoderOptions ours = readSized(options);
    if (!areInRange(ours)) return ZETAC_ERROR_ARGUMENT;
    ours = withDefaults(ours);
    const Mp3EncoderSettings settings = settingsFor(ours);
    if (ours.rateMode == ZETAC_RATE_AVERAGE || ours.lowpass > 0 || !Mp3Encoder::isValid(settings))
        return ZETAC_ERROR_UNSUPPORTED;
    *encoder = new (std::nothrow) ZetacEncoder(ours, settings);
    return *encoder ? ZETAC_OK : ZETAC_ERROR_MEMORY;
}

void zetacEncoderFree(ZetacEncoder* encoder) {
    delete encoder;
}

ZetacStatus zetacEncoderFeed(ZetacEncoder* encoder, const void* const* planes, size_t samples,
                             size_t* taken) {
    if (!encoder || !taken || (samples > 0 && !areGiven(encoder->options, planes)))
        return ZETAC_ERROR_ARGUMENT;
    *taken = 0;
    if (encoder->mp3.isFinished()) return ZETAC_ERROR_STATE;
    const std::span<Zet16s> room = encoder->mp3.room();
    const auto channels = static_cast<size_t>(encoder->options.channels);
    *taken = std::min(samples, room.size() / channels);
    if (*taken > 0)
        kInterleave[encoder->options.sampleFormat](encoder->options, planes, *taken, room.data());
    encoder->mp3.filled(*taken);
    return ZETAC_OK;
}

ZetacStatus zetacEncoderFinish(ZetacEncoder* encoder) {
    if (!encoder) return ZETAC_ERROR_ARGUMENT;
    encoder->mp3.finish();
    return ZETAC_OK;
}

ZetacStatus zetacEncoderTake(ZetacEncoder* encoder, ZetacPacket* packet) {
    if (!encoder || !isSized(packet)) return ZETAC_ERROR_ARGUMENT;
    if (!encoder->hasGivenInfo && !encoder->options.lacksInfo) {
        encoder->hasGivenInfo = true;
        writeSized(infoPacket(*encoder), packet);
        return ZETAC_OK;
    }
    std::span<const Zet8u> frame;
    const Mp3Encoder::Next next = encoder->mp3.next(frame);
    writeSized(next == Mp3Encoder::Next::kFrame ? soundPacket(*encoder, frame) : ZetacPacket{},
               packet);
    switch (next) {
        case Mp3Encoder::Next::kFrame:
            return ZETAC_OK;
        case Mp3Encoder::Next::kNeedsInput:
            return ZETAC_NEED_INPUT;
        case Mp3Encoder::Next::kEnd:
            return ZETAC_END;
        default:
            return ZETAC_ERROR_STATE;
    }
}

ZetacStatus zetacEncoderGetInfo(const ZetacEncoder* encoder, ZetacEncoderInfo* info) {
    if (!encoder || !isSized(info)) return ZETAC_ERROR_ARGUMENT;
    const Mp3Encoder& mp3 = encoder->mp3;
    ZetacEncoderInfo ours{};
    ours.sampleRate = encoder->options.sampleRate;
    ours.channels = encoder->options.channels;
    ours.frameSamples = Mp3Encoder::kFrameSamples;
    ours.bitRate = mp3.bitRate();
    ours.delay = Mp3Encoder::kDelay;
    ours.padding = static_cast<uint32_t>(mp3.padding());
    ours.samples = mp3.samples();
    ours.packets = mp3.frames();
    ours.bytes = mp3.bytes();
    ours.infoFrameBytes = encoder->options.lacksInfo ? 0 : mp3.infoFrameBytes();
    writeSized(ours, info);
    return ZETAC_OK;
}

ZetacStatus zetacEncoderGetInfoFrame(const ZetacEncoder* encoder, void* frame, size_t capacity) {
    if (!encoder || !frame) return ZETAC_ERROR_ARGUMENT;
    if (encoder->options.lacksInfo) return ZETAC_ERROR_STATE;
    if (capacity < encoder->mp3.infoFrameBytes()) return ZETAC_ERROR_ARGUMENT;
    encoder->mp3.writeInfoFrame({static_cast<Zet8u*>(frame), encoder->mp3.infoFrameBytes()});
    return ZETAC_OK;
}
