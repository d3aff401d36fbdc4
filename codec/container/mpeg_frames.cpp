// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "container/mpeg_frames.h"

#include <algorithm>

namespace zetac::codec {
namespace {

constexpr size_t kHeaderBytes = 4;
constexpr size_t kFrameBytesMin = kHeaderBytes + 9;  // the shortest side information
constexpr int kFreeFormat = 0;

}  // namespace

// --- Headers ------------------------------------------------------------------------------------

/** A header with the syncword and sane fields; the length of free format stays open. */
std::optional<MpegFrames::Head> MpegFrames::parse(View view) const {
    if (!view.has(kHeaderBytes)) return std::nullopt;
    const Zet8u* p = view.bytes.data();
    if (p[0] != 0xFF || (p[1] & 0xE0) != 0xE0) return std::nullopt;
    static constexpr int kVersions[] = {25, 0, 2, 1};
    const int version = kVersions[p[1] >> 3 & 3];
    const int layer = 4 - (p[1] >> 1 & 3);
    const int index = p[2] >> 4;
    const int frequency = p[2] >> 2 & 3;
    if (version == 0 || layer == 4 || index == 15 || frequency == 3) return std::nullopt;
    Head head{{version, layer, frequency}, 0, 0, 0};
    head.bitRate = mp3BitRate(head.format, index);
    head.padding = p[2] >> 1 & 1 ? (layer == 1 ? 4 : 1) : 0;
    if (head.bitRate != kFreeFormat) {
        head.length = mp3FrameBytes(head.format, head.bitRate) + head.padding;
    } else if (freeBytes_ > 0) {
        head.length = freeBytes_ + head.padding;
    }
    return head;
}

/** Whether the view begins with a header whose frame has a length. */
Answer MpegFrames::isHead(View view, Head& head) const {
    if (view.size() == 0 || view[0] != 0xFF) return Answer::kNo;
    if (view.awaits(kHeaderBytes)) return Answer::kUnknown;
    const auto parsed = parse(view);
    if (!parsed) return Answer::kNo;
    head = *parsed;
    return head.length > 0 ? Answer::kYes : measureFreeFormat(view, head, head.length);
}

/** The length of a free-format frame is the distance to the next one, when one more frame, or the
 *  end of the data, follows at the same distance. Padding aside, all frames are equally long. */
Answer MpegFrames::measureFreeFormat(View view, const Head& head, size_t& length) const {
    const size_t last = std::min(kMp3FrameBytesMax, view.size());
    for (size_t at = kFrameBytesMin; at < last; ++at) {
        if (view[at] != 0xFF) continue;
        if (view.awaits(at + kHeaderBytes)) return Answer::kUnknown;
        const auto second = parse(view.from(at));
        if (!second || !head.isLike(*second) || at <= head.padding) continue;
        length = at;
        const size_t third = 2 * at - head.padding + second->padding;
        if (view.awaits(third + kHeaderBytes)) return Answer::kUnknown;
        if (third == view.size()) return Answer::kYes;
        const auto next = parse(view.from(third));
        if (next && head.isLike(*next)) return Answer::kYes;
    }
    return view.awaits(kMp3FrameBytesMax) ? Answer::kUnknown : Answer::kNo;
}

// --- Which frames are believed ------------------------------------------------------------------

/** Whether a frame of this length is followed by what may follow it. */
Answer MpegFrames::isFollowed(View view, size_t length, const Head& head,
                              const TagScanner& tags) const {
    if (view.awaits(length + 1)) return Answer::kUnknown;
    if (view.size() <= length) return view.size() == length ? Answer::kYes : Answer::kNo;
    const View behind = view.from(length);
    if (const Answer answer = tags.at(behind).answer; answer != Answer::kNo) return answer;
    if (behind[0] != 0xFF) return Answer::kNo;
    if (behind.awaits(kHeaderBytes)) return Answer::kUnknown;
    if (!behind.has(kHeaderBytes)) return Answer::kYes;  // a header that is cut off
    const auto next = parse(behind);
    return next && head.isLike(*next) ? Answer::kYes : Answer::kNo;
}

/** Whether what is inside of a frame begins another one, which is confirmed. */
Answer MpegFrames::isInnerFrame(View inside, const Head& head, const TagScanner& tags) const {
    Head inner;
    const Answer answer = isHead(inside, inner);
    if (answer != Answer::kYes) return answer;
    return head.isLike(inner) ? isFollowed(inside, inner.length, inner, tags) : Answer::kNo;
}

/** Where a frame that is not followed by what may follow it was cut: at a frame that begins inside
 *  it, or, as the last one, at a tag. Its length when there is neither. */
Answer MpegFrames::findCut(View view, const Head& head, const TagScanner& tags, Cut& cut) const {
    for (size_t at = kHeaderBytes; at < std::min(head.length, view.size()); ++at) {
        const View inside = view.from(at);
        const TagPiece tag = TagScanner::amid(inside);
        const Answer frame = isInnerFrame(inside, head, tags);
        if (tag.answer == Answer::kYes && at - std::min<uint64_t>(at, tag.before) >= kHeaderBytes) {
            cut = {at - static_cast<size_t>(tag.before), false};
            return Answer::kYes;
        }
        if (frame == Answer::kYes) cut = {at, true};
        if (frame == Answer::kYes) return frame;
        if (frame == Answer::kUnknown || tag.answer == Answer::kUnknown) return Answer::kUnknown;
    }
    cut = {head.length, false};
    return Answer::kYes;
}

Answer MpegFrames::isFrame(View view, bool isDue, const TagScanner& tags) {
    if (const Answer answer = isHead(view, head_); answer != Answer::kYes) return answer;
    cut_ = {head_.length, false};
    const Answer isWhole = isFollowed(view, head_.length, head_, tags);
    if (isWhole != Answer::kNo) return isWhole;
    const bool isLikeLast = last_ && isDue && head_.isLike(*last_);
    // The very first frame may be all there is of the stream.
    const bool isCutOff = view.size() < head_.length && isDue && head_.format.layer == 3;
    if (!isLikeLast && !isCutOff) return Answer::kNo;
    const Answer answer = findCut(view, head_, tags, cut_);
    if (answer != Answer::kYes) return answer;
    return isCutOff || cut_.length >= kFrameBytesMin ? Answer::kYes : Answer::kNo;
}

Mp3Frame MpegFrames::take(View view, uint64_t position, bool isContinuous) {
    last_ = head_;
    if (head_.bitRate == kFreeFormat) freeBytes_ = head_.length - head_.padding;
    Mp3Frame frame;
    frame.position = position;
    frame.length = head_.length;
    frame.format = head_.format;
    frame.bitRate = head_.bitRate;
    frame.isContinuous = isContinuous;
    if (cut_.isByFrame) frame.fault = StreamFault::kCutShort;
    frame.data = view.bytes.first(std::min(cut_.length, view.size()));
    return frame;
}

std::optional<Mp3Frame> MpegFrames::packet(View view, uint64_t position) const {
    const auto head = parse(view);
    if (!head) return std::nullopt;
    Mp3Frame frame;
    frame.data = view.bytes;
    frame.position = position;
    frame.length = head->length > 0 ? head->length : view.size();
    frame.format = head->format;
    frame.bitRate = head->bitRate;
    frame.isContinuous = true;
    return frame;
}

}  // namespace zetac::codec
