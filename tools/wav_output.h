// A 16-bit WAV file that appears complete or not at all.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <sndfile.h>
#include <zetac.h>

#include <string>

#include "aac_layout.h"

namespace zetac::tool {

/** Writes to a temporary file; commit() gives it its name, or sends it to standard output. Without
 *  commit() nothing remains. Methods throw Failure. */
class WavOutput {
  public:
    /** @param path  "-" for standard output */
    WavOutput(std::string path, int sampleRate, const codec::ChannelLayout& layout);
    ~WavOutput();
    WavOutput(const WavOutput&) = delete;
    WavOutput(WavOutput&&) = delete;
    WavOutput& operator=(const WavOutput&) = delete;
    WavOutput& operator=(WavOutput&&) = delete;

    void write(const Zet16s* interleaved, size_t samplesPerChannel);
    void commit();

  private:
    void createTemporary();
    void setChannelMask(const codec::ChannelLayout& layout);
    void sendToStandardOutput();

    std::string path_;
    std::string temporary_;  // name; empty for a file without one
    int descriptor_ = -1;
    int channels_ = 0;
    uint64_t bytes_ = 0;
    SNDFILE* file_ = nullptr;
};

}  // namespace zetac::tool
