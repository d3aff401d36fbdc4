// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <optional>

#include "commands/commands.h"
#include "console/console.h"
#include "io/file_data.h"
#include "io/jobs.h"
#include "io/sound_source.h"
#include "io/stream_walk.h"
#include "io/wav_output.h"

namespace zetac::tool {
namespace {

/** Passes samples on without those in front and behind that the encoder added. Until the end has
 *  come it holds back what may be the last ones. */
class Trimmer {
  public:
    Trimmer(WavOutput& output, EncoderGaps gaps, int channels)
        : output_(output), gaps_(gaps), channels_(static_cast<size_t>(channels)) {}

    void write(const Zet16s* pcm, size_t samples) {
        const size_t skipped = std::min(gaps_.front, samples);
        gaps_.front -= skipped;
        held_.insert(held_.end(), pcm + skipped * channels_, pcm + samples * channels_);
        const size_t held = held_.size() / channels_;
        if (held <= gaps_.back) return;
        const size_t ready = held - gaps_.back;
        output_.write(held_.data(), ready);
        held_.erase(held_.begin(), held_.begin() + static_cast<ptrdiff_t>(ready * channels_));
    }

  private:
    WavOutput& output_;
    EncoderGaps gaps_;
    size_t channels_;
    std::vector<Zet16s> held_;
};

/** One file on its way to WAV. */
class FileDecoder {
  public:
    FileDecoder(const Job& job, const DecodeOptions& options, Console& console)
        : job_(job), options_(options), console_(console) {}

    /** Throws Failure. */
    Outcome run();

  private:
    static constexpr uint64_t kReportsMax = 10;

    void write(const SoundSource& source, const SoundFrame& frame);
    void openOutput(const SoundSource& source, size_t samples);
    void report(size_t position, const std::string& what);

    const Job& job_;
    const DecodeOptions& options_;
    Console& console_;
    std::optional<WavOutput> output_;
    std::optional<Trimmer> trimmer_;
    uint64_t silentFrames_ = 0;  // before the layout is known
    uint64_t reports_ = 0;
};

Outcome FileDecoder::run() {
    const FileData data(job_.input);
    const auto source = openSound(data.bytes(), options_.sbr);
    const uint64_t damages = walkStream(
        *source,
        {.frame =
             [&](const SoundFrame& frame) {
                 write(*source, frame);
                 console_.advance(frame.inputBytes);
             },
         .damage = [&](size_t position, const std::string& what) { report(position, what); }});
    output_->commit();
    for (const std::string& note : source->notes()) console_.note(job_.input, note);
    if (damages > kReportsMax) {
        console_.note(job_.input, std::to_string(damages - kReportsMax) + " more damages");
    }
    return damages > 0 ? Outcome::kDamaged : Outcome::kGood;
}

/** Frames that come before the layout is known are made up for in silence when it is. */
void FileDecoder::write(const SoundSource& source, const SoundFrame& frame) {
    if (frame.channels == 0) {
        ++silentFrames_;
        return;
    }
    if (!output_) openOutput(source, frame.samples);
    trimmer_->write(frame.pcm, frame.samples);
}

void FileDecoder::openOutput(const SoundSource& source, size_t samples) {
    const codec::ChannelLayout& layout = source.layout();
    output_.emplace(job_.output, options_.isForced, source.sampleRate(), layout);
    const EncoderGaps gaps = options_.isTrimmed ? source.gaps() : EncoderGaps{};
    trimmer_.emplace(*output_, gaps, layout.channels());
    const std::vector<Zet16s> silence(samples * static_cast<size_t>(layout.channels()));
    for (; silentFrames_ > 0; --silentFrames_) trimmer_->write(silence.data(), samples);
}

void FileDecoder::report(size_t position, const std::string& what) {
    const std::string text = "at byte " + std::to_string(position) + ": " + what;
    if (options_.isStrict) throw Failure(text);
    if (++reports_ <= kReportsMax) console_.note(job_.input, text);
}

}  // namespace

Outcome runDecode(const DecodeOptions& options) {
    return runJobs(options, ".wav", [&options](const Job& job, Console& console) {
        return FileDecoder(job, options, console).run();
    });
}

}  // namespace zetac::tool
