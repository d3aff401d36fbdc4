// What an AAC stream consists of, found by parsing all of it without decoding the sound.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

#include "aac/block.h"
#include "container/aac_stream.h"
#include "inspect/report.h"
#include "sbr/data.h"

namespace zetac::tool {
namespace {

using codec::AudioElement;
using codec::BlockParser;
using codec::ChannelData;
using codec::ElementId;
using codec::Fault;
using codec::RawBlock;

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

struct AacSummary {
    std::string container;
    codec::StreamFormat format;
    std::string layout;  // in words; empty when unknown
    int channels = 0;
    uint64_t blocks = 0;  // of 1024 samples per channel
    uint64_t audioBytes = 0;
    unsigned tools = 0;
    bool isProtected = false;
    bool isDoubled = false;  // by SBR
    bool isParsed = true;    // false: a profile of which only the container was read
    Damage damage;

    int sampleRate() const { return format.sampleRate() * (isDoubled ? 2 : 1); }
    int frameLength() const { return ZETAC_AAC_FRAME_LEN * (isDoubled ? 2 : 1); }
    double seconds() const;
    double bitsPerSecond() const;
    /** Such as "AAC LC". */
    std::string profile() const;
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

/** Reads the SBR data of all elements. */
class SbrScan {
  public:
    /** @return the first fault */
    Fault add(BlockParser& parser) {
        Fault first = Fault::kNone;
        for (const AudioElement& element : parser.elements()) {
            auto& sbr = parsers_[static_cast<size_t>(element.firstChannel)];
            if (!sbr) {
                sbr = std::make_unique<codec::SbrParser>(element.id == ElementId::kPair,
                                                         2 * parser.format().sampleRate());
            }
            const Fault fault = sbr->parse(element.sbr);
            if (!failed(first)) first = fault;
            hasParametricStereo_ = hasParametricStereo_ || sbr->hasParametricStereo();
        }
        return first;
    }

    void lose() {
        for (const auto& sbr : parsers_) {
            if (sbr) sbr->lose();
        }
    }

    bool hasParametricStereo() const { return hasParametricStereo_; }

  private:
    std::array<std::unique_ptr<codec::SbrParser>, codec::kChannelsMax> parsers_;
    bool hasParametricStereo_ = false;
};

/** @return whether the block is good, whatever its SBR data are */
bool addBlock(AacSummary& summary, BlockParser& parser, SbrScan& sbr, const RawBlock& block) {
    const Fault fault = parser.parse(block);
    summary.audioBytes += parser.bytesUsed();
    summary.isProtected = summary.isProtected || block.isProtected;
    if (failed(fault)) {
        summary.damage.add(block.position, fault.text);
        sbr.lose();
        return false;
    }
    if (summary.isDoubled) {
        const Fault sbrFault = sbr.add(parser);
        if (failed(sbrFault)) summary.damage.add(block.position, sbrFault.text);
        if (sbr.hasParametricStereo()) summary.tools |= kParametricStereo;
    }
    const bool isMain = summary.format.profile == 0;
    summary.tools |= toolsOfBlock(parser, isMain ? kPrediction : kLongTermPrediction);
    if (summary.layout.empty() && parser.layout()) {
        summary.layout = parser.layout()->describe();
        summary.channels = parser.channels();
    }
    return true;
}

std::vector<std::string> namesOf(unsigned tools) {
    return pick(tools,
                {"short blocks", "M/S stereo", "intensity stereo", "PNS", "TNS", "pulse data",
                 "prediction", "long-term prediction", "coupling", "SBR", "parametric stereo"});
}

double AacSummary::seconds() const {
    const int rate = format.sampleRate();
    return rate == 0 ? 0 : static_cast<double>(blocks) * ZETAC_AAC_FRAME_LEN / rate;
}

double AacSummary::bitsPerSecond() const {
    return seconds() == 0 ? 0 : static_cast<double>(audioBytes) * 8 / seconds();
}

std::string AacSummary::profile() const {
    static constexpr const char* kNames[] = {"AAC Main", "AAC LC", "AAC SSR", "AAC LTP"};
    const std::string name = kNames[format.profile & 3];
    if (tools & kParametricStereo) return name + " with SBR and parametric stereo (HE-AAC v2)";
    return tools & kSbr ? name + " with SBR (HE-AAC)" : name;
}

AacSummary summarise(std::span<const Zet8u> data) {
    const auto stream = codec::openStream(data);
    AacSummary summary;
    summary.container = stream->name();
    summary.isDoubled = codec::carriesSbr(data);
    BlockParser parser;
    SbrScan sbr;
    RawBlock block;
    while (stream->next(block)) {
        summary.damage.foreignBytes += stream->skippedBytes();
        if (summary.blocks++ == 0) {
            summary.format = block.format;
            summary.isParsed = !parser.open(block).isRefusal;
        }
        bool isGood = true;
        if (summary.isParsed) {
            isGood = addBlock(summary, parser, sbr, block);
        } else {
            summary.audioBytes += block.data.size();
        }
        stream->finish(summary.isParsed ? parser.bytesUsed() : block.data.size(), isGood);
    }
    summary.damage.foreignBytes += stream->skippedBytes();
    return summary;
}

/** Such as "ADTS, MPEG-4, with CRC". */
std::string container(const AacSummary& s) {
    return s.container + ", MPEG-" + std::to_string(s.format.mpegVersion) +
           (s.isProtected ? ", with CRC" : "");
}

void addLines(const AacSummary& s, Report& report) {
    char number[64];
    report.line("container", container(s));
    report.line("profile", s.profile());
    report.line(
        "sampling rate",
        std::to_string(s.sampleRate()) + " Hz" +
            (s.isDoubled ? ", the core " + std::to_string(s.format.sampleRate()) + " Hz" : ""));
    report.line("channels", s.layout.empty() ? "unknown" : s.layout);
    std::snprintf(number, sizeof number, "%.3f s, %llu frames of %d samples", s.seconds(),
                  static_cast<unsigned long long>(s.blocks), s.frameLength());
    report.line("duration", number);
    std::snprintf(number, sizeof number, "%.1f kbit/s", s.bitsPerSecond() / 1000);
    report.line("bit rate", number);
    const std::string tools = s.isParsed ? join(namesOf(s.tools), ", ") : "unknown";
    report.line("tools", tools.empty() ? "none" : tools);
    if (s.tools & kParametricStereo) {
        report.line("note", "zetac plays HE-AAC v2 as mono");
    } else if ((s.tools & kSbr) && !s.isDoubled) {
        report.line("note", "zetac decodes the core and leaves the SBR data out");
    }
}

}  // namespace

void reportAac(std::span<const Zet8u> data, Report& report) {
    const AacSummary s = summarise(data);
    addLines(s, report);
    report.member("container", s.container);
    report.member("mpeg_version", s.format.mpegVersion);
    report.member("profile", s.profile());
    report.member("sample_rate", s.sampleRate());
    if (s.isDoubled) report.member("core_sample_rate", s.format.sampleRate());
    report.member("channels", s.channels);
    report.member("layout", s.layout);
    report.member("frames", s.blocks);
    report.member("duration", s.seconds());
    report.member("bit_rate", s.bitsPerSecond());
    report.member("tools", namesOf(s.tools));
    report.member("crc", s.isProtected);
    report.add(s.damage);
}

}  // namespace zetac::tool
