// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <unistd.h>

#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>

#include "commands/commands.h"
#include "console/console.h"
#include "console/text.h"
#include "io/file_data.h"
#include "io/sound_source.h"
#include "io/stream_walk.h"

namespace zetac::tool {
namespace {

using nlohmann::ordered_json;

/** What is known of a file. */
struct Findings {
    std::string file;
    codec::StreamSummary stream;
    std::vector<std::string> notes;
    uint64_t damagedFrames = 0;
    std::string firstDamage;
    uint64_t foreignBytes = 0;
    std::string error;  // why it cannot be decoded; empty when it can
    Outcome outcome = Outcome::kGood;
};

void walk(const std::string& file, Findings& findings) {
    const FileData data(file);
    const auto source = openSound(data.bytes(), {}, false);
    const StreamVisitor visitor = {
        .frame =
            [&](const SoundFrame& frame) {
                findings.foreignBytes += source->foreign().count;
                if (!frame.fault.empty()) ++findings.damagedFrames;
            },
        .damage =
            [&](size_t position, const std::string& what) {
                findings.outcome = Outcome::kDamaged;
                if (findings.firstDamage.empty())
                    findings.firstDamage = "at byte " + std::to_string(position) + ": " + what;
            }};
    try {
        walkStream(*source, visitor);
    } catch (const Failure& failure) {
        findings.error = failure.what();
    }
    findings.foreignBytes += source->foreign().count;
    findings.stream = source->summary();
    findings.notes = source->notes();
}

Findings examine(const std::string& file) {
    Findings findings;
    findings.file = file;
    try {
        walk(file, findings);
    } catch (const Failure& failure) {
        findings.error = failure.what();
    } catch (const std::bad_alloc&) {
        findings.error = "takes more memory than there is";
    }
    if (!findings.error.empty()) findings.outcome = Outcome::kFailed;
    return findings;
}

// --- In words -----------------------------------------------------------------------------------

class Lines {
  public:
    /** Nothing when the text is empty. */
    void add(const char* label, const std::string& text) {
        char padded[32];
        std::snprintf(padded, sizeof padded, "  %-14s", label);
        if (!text.empty()) text_ += padded + shownOn(STDOUT_FILENO, text) + '\n';
    }
    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

std::string containerText(const codec::StreamSummary& s) {
    return s.container + ", MPEG-" + s.mpegVersion + (s.isProtected ? ", with CRC" : "");
}

std::string rateText(const codec::StreamSummary& s) {
    const std::string text = std::to_string(s.sampleRate) + " Hz";
    return s.coreSampleRate == 0 ? text
                                 : text + ", the core " + std::to_string(s.coreSampleRate) + " Hz";
}

std::string durationText(const codec::StreamSummary& s) {
    char text[96];
    std::snprintf(text, sizeof text, "%.3f s, %llu frames of %d samples", s.seconds(),
                  static_cast<unsigned long long>(s.frames), s.frameSamples);
    return text;
}

std::string bitRateText(const codec::StreamSummary& s) {
    char text[64];
    std::snprintf(text, sizeof text, "%.1f kbit/s", s.bitRate / 1000);
    return s.bitRateMode.empty() ? text : text + (", " + s.bitRateMode);
}

std::string gapsText(const codec::StreamSummary& s) {
    if (!s.encoderDelay) return "";
    return std::to_string(*s.encoderDelay) + " samples in front, " +
           std::to_string(*s.encoderPadding) + " behind";
}

std::string inWords(const Findings& f) {
    const codec::StreamSummary& s = f.stream;
    Lines lines;
    lines.add("container", containerText(s));
    lines.add("profile", s.profile);
    lines.add("sampling rate", rateText(s));
    lines.add("channels", s.layout);
    if (f.error.empty()) {
        lines.add("duration", durationText(s));
        lines.add("bit rate", bitRateText(s));
        lines.add("tools", s.tools.empty() ? "none" : join(s.tools, ", "));
    }
    lines.add("tags", join(s.tags, ", "));
    lines.add("encoder", s.encoder);
    lines.add("encoder added", gapsText(s));
    for (const std::string& note : f.notes) lines.add("note", note);
    if (f.damagedFrames > 0) lines.add("damage", std::to_string(f.damagedFrames) + " frames");
    if (f.foreignBytes > 0)
        lines.add("foreign bytes", std::to_string(f.foreignBytes) + " outside of any frame");
    lines.add("first damage", f.firstDamage);
    return lines.text();
}

// --- For programs -------------------------------------------------------------------------------

template <class Value>
ordered_json known(const Value& value, bool isKnown) {
    return isKnown ? ordered_json(value) : ordered_json();
}

ordered_json textOrNull(const std::string& text) {
    return known(text, !text.empty());
}

ordered_json numberOrNull(std::optional<int> number) {
    return known(number.value_or(0), number.has_value());
}

/** The same keys for every file; null stands for what is not known. */
ordered_json asJson(const Findings& f) {
    const codec::StreamSummary& s = f.stream;
    const bool isWhole = f.error.empty();
    return {{"file", f.file},
            {"container", textOrNull(s.container)},
            {"mpeg_version", textOrNull(s.mpegVersion)},
            {"profile", textOrNull(s.profile)},
            {"sample_rate", known(s.sampleRate, s.sampleRate > 0)},
            {"core_sample_rate", known(s.coreSampleRate, s.coreSampleRate > 0)},
            {"channels", known(s.channels, s.channels > 0)},
            {"layout", textOrNull(s.layout)},
            {"frames", known(s.frames, isWhole)},
            {"frame_samples", known(s.frameSamples, s.frameSamples > 0)},
            {"samples", known(s.samples, isWhole)},
            {"duration", known(s.seconds(), isWhole)},
            {"bit_rate", known(s.bitRate, isWhole)},
            {"bit_rate_mode", textOrNull(s.bitRateMode)},
            {"crc", known(s.isProtected, !s.container.empty())},
            {"tools", s.tools},
            {"tags", s.tags},
            {"encoder", textOrNull(s.encoder)},
            {"encoder_delay", numberOrNull(s.encoderDelay)},
            {"encoder_padding", numberOrNull(s.encoderPadding)},
            {"damaged_frames", f.damagedFrames},
            {"first_damage", textOrNull(f.firstDamage)},
            {"foreign_bytes", f.foreignBytes},
            {"error", textOrNull(f.error)}};
}

void print(const Findings& findings) {
    const std::string name = findings.file == "-" ? "standard input" : findings.file;
    if (!findings.stream.container.empty())
        std::printf("%s\n%s", shownOn(STDOUT_FILENO, name).c_str(), inWords(findings).c_str());
}

}  // namespace

Outcome runInfo(const InfoOptions& options) {
    Outcome outcome = Outcome::kGood;
    std::string objects;
    Console console(false);
    for (const std::string& file : options.files) {
        const Findings findings = examine(file);
        outcome = worse(outcome, findings.outcome);
        if (!options.asJson) print(findings);
        if (!findings.error.empty()) console.error(file, findings.error);
        // What is no UTF-8 in a name is replaced, so that the whole stays valid.
        objects += (objects.empty() ? "[" : ",\n ") +
                   asJson(findings).dump(-1, ' ', false, ordered_json::error_handler_t::replace);
    }
    if (options.asJson) std::printf("%s]\n", objects.c_str());
    return outcome;
}

}  // namespace zetac::tool
