// Lays the main data of Layer III frames where the frames have room for them: a frame's main data
// may begin in frames before it (ISO/IEC 11172-3, 2.4.2.7, main_data_begin).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <array>
#include <cstddef>
#include <span>

namespace zetac::codec {

/** Allocates nothing. Frames come out in their order, each as soon as nothing can change it. */
class Mp3FrameWriter {
  public:
    /** Adds a frame, when take() has given all that it has.
     *  @param front          header, CRC word and side information
     *  @param frameBytes     of the whole frame: at least a byte more than the front
     *  @param mainDataBegin  bytes that the main data reach back, 511 at most, and 255 where frames
     *                        are shorter than 96 bytes; what is free before is left empty
     *  @param mainData       no more than mainDataBegin and the rest of the frame hold */
    void add(std::span<const Zet8u> front, size_t frameBytes, size_t mainDataBegin,
             std::span<const Zet8u> mainData);

    /** No frame will come, so that free room stays free. */
    void finish() { open_ = count_; }

    /** The next frame, which lives until the next add(); empty when there is none yet. */
    std::span<const Zet8u> take();

  private:
    // Frames wait while they have room. The smallest have one byte of it beside 23 of header and
    // side information, so a main_data_begin of 255 leaves at most 255 of them open, behind one
    // that is partly filled. The frame added last may have stayed empty, and another is added; none
    // has more than 1441 bytes.
    static constexpr size_t kFramesMax = 255 + 3;
    static constexpr size_t kBytesMax = 255 * 24 + 3 * 1441;

    /** Offsets in bytes_. */
    struct Frame {
        size_t begin;
        size_t room;  // the first byte that is free
        size_t end;
    };

    void discardTaken();
    void fill(const Zet8u* data, size_t count);

    std::array<Zet8u, kBytesMax> bytes_;
    std::array<Frame, kFramesMax> frames_;
    size_t taken_ = 0;  // frames: those before have been taken,
    size_t open_ = 0;   // those before this one are complete
    size_t count_ = 0;
    size_t free_ = 0;  // bytes in all frames
};

}  // namespace zetac::codec
