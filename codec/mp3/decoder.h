// A Layer III decoder assembled from the functions of the library: a model to copy.
//
//     auto stream = Mp3Stream::open(bytes);
//     auto decoder = std::make_unique<Mp3Decoder>();
//     Zet16s pcm[kMp3PcmValuesMax];
//     Mp3Frame frame;
//     while (stream->next(frame)) {
//         const Mp3DecodedFrame decoded = decoder->decode(frame, pcm);
//         write(pcm, decoded.samples * decoded.channels);
//     }
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <array>

#include "base/concealment.h"
#include "container/mpeg_audio.h"
#include "mp3/frame_reader.h"

namespace zetac::codec {

/** Room for the PCM values of any frame. */
inline constexpr size_t kMp3PcmValuesMax = size_t{2} * 2 * ZETAC_MP3_GRANULE_LEN;

/** What became of one frame. */
struct Mp3DecodedFrame {
    Fault fault = Fault::kNone;
    int channels = 0;  // 1 or 2, and they may change; 0: a refused stream
    int samples = 0;   // per channel; 0 after a second of nothing but damage
};

/** Decodes one stream. Granules that cannot be decoded are concealed: their spectrum is empty, so
 *  that the signal fades out within them and returns with the next good one. Nothing is allocated;
 *  all state is in the object, which is too large for small stacks. */
class Mp3Decoder {
  public:
    /** @param pcm  out: the samples, interleaved; room for kMp3PcmValuesMax */
    Mp3DecodedFrame decode(const Mp3Frame& frame, Zet16s* pcm);

    /** The side information of the last frame; its lines are used up. */
    const Mp3FrameReader& reader() const { return reader_; }

    int sampleRate() const { return format_.sampleRate(); }

  private:
    using Slot = std::array<Zet32s, 32>;  // one sample of every subband

    /** What a channel remembers from granule to granule. */
    struct ChannelState {
        alignas(64) Zet32s overlap[ZETAC_MP3_GRANULE_LEN] = {};
        alignas(64) Zet32s vBuffer[ZETAC_MP3_V_BUFFER_LEN] = {};
        int vOffset = 0;
        int transformedSubbands = 0;
    };

    Fault open(const Mp3Format& format);
    Fault decodeSpectrum(int granule);
    void synthesise(int granule, bool isConcealed, int channel, Zet16s* pcm);

    bool isOpen_ = false;
    Fault refusal_ = Fault::kNone;
    Mp3Format format_;
    ConcealmentLimit concealment_;
    Mp3FrameReader reader_;
    ChannelState states_[2];
    alignas(64) Zet32s work_[ZETAC_MP3_GRANULE_LEN];
};

}  // namespace zetac::codec
