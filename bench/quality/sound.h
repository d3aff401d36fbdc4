// PCM on its way through an encoder and back.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "nmr.h"

namespace quality {

struct Pcm {
    std::vector<std::int16_t> samples;  // interleaved
    unsigned channels = 0;
    unsigned sampleRate = 0;

    std::size_t frames() const { return samples.size() / channels; }
};

// Throws std::runtime_error.
Pcm readWav(const std::string& path);

// By the decoder of the command-line tool, with everything that it delivers; a frame that cannot be
// decoded is a std::runtime_error.
Pcm decodeMp3(const std::vector<std::uint8_t>& bytes);

// One signal a channel, without the first `delay` samples.
std::vector<Signal> signalsOf(const Pcm& pcm, std::size_t delay = 0);

// By how many samples decoded comes after original: where their product is largest, up to 4096.
std::size_t findDelay(const Pcm& original, const Pcm& decoded);

}  // namespace quality
