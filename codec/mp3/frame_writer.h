// Lays the main data of Layer III frames where the frames have room for them: a frame's main data
// may begin in frames before it (ISO/IEC 11172-3, 2.4.2.7, main_data_begin).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstddef>
#include <deque>
#include <span>
#include <vector>

namespace zetac::codec {

class Mp3FrameWriter {
  public:
    /** Adds a frame; bytes that no later frame can change are appended to out.
     *  @param front          header, CRC word and side information
     *  @param frameBytes     of the whole frame
     *  @param mainDataBegin  bytes that the main data reach back; what is free before is left empty
     *  @param mainData       no more than mainDataBegin and the rest of the frame hold */
    void add(std::span<const Zet8u> front, size_t frameBytes, size_t mainDataBegin,
             std::span<const Zet8u> mainData, std::vector<Zet8u>& out);

    /** Appends what is left. */
    void finish(std::vector<Zet8u>& out);

  private:
    /** Room for main data, as offsets in bytes_. */
    struct Area {
        size_t begin;
        size_t end;
    };

    void fill(const Zet8u* data, size_t count);

    std::vector<Zet8u> bytes_;  // frames from the first one with free room on
    std::deque<Area> areas_;
    size_t free_ = 0;  // bytes in all areas
};

}  // namespace zetac::codec
