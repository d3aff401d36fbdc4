// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "inspect/aac_inspector.h"

#include <algorithm>

namespace zetac::codec {
namespace {

/** Coding tools, as bits of a set. */
enum CodingTool : unsigned {
    kShortBlocks = 1u << 0,
    kMidSide = 1u << 1,
    kIntensity = 1u << 2,
    kNoise = 1u << 3,
    kTemporalNoiseShaping = 1u << 4,
    kPulses = 1u << 5,
    kPrediction = 1u << 6,
    kLongTermPrediction = 1u << 7,
    kCoupling = 1u << 8,
    kSbr = 1u << 9,
    kParametricStereo = 1u << 10
};

unsigned toolsOfChannel(const ChannelData& channel) {
    unsigned tools = 0;
    if (channel.ics().window_sequence == zetAacEightShort) tools |= kShortBlocks;
    if (channel.hasCodebook(zetAacNoiseCb)) tools |= kNoise;
    if (channel.hasCodebook(zetAacIntensityCb) || channel.hasCodebook(zetAacIntensityCb2)) {
        tools |= kIntensity;
    }
    if (channel.info.tns_data_present) tools |= kTemporalNoiseShaping;
    if (channel.info.pulse_data_present) tools |= kPulses;
    return tools;
}

bool usesMidSide(const ZetAACChanPairElt& pair, const ZetAACIcsInfo& ics) {
    if (!pair.common_window || pair.ms_mask_present == 0) return false;
    if (pair.ms_mask_present == 2) return true;
    for (int group = 0; group < ics.num_window_groups; ++group) {
        const Zet8u* row = pair.ms_used[group];
        if (std::any_of(row, row + ics.max_sfb, [](Zet8u used) { return used != 0; })) return true;
    }
    return false;
}

unsigned toolsOfBlock(BlockParser& parser, unsigned predictionTool) {
    unsigned tools = parser.hasSbr() ? kSbr : 0u;
    if (parser.hasCoupling()) tools |= kCoupling;
    for (const AudioElement& element : parser.elements()) {
        const ChannelData& first = parser.channel(element.firstChannel);
        tools |= toolsOfChannel(first);
        bool isPredicted = first.ics().predictor_data_present != 0;
        if (element.id == ElementId::kPair) {
            const ChannelData& second = parser.channel(element.firstChannel + 1);
            tools |= toolsOfChannel(second);
            isPredicted = isPredicted || second.ics().predictor_data_present != 0;
            if (usesMidSide(element.pair, first.ics())) tools |= kMidSide;
        }
        if (isPredicted) tools |= predictionTool;
    }
    return tools;
}

std::string profileName(int profile, unsigned tools) {
    static constexpr const char* kNames[] = {"AAC Main", "AAC LC", "AAC SSR", "AAC LTP"};
    const std::string name = kNames[profile & 3];
    if (tools & kParametricStereo) return name + " with SBR and parametric stereo (HE-AAC v2)";
    return tools & kSbr ? name + " with SBR (HE-AAC)" : name;
}

}  // namespace

void AacInspector::add(const RawBlock& block, const DecodedFrame& decoded, AacDecoder& decoder) {
    if (blocks_++ == 0) format_ = block.format;
    bytes_ += decoded.bytesUsed;
    isProtected_ = isProtected_ || block.isProtected;
    isDoubled_ = decoder.decodesSbr();
    if (failed(decoded.fault)) return;
    BlockParser& parser = decoder.parser();
    const bool isMain = format_.profile == 0;
    tools_ |= toolsOfBlock(parser, isMain ? kPrediction : kLongTermPrediction);
    if (decoder.hasParametricStereo()) tools_ |= kParametricStereo;
    if (channels_ > 0) return;
    layout_ = parser.layout()->describe();
    channels_ = parser.channels();
}

StreamSummary AacInspector::summary(const BlockStream& stream) const {
    const int factor = isDoubled_ ? 2 : 1;
    const int coreRate = format_.sampleRate();
    StreamSummary s;
    s.container = stream.name();
    s.mpegVersion = std::to_string(format_.mpegVersion);
    s.profile = profileName(format_.profile, tools_);
    s.sampleRate = coreRate * factor;
    s.coreSampleRate = isDoubled_ ? coreRate : 0;
    s.channels = channels_;
    s.layout = layout_;
    s.frames = blocks_;
    s.frameSamples = ZETAC_AAC_FRAME_LEN * factor;
    s.samples = blocks_ * static_cast<uint64_t>(s.frameSamples);
    if (s.samples > 0) s.bitRate = static_cast<double>(bytes_) * 8 / s.seconds();
    s.isProtected = isProtected_;
    s.tools = namesOfBits(
        tools_, {"short blocks", "M/S stereo", "intensity stereo", "PNS", "TNS", "pulse data",
                 "prediction", "long-term prediction", "coupling", "SBR", "parametric stereo"});
    return s;
}

}  // namespace zetac::codec
