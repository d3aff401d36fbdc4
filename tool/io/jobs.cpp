// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "io/jobs.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <filesystem>
#include <map>
#include <numeric>
#include <set>
#include <system_error>
#include <thread>

#include "io/failure.h"
#include "io/output_file.h"
#include "io/signals.h"

namespace zetac::tool {
namespace {

namespace fs = std::filesystem;

std::string outputFor(const std::string& input, const ConversionOptions& options,
                      const std::string& extension) {
    if (options.output == "-" || (options.output.empty() && input == "-")) return "-";
    const fs::path name = input == "-" ? fs::path("standard-input" + extension)
                                       : fs::path(input).filename().replace_extension(extension);
    if (options.output.empty()) return fs::path(input).replace_filename(name).string();
    std::error_code ignored;
    const bool isFolder = fs::is_directory(options.output, ignored) ||
                          options.output.back() == '/' || options.files.size() > 1;
    return isFolder ? (fs::path(options.output) / name).string() : options.output;
}

/** The format that the extension of a file means, or "". */
std::string formatOf(const std::string& file) {
    static const std::map<std::string, const char*> kFormats = {
        {".wav", "WAV"},    {".wave", "WAV"},
        {".mp3", "MP3"},    {".aac", "AAC"},
        {".adts", "AAC"},   {".m4a", "MPEG-4"},
        {".mp4", "MPEG-4"}, {".flac", "FLAC"},
        {".aif", "AIFF"},   {".aiff", "AIFF"},
        {".ogg", "Ogg"},    {".oga", "Ogg"},
        {".opus", "Opus"},  {".au", "AU"},
        {".caf", "CAF"},    {".w64", "Wave64"},
        {".rf64", "RF64"},  {".raw", "raw PCM"},
        {".wma", "WMA"},    {".mp2", "MPEG audio Layer II"}};
    std::string extension = fs::path(file).extension().string();
    std::ranges::transform(extension, extension.begin(),
                           [](unsigned char c) { return std::tolower(c); });
    const auto found = kFormats.find(extension);
    return found == kFormats.end() ? "" : found->second;
}

/** "encode in.wav out.mp3" means what it looks like. */
void adoptSecondName(ConversionOptions& options, const std::string& format) {
    if (!options.output.empty() || options.files.size() != 2) return;
    if (formatOf(options.files[1]) != format || formatOf(options.files[0]) == format) return;
    options.output = options.files[1];
    options.files.pop_back();
}

/** Refuses an output name that cannot be meant. */
void checkOutputName(const ConversionOptions& options, const std::string& format) {
    const std::string& output = options.output;
    std::error_code ignored;
    if (output.empty() || output == "-" || output.back() == '/' ||
        fs::is_directory(output, ignored)) {
        return;
    }
    const std::string meant = formatOf(output);
    if (options.files.size() > 1 && (!meant.empty() || fs::exists(output, ignored)))
        throw Failure(output, "several files go into a folder, and this is none");
    const bool isStream = locateOutput(output).kind == OutputPlace::Kind::kStream;
    if (!meant.empty() && meant != format && !isStream)
        throw Failure(output,
                      "means " + meant + " by its extension, and " + format + " is written");
}

bool isOneOf(const std::string& file, const std::vector<std::string>& others) {
    std::error_code ignored;
    return std::ranges::any_of(others, [&](const std::string& other) {
        return other != "-" && fs::equivalent(file, other, ignored);
    });
}

/** Refuses what would destroy a file. */
void checkOutput(const Job& job, const ConversionOptions& options, std::set<std::string>& taken) {
    if (job.output == "-") {
        if (isatty(STDOUT_FILENO)) throw Failure("sound is not written to a terminal");
        if (options.files.size() > 1) throw Failure("only one file can go to standard output");
        return;
    }
    const OutputPlace place = locateOutput(job.output);
    if (place.kind == OutputPlace::Kind::kStream) return;
    if (isOneOf(job.output, {job.input})) throw Failure("would be overwritten by its own output");
    if (isOneOf(job.output, options.files))
        throw Failure(job.output, "is an input, and would be overwritten by an output");
    std::error_code ignored;
    if (!taken.insert(fs::weakly_canonical(fs::absolute(place.path), ignored)).second) {
        throw Failure("would have the same output as another input: " + job.output);
    }
    if (!options.isForced && place.kind == OutputPlace::Kind::kFile) {
        throw Failure(job.output, "exists already; --force overwrites it");
    }
}

void report(const Job& job, const Failure& failure, Console& console) {
    console.error(failure.file().empty() ? job.input : failure.file(), failure.what());
}

/** Plans every file before the first one is touched. */
std::vector<Job> plan(const ConversionOptions& options, const std::string& extension,
                      Console& console) {
    std::vector<Job> jobs;
    std::set<std::string> taken;
    for (const std::string& input : options.files) {
        Job job{input, outputFor(input, options, extension)};
        try {
            checkOutput(job, options, taken);
        } catch (const Failure& failure) {
            report(job, failure, console);
            continue;
        }
        std::error_code error;
        const auto size = fs::file_size(input, error);
        if (!error) console.expect(size);
        jobs.push_back(std::move(job));
    }
    return jobs;
}

/** One file; its failure does not concern the others. */
Outcome runOne(const Job& job, const Work& work, Console& console) {
    try {
        return work(job, console);
    } catch (const Failure& failure) {
        if (isInterrupted()) return Outcome::kInterrupted;
        report(job, failure, console);
    } catch (const std::bad_alloc&) {
        console.error(job.input, "takes more memory than there is");
    } catch (const std::exception& exception) {
        console.error(job.input, exception.what());
    }
    return Outcome::kFailed;
}

/** Runs a function on several threads, or on as many as can be had. */
void runOnThreads(size_t count, const std::function<void()>& function) {
    std::vector<std::jthread> threads;
    try {
        while (threads.size() + 1 < count) threads.emplace_back(function);
    } catch (const std::system_error&) {
    }
    function();
}

}  // namespace

Outcome runJobs(ConversionOptions options, const std::string& extension, const Work& work) {
    catchSignals();
    Console console(options.isQuiet);
    const std::string format = formatOf("name" + extension);
    adoptSecondName(options, format);
    try {
        checkOutputName(options, format);
    } catch (const Failure& failure) {
        console.error(failure.file(), failure.what());
        return Outcome::kFailed;
    }
    const std::vector<Job> jobs = plan(options, extension, console);
    std::vector<Outcome> outcomes(jobs.size(), Outcome::kInterrupted);
    std::atomic<size_t> nextJob{0};
    const size_t wanted = options.jobs > 0 ? static_cast<size_t>(options.jobs)
                                           : std::max(1u, std::thread::hardware_concurrency());
    runOnThreads(std::min(wanted, jobs.size()), [&] {
        for (size_t i = nextJob++; i < jobs.size() && !isInterrupted(); i = nextJob++)
            outcomes[i] = runOne(jobs[i], work, console);
    });
    const bool isPlanned = jobs.size() == options.files.size();
    return std::accumulate(outcomes.begin(), outcomes.end(),
                           isPlanned ? Outcome::kGood : Outcome::kFailed, worse);
}

}  // namespace zetac::tool
