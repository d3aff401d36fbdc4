// The decoder of the C interface: bytes or packets of a stream in, frames of PCM out.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac_codec.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>

#include "api/sized_struct.h"
#include "stream/stream_decoder.h"

using zetac::codec::ChannelLayout;
using zetac::codec::ChannelOrder;
using zetac::codec::Codec;
using zetac::codec::failed;
using zetac::codec::Fault;
using zetac::codec::isSized;
using zetac::codec::Mp3Format;
using zetac::codec::readSized;
using zetac::codec::SampleFormat;
using zetac::codec::SbrOutput;
using zetac::codec::StreamDecoder;
using zetac::codec::StreamFrame;
using zetac::codec::StreamOptions;
using zetac::codec::writeSized;

struct ZetacDecoder {
    explicit ZetacDecoder(const ZetacDecoderOptions& given, const StreamOptions& translated)
        : options(given), stream(translated) {}

    ZetacDecoderOptions options;
    StreamDecoder stream;
    bool hasInput = false;
    ZetacStatus failure = ZETAC_OK;  // that ended the work
    const char* errorText = "";
};

namespace {

bool isWithin(int32_t value, int32_t last) {
    return value >= 0 && value <= last;
}

bool areInRange(const ZetacDecoderOptions& o) {
    return isWithin(o.sampleFormat, ZETAC_F32) && isWithin(o.isPlanar, 1) &&
           isWithin(o.channelOrder, ZETAC_ORDER_STREAM) && isWithin(o.sbrMode, ZETAC_SBR_OFF) &&
           isWithin(o.sbrArithmetic, ZETAC_SBR_FLOAT) && isWithin(o.downmix, ZETAC_DOWNMIX_NONE) &&
           isWithin(o.codec, ZETAC_CODEC_MP3) && isWithin(o.parsesOnly, 1);
}

StreamOptions streamOptions(const ZetacDecoderOptions& o) {
    static constexpr SbrOutput kSbr[] = {SbrOutput::kDouble, SbrOutput::kCore, SbrOutput::kNone};
    StreamOptions options;
    options.pcm = {static_cast<SampleFormat>(o.sampleFormat), o.isPlanar != 0};
    options.order = o.channelOrder == ZETAC_ORDER_WAV ? ChannelOrder::kWav : ChannelOrder::kStream;
    options.sbr = kSbr[o.sbrMode];
    options.isSbrFloat = o.sbrArithmetic == ZETAC_SBR_FLOAT;
    options.parsesOnly = o.parsesOnly != 0;
    options.expected = static_cast<Codec>(o.codec);
    return options;
}

ZetacStatus fail(ZetacDecoder& decoder, ZetacStatus status, const char* text = "") {
    decoder.errorText = text;
    return status;
}

/** A failure that ends the work: it is told again and again. */
ZetacStatus stop(ZetacDecoder& decoder, ZetacStatus status, const char* text = "") {
    decoder.failure = status;
    return fail(decoder, status, text);
}

/** Runs what may allocate. */
template <class Operation>
ZetacStatus guarded(ZetacDecoder& decoder, Operation operation) {
    decoder.errorText = "";
    try {
        return operation();
    } catch (const std::bad_alloc&) {
        return stop(decoder, ZETAC_ERROR_MEMORY);
    } catch (...) {
        return stop(decoder, ZETAC_ERROR_STATE);
    }
}

// --- Frames -------------------------------------------------------------------------------------

ZetacDamage damageOf(const StreamFrame& frame) {
    ZetacDamage damage{};
    if (failed(frame.fault)) {
        damage.code = frame.fault.number();
        damage.text = frame.fault.text;
        damage.position = frame.bytePosition;
        damage.isContinued = frame.isContinued;
    }
    damage.foreignAt = frame.foreign.position;
    damage.foreignBytes = frame.foreign.bytes;
    return damage;
}

ZetacFrame frameOf(const ZetacDecoder& decoder, const StreamFrame& frame) {
    ZetacFrame result{};
    result.samples = frame.samples;
    result.channels = frame.channels;
    result.sampleRate = frame.sampleRate;
    result.sampleFormat = decoder.options.sampleFormat;
    result.isFormatNew = frame.isFormatNew;
    result.position = frame.position;
    result.bytePosition = frame.bytePosition;
    result.byteCount = frame.bytes;
    result.isSeekPoint = frame.isSeekPoint;
    result.isIncomplete = frame.isIncomplete;
    result.damage = damageOf(frame);
    if (frame.samples == 0 || decoder.options.parsesOnly) return result;
    const int planes = decoder.options.isPlanar ? frame.channels : 1;
    for (int i = 0; i < planes; ++i) result.planes[i] = decoder.stream.output().data(i);
    return result;
}

// --- What is known of the stream ----------------------------------------------------------------

/** The delay of a decoder's filter banks, which comes to that of the encoder. */
constexpr uint32_t kMp3DecoderDelay = 529;

void describeAac(const StreamDecoder& stream, ZetacStreamInfo& info) {
    static constexpr const char* kProfiles[] = {"AAC Main", "AAC LC", "AAC SSR", "AAC LTP"};
    const auto& decoder = stream.aac();
    const auto& format = decoder.parser().format();
    info.codec = ZETAC_CODEC_AAC;
    info.objectType = format.profile + 1;
    info.codedSampleRate = format.sampleRate();
    info.codedChannels = decoder.parser().channels();
    info.frameSamples = decoder.samples();
    info.hasSbr = decoder.decodesSbr();
    info.hasParametricStereo = decoder.channels() > decoder.parser().channels();
    const char* name = info.hasParametricStereo ? "HE-AAC v2"
                       : info.hasSbr            ? "HE-AAC"
                                                : kProfiles[format.profile & 3];
    std::snprintf(info.description, sizeof info.description, "%s", name);
    if (stream.container() == zetac::codec::Container::kAdif) {
        info.bitRate = stream.demuxer().adifHeader().bitrate;
        info.isVariableBitRate = stream.demuxer().adifHeader().bitstream_type != 0;
    }
}

void describeInfoFrame(const zetac::codec::Mp3InfoTag& tag, ZetacStreamInfo& info) {
    std::snprintf(info.encoder, sizeof info.encoder, "%s", tag.encoder.c_str());
    if (tag.name != "Info") info.isVariableBitRate = 1;
    if (tag.hasGaps) {
        const auto padding = static_cast<uint32_t>(tag.padding);
        info.encoderDelay = static_cast<uint32_t>(tag.delay) + kMp3DecoderDelay;
        info.encoderPadding = padding - std::min(padding, kMp3DecoderDelay);
    }
    if (!tag.frames) return;
    info.hasLength = info.isLengthExact = 1;
    info.length = uint64_t{*tag.frames} * static_cast<uint64_t>(info.frameSamples);
}

void describeMp3(const StreamDecoder& stream, ZetacStreamInfo& info) {
    const Mp3Format& format = stream.mp3().format();
    info.codec = ZETAC_CODEC_MP3;
    info.codedSampleRate = format.sampleRate();
    info.codedChannels = info.channels;
    info.frameSamples = format.samplesPerFrame();
    static constexpr const char* kLayers[] = {"I", "II", "III"};
    std::snprintf(info.description, sizeof info.description, "MPEG-%s Layer %s",
                  format.version == 25  ? "2.5"
                  : format.version == 2 ? "2"
                                        : "1",
                  kLayers[format.layer - 1]);
    const StreamDecoder::Totals& totals = stream.totals();
    info.isVariableBitRate = totals.lowestBitRate != totals.highestBitRate;
    if (stream.demuxer().infoTag()) describeInfoFrame(*stream.demuxer().infoTag(), info);
    if (!info.isVariableBitRate) info.bitRate = totals.highestBitRate;
}

/** The mean so far, where nothing is declared. */
int32_t meanBitRate(const StreamDecoder& stream, int32_t sampleRate) {
    const StreamDecoder::Totals& totals = stream.totals();
    if (totals.samples == 0) return 0;
    return static_cast<int32_t>(static_cast<double>(totals.bytes) * 8 * sampleRate /
                                static_cast<double>(totals.samples));
}

/** Of an output channel. */
uint8_t speakerAt(const ChannelLayout& layout, int place, int32_t order) {
    for (int c = 0; c < layout.channels(); ++c) {
        const int position = order == ZETAC_ORDER_WAV ? layout.wavPosition(c) : c;
        if (position == place) return static_cast<uint8_t>(layout.speaker(c));
    }
    return ZETAC_SPEAKER_UNKNOWN;
}

ZetacStreamInfo infoOf(const ZetacDecoder& decoder) {
    const StreamDecoder& stream = decoder.stream;
    const ChannelLayout& layout = *stream.layout();
    ZetacStreamInfo info{};
    info.container = static_cast<int32_t>(stream.container());
    info.sampleRate = stream.sampleRate();
    info.channels = layout.channels();
    for (int place = 0; place < ZETAC_CHANNELS_MAX; ++place) {
        info.speakers[place] = speakerAt(layout, place, decoder.options.channelOrder);
    }
    if (stream.isAac()) {
        describeAac(stream, info);
    } else {
        describeMp3(stream, info);
    }
    if (info.bitRate == 0) info.bitRate = meanBitRate(stream, info.sampleRate);
    return info;
}

}  // namespace

