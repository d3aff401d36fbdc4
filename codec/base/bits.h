// Positions in a bit stream, and the few bits that are read here and not by the primitives.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstddef>
#include <span>

namespace zetac::codec {

/** Readable bytes that must stand behind the data of a stream: more than any call of the primitives
 *  reads. */
inline constexpr size_t kReadAhead = 2 * ZETAC_AAC_CHANNEL_BYTES_MAX;

/** A bit position as the primitives take it: `&cursor.byte, &cursor.bit`. Reading past the end of
 *  the data is harmless as long as kReadAhead bytes behind it are readable. */
struct BitCursor {
    Zet8u* byte = nullptr;
    int bit = 0;

    unsigned get(int count) {
        unsigned value = 0;
        for (; count > 0; --count) {
            value = value << 1 | ((*byte >> (7 - bit)) & 1u);
            bit = (bit + 1) & 7;
            byte += bit == 0;
        }
        return value;
    }

    void byteAlign() {
        byte += bit != 0;
        bit = 0;
    }

    /** Bits between the start of the data and here. */
    size_t bitsFrom(const Zet8u* start) const {
        return static_cast<size_t>(byte - start) * 8 + static_cast<size_t>(bit);
    }
};

/** Reads bits of data that end; behind the end there are zeros. */
class BitReader {
  public:
    explicit BitReader(std::span<const Zet8u> data) : data_(data) {}

    /** The next 1..24 bits. */
    unsigned peek(int count) const {
        const size_t first = position_ / 8;
        unsigned word = 0;
        if (first + 4 <= data_.size()) {
            for (size_t i = 0; i < 4; ++i) word = word << 8 | data_[first + i];
        } else {
            for (size_t i = first; i < first + 4; ++i) {
                word = word << 8 | (i < data_.size() ? data_[i] : 0u);
            }
        }
        return word << position_ % 8 >> (32 - count);
    }

    void skip(size_t count) { position_ += count; }

    unsigned get(int count) {
        const unsigned value = peek(count);
        skip(static_cast<size_t>(count));
        return value;
    }

    int number(int count) { return static_cast<int>(get(count)); }
    bool flag() { return get(1) != 0; }

    size_t position() const { return position_; }
    bool isBeyondEnd() const { return position_ > data_.size() * 8; }

  private:
    std::span<const Zet8u> data_;
    size_t position_ = 0;
};

}  // namespace zetac::codec
