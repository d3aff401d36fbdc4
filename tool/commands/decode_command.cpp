// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <optional>

#include "commands/commands.h"
#include "console/console.h"
#include "io/file_data.h"
#include "io/jobs.h"
#include "io/sound_source.h"
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
    void handle(const SoundSource& source, const SoundFrame& frame);
    void openOutput(const SoundSource& source, size_t samples);
    void report(size_t position, const std::string& what);
    void reportForeign(const ForeignBytes& foreign);

    const Job& job_;
    const DecodeOptions& options_;
    Console& console_;
    std::optional<WavOutput> output_;
    std::optional<Trimmer> trimmer_;
    uint64_t goodFrames_ = 0;
    uint64_t silentFrames_ = 0;  // before the layout is known
    uint64_t damages_ = 0;
};

Outcome FileDecoder::run() {
    const FileData data(job_.input);
    const auto source = openSound(data.bytes(), options_.sbr);
    SoundFrame frame;
    while (!isInterrupted() && source->next(frame)) {
        reportForeign(source->foreign());
        handle(*source, frame);
        console_.advance(frame.inputBytes);
    }
    if (isInterrupted()) return Outcome::kInterrupted;
    reportForeign(source->foreign());
    if (goodFrames_ == 0) throw Failure("holds no frame that can be decoded");
    output_->commit();
    for (const std::string& note : source->notes()) console_.note(job_.input, note);
    constexpr uint64_t kReportsMax = 10;
    if (damages_ > kReportsMax) {
        console_.note(job_.input, std::to_string(damages_ - kReportsMax) + " more damages");
    }
    return damages_ > 0 ? Outcome::kDamaged : Outcome::kGood;
}

/** Reports a fault and writes the frame, concealed or not. Frames that come before the layout is
 *  known are made up for in silence when it is. */
void FileDecoder::handle(const SoundSource& source, const SoundFrame& frame) {
    if (frame.fault.empty() || frame.isHeard) ++goodFrames_;
    if (!frame.fault.empty() && frame.isFaultNews) report(frame.position, frame.fault);
    if (frame.channels == 0) {
        ++silentFrames_;
        return;
    }
    if (!output_) openOutput(source, frame.samples);
    trimmer_->write(frame.pcm, frame.samples);
}

void FileDecoder::openOutput(const SoundSource& source, size_t samples) {
    const codec::ChannelLayout& layout = source.layout();
    output_.emplace(job_.output, source.sampleRate(), layout);
    const EncoderGaps gaps = options_.isTrimmed ? source.gaps() : EncoderGaps{};
    trimmer_.emplace(*output_, gaps, layout.channels());
    const std::vector<Zet16s> silence(samples * static_cast<size_t>(layout.channels()));
    for (; silentFrames_ > 0; --silentFrames_) trimmer_->write(silence.data(), samples);
}

void FileDecoder::report(size_t position, const std::string& what) {
    constexpr uint64_t kReportsMax = 10;
    const std::string text = "at byte " + std::to_string(position) + ": " + what;
    if (options_.isStrict) throw Failure(text);
    if (++damages_ <= kReportsMax) console_.note(job_.input, text);
}

void FileDecoder::reportForeign(const ForeignBytes& foreign) {
    if (foreign.count == 0) return;
    report(foreign.position, std::to_string(foreign.count) + " bytes that belong to no frame");
}

}  // namespace

Outcome runDecode(const DecodeOptions& options) {
    return runJobs(options, ".wav", [&options](const Job& job, Console& console) {
        return FileDecoder(job, options, console).run();
    });
}

}  // namespace zetac::tool
