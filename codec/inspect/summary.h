// What is in a stream, found frame by frame while it is decoded.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace zetac::codec {

/** Empty texts and zeros: not known, or not yet. */
struct StreamSummary {
    std::string container;    // "ADTS", "ADIF" or "MPEG audio"
    std::string mpegVersion;  // "1", "2", "2.5" or "4"
    std::string profile;      // such as "AAC LC" or "MPEG-1 Layer III"
    int sampleRate = 0;       // of the sound
    int coreSampleRate = 0;   // of the core, where that differs
    int channels = 0;
    std::string layout;  // in words
    uint64_t frames = 0;
    int frameSamples = 0;      // per channel
    uint64_t samples = 0;      // per channel, without those that the encoder added
    double bitRate = 0;        // bit/s
    std::string bitRateMode;   // "constant", "variable" or "free format"
    bool isProtected = false;  // by a CRC
    std::vector<std::string> tools;
    std::vector<std::string> tags;
    std::string encoder;
    std::optional<int> encoderDelay;  // samples per channel
    std::optional<int> encoderPadding;

    double seconds() const {
        return sampleRate == 0 ? 0 : static_cast<double>(samples) / sampleRate;
    }
};

/** The names of the bits that are set. */
std::vector<std::string> namesOfBits(unsigned bits, std::initializer_list<const char*> names);

}  // namespace zetac::codec
