// Writes the frame without sound that tells about the stream as a whole. See info_tag.h for the
// reader.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstddef>
#include <span>
#include <vector>

#include "container/mpeg_audio.h"

namespace zetac::codec {

class Mp3InfoWriter {
  public:
    /** @param mode          of the stream's frames
     *  @param quality       0..9 of a variable bit rate, -1 of a constant one
     *  @param bitRateIndex  of a constant bit rate */
    Mp3InfoWriter(const Mp3Format& format, int mode, int quality, int bitRateIndex);

    /** Notes a frame of the stream, without its bytes. */
    void addFrame(size_t bytes) {
        starts_.push_back(bytes_);
        bytes_ += bytes;
    }
    /** Notes bytes of the stream in their order. */
    void addBytes(std::span<const Zet8u> bytes);

    /** The frame as it is when the stream ends here.
     *  @param samples  per channel, of the sound
     *  @param decoded  per channel, that all frames decode to */
    std::vector<Zet8u> frame(size_t samples, size_t decoded) const;

  private:
    void putTag(std::span<Zet8u> frame, size_t samples, size_t decoded) const;
    Zet8u seekPoint(size_t percent, size_t streamBytes) const;

    Mp3Format format_;
    ZetMP3Header header_{};
    int quality_;
    int constantKilobits_;
    size_t tagOffset_;
    std::vector<size_t> starts_;  // of the frames, from the end of the tag on
    size_t bytes_ = 0;
    uint16_t musicCrc_ = 0;
};

}  // namespace zetac::codec
