// What an MPEG audio stream consists of, found by unpacking all of it without decoding the sound.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <cstdio>
#include <memory>

#include "container/tags.h"
#include "inspect/report.h"
#include "mp3/frame_reader.h"

namespace zetac::tool {
namespace {

using codec::Fault;
using codec::Mp3Format;
using codec::Mp3Frame;
using codec::Mp3FrameReader;
using codec::Mp3InfoTag;
using codec::StreamFault;

/** Coding tools, as bits of a set. */
enum CodingTool : unsigned {
    kShortBlocks = 1u << 0,
    kMixedBlocks = 1u << 1,
    kMidSide = 1u << 2,
    kIntensity = 1u << 3,
    kSharedScaleFactors = 1u << 4,
    kReservoir = 1u << 5
};

struct Mp3Summary {
    Mp3Format format;
    uint64_t frames = 0;
    uint64_t bytes = 0;
    int lowestRate = 0;  // bit/s; 0 in free format
    int highestRate = 0;
    unsigned modes = 0;  // bit per mode
    unsigned tools = 0;
    bool isProtected = false;
    std::optional<Mp3InfoTag> infoTag;
    Damage damage;

    bool isLayer3() const { return format.layer == 3 && format.version != 25; }
    double seconds() const;
    double bitsPerSecond() const;
};

/** Without the samples that the encoder added, when it says so. */
double Mp3Summary::seconds() const {
    double samples = static_cast<double>(frames) * format.samplesPerFrame();
    if (infoTag && infoTag->hasGaps) samples -= infoTag->delay + infoTag->padding;
    return std::max(0., samples / format.sampleRate());
}

double Mp3Summary::bitsPerSecond() const {
    const double duration =
        static_cast<double>(frames) * format.samplesPerFrame() / format.sampleRate();
    return duration == 0 ? 0 : static_cast<double>(bytes) * 8 / duration;
}

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

void addLayer3(Mp3Summary& summary, Mp3FrameReader& reader, const Mp3Frame& frame) {
    if (frame.format != summary.format) {
        reader.forgetMainData();
        summary.damage.add(frame.position, StreamFault::kFormatChanged.text);
        return;
    }
    Fault fault = reader.begin(frame);
    summary.modes |= 1u << reader.header().mode;
    summary.isProtected = summary.isProtected || reader.header().protection_bit == 0;
    if (!failed(fault)) summary.tools |= toolsOf(reader);
    for (int granule = 0; granule < reader.granules() && !failed(fault); ++granule) {
        fault = reader.readGranule(granule);
    }
    if (failed(fault)) summary.damage.add(frame.position, fault.text);
}

Mp3Summary summarise(std::span<const Zet8u> data) {
    const auto stream = codec::Mp3Stream::open(data);
    const auto reader = std::make_unique<Mp3FrameReader>();
    Mp3Summary summary;
    summary.infoTag = stream->infoTag();
    Mp3Frame frame;
    while (stream->next(frame)) {
        summary.damage.foreignBytes += stream->foreign().bytes;
        if (summary.frames++ == 0) {
            summary.format = frame.format;
            summary.lowestRate = frame.bitRate;
        }
        summary.bytes += frame.data.size();
        summary.lowestRate = std::min(summary.lowestRate, frame.bitRate);
        summary.highestRate = std::max(summary.highestRate, frame.bitRate);
        if (summary.isLayer3()) addLayer3(summary, *reader, frame);
    }
    summary.damage.foreignBytes += stream->foreign().bytes;
    return summary;
}

// --- In words -----------------------------------------------------------------------------------

std::string formatName(const Mp3Format& format) {
    static constexpr const char* kLayers[] = {"I", "II", "III"};
    const std::string version =
        format.version == 25 ? "MPEG-2.5" : "MPEG-" + std::to_string(format.version);
    return version + " Layer " + kLayers[format.layer - 1];
}

const char* rateMode(const Mp3Summary& s) {
    if (s.highestRate == 0) return "free format";
    return s.lowestRate == s.highestRate ? "constant" : "variable";
}

std::vector<std::string> modeNames(const Mp3Summary& s) {
    return pick(s.modes, {"stereo", "joint stereo", "dual channel", "mono"});
}

std::vector<std::string> toolNames(const Mp3Summary& s) {
    return pick(s.tools, {"short blocks", "mixed blocks", "M/S stereo", "intensity stereo",
                          "shared scale factors", "bit reservoir"});
}

std::vector<std::string> tagNames(std::span<const Zet8u> data, const Mp3Summary& s) {
    std::vector<std::string> names;
    for (const codec::Tag& tag : codec::outerTags(data)) names.emplace_back(tag.name);
    if (s.infoTag) names.push_back(s.infoTag->name);
    return names;
}

void addLines(const Mp3Summary& s, const std::vector<std::string>& tags, Report& report) {
    char text[96];
    report.line("format", formatName(s.format) + (s.isProtected ? ", with CRC" : ""));
    report.line("sampling rate", std::to_string(s.format.sampleRate()) + " Hz");
    if (s.isLayer3()) report.line("channels", join(modeNames(s), ", "));
    std::snprintf(text, sizeof text, "%.3f s, %llu frames of %d samples", s.seconds(),
                  static_cast<unsigned long long>(s.frames), s.format.samplesPerFrame());
    report.line("duration", text);
    std::snprintf(text, sizeof text, "%.1f kbit/s, %s", s.bitsPerSecond() / 1000, rateMode(s));
    report.line("bit rate", text);
    if (!tags.empty()) report.line("tags", join(tags, ", "));
    if (s.infoTag && !s.infoTag->encoder.empty()) report.line("encoder", s.infoTag->encoder);
    if (s.infoTag && s.infoTag->hasGaps) {
        report.line("encoder added", std::to_string(s.infoTag->delay) + " samples in front, " +
                                         std::to_string(s.infoTag->padding) + " behind");
    }
    const std::string tools = s.isLayer3() ? join(toolNames(s), ", ") : "unknown";
    report.line("tools", tools.empty() ? "none" : tools);
    if (!s.isLayer3()) report.line("note", "zetac decodes Layer III of MPEG-1 and MPEG-2");
}

void addMembers(const Mp3Summary& s, const std::vector<std::string>& tags, Report& report) {
    report.member("container", "MPEG audio");
    report.member("profile", formatName(s.format));
    report.member("sample_rate", s.format.sampleRate());
    report.member("modes", modeNames(s));
    report.member("frames", s.frames);
    report.member("duration", s.seconds());
    report.member("bit_rate", s.bitsPerSecond());
    report.member("bit_rate_mode", rateMode(s));
    report.member("tags", tags);
    if (s.infoTag) report.member("encoder", s.infoTag->encoder);
    if (s.infoTag && s.infoTag->hasGaps) {
        report.member("encoder_delay", s.infoTag->delay);
        report.member("encoder_padding", s.infoTag->padding);
    }
    report.member("tools", toolNames(s));
    report.member("crc", s.isProtected);
}

}  // namespace

void reportMp3(std::span<const Zet8u> data, Report& report) {
    const Mp3Summary summary = summarise(data);
    const std::vector<std::string> tags = tagNames(data, summary);
    addLines(summary, tags, report);
    addMembers(summary, tags, report);
    report.add(summary.damage);
}

}  // namespace zetac::tool
