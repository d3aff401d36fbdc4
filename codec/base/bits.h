// The position in a raw data block and the few bits that the assembly reads itself.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace zetac::codec {

/** A bit position as the library takes it: `&cursor.byte, &cursor.bit`. Reading past the end of the
 *  data is harmless as long as kReadAhead bytes behind it are readable. */
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

/** Readable bytes that must stand behind the data of a stream. Every call of a reader begins in the data,
 *  or a few bytes of element headers behind them; an ADIF header is the longest that one consumes. */
inline constexpr size_t kReadAhead = ZETAC_AAC_ADIF_BYTES_MAX + ZETAC_BIT_STREAM_SLACK;
static_assert(kReadAhead > ZETAC_AAC_CHANNEL_BYTES_MAX + 256);

/** The error check of ADTS (ISO/IEC 13818-7, 6.2): x^16 + x^15 + x^2 + 1, all ones at the start. */
class AdtsCrc {
  public:
    /** Adds bits from the cursor on, followed by zeros up to paddedCount bits. */
    void add(BitCursor from, size_t count, size_t paddedCount) {
        for (size_t left = count; left > 0;) {
            const int step = left < 8 ? static_cast<int>(left) : 8;
            addBits(from.get(step), step);
            left -= static_cast<size_t>(step);
        }
        for (; count < paddedCount; ++count) addBits(0, 1);
    }

    uint16_t value() const { return static_cast<uint16_t>(state_); }

  private:
    static constexpr unsigned shiftIn(unsigned state, int count) {
        for (; count > 0; --count) state = state & 0x8000 ? state << 1 ^ 0x8005 : state << 1;
        return state & 0xFFFF;
    }

    static constexpr std::array<uint16_t, 256> makeTable() {
        std::array<uint16_t, 256> table{};
        for (unsigned i = 0; i < 256; ++i) table[i] = static_cast<uint16_t>(shiftIn(i << 8, 8));
        return table;
    }

    void addBits(unsigned bits, int count) {
        static constexpr std::array<uint16_t, 256> kTable = makeTable();
        if (count == 8) {
            state_ = (state_ << 8 & 0xFF00) ^ kTable[(state_ >> 8) ^ bits];
        } else {
            state_ = shiftIn(state_ ^ bits << (16 - count), count);
        }
    }

    unsigned state_ = 0xFFFF;
};

}  // namespace zetac::codec