// --- The interface ------------------------------------------------------------------------------

ZetacStatus zetacDecoderCreate(ZetacDecoder** decoder, const ZetacDecoderOptions* options) {
    if (decoder == nullptr) return ZETAC_ERROR_ARGUMENT;
    *decoder = nullptr;
    const ZetacDecoderOptions given = readSized(options);
    if (!areInRange(given)) return ZETAC_ERROR_ARGUMENT;
    try {
        *decoder = new ZetacDecoder(given, streamOptions(given));
    } catch (...) {
        return ZETAC_ERROR_MEMORY;
    }
    return ZETAC_OK;
}

void zetacDecoderFree(ZetacDecoder* decoder) {
    delete decoder;
}

ZetacStatus zetacDecoderFeed(ZetacDecoder* decoder, const void* data, size_t bytes, size_t* taken) {
    if (decoder == nullptr || (data == nullptr && bytes > 0) || taken == nullptr) {
        return ZETAC_ERROR_ARGUMENT;
    }
    decoder->errorText = "";
    *taken = 0;
    if (decoder->stream.isFinished() || decoder->stream.takesPackets()) return ZETAC_ERROR_STATE;
    decoder->hasInput = decoder->hasInput || bytes > 0;
    *taken = decoder->stream.feed({static_cast<const Zet8u*>(data), bytes});
    return ZETAC_OK;
}

