// Writes the frame without sound that tells about the stream as a whole. See info_tag.h for the
// reader.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "container/mpeg_audio.h"

namespace zetac::codec {

/** Where the frames of a stream begin: of all frames at first, of every second one when the table
 *  is full, and so on. */
class Mp3SeekTable {
  public:
    void add(uint64_t start);
    uint64_t frames() const { return frames_; }
    /** Interpolated where the table has left the frame out.
     *  @param frame  below frames()
     *  @param end    of the last frame */
    uint64_t startOf(uint64_t frame, uint64_t end) const;

  private:
    static constexpr size_t kEntries = 4096;  // 107 seconds at 44.1 kHz

    std::array<uint64_t, kEntries> starts_;
    uint64_t frames_ = 0;
    uint64_t step_ = 1;  // frames from one entry to the next
};

/** What the frame says of the whole stream. */
struct Mp3StreamFacts {
    float quality = -1;      // 0..9 of a variable bit rate, negative of any other
    bool isAverage = false;  // a mean bit rate
    int kilobits = 0;        // constant, mean, or lowest of a variable bit rate
    int lowpass = 0;         // Hz; 0: unknown
    uint64_t samples = 0;    // per channel, of the sound
    uint64_t decoded = 0;    // per channel, that all frames decode to
};

class Mp3InfoWriter {
  public:
    /** @param header  of the stream's frames; the frame has their bit rate if the tag fits into it,
     *                 and the lowest at which it does else */
    explicit Mp3InfoWriter(const Mp3Format& format, const ZetMP3Header& header);

    /** Notes a frame of the stream. */
    void add(std::span<const Zet8u> frame);

    uint64_t frames() const { return seekTable_.frames(); }
    uint64_t bytes() const { return bytes_; }
    size_t frameBytes() const;

    /** Writes the frame as it is when the stream ends here.
     *  @param frame  of frameBytes() */
    void write(std::span<Zet8u> frame, const Mp3StreamFacts& facts) const;

  private:
    void putTag(std::span<Zet8u> frame, const Mp3StreamFacts& facts) const;
    Zet8u seekPoint(uint64_t percent, uint64_t streamBytes) const;

    Mp3Format format_;
    ZetMP3Header header_;
    size_t tagOffset_;
    Mp3SeekTable seekTable_;  // from the end of this frame on
    uint64_t bytes_ = 0;
    uint16_t musicCrc_ = 0;
};

}  // namespace zetac::codec
