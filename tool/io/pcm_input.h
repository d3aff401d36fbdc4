// A sound file as 16-bit samples at a rate that an encoder takes.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <sndfile.h>
#include <zetac.h>

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "io/file_data.h"
#include "io/resampler.h"

namespace zetac::tool {

/** Reads what libsndfile reads: 8 to 32 bits and floating point, mono and stereo. Samples are
 *  rounded to 16 bits, and limited where floating point exceeds full scale. Methods throw Failure.
 */
class PcmInput {
  public:
    /** @param path    "-" for standard input
     *  @param isMono  mix two channels into one */
    PcmInput(const std::string& path, bool isMono);

    int channels() const { return channels_; }
    /** The best of the encoder's rates for this sound. */
    int sampleRate() const { return sampleRate_; }
    int fileSampleRate() const { return info_.samplerate; }
    size_t limitedSamples() const { return limited_; }
    /** Of the file, how much has been read; 0 when its length is not known. */
    double progress() const;
    /** At the end: why the file is not whole; empty when it is. */
    std::string damage() const;

    /** Puts samples, interleaved, in place of what is in pcm: a block at most; false at the end. */
    bool read(std::vector<Zet16s>& pcm);

  private:
    struct Closer {
        void operator()(SNDFILE* file) const { sf_close(file); }
    };
    /** A pipe in memory, for libsndfile to look around in. */
    struct Memory {
        FileData data;
        sf_count_t position = 0;
    };

    void open(const std::string& path);
    void fill();
    void mixDown(std::vector<float>& samples) const;
    void convert(std::span<const float> samples, std::vector<Zet16s>& pcm);

    std::unique_ptr<Memory> memory_;
    std::unique_ptr<SNDFILE, Closer> file_;
    SF_INFO info_{};
    int channels_ = 0;
    int sampleRate_ = 0;
    std::optional<Resampler> resampler_;
    std::vector<float> block_;      // as read
    std::span<const float> left_;   // of it, not yet taken
    std::vector<float> resampled_;  // a block
    bool isAtEnd_ = false;
    std::string error_;  // that broke the reading off
    sf_count_t position_ = 0;
    size_t limited_ = 0;
};

}  // namespace zetac::tool
