// Fields of a bit stream that is read or written. What a header is made of is written once, as a
// template over one of these.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "core/bit_writer.h"
#include "core/bits.h"

namespace zetac::mp3 {

// Reads 0..25 bits.
inline Zet32s ownGetBits_MP3(core::BitReader& stream, int count) {
    return count == 0 ? 0 : stream.getField(static_cast<uint32_t>(count));
}

// Writes the lowest count bits of value, 0..31.
inline void ownSetBits(core::BitWriter& stream, Zet32s value, int count) {
    stream.put(static_cast<uint32_t>(value) & ((1U << count) - 1), count);
}

struct FieldReader {
    static constexpr bool kWrites = false;
    core::BitReader stream;

    void field(Zet32s& value, int bits) { value = ownGetBits_MP3(stream, bits); }
    void constant(Zet32s, int bits) { stream.skip(static_cast<uint32_t>(bits)); }
};

struct FieldWriter {
    static constexpr bool kWrites = true;
    core::BitWriter stream;

    void field(Zet32s value, int bits) { ownSetBits(stream, value, bits); }
    void constant(Zet32s value, int bits) { ownSetBits(stream, value, bits); }
};

}  // namespace zetac::mp3
