// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/frame_writer.h"

#include <algorithm>

namespace zetac::codec {

void Mp3FrameWriter::add(std::span<const Zet8u> front, size_t frameBytes, size_t mainDataBegin,
                         std::span<const Zet8u> mainData) {
    fill(nullptr, free_ - std::min(mainDataBegin, free_));
    discardTaken();
    const size_t begin = count_ > 0 ? frames_[count_ - 1].end : 0;
    const Frame frame = {begin, begin + front.size(), begin + frameBytes};
    std::ranges::copy(front, &bytes_[begin]);
    std::fill(&bytes_[frame.room], bytes_.data() + frame.end, Zet8u{0});
    frames_[count_++] = frame;
    free_ += frame.end - frame.room;
    fill(mainData.data(), std::min(mainData.size(), free_));
}

/** The frames that are left begin at offset 0. */
void Mp3FrameWriter::discardTaken() {
    if (taken_ == 0) return;
    const size_t shift = frames_[taken_ - 1].end;
    std::copy(bytes_.data() + shift, bytes_.data() + frames_[count_ - 1].end, bytes_.data());
    std::copy(frames_.data() + taken_, frames_.data() + count_, frames_.data());
    count_ -= taken_;
    open_ -= taken_;
    taken_ = 0;
    for (Frame& frame : std::span(frames_).first(count_)) {
        frame.begin -= shift;
        frame.room -= shift;
        frame.end -= shift;
    }
}

/** Without data the bytes stay 0. */
void Mp3FrameWriter::fill(const Zet8u* data, size_t count) {
    free_ -= count;
    for (; open_ < count_; ++open_) {
        Frame& frame = frames_[open_];
        const size_t part = std::min(count, frame.end - frame.room);
        if (data) {
            std::copy_n(data, part, &bytes_[frame.room]);
            data += part;
        }
        frame.room += part;
        count -= part;
        if (frame.room < frame.end) break;
    }
}

std::span<const Zet8u> Mp3FrameWriter::take() {
    if (taken_ == open_) return {};
    const Frame& frame = frames_[taken_++];
    return std::span(bytes_).subspan(frame.begin, frame.end - frame.begin);
}

}  // namespace zetac::codec
