// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/decoder.h"

namespace zetac::codec {
namespace {

constexpr int kSubbands = 32;
constexpr int kSlots = ZETAC_MP3_GRANULE_LEN / kSubbands;

}  // namespace

Fault Mp3Decoder::open(const Mp3Format& format) {
    isOpen_ = true;
    format_ = format;
    if (format.layer == 1) return Mp3Fault::kUnsupportedLayer1;
    if (format.layer == 2) return Mp3Fault::kUnsupportedLayer2;
    return format.version == 25 ? Mp3Fault::kUnsupportedVersion25 : Fault::kNone;
}

/** A frame of another format is as silent as a damaged one, and as long as the others. */
Mp3DecodedFrame Mp3Decoder::decode(const Mp3Frame& frame, Zet16s* pcm) {
    if (!isOpen_) refusal_ = open(frame.format);
    if (failed(refusal_)) return {refusal_, 0, 0};
    Fault fault = StreamFault::kFormatChanged;
    if (frame.format == format_) {
        fault = reader_.begin(frame);
    } else {
        reader_.forgetMainData();
    }
    const int channels = reader_.channels();
    const int granules = reader_.granules();
    const int samples = granules * ZETAC_MP3_GRANULE_LEN;
    if (!concealment_.admits(failed(fault), samples, sampleRate())) return {fault, channels, 0};
    for (int granule = 0; granule < granules; ++granule) {
        if (!failed(fault)) fault = decodeSpectrum(granule);
        for (int channel = 0; channel < channels; ++channel) {
            synthesise(granule, failed(fault), channel, pcm + channel);
        }
        pcm += ZETAC_MP3_GRANULE_LEN * channels;
    }
    return {fault, channels, samples};
}

Fault Mp3Decoder::decodeSpectrum(int granule) {
    if (const Fault fault = reader_.readGranule(granule); failed(fault)) return fault;
    Mp3GranuleData& data = reader_.data();
    return faultOf(zetsReQuantize_MP3_32s_I(data.lines[0], data.nonZeroBound, data.scaleFactor[0],
                                            &reader_.sideInfo(granule, 0), &reader_.header(),
                                            work_));
}

/** From the spectrum of one channel to its samples. A bound of 0 lets the overlap fade out. */
void Mp3Decoder::synthesise(int granule, bool isConcealed, int channel, Zet16s* pcm) {
    ChannelState& state = states_[channel];
    Mp3GranuleData& data = reader_.data();
    const ZetMP3GranuleSideInfo& info = reader_.sideInfo(granule, channel);
    const int channels = reader_.channels();
    zetsMDCTInv_MP3_32s(data.lines[channel], work_, state.overlap,
                        isConcealed ? 0 : data.nonZeroBound[channel], &state.transformedSubbands,
                        isConcealed ? 0 : info.block_type, isConcealed ? 0 : info.mixed_block_flag);
    for (int slot = 0; slot < kSlots; ++slot) {
        zetsSynthPQMF_MP3_32s16s(work_ + slot * kSubbands, pcm + slot * kSubbands * channels,
                                 state.vBuffer, &state.vOffset, channels);
    }
}

}  // namespace zetac::codec
