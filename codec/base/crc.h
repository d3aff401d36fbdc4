// The error check of ADTS (ISO/IEC 13818-7, 6.2) and of MPEG audio (ISO/IEC 11172-3, 2.4.3.1).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <array>
#include <cstdint>

#include "base/bits.h"

namespace zetac::codec {

/** x^16 + x^15 + x^2 + 1, all ones at the start. */
class Crc16 {
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
