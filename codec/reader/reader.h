// A stream that is pulled: it reads a source, feeds a decoder, leaves out what the encoder added,
// and seeks to a sample exactly.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac_codec.h>

#include <deque>
#include <memory>
#include <vector>

#include "reader/feed.h"
#include "reader/seek_index.h"
#include "reader/tag_text.h"

namespace zetac::codec {

/** "Raw" samples are those of the whole stream, with what the encoder added. */
class Reader {
  public:
    Reader(std::unique_ptr<ByteSource> source, const ZetacReaderOptions& options);

    /** Reads tags and looks for the first frame. */
    ZetacStatus open();
    ZetacStatus read(ZetacFrame& frame);
    ZetacStatus seek(uint64_t sample);
    ZetacStatus scan();

    const ZetacStreamInfo& info() const { return info_; }
    const TagTexts& tags() const { return tags_; }
    const char* errorText() const { return zetacDecoderErrorText(failed_); }

  private:
    ZetacStatus readResponse();
    ZetacStatus learnStream();
    void estimateLength();
    void setLength(uint64_t raw);

    ZetacStatus next(ZetacFrame& frame);
    ZetacStatus noteFailure(const Feed& feed, ZetacStatus status);
    bool trimFront(ZetacFrame& frame) const;
    void dropSamples(ZetacFrame& frame, int32_t count) const;
    bool isBeyondTag(const ZetacFrame& frame) const;
    void holdBack(ZetacFrame& frame);
    bool releaseHeld(ZetacFrame& frame);

    ZetacStatus walkTo(uint64_t raw);
    ZetacStatus decodeTo(uint64_t raw, const SeekIndex::Point& from, bool& isExact);
    uint64_t preroll() const;
    uint64_t historySamples() const;
    bool hasEndlessHistory() const;

    SharedSource source_;
    ZetacReaderOptions options_;
    Feed feed_;
    std::unique_ptr<Feed> scanner_;  // walks ahead for the index
    const ZetacDecoder* failed_ = nullptr;
    TagTexts tags_;
    ZetacStreamInfo info_ = ZETAC_STREAM_INFO_INIT;
    uint64_t start_ = 0;  // byte of the source where the stream begins
    uint64_t backTagBytes_ = 0;
    uint32_t icyInterval_ = 0;
    bool isSeekable_ = false;

    uint64_t delay_ = 0;       // raw samples left out in front
    uint64_t padding_ = 0;     // and behind, as the stream tells
    uint64_t toldLength_ = 0;  // raw samples that the stream tells; 0: none
    uint64_t rawStart_ = 0;    // raw samples before it are not given
    uint64_t rawPosition_ = 0;

    std::vector<uint8_t>
        held_;  // planes or interleaved samples that are padding unless more follow
    ZetacFrame heldFrame_ = ZETAC_FRAME_INIT;
    std::deque<ZetacFrame> pending_;  // read already; only the last one has sound
    bool isOver_ = false;

    SeekIndex index_;
    uint64_t scannedTo_ = 0;  // raw samples that the index covers
    bool isScanned_ = false;
};

}  // namespace zetac::codec
