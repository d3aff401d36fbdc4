// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac_codec.h>

#include <filesystem>
#include <memory>

#include "commands/commands.h"
#include "console/console.h"
#include "io/failure.h"
#include "io/jobs.h"
#include "io/output_file.h"
#include "io/pcm_input.h"
#include "io/signals.h"

namespace zetac::tool {
namespace {

ZetacEncoderOptions optionsFor(const EncodeOptions& options, const PcmInput& input) {
    ZetacEncoderOptions result = ZETAC_ENCODER_OPTIONS_INIT;
    result.sampleRate = input.sampleRate();
    result.channels = input.channels();
    result.bitRate = 1000 * options.bitRate;
    if (options.quality >= 0) {
        result.rateMode = ZETAC_RATE_VARIABLE;
        result.quality = static_cast<float>(options.quality);
    }
    if (options.mode == ChannelMode::kStereo) result.stereoMode = ZETAC_STEREO_INDEPENDENT;
    result.hasCrc = options.hasCrc;
    return result;
}

void check(ZetacStatus status) {
    if (status < 0) throw Failure(std::string("cannot be encoded: ") + zetacStatusText(status));
}

/** The library's encoder, with its packets in a row. */
class Encoder {
  public:
    explicit Encoder(const ZetacEncoderOptions& options) : channels_(options.channels) {
        ZetacEncoder* encoder = nullptr;
        check(zetacEncoderCreate(&encoder, &options));
        encoder_.reset(encoder);
    }

    /** Appends the packets that are complete. */
    void encode(const std::vector<Zet16s>& pcm, std::vector<Zet8u>& out) {
        const size_t samples = pcm.size() / static_cast<size_t>(channels_);
        for (size_t at = 0; at < samples;) {
            const void* plane = &pcm[at * static_cast<size_t>(channels_)];
            size_t taken = 0;
            check(zetacEncoderFeed(encoder_.get(), &plane, samples - at, &taken));
            at += taken;
            takePackets(out);
        }
    }

    void finish(std::vector<Zet8u>& out) {
        check(zetacEncoderFinish(encoder_.get()));
        takePackets(out);
    }

    std::vector<Zet8u> infoFrame() const {
        ZetacEncoderInfo info = ZETAC_ENCODER_INFO_INIT;
        check(zetacEncoderGetInfo(encoder_.get(), &info));
        std::vector<Zet8u> frame(info.infoFrameBytes);
        check(zetacEncoderGetInfoFrame(encoder_.get(), frame.data(), frame.size()));
        return frame;
    }

  private:
    void takePackets(std::vector<Zet8u>& out) {
        ZetacPacket packet = ZETAC_PACKET_INIT;
        ZetacStatus status;
        while ((status = zetacEncoderTake(encoder_.get(), &packet)) == ZETAC_OK)
            out.insert(out.end(), packet.data, packet.data + packet.bytes);
        check(status);
    }

    std::unique_ptr<ZetacEncoder, void (*)(ZetacEncoder*)> encoder_{nullptr, zetacEncoderFree};
    int channels_;
};

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
    Encoder encoder(optionsFor(options, input));
    OutputFile output(job.output, options.isForced);
    Progress progress(job.input, console);
    std::vector<Zet8u> stream;
    do {
        encoder.encode(pcm, stream);
        output.write(stream);
        stream.clear();
        progress.set(input.progress());
        stopIfInterrupted();
    } while (input.read(pcm));
    encoder.finish(stream);
    output.write(stream);
    output.rewriteStart(encoder.infoFrame());
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
