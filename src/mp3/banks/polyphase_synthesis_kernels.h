// The arithmetic of the polyphase synthesis filter bank, compiled once per instruction-set level.
//
// Subband samples and the V buffer are Q24: high words of products with the Q30 window are then
// 2^-7 of a 16-bit step. The V buffer has 16 slots in two halves, by the parity of the ring offset.
// With T[m] = sum of S[k] cos(pi/64 m (2k+1)), a slot holds T[1..16], T[31..16] and T[0]: all 64
// values V[i] of the standard are +-T[m], and lane r = 1..16 of a slot holds what the outputs 16 -
// r and 16 + r take of it, T[32 - r] at even ages and T[r] at odd ones.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "core/levels.h"

namespace zetac::mp3 {

inline constexpr int kVSlotLen = 64;
inline constexpr int kVSlots = 16;
static_assert(kVSlots * kVSlotLen == ZETAC_MP3_V_BUFFER_LEN);

// Where the three parts of a slot begin.
inline constexpr int kVLow = 0;     // T[1..16]
inline constexpr int kVHigh = 16;   // T[31..16]
inline constexpr int kVFirst = 32;  // T[0]

// The half and the slot of a ring offset, which is taken modulo 16.
constexpr int vHalf(int offset) {
    return offset % 2 * (kVSlots / 2) * kVSlotLen;
}
constexpr int vSlot(int offset) {
    return vHalf(offset) + offset % kVSlots / 2 * kVSlotLen;
}

struct PolyphaseSynthesis {
    // Matrixing of 32 subband samples into a slot of the V buffer. Saturates.
    void (*_sDCTFwd32_MP3_32s)(const Zet32s* src, Zet32s* slot);

    // 32 output samples, stride apart, from the V buffer whose newest slot is at offset.
    void (*windowSlots)(const Zet32s* vBuffer, int offset, Zet16s* dst, int stride);
};

extern const core::LevelTable<PolyphaseSynthesis> kPolyphaseSynthesis;

}  // namespace zetac::mp3
