// Bit-stream access of the MP3 packers.
#pragma once

#include "core/bit_writer.h"
#include "core/bits.h"
#include "core/checks.h"

namespace zetac::mp3enc {

using core::BitWriter;

// Writes the lowest count bits of value, 0..31.
inline void ownSetBits(BitWriter& stream, Zet32s value, int count) {
    stream.put(static_cast<uint32_t>(value) & ((1U << count) - 1), count);
}

}  // namespace zetac::mp3enc
