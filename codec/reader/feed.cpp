// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "reader/feed.h"

#include <algorithm>

namespace zetac::codec {

/** Appends to the buffer.
 *  @return bytes, 0 at the end, negative on an error */
ptrdiff_t Feed::readMore() {
    if (source_.lastReader != this && source_.lastReader != nullptr) {
        if (!source_.bytes->seek(position_)) return -1;
    }
    source_.lastReader = this;
    if (start_ > 0) {
        std::copy(&buffer_[start_], &buffer_[end_], buffer_.begin());
        end_ -= start_;
        start_ = 0;
    }
    const ptrdiff_t count = source_.bytes->read(std::span(buffer_).subspan(end_));
    if (count > 0) {
        end_ += static_cast<size_t>(count);
        position_ += static_cast<uint64_t>(count);
    }
    return count;
}

bool Feed::require(size_t count) {
    while (end_ - start_ < count) {
        const ptrdiff_t more = readMore();
        if (more < 0) return false;
        if (more == 0) break;
    }
    return true;
}

ZetacStatus Feed::start(const ZetacDecoderOptions& options, uint32_t icyInterval) {
    if (const ZetacStatus status = zetacDecoderCreate(&decoder_, &options); status != ZETAC_OK) {
        return status;
    }
    icy_ = IcyFilter(icyInterval);
    zetacDecoderReset(decoder_, position(), 0);
    end_ = start_ + icy_.filter(std::span(buffer_).subspan(start_, end_ - start_));
    return ZETAC_OK;
}

ZetacStatus Feed::fill() {
    if (start_ == end_) {
        const ptrdiff_t count = readMore();
        if (count < 0) return ZETAC_ERROR_READ;
        if (count == 0) {
            if (isFinished_) return ZETAC_ERROR_STATE;
            isFinished_ = true;
            return zetacDecoderFinish(decoder_);
        }
        end_ = icy_.filter(std::span(buffer_).first(end_));
    }
    size_t taken = 0;
    const ZetacStatus status = zetacDecoderFeed(decoder_, &buffer_[start_], end_ - start_, &taken);
    start_ += taken;
    return status;
}

ZetacStatus Feed::pull(ZetacFrame& frame) {
    while (true) {
        frame = ZETAC_FRAME_INIT;
        ZetacStatus status = zetacDecoderTake(decoder_, &frame);
        if (status != ZETAC_NEED_INPUT) return status;
        status = fill();
        if (status != ZETAC_OK) return status;
    }
}

bool Feed::moveTo(uint64_t byte, uint64_t sample) {
    if (!source_.bytes->seek(byte)) return false;
    source_.lastReader = this;
    position_ = byte;
    start_ = end_ = 0;
    isFinished_ = false;
    return zetacDecoderReset(decoder_, byte, sample) == ZETAC_OK;
}

}  // namespace zetac::codec
