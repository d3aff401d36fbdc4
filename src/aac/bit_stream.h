// Bit-stream access of the AAC readers. An exported reader opens a BitReader on the caller's
// position, hands it down by reference and stores it back on every way out, so that after a failure
// the position is where reading stopped.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "core/bits.h"
#include "core/checks.h"

namespace zetac::aac {

using core::BitReader;
using core::isBitOffset;
using core::isSet;

// Reads 1..25 bits.
inline Zet32s ownsGetBits_AAC(BitReader& stream, int count) {
    return stream.getField(static_cast<uint32_t>(count));
}

inline Zet8u getByte(BitReader& stream) {
    return static_cast<Zet8u>(stream.get(8));
}

inline Zet8u getFlag(BitReader& stream) {
    return static_cast<Zet8u>(stream.get(1));
}

inline void ownsByteAlign_AAC(BitReader& stream) {
    stream.byteAlign();
}

inline void getBytes(BitReader& stream, Zet8u* bytes, int count) {
    for (int i = 0; i < count; ++i) bytes[i] = getByte(stream);
}

// One flag for each of the bands [begin, end).
inline void getFlags(BitReader& stream, Zet8u* flags, int begin, int end) {
    for (int sfb = begin; sfb < end; ++sfb) flags[sfb] = getFlag(stream);
}

}  // namespace zetac::aac
