// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/frame_writer.h"

#include <algorithm>

namespace zetac::codec {

void Mp3FrameWriter::add(std::span<const Zet8u> front, size_t frameBytes, size_t mainDataBegin,
                         std::span<const Zet8u> mainData, std::vector<Zet8u>& out) {
    fill(nullptr, free_ - std::min(mainDataBegin, free_));
    bytes_.insert(bytes_.end(), front.begin(), front.end());
    const size_t begin = bytes_.size();
    bytes_.resize(begin + frameBytes - front.size());
    areas_.push_back({begin, bytes_.size()});
    free_ += bytes_.size() - begin;
    fill(mainData.data(), std::min(mainData.size(), free_));

    const size_t done = areas_.empty() ? bytes_.size() : areas_.front().begin;
    const auto end = bytes_.begin() + static_cast<ptrdiff_t>(done);
    out.insert(out.end(), bytes_.begin(), end);
    bytes_.erase(bytes_.begin(), end);
    for (Area& area : areas_) {
        area.begin -= done;
        area.end -= done;
    }
}

/** Without data the bytes stay 0. */
void Mp3FrameWriter::fill(const Zet8u* data, size_t count) {
    free_ -= count;
    while (!areas_.empty()) {
        Area& area = areas_.front();
        const size_t part = std::min(count, area.end - area.begin);
        if (data) {
            std::copy_n(data, part, &bytes_[area.begin]);
            data += part;
        }
        area.begin += part;
        count -= part;
        if (area.begin < area.end) break;
        areas_.pop_front();
    }
}

void Mp3FrameWriter::finish(std::vector<Zet8u>& out) {
    out.insert(out.end(), bytes_.begin(), bytes_.end());
    bytes_.clear();
    areas_.clear();
    free_ = 0;
}

}  // namespace zetac::codec
