// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <optional>
#include <set>
#include <thread>

#include "commands.h"
#include "console.h"
#include "file_data.h"
#include "sound_source.h"
#include "wav_output.h"

namespace zetac::tool {
namespace {

namespace fs = std::filesystem;

/** Set by a signal; the work then stops between two frames and leaves nothing behind. */
std::atomic<bool> isInterrupted{false};

void interrupt(int) {
    isInterrupted = true;
}

/** A second signal of the same kind ends the program at once, and none restarts a read. */
void catchSignals() {
    struct sigaction action {};
    action.sa_handler = interrupt;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

struct Job {
    std::string input;
    std::string output;
};

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
    while (!isInterrupted && source->next(frame)) {
        reportForeign(source->foreign());
        handle(*source, frame);
        console_.advance(frame.inputBytes);
    }
    if (isInterrupted) return Outcome::kInterrupted;
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

// --- Many files ---------------------------------------------------------------------------------

std::string outputFor(const std::string& input, const DecodeOptions& options) {
    if (options.output == "-" || (options.output.empty() && input == "-")) return "-";
    const fs::path name = input == "-" ? fs::path("standard-input.wav")
                                       : fs::path(input).filename().replace_extension(".wav");
    if (options.output.empty()) return fs::path(input).replace_filename(name).string();
    std::error_code ignored;
    const bool isFolder = fs::is_directory(options.output, ignored) ||
                          options.output.back() == '/' || options.files.size() > 1;
    return isFolder ? (fs::path(options.output) / name).string() : options.output;
}

/** Refuses what would destroy a file. */
void checkOutput(const Job& job, const DecodeOptions& options, std::set<std::string>& taken) {
    if (job.output == "-") {
        if (isatty(STDOUT_FILENO)) throw Failure("sound is not written to a terminal");
        if (options.files.size() > 1) throw Failure("only one file can go to standard output");
        return;
    }
    std::error_code error;
    if (job.input != "-" && fs::equivalent(job.input, job.output, error)) {
        throw Failure("would be overwritten by its own output");
    }
    if (!taken.insert(fs::absolute(job.output).lexically_normal()).second) {
        throw Failure("would have the same output as another input: " + job.output);
    }
    if (!options.isForced && fs::exists(job.output, error)) {
        throw Failure(job.output + " exists already; --force overwrites it");
    }
}

Outcome runJob(const Job& job, const DecodeOptions& options, Console& console) {
    try {
        return FileDecoder(job, options, console).run();
    } catch (const std::exception& failure) {
        if (!isInterrupted) console.error(job.input, failure.what());
    }
    return Outcome::kFailed;
}

/** Plans every file before the first one is touched. */
std::vector<Job> plan(const DecodeOptions& options, Console& console, Outcome& outcome) {
    std::vector<Job> jobs;
    std::set<std::string> taken;
    for (const std::string& input : options.files) {
        Job job{input, outputFor(input, options)};
        try {
            checkOutput(job, options, taken);
        } catch (const Failure& failure) {
            console.error(input, failure.what());
            outcome = Outcome::kFailed;
            continue;
        }
        std::error_code error;
        const auto size = fs::file_size(input, error);
        if (!error) console.expect(size);
        jobs.push_back(std::move(job));
    }
    return jobs;
}

}  // namespace

Outcome runDecode(const DecodeOptions& options) {
    catchSignals();
    Console console(options.isQuiet);
    Outcome planned = Outcome::kGood;
    const std::vector<Job> jobs = plan(options, console, planned);

    std::atomic<size_t> nextJob{0};
    std::atomic<Outcome> outcome{planned};
    const auto work = [&] {
        for (size_t i = nextJob++; i < jobs.size() && !isInterrupted; i = nextJob++) {
            const Outcome own = runJob(jobs[i], options, console);
            Outcome seen = outcome;
            while (!outcome.compare_exchange_weak(seen, worse(seen, own))) {
            }
        }
    };
    const size_t wanted = options.jobs > 0 ? static_cast<size_t>(options.jobs)
                                           : std::max(1u, std::thread::hardware_concurrency());
    {
        std::vector<std::jthread> threads;
        for (size_t i = 1; i < std::min(wanted, jobs.size()); ++i) threads.emplace_back(work);
        work();
    }
    return isInterrupted ? Outcome::kInterrupted : outcome.load();
}

}  // namespace zetac::tool
