// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/encode/bandwidth.h"

#include <zetac.h>

#include <algorithm>
#include <iterator>

namespace zetac::mp3 {
namespace {

constexpr int kSampleRate[3] = {44100, 48000, 32000};

// Where noise in all bands weighs more than what is lost above, by trial: bits a second and
// channel, and hertz. Linear between the points.
struct Point {
    int rate, bandwidth;
};
constexpr Point kPoints[] = {
    {0, 4000},      {16000, 6000},  {24000, 9000},  {32000, 11000},  {48000, 14500},
    {64000, 16000}, {80000, 17500}, {96000, 18500}, {128000, 20000}, {160000, 22050},
};

int bandwidthOf(int rate) {
    const Point* above = std::find_if(std::begin(kPoints), std::end(kPoints),
                                      [rate](const Point& p) { return p.rate > rate; });
    if (above == std::end(kPoints)) return kSampleRate[1] / 2;
    const Point* below = above - 1;
    return below->bandwidth + (above->bandwidth - below->bandwidth) / 1000 * (rate - below->rate) /
                                  ((above->rate - below->rate) / 1000);
}

}  // namespace

int codedLines(int sampling_frequency, int bits) {
    constexpr int kStep = 6;  // two lines of each short window
    const int sampleRate = kSampleRate[sampling_frequency];
    const int rate = std::min(bits, 4096) * sampleRate / ZETAC_MP3_GRANULE_LEN;
    const int lines = bandwidthOf(rate) * ZETAC_MP3_GRANULE_LEN / (sampleRate / 2);
    return std::min(lines / kStep * kStep, ZETAC_MP3_GRANULE_LEN);
}

}  // namespace zetac::mp3
