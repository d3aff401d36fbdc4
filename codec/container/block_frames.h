// Frames of raw data blocks: what ADTS and LOAS have in common.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "base/window.h"
#include "container/raw_block.h"
#include "container/tag_scanner.h"

namespace zetac::codec {

class BlockFrames {
  public:
    BlockFrames() = default;
    BlockFrames(const BlockFrames&) = delete;
    BlockFrames& operator=(const BlockFrames&) = delete;
    virtual ~BlockFrames() = default;

    /** Whether the view begins with a frame that can be believed, and all its bytes are here, or
     *  those that there are. One that resembles the last one is believed itself, any other when the
     *  next frame, a tag or the end of the data follow where it says: the first sound needs the
     *  header of the second frame.
     *  @param isDue  the frame before ends here, or the tags in front */
    virtual Answer isFrame(View view, bool isDue, const TagScanner& tags) const = 0;

    /** Opens that frame.
     *  @return its bytes, as its header has them */
    virtual size_t open(View view) = 0;

    /** The next block of the open frame, with which the view still begins.
     *  @param position  of the view */
    virtual RawBlock next(View view, uint64_t position) = 0;

    /** @param bytesUsed  of the last block
     *  @param isGood     whether it was decoded without a fault
     *  @return whether the frame has further blocks */
    virtual bool finish(size_t bytesUsed, bool isGood) = 0;

    /** Whether the view begins with a header. */
    virtual Answer isHeader(View view) const = 0;

    /** Bytes from the frame's start to where the search goes on when nothing follows where the
     *  frame should end: behind what a good block used, or inside of a bad frame. */
    virtual size_t behind() const = 0;
};

}  // namespace zetac::codec
