// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <filesystem>
#include <memory>

#include "commands/commands.h"
#include "console/console.h"
#include "io/failure.h"
#include "io/jobs.h"
#include "io/output_file.h"
#include "io/pcm_input.h"
#include "io/signals.h"
#include "mp3/encoder.h"

namespace zetac::tool {
namespace {

using codec::Mp3Encoder;
using codec::Mp3EncoderSettings;

constexpr int kDefaultBitRate[] = {64, 128};  // kbit/s, by channels

Mp3EncoderSettings settingsFor(const EncodeOptions& options, const PcmInput& input) {
    return {
        .sampleRate = input.sampleRate(),
        .channels = input.channels(),
        .isJoint = options.mode != ChannelMode::kStereo,
        .bitRate = options.bitRate > 0 ? options.bitRate : kDefaultBitRate[input.channels() - 1],
        .quality = options.quality,
        .hasCrc = options.hasCrc};
}

void check(ZetStatus status) {
    if (status < 0)
        throw Failure("cannot be encoded: the library returned " + std::to_string(status));
}

/** Reports progress in bytes of the input file. */
class Progress {
  public:
    Progress(const std::string& file, Console& console) : console_(console) {
        std::error_code error;
        const auto size = std::filesystem::file_size(file, error);
        if (!error) bytes_ = size;
    }
    void set(double part) {
        const auto done = static_cast<uint64_t>(part * static_cast<double>(bytes_));
        console_.advance(done - reported_);
        reported_ = done;
    }

  private:
    Console& console_;
    uint64_t bytes_ = 0;
    uint64_t reported_ = 0;
};

Outcome encodeFile(const Job& job, const EncodeOptions& options, Console& console) {
    PcmInput input(job.input, options.mode == ChannelMode::kMono);
    std::vector<Zet16s> pcm;
    if (!input.read(pcm)) throw Failure("holds no sound");
    const auto encoder = std::make_unique<Mp3Encoder>(settingsFor(options, input));
    OutputFile output(job.output, options.isForced);
    output.write(encoder->infoFrame());
    Progress progress(job.input, console);
    std::vector<Zet8u> stream;
    do {
        check(encoder->encode(pcm.data(), pcm.size() / static_cast<size_t>(input.channels()),
                              stream));
        output.write(stream);
        stream.clear();
        progress.set(input.progress());
        stopIfInterrupted();
    } while (input.read(pcm));
    check(encoder->finish(stream));
    output.write(stream);
    output.rewriteStart(encoder->infoFrame());
    output.commit();

    if (input.sampleRate() != input.fileSampleRate())
        console.note(job.input, "resampled from " + std::to_string(input.fileSampleRate()) +
                                    " to " + std::to_string(input.sampleRate()) + " Hz");
    if (input.limitedSamples() > 0)
        console.note(job.input, std::to_string(input.limitedSamples()) +
                                    " samples beyond full scale were limited");
    const std::string damage = input.damage();
    if (damage.empty()) return Outcome::kGood;
    console.note(job.input, damage);
    return Outcome::kDamaged;
}

}  // namespace

Outcome runEncode(const EncodeOptions& options) {
    return runJobs(options, ".mp3", [&options](const Job& job, Console& console) {
        return encodeFile(job, options, console);
    });
}

}  // namespace zetac::tool
