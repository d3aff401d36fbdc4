// A decoder with the source that feeds it.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac_codec.h>

#include <array>
#include <cstdint>
#include <memory>
#include <span>

#include "reader/byte_source.h"
#include "reader/icy.h"

namespace zetac::codec {

/** A source that several feeds read in turn: each seeks to its own place when it was not the last.
 */
struct SharedSource {
    std::unique_ptr<ByteSource> bytes;
    const void* lastReader = nullptr;
};

class Feed {
  public:
    /** @param position  byte of the source where it begins */
    explicit Feed(SharedSource& source, uint64_t position = 0)
        : source_(source), position_(position) {}
    Feed(const Feed&) = delete;
    Feed(Feed&&) = delete;
    Feed& operator=(const Feed&) = delete;
    Feed& operator=(Feed&&) = delete;
    ~Feed() { zetacDecoderFree(decoder_); }

    // Before the decoder is there: the bytes in front of the stream.

    /** Reads until so many bytes are at hand, or all that there are.
     *  @return false on an error */
    bool require(size_t count);
    std::span<const uint8_t> atHand() const { return {&buffer_[start_], end_ - start_}; }
    void consume(size_t count) { start_ += count; }
    static constexpr size_t kBufferBytes = 16384;

    /** Of the source, of the first byte at hand. */
    uint64_t position() const { return position_ - (end_ - start_); }

    /** Bytes from here on are the stream. */
    ZetacStatus start(const ZetacDecoderOptions& options, uint32_t icyInterval);

    /** The next frame, as zetacDecoderTake gives it; ZETAC_ERROR_READ too. */
    ZetacStatus pull(ZetacFrame& frame);

    /** Goes on at another frame.
     *  @return false where the source cannot be rewound */
    bool moveTo(uint64_t byte, uint64_t sample);

    ZetacDecoder* decoder() const { return decoder_; }
    const IcyFilter& icy() const { return icy_; }

  private:
    ptrdiff_t readMore();
    ZetacStatus fill();

    SharedSource& source_;
    ZetacDecoder* decoder_ = nullptr;
    IcyFilter icy_;
    std::array<uint8_t, kBufferBytes> buffer_{};
    size_t start_ = 0;
    size_t end_ = 0;
    uint64_t position_ = 0;  // of the source, behind the bytes in the buffer
    bool isFinished_ = false;
};

}  // namespace zetac::codec
