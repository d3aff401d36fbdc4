#include "measure.h"

#include <time.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace peers {
namespace {

// Processor time of the whole process: what other programs take from the machine does not count,
// what a decoder might do in threads of its own does.
double cpuSeconds() {
    timespec t;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

// How far a decoder's level may lie from the others'. Measured on 48 clips of LC, Main, LTP and
// SBR, decoders that do all the work agree within 0.05 dB (a first frame withheld that is not
// silent); one that leaves out parametric stereo is 2.3 dB off or more.
constexpr double kLevelToleranceDb = 0.5;

[[noreturn]] void fault(const std::string& what) {
    throw std::runtime_error(what);
}

// Checks that all frames came out, at the core rate or (SBR) at twice that rate.
Result describe(Decoder& decoder, const Delivered& got, const Stream& stream) {
    const std::size_t frames = stream.frames.size();
    if (got.frames != frames)
        fault("decodes " + std::to_string(got.frames) + " of " + std::to_string(frames) +
              " frames");
    const std::size_t samples = (frames - decoder.framesWithheld()) * stream.samplesPerFrame;
    if (got.samples != samples && got.samples != 2 * samples)
        fault("delivers " + std::to_string(got.samples) + " samples, not " +
              std::to_string(samples) + " or twice as many");
    const unsigned upsampling = got.samples == samples ? 1 : 2;
    // Over the whole stream: frames withheld count as the silence that they are in a player.
    const double values = 1.0 * frames * stream.samplesPerFrame * upsampling * got.channels;
    return {.decoder = &decoder,
            .fault = {},
            .channels = got.channels,
            .sampleRate = upsampling * stream.sampleRate,
            .levelDb = 10 * std::log10(got.sumOfSquares / values),
            .speeds = {}};
}

Result tryOut(Decoder& decoder, const Stream& stream) {
    try {
        decoder.prepare(stream);
        return describe(decoder, decoder.decodeAll(Level::measured), stream);
    } catch (const std::exception& e) {
        Result failed;
        failed.decoder = &decoder;
        failed.fault = e.what();
        return failed;
    }
}

double medianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t n = values.size();
    return n == 0 ? 0 : (values[(n - 1) / 2] + values[n / 2]) / 2;
}

std::string decibels(double level) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f dB", level);
    return text;
}

// A decoder whose output is not as loud as that of most does not do the same work.
void compareLevels(std::vector<Result>& results) {
    std::vector<double> levels;
    for (const Result& r : results)
        if (r.fault.empty()) levels.push_back(r.levelDb);
    const double usual = medianOf(levels);
    for (Result& r : results)
        if (r.fault.empty() && !(std::abs(r.levelDb - usual) <= kLevelToleranceDb))
            r.fault = decibels(r.levelDb) + ", the median of all is " + decibels(usual);
}

double timeOnce(Decoder& decoder, const Stream& stream, double minTime) {
    double seconds = 0;
    unsigned passes = 0;
    do {
        decoder.rewind();
        const double start = cpuSeconds();
        const Delivered got = decoder.decodeAll(Level::ignored);
        seconds += cpuSeconds() - start;
        ++passes;
        if (got.frames != stream.frames.size())
            fault(std::string(decoder.name()) + " loses frames under the clock");
    } while (seconds < minTime);
    return passes * stream.seconds() / seconds;
}

}  // namespace

double Result::median() const {
    return medianOf(speeds);
}

double Result::best() const {
    return *std::max_element(speeds.begin(), speeds.end());
}

std::vector<Result> measure(const Field& field, const Stream& stream, const Options& options) {
    std::vector<Result> results;
    for (const auto& decoder : field.decoders) results.push_back(tryOut(*decoder, stream));
    compareLevels(results);
    // Round-robin, so that a noisy moment of the machine hits all alike.
    for (unsigned rep = 0; rep < options.reps; ++rep)
        for (Result& r : results)
            if (r.fault.empty()) r.speeds.push_back(timeOnce(*r.decoder, stream, options.minTime));
    return results;
}

}  // namespace peers
