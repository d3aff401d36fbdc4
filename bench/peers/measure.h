// Verification and timing of the decoders of a field on one stream.
#pragma once

#include "decoder.h"

namespace peers {

struct Options {
    unsigned reps = 11;
    double minTime = 0.1;  // seconds under the clock in each repetition
};

struct Result {
    Decoder* decoder = nullptr;
    std::string fault;           // why it is not timed; empty if it is
    unsigned channels = 0;       // of the output
    unsigned sampleRate = 0;     // of the output: the core's, or twice that with SBR
    double levelDb = 0;          // of the whole output below full scale
    std::vector<double> speeds;  // times real time, one per repetition

    double median() const;
    double best() const;
};

// Prepares every decoder, checks in a first untimed decode that it delivers the whole stream, and
// times those that do.
std::vector<Result> measure(const Field& field, const Stream& stream, const Options& options);

}  // namespace peers
