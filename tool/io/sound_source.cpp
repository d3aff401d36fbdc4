// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "io/sound_source.h"

#include <algorithm>

#include "aac/decoder.h"
#include "inspect/aac_inspector.h"
#include "inspect/mp3_inspector.h"
#include "io/failure.h"
#include "mp3/decoder.h"

namespace zetac::tool {
namespace {

using codec::Mp3Fault;

/** Without SBR data there is nothing to double. */
codec::DecoderOptions decoderOptions(std::span<const Zet8u> data, const SbrOptions& sbr) {
    codec::DecoderOptions options;
    options.isFloat = sbr.isFloat;
    if (sbr.isOn && codec::carriesSbr(data)) {
        options.sbr = sbr.isDownsampled ? codec::SbrOutput::kCore : codec::SbrOutput::kDouble;
        options.expectPs = codec::carriesPs(data);
    }
    return options;
}

constexpr const char* kMonoThroughout =
    "changes between mono and stereo; the output is mono throughout";

void mixDown(Zet16s* pcm, size_t samples) {
    for (size_t i = 0; i < samples; ++i) {
        pcm[i] = static_cast<Zet16s>((pcm[2 * i] + pcm[2 * i + 1]) >> 1);
    }
}

/** Parametric stereo may begin late; what comes out has the channels of the first frame. */
class AacSource : public SoundSource {
  public:
    AacSource(std::span<const Zet8u> data, const SbrOptions& sbr, bool isDecoded)
        : stream_(codec::openStream(data)),
          decoder_(decoderOptions(data, sbr)),
          pcm_(isDecoded ? codec::kPcmValuesMax : 0) {}

    bool next(SoundFrame& frame) override {
        codec::RawBlock block;
        const bool isThere = stream_->next(block);
        foreign_ = {stream_->skippedPosition(), stream_->skippedBytes()};
        if (!isThere) return false;
        const codec::DecodedFrame decoded = decoder_.decode(block, pcm());
        inspector_.add(block, decoded, decoder_);
        stream_->finish(decoded.bytesUsed, !failed(decoded.fault));
        if (decoded.fault.isRefusal) throw Failure(decoded.fault.text);
        hasSbr_ = hasSbr_ || (!failed(decoded.fault) && decoder_.parser().hasSbr());
        if (!layout_ && decoded.channels > 0) layout_ = decoder_.layout();
        if (layout_ && decoded.channels > layout_->channels()) {
            if (pcm()) mixDown(pcm(), static_cast<size_t>(decoded.samples));
            isMixed_ = true;
        }
        frame = {.position = static_cast<size_t>(block.position),
                 .inputBytes = block.data.size(),
                 .fault = {},
                 .isFaultNews = true,
                 .pcm = pcm(),
                 .channels = layout_ ? layout_->channels() : 0,
                 .samples = static_cast<size_t>(decoded.samples),
                 .isHeard = !failed(decoded.fault)};
        if (failed(decoded.fault)) {
            frame.fault = decoded.fault.text;
        } else if (failed(decoded.sbrFault)) {
            frame.fault = decoded.sbrFault.text;
            if (decoded.sbrFault != codec::SbrFault::kParametricStereo) {
                frame.fault += "; resampled only until the next header";
            }
        }
        return true;
    }

    ForeignBytes foreign() const override { return foreign_; }
    int sampleRate() const override { return decoder_.sampleRate(); }
    const codec::ChannelLayout& layout() const override { return *layout_; }
    codec::StreamSummary summary() const override { return inspector_.summary(*stream_); }

    std::vector<std::string> notes() const override {
        if (isMixed_) return {kMonoThroughout};
        if (!hasSbr_ || decoder_.decodesSbr()) return {};
        return {"HE-AAC: the LC core was decoded and the SBR data left out"};
    }

  private:
    Zet16s* pcm() { return pcm_.empty() ? nullptr : pcm_.data(); }

