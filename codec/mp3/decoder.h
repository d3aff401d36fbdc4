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
#include "base/pcm_output.h"
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

struct Mp3DecoderOptions {
    bool isFollowing =
        false;                // frames change the format; otherwise it stays as it was at the start
    bool parsesOnly = false;  // everything is read and checked, but no sound is made
    PcmFormat pcm = {};
};

/** Decodes one stream. Granules that cannot be decoded are concealed: their spectrum is empty, so
 *  that the signal fades out within them and returns with the next good one. Nothing is allocated;
 *  all state is in the object, which is too large for small stacks. */
class Mp3Decoder {
  public:
    explicit Mp3Decoder(const Mp3DecoderOptions& options = {});

    /** The samples come to output(). */
    Mp3DecodedFrame decode(const Mp3Frame& frame);
    /** Conceals a frame that is missing; there must have been others. */
    Mp3DecodedFrame lose();
    const PcmOutput& output() const { return output_; }

    /** Forgets all sound and the bit reservoir. */
    void reset();

    /** @param pcm  out: the samples, interleaved; room for kMp3PcmValuesMax. Null: the frame
     *  is checked as usual, but no sound is made */
    Mp3DecodedFrame decode(const Mp3Frame& frame, Zet16s* pcm);

    /** The side information of the last frame; its lines are used up. */
    const Mp3FrameReader& reader() const { return reader_; }

    int sampleRate() const { return format_.sampleRate(); }
    const Mp3Format& format() const { return format_; }

  private:
    using Slot = std::array<Zet32s, 32>;  // one sample of every subband

    /** What a channel remembers from granule to granule. */
    struct ChannelState {
        alignas(64) Zet32s overlap[ZETAC_MP3_GRANULE_LEN] = {};
        alignas(64) Zet32s vBuffer[ZETAC_MP3_V_BUFFER_LEN] = {};
        int vOffset = 0;
        int transformedSubbands = 0;
    };

    /** The floating filter bank, for output of more than 16 bits. */
    class FloatBank {
      public:
        FloatBank() { reset(); }
        FloatBank(const FloatBank&) = delete;
        FloatBank& operator=(const FloatBank&) = delete;
        void reset();
        /** @param slot  32 subband samples, Q24
         *  @param pcm   out: 32 samples of full scale 1 */
        void synthesize(const Zet32s* slot, Zet32f* pcm);

      private:
        Zet8u memory_[2112];
        ZetsSynthesisFilterSpec_PQMF_MP3_32f* spec_ = nullptr;
    };

    Fault open(const Mp3Format& format);
    Mp3DecodedFrame render(Fault fault);
    Fault decodeSpectrum(int granule);
    void synthesize(int granule, bool isConcealed, int channel);
    void synthesizeSlots(int channel, int first);

    Mp3DecoderOptions options_;
    bool isOpen_ = false;
    Fault refusal_ = Fault::kNone;
    Mp3Format format_;
    ConcealmentLimit concealment_;
    Mp3FrameReader reader_;
    ChannelState states_[2];
    FloatBank banks_[2];
    PcmOutput output_;
    alignas(64) Zet32s work_[ZETAC_MP3_GRANULE_LEN];
};

}  // namespace zetac::codec
