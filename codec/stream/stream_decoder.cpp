// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "stream/stream_decoder.h"

#include <algorithm>

namespace zetac::codec {

StreamDecoder::StreamDecoder(const StreamOptions& options)
    : options_(options), demuxer_(options.expected) {}

const ChannelLayout* StreamDecoder::layout() const {
    if (!isAac()) return mp3Layout_ ? &*mp3Layout_ : nullptr;
    return aac_->parser().layout() ? &aac_->layout() : nullptr;
}

/** Both decoders are large, and a stream needs one. */
void StreamDecoder::choose(Codec codec) {
    codec_ = codec;
    if (codec == Codec::kAac && !aac_) {
        DecoderOptions options;
        options.order = options_.order;
        options.sbr = options_.sbr;
        options.isFloat = options_.isSbrFloat;
        options.isFollowing = true;
        options.parsesOnly = options_.parsesOnly;
        options.pcm = options_.pcm;
        aac_ = std::make_unique<AacDecoder>(options);
    }
    if (codec == Codec::kMp3 && !mp3_) {
        mp3_ = std::make_unique<Mp3Decoder>(Mp3DecoderOptions{
            .isFollowing = true, .parsesOnly = options_.parsesOnly, .pcm = options_.pcm});
    }
}

StreamDecoder::Step StreamDecoder::take(StreamFrame& frame) {
    frame = {};
    frame.position = samplePosition_;
    return isPackets_ ? takePacket(frame) : takeUnit(frame);
}

// --- Bytes --------------------------------------------------------------------------------------

StreamDecoder::Step StreamDecoder::takeUnit(StreamFrame& frame) {
    for (;;) {
        const Demuxer::Step step = demuxer_.next();
        frame.foreign = demuxer_.foreign();
        switch (step) {
            case Demuxer::Step::kNeedInput:
                return Step::kNeedInput;
            case Demuxer::Step::kEnd:
                return Step::kEnd;
            case Demuxer::Step::kNoStream:
                return Step::kNoStream;
            case Demuxer::Step::kUnit:
                break;
        }
        choose(demuxer_.isAac() ? Codec::kAac : Codec::kMp3);
        if (!isAac()) {
            mp3Frame_ = demuxer_.frame();
            const Step result = decodeFrame(frame);
            demuxer_.done(mp3Frame_.data.size(), true);
            return result;
        }
        block_ = demuxer_.block();
        const DecodedFrame decoded = aac_->decode(block_);
        if (decoded.needsMore) {
            demuxer_.postpone();
            continue;
        }
        demuxer_.done(decoded.bytesUsed, !failed(decoded.fault));
        return deliverBlock(decoded, frame);
    }
}

StreamDecoder::Step StreamDecoder::deliverBlock(const DecodedFrame& decoded, StreamFrame& frame) {
    frame.bytePosition = block_.position;
    frame.bytes = block_.bytesAround +
                  static_cast<uint32_t>(block_.isBounded ? block_.data.size() : decoded.bytesUsed);
    frame.isSeekPoint = block_.isFirst;
    frame.fault = failed(decoded.fault) ? decoded.fault : decoded.sbrFault;
    frame.isIncomplete = decoded.isIncomplete;
    return deliver(frame, decoded.channels, decoded.samples);
}

StreamDecoder::Step StreamDecoder::decodeFrame(StreamFrame& frame) {
    const Mp3DecodedFrame decoded = mp3_->decode(mp3Frame_);
    frame.bytePosition = mp3Frame_.position;
    frame.bytes = static_cast<uint32_t>(mp3Frame_.data.size());
    frame.isSeekPoint = true;
    frame.fault = decoded.fault;
    const bool lacksData = decoded.fault == Mp3Fault::kMissingMainData;
    frame.isContinued = lacksData && isRefilling_;
    isRefilling_ = lacksData;
    if (totals_.frames == 0) totals_.lowestBitRate = mp3Frame_.bitRate;
    totals_.lowestBitRate = std::min(totals_.lowestBitRate, mp3Frame_.bitRate);
    totals_.highestBitRate = std::max(totals_.highestBitRate, mp3Frame_.bitRate);
    if (decoded.channels > 0) mp3Layout_ = ChannelLayout::fromConfiguration(decoded.channels);
    return deliver(frame, decoded.channels, decoded.samples);
}

StreamDecoder::Step StreamDecoder::deliver(StreamFrame& frame, int channels, int samples) {
    if (frame.fault.isRefusal) return Step::kRefused;
    frame.channels = channels;
    frame.samples = samples;
    frame.sampleRate = sampleRate();
    if (samples > 0) {
        frame.isFormatNew = channels != lastChannels_ || frame.sampleRate != lastRate_;
        lastChannels_ = channels;
        lastRate_ = frame.sampleRate;
    }
    ++totals_.frames;
    totals_.bytes += frame.bytes;
    totals_.samples += static_cast<uint64_t>(samples);
    samplePosition_ += static_cast<uint64_t>(samples);
    return Step::kFrame;
}

void StreamDecoder::reset(uint64_t position, uint64_t samplePosition) {
    demuxer_.reset(position);
    samplePosition_ = samplePosition;
    isRefilling_ = isPacketWaiting_ = isLossWaiting_ = isFinished_ = false;
    if (aac_) aac_->reset(samplePosition / static_cast<uint64_t>(aac_->samples()));
    if (mp3_) mp3_->reset();
}

// --- Packets ------------------------------------------------------------------------------------

Fault StreamDecoder::setPackets(Codec codec, std::span<const Zet8u> config) {
    AudioSpecificConfig parsed;
    if (!config.empty()) {
        const Fault fault = readAudioSpecificConfig(config, true, parsed);
        if (failed(fault)) return fault;
    }
    isPackets_ = true;
    config_ = parsed;
    hasConfig_ = !config.empty();
    aac_ = nullptr;
    demuxer_.expect(codec);
    choose(codec);
    return Fault::kNone;
}

bool StreamDecoder::feedPacket(std::span<const Zet8u> packet, uint64_t position) {
    if (isPacketWaiting_ || isLossWaiting_) return false;
    packet_ = demuxer_.hold(packet, position);
    packetPosition_ = position;
    return isPacketWaiting_ = true;
}

bool StreamDecoder::feedLoss() {
    if (isPacketWaiting_ || isLossWaiting_) return false;
    return isLossWaiting_ = true;
}

StreamDecoder::Step StreamDecoder::takePacket(StreamFrame& frame) {
    if (isLossWaiting_) return decodeLoss(frame);
    if (!isPacketWaiting_) return isFinished_ ? Step::kEnd : Step::kNeedInput;
    if (!isAac()) return takeMp3Packet(frame);
    if (!hasConfig_) {
        const Step step = takeUnit(frame);
        if (step == Step::kFrame || step == Step::kRefused) return step;
        isPacketWaiting_ = false;
        return isFinished_ ? Step::kEnd : Step::kNeedInput;
    }
    isPacketWaiting_ = false;
    block_ = {};
    block_.data = packet_.bytes;
    block_.position = packetPosition_;
    block_.format = StreamFormat::of(config_);
    block_.programConfig = config_.programConfig ? &*config_.programConfig : nullptr;
    return deliverBlock(aac_->decode(block_), frame);
}

StreamDecoder::Step StreamDecoder::takeMp3Packet(StreamFrame& frame) {
    isPacketWaiting_ = false;
    const auto found = MpegFrames().packet(packet_, packetPosition_);
    if (!found) return decodeLoss(frame);
    mp3Frame_ = *found;
    return decodeFrame(frame);
}

StreamDecoder::Step StreamDecoder::decodeLoss(StreamFrame& frame) {
    isLossWaiting_ = false;
    int channels = 0;
    int samples = 0;
    if (isAac()) {
        const DecodedFrame decoded = aac_->lose();
        channels = decoded.channels;
        samples = decoded.samples;
    } else {
        const Mp3DecodedFrame decoded = mp3_->lose();
        channels = decoded.channels;
        samples = decoded.samples;
    }
    frame.fault = StreamFault::kLost;
    frame.bytePosition = packetPosition_;
    return deliver(frame, channels, samples);
}

}  // namespace zetac::codec
