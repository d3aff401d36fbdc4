// A decoder of AAC Main, LC and LTP, and of HE-AAC, assembled from the functions of the library: a
// model to copy.
//
//     auto stream = openStream(bytes);             // kReadAhead bytes must follow the data
//     AacDecoder decoder;
//     std::vector<Zet16s> pcm(kPcmValuesMax);
//     RawBlock block;
//     while (stream->next(block)) {
//         const DecodedFrame frame = decoder.decode(block, pcm.data());
//         stream->finish(frame.bytesUsed, !failed(frame.fault));
//         write(pcm.data(), frame.channels * frame.samples);
//     }
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <memory>
#include <optional>
#include <vector>

#include "aac/block.h"
#include "aac/prediction.h"
#include "base/concealment.h"
#include "base/pcm_output.h"
#include "container/aac_stream.h"
#include "sbr/decoder.h"

namespace zetac::codec {

/** Room for the PCM values of any frame. */
inline constexpr size_t kPcmValuesMax = size_t{kChannelsMax} * kSbrFrameLength;

enum class ChannelOrder {
    kWav,    // as WAV files hold their channels: left, right, centre, low frequency, ...
    kStream  // as the elements come: centre, left, right, ...
};

/** What becomes of SBR data (ISO/IEC 14496-3, 4.6.18). */
enum class SbrOutput {
    kNone,    // they are passed over: the core alone is decoded
    kDouble,  // sound at twice the rate of the core up to 48 kHz, whether or not a frame has data
    kCore     // the same at the rate of the core: what lies above half that rate is left out
};

struct DecoderOptions {
    ChannelOrder order = ChannelOrder::kWav;
    bool substituteNoise = true;  // false: bands of perceptual noise stay empty
    SbrOutput sbr = SbrOutput::kNone;
    bool isFloat = false;  // SBR in floating instead of fixed point
    // A single channel with SBR comes out in stereo from the first block on. Otherwise it does so
    // from the first block on that has parametric stereo.
    bool expectPs = false;
    // Blocks tell whether there is SBR, and change the format; otherwise both stay as they were at
    // the start.
    bool isFollowing = false;
    bool parsesOnly = false;  // everything is read and checked, but no sound is made
    PcmFormat pcm = {};
};

/** What became of one block. */
struct DecodedFrame {
    Fault fault = Fault::kNone;
    size_t bytesUsed = 0;  // bytes of the block, up to its end or to where its fault was noticed
    int channels = 0;      // in the output; 0: there is none, because no layout is known yet
    int samples = ZETAC_AAC_FRAME_LEN;  // per channel; 0 after a second of nothing but damage
    Fault sbrFault = Fault::kNone;      // why the core is merely resampled from here on
    bool isIncomplete = false;          // it builds on SBR data that have not come
    bool needsMore = false;             // the block is open and goes on beyond its data
};

/** Decodes one stream. A block that cannot be decoded is concealed: the signal fades out within
 *  that frame and returns with the next good one. */
class AacDecoder {
  public:
    explicit AacDecoder(DecoderOptions options = {})
        : options_(options),
          decodesSbr_(options.sbr != SbrOutput::kNone && !options.isFollowing),
          output_(options.pcm) {}

    /** The samples come to output(). Following, there are none before the first good block: it may
     *  tell that their rate is doubled. */
    DecodedFrame decode(const RawBlock& block);
    /** Conceals a block that is missing. */
    DecodedFrame lose();
    const PcmOutput& output() const { return output_; }

    /** Forgets all sound.
     *  @param frame  number of the next block in the stream: noise depends on it alone, so that it
     *                is the same wherever decoding began */
    void reset(uint64_t frame);

    /** @param pcm  out: 1024 samples of every channel, or 2048 at the doubled rate, interleaved;
     * room for kPcmValuesMax, or for as many as that once the channels are known. Null: the
     * block is checked as usual, but no sound is made */
    DecodedFrame decode(const RawBlock& block, Zet16s* pcm);

