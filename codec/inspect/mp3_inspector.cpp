// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "inspect/mp3_inspector.h"

#include <algorithm>

#include "container/tags.h"

namespace zetac::codec {
namespace {

/** Coding tools, as bits of a set. */
enum CodingTool : unsigned {
    kShortBlocks = 1u << 0,
    kMixedBlocks = 1u << 1,
    kMidSide = 1u << 2,
    kIntensity = 1u << 3,
    kSharedScaleFactors = 1u << 4,
    kReservoir = 1u << 5
};

unsigned toolsOf(const Mp3FrameReader& reader) {
    unsigned tools = reader.mainDataBegin() > 0 ? kReservoir : 0u;
    if (reader.sharesScaleFactors()) tools |= kSharedScaleFactors;
    if (reader.header().mode_extension & 1) tools |= kIntensity;
    if (reader.header().mode_extension & 2) tools |= kMidSide;
    for (int granule = 0; granule < reader.granules(); ++granule) {
        for (int channel = 0; channel < reader.channels(); ++channel) {
            const ZetMP3GranuleSideInfo& info = reader.sideInfo(granule, channel);
            if (info.block_type == 2) tools |= info.mixed_block_flag ? kMixedBlocks : kShortBlocks;
        }
    }
    return tools;
}

std::string versionName(const Mp3Format& format) {
    return format.version == 25 ? "2.5" : std::to_string(format.version);
}

std::string layoutName(unsigned modes) {
    std::string text;
    for (const std::string& name :
         namesOfBits(modes, {"stereo", "joint stereo", "dual channel", "mono"})) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

void addInfoTag(const Mp3InfoTag& tag, StreamSummary& s) {
    s.tags.push_back(tag.name);
    s.encoder = tag.encoder;
    if (!tag.hasGaps) return;
    s.encoderDelay = tag.delay;
    s.encoderPadding = tag.padding;
    s.samples -= std::min(s.samples, static_cast<uint64_t>(tag.delay + tag.padding));
}

}  // namespace

void Mp3Inspector::add(const Mp3Frame& frame, const Mp3DecodedFrame& decoded,
                       const Mp3Decoder& decoder) {
    if (frames_++ == 0) {
        format_ = frame.format;
        lowestRate_ = frame.bitRate;
        channels_ = decoded.channels;
    }
    bytes_ += frame.data.size();
    lowestRate_ = std::min(lowestRate_, frame.bitRate);
    highestRate_ = std::max(highestRate_, frame.bitRate);
    if (frame.format != format_ || decoded.fault.isRefusal) return;
    const ZetMP3Header& header = decoder.reader().header();
    modes_ |= 1u << header.mode;
    isProtected_ = isProtected_ || header.protection_bit == 0;
    if (!failed(decoded.fault)) tools_ |= toolsOf(decoder.reader());
}

std::string Mp3Inspector::bitRateMode() const {
    if (highestRate_ == 0) return "free format";
    return lowestRate_ == highestRate_ ? "constant" : "variable";
}

StreamSummary Mp3Inspector::summary(const Mp3Stream& stream, std::span<const Zet8u> data) const {
    static constexpr const char* kLayers[] = {"I", "II", "III"};
    StreamSummary s;
    s.container = "MPEG audio";
    s.mpegVersion = versionName(format_);
    s.profile = "MPEG-" + s.mpegVersion + " Layer " + kLayers[format_.layer - 1];
    s.sampleRate = format_.sampleRate();
    s.channels = channels_;
    s.layout = layoutName(modes_);
    s.frames = frames_;
    s.frameSamples = format_.samplesPerFrame();
    s.samples = frames_ * static_cast<uint64_t>(s.frameSamples);
    if (s.samples > 0) s.bitRate = static_cast<double>(bytes_) * 8 / s.seconds();
    s.bitRateMode = bitRateMode();
    s.isProtected = isProtected_;
    s.tools = namesOfBits(tools_, {"short blocks", "mixed blocks", "M/S stereo", "intensity stereo",
                                   "shared scale factors", "bit reservoir"});
    for (const Tag& tag : outerTags(data)) s.tags.emplace_back(tag.name);
    if (stream.infoTag()) addInfoTag(*stream.infoTag(), s);
    return s;
}

}  // namespace zetac::codec
