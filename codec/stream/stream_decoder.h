// Bytes or packets of a stream to frames of PCM: the containers and the codecs in one.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <memory>

#include "aac/decoder.h"
#include "mp3/decoder.h"
#include "stream/demuxer.h"

namespace zetac::codec {

struct StreamOptions {
    PcmFormat pcm = {};
    ChannelOrder order = ChannelOrder::kWav;
    SbrOutput sbr = SbrOutput::kDouble;
    bool isSbrFloat = false;
    bool parsesOnly = false;
    Codec expected = Codec::kUnknown;
};

/** One frame, decoded or concealed; its samples are in the decoder's output(). */
struct StreamFrame {
    int samples = 0;  // per channel
    int channels = 0;
    int sampleRate = 0;
    bool isFormatNew = false;
    uint64_t position = 0;  // of its first sample
    uint64_t bytePosition = 0;
    uint32_t bytes = 0;
    bool isSeekPoint = false;
    bool isIncomplete = false;  // it builds on data that have not come
    Fault fault;
    bool isContinued = false;  // the frame before had the same fault
    Foreign foreign;
};

class StreamDecoder {
  public:
    enum class Step { kFrame, kNeedInput, kEnd, kNoStream, kRefused };

    explicit StreamDecoder(const StreamOptions& options);

    /** Bytes in pieces of any size.
     *  @return how many were taken; the others when frames have been */
    size_t feed(std::span<const Zet8u> bytes) { return demuxer_.feed(bytes); }
    void finish() {
        isFinished_ = true;
        if (!isPackets_) demuxer_.finish();
    }
    bool isFinished() const { return isFinished_; }

    /** Packets instead of bytes.
     *  @param config  AudioSpecificConfig(); empty for MP3 and for packets that are ADTS frames
     *  @return what is wrong with it */
    Fault setPackets(Codec codec, std::span<const Zet8u> config);
    bool takesPackets() const { return isPackets_; }
    /** @return false while the last packet has not been used up */
    bool feedPacket(std::span<const Zet8u> packet, uint64_t position);
    bool feedLoss();

    /** On kEnd the frame may tell of foreign bytes; on kRefused of the reason. */
    Step take(StreamFrame& frame);

    /** Forgets all sound and the input at hand. */
    void reset(uint64_t position, uint64_t samplePosition);

    const PcmOutput& output() const { return isAac() ? aac_->output() : mp3_->output(); }
    /** Channels of the output; nothing before the first frame. */
    const ChannelLayout* layout() const;
    int sampleRate() const { return isAac() ? aac_->sampleRate() : mp3_->sampleRate(); }

    bool isAac() const { return codec_ == Codec::kAac; }
    Codec codec() const { return codec_; }
    Container container() const { return isPackets_ ? Container::kPackets : demuxer_.container(); }
    const Demuxer& demuxer() const { return demuxer_; }
    /** Of the codec that the stream has. */
    AacDecoder& aac() { return *aac_; }
    const AacDecoder& aac() const { return *aac_; }
    const Mp3Decoder& mp3() const { return *mp3_; }
    /** The last block or frame that was taken. */
    const RawBlock& block() const { return block_; }
    const Mp3Frame& frame() const { return mp3Frame_; }

    /** All that has been taken. */
    struct Totals {
        uint64_t frames = 0;
        uint64_t samples = 0;
        uint64_t bytes = 0;  // of frames
        int lowestBitRate = 0;
        int highestBitRate = 0;  // as MPEG audio headers have them, bit/s; 0 in free format
    };
    const Totals& totals() const { return totals_; }

  private:
    Step takeUnit(StreamFrame& frame);
    Step takePacket(StreamFrame& frame);
    Step takeMp3Packet(StreamFrame& frame);
    void choose(Codec codec);
    Step deliverBlock(const DecodedFrame& decoded, StreamFrame& frame);
    Step decodeFrame(StreamFrame& frame);
    Step decodeLoss(StreamFrame& frame);
    Step deliver(StreamFrame& frame, int channels, int samples);

    StreamOptions options_;
    Demuxer demuxer_;
    Codec codec_ = Codec::kUnknown;
    std::unique_ptr<AacDecoder> aac_;
    std::unique_ptr<Mp3Decoder> mp3_;
    RawBlock block_;
    Mp3Frame mp3Frame_;
    bool isRefilling_ = false;  // the last frame lacked data from before it
    int lastChannels_ = 0;      // of the last sound
    int lastRate_ = 0;
    std::optional<ChannelLayout> mp3Layout_;
    Totals totals_;
    uint64_t samplePosition_ = 0;

    bool isPackets_ = false;
    bool hasConfig_ = false;
    AudioSpecificConfig config_;
    uint64_t packetPosition_ = 0;
    View packet_;
    bool isPacketWaiting_ = false;
    bool isLossWaiting_ = false;
    bool isFinished_ = false;
};

}  // namespace zetac::codec
