// Finds the frames of MPEG audio (ISO/IEC 11172-3, 2.4.1.2; 13818-3).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <optional>

#include "base/window.h"
#include "container/mpeg_audio.h"
#include "container/tag_scanner.h"

namespace zetac::codec {

/** Finds frames. One is believed when it stands where the last one ended and resembles it, or when
 *  the next one, a tag or the end of the data follow where it says. The first four bytes behind a
 *  frame are looked at before it is given: had it been cut, another one would begin inside of it.
 */
class MpegFrames {
  public:
    /** Whether the view begins with a frame that can be believed, and all its bytes are here, or
     *  those that there are. It is read then.
     *  @param isDue  the frame before ends here, or the tags in front */
    Answer isFrame(View view, bool isDue, const TagScanner& tags);

    /** That frame. Frames that follow have to resemble it. */
    Mp3Frame take(View view, uint64_t position, bool isContinuous);

    /** A packet as the frame that it is, or nothing when it is none. */
    std::optional<Mp3Frame> packet(View view, uint64_t position) const;

  private:
    /** A header with sane fields. */
    struct Head {
        Mp3Format format;
        int bitRate = 0;  // 0: free format
        size_t padding = 0;
        size_t length = 0;  // 0: free format of which no length is known yet

        bool isLike(const Head& other) const {
            return format == other.format && (bitRate == 0) == (other.bitRate == 0);
        }
    };
    /** Where a frame ends, and whether the next one begins there too early. */
    struct Cut {
        size_t length = 0;
        bool isByFrame = false;
    };

    std::optional<Head> parse(View view) const;
    Answer isHead(View view, Head& head) const;
    Answer measureFreeFormat(View view, const Head& head, size_t& length) const;
    Answer isFollowed(View view, size_t length, const Head& head, const TagScanner& tags) const;
    Answer isInnerFrame(View inside, const Head& head, const TagScanner& tags) const;
    Answer findCut(View view, const Head& head, const TagScanner& tags, Cut& cut) const;

    std::optional<Head> last_;  // a frame that was believed: the next one resembles it
    size_t freeBytes_ = 0;      // of a free-format frame without padding; 0: unknown
    Head head_;                 // of the frame that was found
    Cut cut_;
};

}  // namespace zetac::codec
