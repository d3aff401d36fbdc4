// The payload of one SBR extension and its bits.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <algorithm>
#include <cstddef>

namespace zetac::codec {

/** extension_payload() of a fill element (ISO/IEC 14496-3, 4.4.2.7), its extension_type included.
 */
struct SbrPayload {
    size_t bytes = 0;  // 0: the element has no SBR data in this block
    Zet8u data[ZETAC_AAC_FILL_BYTES_MAX] = {};
};

/** Reads bits; behind the end there are zeros. */
class SbrBits {
  public:
    explicit SbrBits(const SbrPayload& payload) : payload_(payload) {}

    /** The next 1..24 bits. */
    unsigned peek(int count) const {
        const size_t first = position_ / 8;
        unsigned word = 0;
        if (first + 4 <= payload_.bytes) {
            for (size_t i = 0; i < 4; ++i) word = word << 8 | payload_.data[first + i];
        } else {
            for (size_t i = first; i < first + 4; ++i) {
                word = word << 8 | (i < payload_.bytes ? payload_.data[i] : 0u);
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
    bool isBeyondEnd() const { return position_ > payload_.bytes * 8; }

  private:
    const SbrPayload& payload_;
    size_t position_ = 0;
};

}  // namespace zetac::codec
