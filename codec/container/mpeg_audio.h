// Finds the frames of MPEG audio (ISO/IEC 11172-3, 2.4.1.2; 13818-3) in a file that lies in memory.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <span>

#include "base/fault.h"
#include "container/info_tag.h"

namespace zetac::codec {

/** No frame is longer; free format may have any length, and is followed up to this one. */
inline constexpr size_t kMp3FrameBytesMax = 4608;

/** What all frames of a stream have in common. */
struct Mp3Format {
    int version = 1;  // 1, 2, or 25 for MPEG-2.5
    int layer = 3;
    int samplingFrequency = 0;  // index 0..2

    int sampleRate() const;
    /** Per channel. */
    int samplesPerFrame() const;
    bool operator==(const Mp3Format&) const = default;
};

/** One frame in the memory of the stream. */
struct Mp3Frame {
    std::span<const Zet8u> data;  // from the first byte of the header; cut where the data end
    uint64_t position = 0;        // of its first byte in the stream
    size_t length = 0;            // as the header has it
    Mp3Format format;
    int bitRate = 0;             // bit/s, 0 in free format
    bool isContinuous = false;   // nothing is missing between the frame before and this one
    Fault fault = Fault::kNone;  // why the frame cannot be trusted already
};

/** Yields the frames of a stream, with ID3, APE or foreign bytes in between. A frame is believed
 *  when it stands where the last one ended and resembles it, or when the next one, a tag or the end
 *  of the data follow where it says. A first frame that is an information tag is passed over. */
class Mp3Stream {
  public:
    /** Nothing when the data hold no frame. */
    static std::unique_ptr<Mp3Stream> open(std::span<const Zet8u> data);

    bool next(Mp3Frame& frame);

    /** Bytes that belong to no frame and to no known tag. */
    struct Foreign {
        size_t position = 0;
        size_t bytes = 0;
    };
    /** Those before the last frame, or after the last one of all. */
    Foreign foreign() const { return foreign_; }

    /** Position of the first frame that its successor confirms, or of its information tag. */
    size_t start() const { return start_; }
    const std::optional<Mp3InfoTag>& infoTag() const { return infoTag_; }

  private:
    /** A header with sane fields. */
    struct Head {
        Mp3Format format;
        int bitRate;  // 0: free format
        size_t padding;
        size_t length;  // 0: free format of which no length is known yet

        bool isLike(const Head& other) const {
            return format == other.format && (bitRate == 0) == (other.bitRate == 0);
        }
    };

    explicit Mp3Stream(std::span<const Zet8u> data) : data_(data) {}

    std::optional<Head> parse(size_t position) const;
    std::optional<Head> headAt(size_t position) const;
    size_t measureFreeFormat(size_t position, const Head& head) const;
    bool isFollowed(size_t end, const Head& head) const;
    bool isConfirmed(size_t position, const Head& head) const;
    bool isBelieved(size_t position, const Head& head) const;
    std::optional<Head> seek();
    void takeInfoTag(const Head& head);
    size_t findCut(size_t position, const Head& head) const;

    std::span<const Zet8u> data_;
    size_t position_ = 0;       // where the next frame is looked for
    size_t undamaged_ = 0;      // bytes before it are accounted for
    std::optional<Head> last_;  // a frame that was believed: the next one resembles it
    size_t freeBytes_ = 0;      // of a free-format frame without padding; 0: unknown
    size_t start_ = 0;
    Foreign foreign_;
    Foreign beforeTag_;
    std::optional<Mp3InfoTag> infoTag_;
};

/** Bytes of side information behind the header (ISO/IEC 11172-3, 2.4.1.7; 13818-3, 2.4.1.7). */
size_t mp3SideInfoBytes(bool isMpeg1, bool isMono);

/** The error check of a protected frame: over the last two bytes of the header and the side
 *  information, which follows the CRC word (ISO/IEC 11172-3, 2.4.3.1). */
uint16_t mp3Crc(Zet8u* frame, size_t sideInfoBytes);

/** bit/s by bitrate_index, 0 in free format. */
int mp3BitRate(const Mp3Format& format, int index);

/** Bytes of a frame without padding. */
size_t mp3FrameBytes(const Mp3Format& format, int bitRate);

/** Writes a frame's header, and its CRC word when it is protected.
 *  @return behind it */
Zet8u* packMp3Header(const Mp3Format& format, const ZetMP3Header& header, Zet8u* at);

}  // namespace zetac::codec
