// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "io/jobs.h"

#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <set>
#include <thread>

#include "io/file_data.h"

namespace zetac::tool {
namespace {

namespace fs = std::filesystem;

std::atomic<bool> wasSignalled{false};

void interrupt(int) {
    wasSignalled = true;
}

/** A second signal of the same kind ends the program at once, and none restarts a read. */
void catchSignals() {
    struct sigaction action {};
    action.sa_handler = interrupt;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

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

/** Refuses what would destroy a file. */
void checkOutput(const Job& job, const ConversionOptions& options, std::set<std::string>& taken) {
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

/** Plans every file before the first one is touched. */
std::vector<Job> plan(const ConversionOptions& options, const std::string& extension,
                      Console& console, Outcome& outcome) {
    std::vector<Job> jobs;
    std::set<std::string> taken;
    for (const std::string& input : options.files) {
        Job job{input, outputFor(input, options, extension)};
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

bool isInterrupted() {
    return wasSignalled;
}

Outcome runJobs(const ConversionOptions& options, const std::string& extension,
                const std::function<Outcome(const Job&, Console&)>& run) {
    catchSignals();
    Console console(options.isQuiet);
    Outcome planned = Outcome::kGood;
    const std::vector<Job> jobs = plan(options, extension, console, planned);

    const auto runOne = [&](const Job& job) {
        try {
            return run(job, console);
        } catch (const std::exception& failure) {
            if (!isInterrupted()) console.error(job.input, failure.what());
        }
        return Outcome::kFailed;
    };
    std::atomic<size_t> nextJob{0};
    std::atomic<Outcome> outcome{planned};
    const auto work = [&] {
        for (size_t i = nextJob++; i < jobs.size() && !isInterrupted(); i = nextJob++) {
            const Outcome own = runOne(jobs[i]);
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
    return isInterrupted() ? Outcome::kInterrupted : outcome.load();
}

}  // namespace zetac::tool
