// Bit-stream access of the MP3 readers.
#pragma once

#include "core/bits.h"
#include "core/checks.h"

namespace zetac::mp3 {

using core::BitReader;
using core::isBitOffset;
using core::isSet;

// Reads 0..25 bits.
inline Zet32s ownGetBits_MP3(BitReader& stream, int count) {
    return count == 0 ? 0 : stream.getField(static_cast<uint32_t>(count));
}

}  // namespace zetac::mp3