    std::unique_ptr<codec::BlockStream> stream_;
    codec::AacDecoder decoder_;
    codec::AacInspector inspector_;
    std::vector<Zet16s> pcm_;
    std::optional<codec::ChannelLayout> layout_;
    ForeignBytes foreign_;
    bool hasSbr_ = false;
    bool isMixed_ = false;
};

/** Frames may change between mono and stereo; what comes out has the channels of the first one. */
class Mp3Source : public SoundSource {
  public:
    Mp3Source(std::span<const Zet8u> data, bool isDecoded)
        : data_(data), stream_(codec::Mp3Stream::open(data)), isDecoded_(isDecoded) {}

    bool next(SoundFrame& frame) override {
        codec::Mp3Frame coded;
        const bool isThere = stream_->next(coded);
        foreign_ = {stream_->foreign().position, stream_->foreign().bytes};
        if (!isThere) return false;
        const codec::Mp3DecodedFrame decoded = decoder_.decode(coded, isDecoded_ ? pcm_ : nullptr);
        inspector_.add(coded, decoded, decoder_);
        if (decoded.fault.isRefusal) throw Failure(decoded.fault.text);
        if (!layout_) layout_ = codec::ChannelLayout::fromConfiguration(decoded.channels);
        if (decoded.channels != layout_->channels()) convertChannels(decoded.samples);
        const bool isMuted = decoded.fault == Mp3Fault::kMissingMainData;
        frame = {.position = static_cast<size_t>(coded.position),
                 .inputBytes = coded.data.size(),
                 .fault = {},
                 .isFaultNews = !(isMuted && isMuted_),
                 .pcm = isDecoded_ ? pcm_ : nullptr,
                 .channels = layout_->channels(),
                 .samples = static_cast<size_t>(decoded.samples)};
        if (failed(decoded.fault)) frame.fault = decoded.fault.text;
        isMuted_ = isMuted;
        return true;
    }

    ForeignBytes foreign() const override { return foreign_; }
    int sampleRate() const override { return decoder_.sampleRate(); }
    const codec::ChannelLayout& layout() const override { return *layout_; }
    codec::StreamSummary summary() const override { return inspector_.summary(*stream_, data_); }

    /** The tag counts what the encoder added; the filter banks of a decoder delay by 529 samples
     *  more. */
    EncoderGaps gaps() const override {
        constexpr int kDecoderDelay = 529;
        const auto& tag = stream_->infoTag();
        if (!tag || !tag->hasGaps) return {};
        return {static_cast<size_t>(tag->delay + kDecoderDelay),
                static_cast<size_t>(std::max(0, tag->padding - kDecoderDelay))};
    }

    std::vector<std::string> notes() const override {
        if (!isConverted_) return {};
        return {layout_->channels() == 2
                    ? "changes between mono and stereo; the output is stereo throughout"
                    : kMonoThroughout};
    }

  private:
    void convertChannels(int samples) {
        isConverted_ = true;
        if (!isDecoded_) return;
        if (layout_->channels() == 2) {
            for (int i = samples; i-- > 0;) pcm_[2 * i] = pcm_[2 * i + 1] = pcm_[i];
        } else {
            mixDown(pcm_, static_cast<size_t>(samples));
        }
    }

    std::span<const Zet8u> data_;
    std::unique_ptr<codec::Mp3Stream> stream_;
    bool isDecoded_;
    codec::Mp3Decoder decoder_;
    codec::Mp3Inspector inspector_;
    Zet16s pcm_[codec::kMp3PcmValuesMax];
    std::optional<codec::ChannelLayout> layout_;
    ForeignBytes foreign_;
    bool isMuted_ = false;
    bool isConverted_ = false;
};

}  // namespace

/** Either codec's sync may turn up inside a file of the other; the first one in the file counts. */
std::unique_ptr<SoundSource> openSound(std::span<const Zet8u> data, const SbrOptions& sbr,
                                       bool isDecoded) {
    const auto aac = codec::openStream(data);
    const auto mp3 = codec::Mp3Stream::open(data);
    if (!aac && !mp3) {
        throw Failure("is neither AAC nor MP3: there is no ADTS, ADIF or MPEG audio header");
    }
    if (aac && (!mp3 || aac->start() < mp3->start()))
        return std::make_unique<AacSource>(data, sbr, isDecoded);
    return std::make_unique<Mp3Source>(data, isDecoded);
}

}  // namespace zetac::tool
