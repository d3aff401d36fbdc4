// The SBR decoder of one channel element (ISO/IEC 14496-3, 4.6.18): takes the core's sound and the
// element's SBR data, and gives sound of the doubled rate.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <memory>

#include "sbr/banks.h"
#include "sbr/data.h"
#include "sbr/hf_adjuster.h"
#include "sbr/hf_generator.h"
#include "sbr/ps_decoder.h"

namespace zetac::codec {

class SbrDecoder {
  public:
    /** @param sampleRate  the doubled rate, in hertz */
    SbrDecoder(bool isPair, int sampleRate, const SbrBankOptions& options);

    /** Reads the data of a frame. Without data, or with damaged ones, the core is merely resampled
     *  until the next header.
     *  @param payload  empty when there are none */
    Fault read(const SbrPayload& payload) { return parser_.parse(payload); }

    /** @param frame  number of the frame to be decoded next, counted from the start of the stream
     */
    void beginFrame(uint64_t frame) { firstSlot_ = static_cast<unsigned>(frame * kSbrSlots); }

    /** Passes over a frame whose data are lost. */
    void lose() { parser_.lose(); }

    /** Decodes a frame of one channel.
     *  @param core  1024 samples with kSbrCoreFraction fractional bits
     *  @param pcm   out: 2048 samples, or 1024 when down-sampled */
    void decode(int channel, const Zet32s* core, const PcmPlane& pcm);

    /** Has the next frame of a single channel come out in stereo.
     *  @param isFirst  nothing has been decoded before; else the next frame is mono on both sides
     *                  still, while the banks take up its sound */
    void beginStereo(bool isFirst);
    bool isStereo() const { return ps_ != nullptr; }

    /** Decodes a frame of stereo; as decode(). */
    void decodeStereo(const Zet32s* core, const PcmPlane& left, const PcmPlane& right);

    const SbrParser& parser() const { return parser_; }

    /** All memory that lives from frame to frame. */
    size_t stateBytes() const;

  private:
    static constexpr int kOverhangMax = kSbrSlotsMax - kSbrSlots;

    /** What a channel remembers from frame to frame. */
    struct ChannelState {
        SbrHfAdjuster adjuster;
        SbrHfGenerator generator;
        std::unique_ptr<SbrBanks> banks;
        SbrSplit::Range range;  // of the last frame
        int overhang = 0;       // slots of its envelopes that belong to this one
        float re[kOverhangMax][kSbrBandsMax];
        float im[kOverhangMax][kSbrBandsMax];
    };

    SbrSplit makeBands(int channel, const Zet32s* core);
    void makeHighBand(ChannelState& state, const SbrChannel& channel, int first);
    static void takeOverhang(const ChannelState& state, OutputBand& output);
    static void keepOverhang(const OutputBand& output, ChannelState& state);

    SbrParser parser_;
    ChannelState channels_[2];
    std::unique_ptr<PsDecoder> ps_;
    unsigned firstSlot_ = 0;  // of the frame, counted from the start of the stream
    bool isMono_ = false;     // on both sides, in the next frame
    HighBand high_;           // scratch
    OutputBand output_;       // scratch
};

}  // namespace zetac::codec
