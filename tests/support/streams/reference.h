// Decoded sound beside reference sound.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <string>
#include <vector>

#include "support/streams/clips.h"

namespace zetac::test {

// Full accuracy of ISO/IEC 11172-4 and 13818-4: an RMS of 2^-15 / sqrt(12) of full scale and a
// difference of 2^-14, here in steps of 16 bits. Measured at worst: AAC 0.2622 and 1, MP3 0.1178
// and 1.
inline constexpr double kRmsMax = 0.2887;
inline constexpr int kDifferenceMax = 2;

struct Difference {
    double rms = 0;
    int max = 0;
};

/** Of as many values as both have. */
Difference compare(const Pcm& a, const Pcm& b);

/** Prints the difference and expects full accuracy. */
void expectFullAccuracy(const std::string& path, const Difference& difference);

/** The bundled streams of a folder: path and reference. */
std::vector<std::pair<std::string, std::string>> bundledClips(const std::string& folder);

/** A row of the manifest of the shared streams. */
struct SharedStream {
    std::string path;
    std::string profile;
    std::string reference;
    int channels = 0;
    size_t offset = 0;  // samples of each channel before the reference
};

/** The rows of one folder; none when the streams are not there. */
std::vector<SharedStream> sharedStreams(const std::string& folder);

}  // namespace zetac::test