ZetacStatus zetacDecoderSetPackets(ZetacDecoder* decoder, ZetacCodec codec, const void* config,
                                   size_t configBytes) {
    if (decoder == nullptr || (codec != ZETAC_CODEC_AAC && codec != ZETAC_CODEC_MP3) ||
        (config == nullptr && configBytes > 0)) {
        return ZETAC_ERROR_ARGUMENT;
    }
    if (decoder->hasInput && !decoder->stream.takesPackets()) return ZETAC_ERROR_STATE;
    return guarded(*decoder, [&] {
        const Fault fault = decoder->stream.setPackets(
            static_cast<Codec>(codec), {static_cast<const Zet8u*>(config), configBytes});
        if (!failed(fault)) return ZETAC_OK;
        return fail(*decoder, fault.isRefusal ? ZETAC_ERROR_UNSUPPORTED : ZETAC_ERROR_CONFIG,
                    fault.text);
    });
}

ZetacStatus zetacDecoderFeedPacket(ZetacDecoder* decoder, const void* data, size_t bytes,
                                   uint64_t position) {
    if (decoder == nullptr || (data == nullptr && bytes > 0)) return ZETAC_ERROR_ARGUMENT;
    decoder->errorText = "";
    StreamDecoder& stream = decoder->stream;
    const bool isDue = stream.takesPackets() && !stream.isFinished();
    const std::span packet(static_cast<const Zet8u*>(data), bytes);
    return isDue && stream.feedPacket(packet, position) ? ZETAC_OK : ZETAC_ERROR_STATE;
}

ZetacStatus zetacDecoderFeedLoss(ZetacDecoder* decoder) {
    if (decoder == nullptr) return ZETAC_ERROR_ARGUMENT;
    decoder->errorText = "";
    StreamDecoder& stream = decoder->stream;
    const bool isDue = stream.takesPackets() && !stream.isFinished();
    return isDue && stream.feedLoss() ? ZETAC_OK : ZETAC_ERROR_STATE;
}

ZetacStatus zetacDecoderFinish(ZetacDecoder* decoder) {
    if (decoder == nullptr) return ZETAC_ERROR_ARGUMENT;
    decoder->errorText = "";
    decoder->stream.finish();
    return ZETAC_OK;
}

ZetacStatus zetacDecoderTake(ZetacDecoder* decoder, ZetacFrame* frame) {
    if (decoder == nullptr || !isSized(frame)) return ZETAC_ERROR_ARGUMENT;
    if (decoder->failure != ZETAC_OK) return decoder->failure;
    return guarded(*decoder, [&] {
        StreamFrame taken;
        const StreamDecoder::Step step = decoder->stream.take(taken);
        writeSized(frameOf(*decoder, taken), frame);
        switch (step) {
            case StreamDecoder::Step::kFrame:
                return ZETAC_OK;
            case StreamDecoder::Step::kNeedInput:
                return ZETAC_NEED_INPUT;
            case StreamDecoder::Step::kEnd:
                return ZETAC_END;
            case StreamDecoder::Step::kNoStream:
                return stop(*decoder, ZETAC_ERROR_NO_STREAM);
            default:
                return stop(*decoder, ZETAC_ERROR_UNSUPPORTED, taken.fault.text);
        }
    });
}

ZetacStatus zetacDecoderReset(ZetacDecoder* decoder, uint64_t position, uint64_t samplePosition) {
    if (decoder == nullptr) return ZETAC_ERROR_ARGUMENT;
    decoder->failure = ZETAC_OK;
    return guarded(*decoder, [&] {
        decoder->stream.reset(position, samplePosition);
        return ZETAC_OK;
    });
}

ZetacStatus zetacDecoderGetInfo(const ZetacDecoder* decoder, ZetacStreamInfo* info) {
    if (decoder == nullptr || !isSized(info)) return ZETAC_ERROR_ARGUMENT;
    const StreamDecoder& stream = decoder->stream;
    if (stream.codec() == Codec::kUnknown || stream.layout() == nullptr) return ZETAC_NEED_INPUT;
    writeSized(infoOf(*decoder), info);
    return ZETAC_OK;
}

const char* zetacDecoderErrorText(const ZetacDecoder* decoder) {
    return decoder == nullptr ? "" : decoder->errorText;
}
