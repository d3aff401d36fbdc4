// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "container/mpeg_audio.h"

#include <algorithm>

#include "base/crc.h"
#include "container/tags.h"

namespace zetac::codec {
namespace {

constexpr size_t kHeaderBytes = 4;
constexpr size_t kFrameBytesMin = kHeaderBytes + 9;  // the shortest side information
constexpr int kFreeFormat = 0;

/** kbit/s by bitrate_index (ISO/IEC 11172-3, 2.4.2.3; 13818-3, 2.4.2.3). */
constexpr int kRateTables = 5;
constexpr short kBitRates[kRateTables][15] = {
    {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},  // MPEG-1 Layer I
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},     // MPEG-1 Layer II
    {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},      // MPEG-1 Layer III
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},     // LSF Layer I
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160}};         // LSF Layers II, III

/** A slot has four bytes in Layer I and one in the others (ISO/IEC 11172-3, 2.4.3.1). */
size_t slotBytes(const Mp3Format& format) {
    return format.layer == 1 ? 4 : 1;
}

}  // namespace

int mp3BitRate(const Mp3Format& format, int index) {
    const int table = format.version == 1 ? format.layer - 1 : format.layer == 1 ? 3 : 4;
    return kBitRates[table][index] * 1000;
}

size_t mp3FrameBytes(const Mp3Format& format, int bitRate) {
    const size_t slot = slotBytes(format);
    const auto bytes = static_cast<size_t>(format.samplesPerFrame() / 8) *
                       static_cast<size_t>(bitRate) / static_cast<size_t>(format.sampleRate());
    return bytes / slot * slot;
}

int Mp3Format::sampleRate() const {
    static constexpr int kRates[] = {44100, 48000, 32000};
    const int divisor = version == 1 ? 1 : version == 2 ? 2 : 4;
    return kRates[samplingFrequency] / divisor;
}

int Mp3Format::samplesPerFrame() const {
    if (layer == 1) return 384;
    return layer == 3 && version != 1 ? 576 : 1152;
}

size_t mp3SideInfoBytes(bool isMpeg1, bool isMono) {
    if (isMpeg1) return isMono ? 17 : 32;
    return isMono ? 9 : 17;
}

uint16_t mp3Crc(Zet8u* frame, size_t sideInfoBytes) {
    Crc16 crc;
    crc.add({frame + 2, 0}, 16, 0);
    crc.add({frame + kHeaderBytes + 2, 0}, sideInfoBytes * 8, 0);
    return crc.value();
}

/** MPEG-2.5 has a 0 for the last bit of the syncword. */
Zet8u* packMp3Header(const Mp3Format& format, const ZetMP3Header& header, Zet8u* at) {
    Zet8u* end = at;
    zetsPackFrameHeader_MP3(&header, &end);
    if (format.version == 25) at[1] &= 0xEF;
    return end;
}

// --- Headers ------------------------------------------------------------------------------------

/** A header with the syncword and sane fields; the length of free format stays open. */
std::optional<Mp3Stream::Head> Mp3Stream::parse(size_t position) const {
    if (position > data_.size() || data_.size() - position < kHeaderBytes) return std::nullopt;
    const Zet8u* p = &data_[position];
    if (p[0] != 0xFF || (p[1] & 0xE0) != 0xE0) return std::nullopt;
    static constexpr int kVersions[] = {25, 0, 2, 1};
    const int version = kVersions[p[1] >> 3 & 3];
    const int layer = 4 - (p[1] >> 1 & 3);
    const int index = p[2] >> 4;
    const int frequency = p[2] >> 2 & 3;
    if (version == 0 || layer == 4 || index == 15 || frequency == 3) return std::nullopt;
    Head head{{version, layer, frequency}, 0, 0, 0};
    head.bitRate = mp3BitRate(head.format, index);
    head.padding = p[2] >> 1 & 1 ? slotBytes(head.format) : 0;
    if (head.bitRate != kFreeFormat) {
        head.length = mp3FrameBytes(head.format, head.bitRate) + head.padding;
    } else if (freeBytes_ > 0) {
        head.length = freeBytes_ + head.padding;
    }
    return head;
}

/** The same with a length, or nothing. */
std::optional<Mp3Stream::Head> Mp3Stream::headAt(size_t position) const {
    auto head = parse(position);
    if (head && head->length == 0) head->length = measureFreeFormat(position, *head);
    return head && head->length > 0 ? head : std::nullopt;
}

/** The length of a free-format frame is the distance to the next one, when one more frame, or the
 *  end of the data, follows at the same distance. Padding aside, all frames are equally long. */
