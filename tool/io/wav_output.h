// A 16-bit WAV file that appears complete or not at all.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <sndfile.h>
#include <zetac.h>

#include <string>

#include "base/layout.h"
#include "io/output_file.h"

namespace zetac::tool {

/** Nothing remains without commit(), as OutputFile has it. Methods throw Failure. */
class WavOutput {
  public:
    /** @param path        "-" for standard output
     *  @param mayReplace  as OutputFile has it */
    WavOutput(const std::string& path, bool mayReplace, int sampleRate,
              const codec::ChannelLayout& layout);
    ~WavOutput();
    WavOutput(const WavOutput&) = delete;
    WavOutput(WavOutput&&) = delete;
    WavOutput& operator=(const WavOutput&) = delete;
    WavOutput& operator=(WavOutput&&) = delete;

    void write(const Zet16s* interleaved, size_t samplesPerChannel);
    void commit();

  private:
    [[noreturn]] void fail(const char* reason) const;
    void setChannelMask(const codec::ChannelLayout& layout);

    OutputFile output_;
    int channels_ = 0;
    uint64_t bytes_ = 0;
    SNDFILE* file_ = nullptr;
};

}  // namespace zetac::tool