    /** The parsed block; spectra are used up by decode(). */
    BlockParser& parser() { return parser_; }
    const BlockParser& parser() const { return parser_; }

    /** Whether parametric stereo has begun. */
    bool hasParametricStereo() const;

    /** Of the output. */
    int channels() const { return stereo_ ? stereo_->channels() : parser_.channels(); }

    /** Of the output. With parametric stereo it has two channels where the core has one.
     *  Only once the parser knows its layout. */
    const ChannelLayout& layout() const { return stereo_ ? *stereo_ : *parser_.layout(); }

    /** Of the output. */
    int sampleRate() const {
        const int rate = parser_.format().sampleRate();
        return isDoubled() ? 2 * rate : rate;
    }

    bool decodesSbr() const { return decodesSbr_; }
    /** Whether the output has twice the rate of the core. No more than 96 kHz are made. */
    bool isDoubled() const {
        constexpr int kRateMax = 48000;
        const StreamFormat& format = parser_.format();
        return decodesSbr_ && options_.sbr == SbrOutput::kDouble && !format.isSbrDownsampled &&
               format.sampleRate() <= kRateMax;
    }
    /** Samples of a frame. */
    int samples() const { return isDoubled() ? kSbrFrameLength : ZETAC_AAC_FRAME_LEN; }

    /** All memory that lives from frame to frame. */
    size_t stateBytes() const;

  private:
    /** What a channel remembers from frame to frame. */
    struct ChannelState {
        alignas(64) Zet32s overlap[ZETAC_AAC_FRAME_LEN] = {};
        Zet32s random = 0;
        int previousShape = zetAacSine;
        std::unique_ptr<MainPrediction> main;          // Main profile
        std::unique_ptr<LongTermPrediction> longTerm;  // LTP profile; it has the overlap then
        int fraction = 0;                 // with SBR: fractional bits of the overlap beyond its Q3
        std::unique_ptr<SbrDecoder> sbr;  // of the element whose first channel this is
    };

    Fault open(const RawBlock& block);
    void allocate();
    Fault decodeSpectra();
    Fault decodeElement(AudioElement& element);
    Fault decodePair(AudioElement& element);
    void substituteNoise(ChannelData& channel, Zet32s& random) const;
    Fault dequantise(ChannelData& channel, ChannelState& state);
    Fault predict(ChannelData& channel, ChannelState& state);
    void substituteNoise(const ZetAACChanPairElt& pair, ChannelData& left, ChannelData& right,
                         Zet32s& random) const;
    Fault finishSpectrum(ChannelData& channel);
    DecodedFrame render(bool isDamaged);
    void follow(const RawBlock& block);
    void beginSbr();
    void seedNoise();
    void synthesise();
    void synthesiseChannel(int channel, bool isDirect);
    int synthesiseCore(int channel);
    void widenCore(int channel, Zet32s* core);
    Fault readSbr();
    void allocateSbr();
    void beginStereo();
    void synthesiseSbr();
    void makeRoom();
    ChannelState& stateOf(int channel) { return states_[static_cast<size_t>(channel)]; }
    void conceal();

    int outputPosition(int channel) const;

    DecoderOptions options_;
    BlockParser parser_;
    bool isOpen_ = false;
    Fault refusal_ = Fault::kNone;
    ConcealmentLimit concealment_;
    std::unique_ptr<ChannelState[]> states_;
    bool decodesSbr_;
    std::optional<ChannelLayout> stereo_;  // of the output, with parametric stereo
    bool hasSound_ = false;                // the banks of SBR have had some
    bool isWaiting_ = false;               // the SBR data build on others that have not come
    bool isKnown_ = false;                 // whether there is SBR, since a good block has come
    uint64_t frame_ = 0;                   // number of the block
    PcmOutput output_;
};

}  // namespace zetac::codec