size_t Mp3Stream::measureFreeFormat(size_t position, const Head& head) const {
    const size_t last = std::min(position + kMp3FrameBytesMax, data_.size());
    for (size_t at = position + kFrameBytesMin; at < last; ++at) {
        if (data_[at] != 0xFF) continue;
        const auto second = parse(at);
        if (!second || !head.isLike(*second) || at - position <= head.padding) continue;
        const size_t third = at + (at - position) - head.padding + second->padding;
        if (third == data_.size()) return at - position;
        if (const auto next = parse(third); next && head.isLike(*next)) return at - position;
    }
    return 0;
}

// --- Which frames are believed ------------------------------------------------------------------

/** Whether a frame that ends here is followed by what may follow it. */
bool Mp3Stream::isFollowed(size_t end, const Head& head) const {
    if (end >= data_.size()) return end == data_.size();
    if (tagLength(data_, end) > 0) return true;
    if (data_.size() - end < kHeaderBytes) return data_[end] == 0xFF;  // a header that is cut off
    const auto next = parse(end);
    return next && head.isLike(*next);
}

bool Mp3Stream::isConfirmed(size_t position, const Head& head) const {
    const size_t end = position + head.length;
    if (isFollowed(end, head)) return true;
    // The very first frame may be all there is of the file.
    return end > data_.size() && position == undamaged_ && head.format.layer == 3;
}

bool Mp3Stream::isBelieved(size_t position, const Head& head) const {
    if (isConfirmed(position, head)) return true;
    const bool isDue = last_ && position == undamaged_;
    return isDue && head.isLike(*last_) && findCut(position, head) >= kFrameBytesMin;
}

/** Moves position_ to the next frame that can be believed. */
std::optional<Mp3Stream::Head> Mp3Stream::seek() {
    while (position_ < data_.size()) {
        // Behind foreign bytes only a sync is looked for, so tags count where a frame has ended.
        if (position_ == undamaged_) {
            if (const size_t tag = tagLength(data_, position_); tag > 0) {
                undamaged_ = position_ += tag;
                continue;
            }
        }
        const auto head = headAt(position_);
        if (head && isBelieved(position_, *head)) return head;
        const auto sync = std::find(data_.begin() + static_cast<ptrdiff_t>(position_) + 1,
                                    data_.end(), Zet8u{0xFF});
        position_ = static_cast<size_t>(sync - data_.begin());
    }
    return std::nullopt;
}

/** Where a frame that is not followed by what may follow it was cut: at a frame that begins inside
 *  it and is confirmed. Its length when there is none. */
size_t Mp3Stream::findCut(size_t position, const Head& head) const {
    const size_t end = std::min(position + head.length, data_.size());
    for (size_t at = position + kHeaderBytes; at < end; ++at) {
        if (data_[at] != 0xFF) continue;
        const auto inner = headAt(at);
        if (inner && head.isLike(*inner) && isFollowed(at + inner->length, *inner)) {
            return at - position;
        }
    }
    return head.length;
}

// --- The stream ---------------------------------------------------------------------------------

std::unique_ptr<Mp3Stream> Mp3Stream::open(std::span<const Zet8u> data) {
    const auto audio = data.first(data.size() - trailingTagLength(data));
    std::unique_ptr<Mp3Stream> stream(new Mp3Stream(audio));
    const auto head = stream->seek();
    if (!head) return nullptr;
    stream->last_ = head;
    stream->start_ = stream->position_;
    if (head->bitRate == kFreeFormat) stream->freeBytes_ = head->length - head->padding;
    stream->takeInfoTag(*head);
    return stream;
}

/** Foreign bytes before the tag count for the frame behind it. */
void Mp3Stream::takeInfoTag(const Head& head) {
    if (head.format.layer != 3) return;
    const size_t length = std::min(head.length, data_.size() - position_);
    infoTag_ = readMp3InfoTag(data_.subspan(position_, length));
    if (!infoTag_) return;
    beforeTag_ = {undamaged_, position_ - undamaged_};
    undamaged_ = position_ += length;
}

bool Mp3Stream::next(Mp3Frame& frame) {
    const auto head = seek();
    foreign_ = {undamaged_, position_ - undamaged_};
    if (beforeTag_.bytes > 0) foreign_ = {beforeTag_.position, beforeTag_.bytes + foreign_.bytes};
    beforeTag_ = {};
    undamaged_ = position_;
    if (!head) return false;
    last_ = head;
    frame.position = position_;
    frame.length = head->length;
    frame.format = head->format;
    frame.bitRate = head->bitRate;
    frame.isContinuous = foreign_.bytes == 0;
    size_t length = head->length;
    if (!isFollowed(position_ + length, *head)) length = findCut(position_, *head);
    frame.fault = length < head->length ? StreamFault::kCutShort : Fault::kNone;
    length = std::min(length, data_.size() - position_);
    frame.data = data_.subspan(position_, length);
    undamaged_ = position_ += length;
    return true;
}

}  // namespace zetac::codec
