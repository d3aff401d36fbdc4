// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/decoder.h"

#include <cstring>

namespace zetac::codec {
namespace {

constexpr int kSubbands = 32;
constexpr int kSlots = ZETAC_MP3_GRANULE_LEN / kSubbands;

}  // namespace

void Mp3Decoder::FloatBank::reset() {
    zetsSynthesisFilterInit_PQMF_MP3_32f(&spec_, memory_);
}

void Mp3Decoder::FloatBank::synthesize(const Zet32s* slot, Zet32f* pcm) {
    Zet32f samples[kSubbands];
    for (int i = 0; i < kSubbands; ++i) samples[i] = static_cast<Zet32f>(slot[i]) * 0x1p-24F;
    zetsSynthesisFilter_PQMF_MP3_32f(samples, pcm, spec_, 1);
}

Mp3Decoder::Mp3Decoder(const Mp3DecoderOptions& options) : options_(options), output_(options.pcm) {
    if (!options.parsesOnly) output_.reserve(2, 2 * ZETAC_MP3_GRANULE_LEN);
}

void Mp3Decoder::reset() {
    reader_.forgetMainData();
    concealment_ = {};
    for (ChannelState& state : states_) state = {};
    for (FloatBank& bank : banks_) bank.reset();
}

Fault Mp3Decoder::open(const Mp3Format& format) {
    isOpen_ = true;
    format_ = format;
    if (format.layer == 1) return Mp3Fault::kUnsupportedLayer1;
    return format.layer == 2 ? Mp3Fault::kUnsupportedLayer2 : Fault::kNone;
}

/** A frame of another format is as silent as a damaged one, and as long as the others; following,
 *  another stream begins with it. */
Mp3DecodedFrame Mp3Decoder::decode(const Mp3Frame& frame) {
    if (isOpen_ && options_.isFollowing && frame.format != format_) {
        reset();
        isOpen_ = false;
    }
    if (!isOpen_) refusal_ = open(frame.format);
    if (failed(refusal_)) return {refusal_, 0, 0};
    if (frame.format == format_) return render(reader_.begin(frame));
    reader_.forgetMainData();
    return render(StreamFault::kFormatChanged);
}

Mp3DecodedFrame Mp3Decoder::lose() {
    if (!isOpen_ || failed(refusal_)) return {StreamFault::kLost, 0, 0};
    reader_.forgetMainData();
    return render(StreamFault::kLost);
}

/** Makes the sound of a frame whose granules can be read, or conceals it. */
Mp3DecodedFrame Mp3Decoder::render(Fault fault) {
    const int channels = reader_.channels();
    const int granules = reader_.granules();
    const int samples = granules * ZETAC_MP3_GRANULE_LEN;
    output_.begin(channels, samples);
    for (int granule = 0; granule < granules; ++granule) {
        if (!failed(fault)) fault = decodeSpectrum(granule);
        for (int channel = 0; channel < channels && !options_.parsesOnly; ++channel) {
            synthesize(granule, failed(fault), channel);
        }
    }
    if (!options_.parsesOnly && options_.pcm.samples != SampleFormat::kS16) output_.interleave();
    const bool isHeard = concealment_.admits(failed(fault), samples, sampleRate());
    return {fault, channels, isHeard ? samples : 0};
}

/** Copies what decode() leaves. */
Mp3DecodedFrame Mp3Decoder::decode(const Mp3Frame& frame, Zet16s* pcm) {
    options_.parsesOnly = pcm == nullptr;
    const Mp3DecodedFrame result = decode(frame);
    if (pcm) {
        std::memcpy(pcm, output_.data(0),
                    sizeof *pcm * static_cast<size_t>(result.channels * result.samples));
    }
    return result;
}

Fault Mp3Decoder::decodeSpectrum(int granule) {
    if (const Fault fault = reader_.readGranule(granule); failed(fault)) return fault;
    return reader_.requantize(granule, work_);
}

/** From the spectrum of one channel to its samples. A bound of 0 lets the overlap fade out. */
void Mp3Decoder::synthesize(int granule, bool isConcealed, int channel) {
    ChannelState& state = states_[channel];
    Mp3GranuleData& data = reader_.data();
    const ZetMP3GranuleSideInfo& info = reader_.sideInfo(granule, channel);
    zetsMDCTInv_MP3_32s(data.lines[channel], work_, state.overlap,
                        isConcealed ? 0 : data.nonZeroBound[channel], &state.transformedSubbands,
                        isConcealed ? 0 : info.block_type, isConcealed ? 0 : info.mixed_block_flag);
    synthesizeSlots(channel, granule * ZETAC_MP3_GRANULE_LEN);
}

/** @param first  sample of the frame */
void Mp3Decoder::synthesizeSlots(int channel, int first) {
    if (options_.pcm.samples == SampleFormat::kS16) {
        ChannelState& state = states_[channel];
        const int stride = output_.stride();
        Zet16s* pcm = output_.place<Zet16s>(channel) + first * stride;
        for (int slot = 0; slot < kSlots; ++slot) {
            zetsSynthPQMF_MP3_32s16s(work_ + slot * kSubbands, pcm + slot * kSubbands * stride,
                                     state.vBuffer, &state.vOffset, stride);
        }
        return;
    }
    const PcmPlane plane = output_.plane(channel);
    for (int slot = 0; slot < kSlots; ++slot) {
        Zet32f pcm[kSubbands];
        banks_[channel].synthesize(work_ + slot * kSubbands, pcm);
        for (Zet32f& sample : pcm) sample *= 0x1p15F;
        plane.put(static_cast<size_t>(first + slot * kSubbands), pcm, kSubbands);
    }
}

}  // namespace zetac::codec
