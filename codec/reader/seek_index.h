// Where frames of a stream begin, in bytes and in samples, in bounded memory.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zetac::codec {

/** Notes frames in the order of the stream. When it is full, every second one is forgotten and from
 *  then on half as many are noted. */
class SeekIndex {
  public:
    struct Point {
        uint64_t byte = 0;
        uint64_t sample = 0;
    };

    void note(const Point& point) {
        if (count_ > 0 && point.sample <= last_) return;
        last_ = point.sample;
        if (frames_++ % stride_ != 0) return;
        if (count_ == points_.size()) {
            for (size_t i = 0; 2 * i < count_; ++i) points_[i] = points_[2 * i];
            count_ /= 2;
            stride_ *= 2;
            if ((frames_ - 1) % stride_ != 0) return;
        }
        points_[count_++] = point;
    }

    /** The last noted point at or before a sample; the first one when there is none. */
    Point before(uint64_t sample) const {
        size_t low = 0;
        size_t high = count_;
        while (high - low > 1) {
            const size_t middle = (low + high) / 2;
            (points_[middle].sample <= sample ? low : high) = middle;
        }
        return count_ == 0 ? Point{} : points_[low];
    }

    bool isEmpty() const { return count_ == 0; }
    Point first() const { return points_[0]; }
    Point last() const { return points_[count_ - 1]; }

  private:
    std::array<Point, 8192> points_;
    size_t count_ = 0;
    uint64_t frames_ = 0;
    uint64_t stride_ = 1;
    uint64_t last_ = 0;  // sample of the last frame, noted or not
};

}  // namespace zetac::codec
